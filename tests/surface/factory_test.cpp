// SPDX-License-Identifier: BSD-2-Clause
//
// Which class draws in which layout, and what the factory does with the reference it is given.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <typeinfo>

namespace {

using namespace nkdraw::test;

/// One row for each value: what GetDraw makes, whether its channels are R, G and B, and its packed
/// pitch.
enum class Made {
  kNothing,
  kRgba32,
  kRgb24,
  kYuyv,
  kV210,
  kDpx,
  kBayer,
  kRgb48,
  kHalf48,
  kArgb64,
  kUv8,
  kUv16
};

struct TypeRow {
  std::int32_t type;
  Made made;
  std::uint32_t isRgb;
};

constexpr TypeRow kTypes[] = {
    {1, Made::kRgba32, 1},        {2, Made::kRgba32, 1},      {3, Made::kRgba32, 1},
    {4, Made::kRgba32, 1},        {5, Made::kRgb24, 1},       {6, Made::kRgb24, 1},
    {7, Made::kNothing, 1},       {8, Made::kNothing, 1},     {9, Made::kNothing, 1},
    {10, Made::kYuyv, 0},         {11, Made::kYuyv, 0},       {12, Made::kYuyv, 0},
    {13, Made::kYuyv, 0},         {14, Made::kV210, 0},       {15, Made::kNothing, 0},
    {16, Made::kNothing, 0},      {17, Made::kNothing, 0},    {18, Made::kNothing, 0},
    {19, Made::kNothing, 0},      {20, Made::kDpx, 1},        {21, Made::kBayer, 1},
    {22, Made::kBayer, 1},        {23, Made::kBayer, 1},      {24, Made::kBayer, 1},
    {25, Made::kBayer, 1},        {26, Made::kBayer, 1},      {27, Made::kBayer, 1},
    {28, Made::kBayer, 1},        {29, Made::kNothing, 1},    {30, Made::kNothing, 1},
    {31, Made::kRgb48, 1},        {32, Made::kArgb64, 1},     {33, Made::kNothing, 0},
    {34, Made::kNothing, 0},      {35, Made::kNothing, 0},    {36, Made::kNothing, 0},
    {37, Made::kHalf48, 1},       {38, Made::kArgb64, 1},     {39, Made::kNothing, 1},
    {0, Made::kNothing, 1},       {-1, Made::kNothing, 0},    {-2, Made::kNothing, 1},
    {100, Made::kNothing, 1},     {9999, Made::kNothing, 1},  {10000, Made::kUv8, 0},
    {10001, Made::kUv16, 0},      {10002, Made::kNothing, 1}, {INT_MIN, Made::kNothing, 1},
    {INT_MAX, Made::kNothing, 1},
};

const std::type_info* classOf(Made made) {
  switch (made) {
    case Made::kRgba32:
      return &typeid(CDrawRGBA32);
    case Made::kRgb24:
      return &typeid(CDrawRGB24);
    case Made::kYuyv:
      return &typeid(CDrawYCbCrYUYV);
    case Made::kV210:
      return &typeid(CDrawYCbCr10);
    case Made::kDpx:
      return &typeid(CDrawRGB30DPX);
    case Made::kBayer:
      return &typeid(CDrawBayer);
    case Made::kRgb48:
      return &typeid(CDrawRGB48);
    case Made::kHalf48:
      return &typeid(CDrawRGBHalf48);
    case Made::kArgb64:
      return &typeid(CDrawARGB64);
    case Made::kUv8:
      return &typeid(CDrawUV8);
    case Made::kUv16:
      return &typeid(CDrawUV16);
    default:
      return nullptr;
  }
}

int packedPitch(Made made, int width) {
  switch (made) {
    case Made::kRgba32:
    case Made::kDpx:
      return width * 4;
    case Made::kRgb24:
      return width * 3;
    case Made::kRgb48:
    case Made::kHalf48:
      return width * 6;
    case Made::kArgb64:
      return width * 8;
    case Made::kBayer:
      return width * 3 / 2;
    case Made::kYuyv:
    case Made::kUv8:
    case Made::kUv16:
      return width * 2;
    default:
      return (width + 47) / 48 * 128;
  }
}

TEST(Factory, EachTypeGivesTheClassOfItsRow) {
  for (const TypeRow& row : kTypes) {
    SCOPED_TRACE(row.type);
    NKDraw* surface = nullptr;
    Frame frame(64 * 64 * 4);
    const std::uint32_t status =
        GetDraw(static_cast<std::uint32_t>(row.type), 40, 20, 0, frame.canvas(), surface);
    const std::type_info* const wanted = classOf(row.made);
    if (wanted == nullptr) {
      EXPECT_EQ(status, row.type == -1 ? 0xFFFFFFFF : 0xFFFFFFFE);
      EXPECT_EQ(surface, nullptr);
      continue;
    }
    ASSERT_EQ(status, 0U);
    const Surface owned(surface);
    EXPECT_TRUE(typeid(*surface) == *wanted);
    EXPECT_EQ(surface->PixelType(), row.type);
    EXPECT_EQ(surface->Width(), 40U);
    EXPECT_EQ(surface->Height(), 20U);
    EXPECT_EQ(surface->GetCanvas(), frame.canvas());
    EXPECT_EQ(surface->Refs(), 1);
    EXPECT_TRUE(DrawFields::wantsDefaultFont(*surface));
    EXPECT_EQ(surface->IsRgbType(), row.isRgb);
    EXPECT_TRUE(frame.untouched());
  }
}

TEST(Factory, PackedPitchesGoByTheWidthAlone) {
  for (const TypeRow& row : kTypes) {
    if (classOf(row.made) == nullptr)
      continue;
    for (int width = 1; width <= 300; ++width) {
      SCOPED_TRACE(testing::Message() << "type " << row.type << " width " << width);
      const Surface surface = makeSurface(static_cast<pixelType>(row.type), width, 3, 0, nullptr);
      const int packed = packedPitch(row.made, width);
      ASSERT_EQ(surface->GetPitch(), packed);
      // A pixel of the 16-bit chroma plane takes twice what its class asks for.
      const int bound = row.made == Made::kUv16 ? 2 * packed : packed;
      ASSERT_EQ(surface->Pitch(), static_cast<std::uint32_t>(bound));
      ASSERT_EQ(surface->BufferLength(), static_cast<std::uint32_t>(bound) * 3);
      surface->SetCanvas(nullptr, 3, width, bound + 1000);
      ASSERT_EQ(surface->GetPitch(), packed);
      ASSERT_EQ(surface->Pitch(), static_cast<std::uint32_t>(bound) + 1000);
    }
  }
}

TEST(Factory, IsRgbTypeAnswersForEveryValueOfTheTypeField) {
  NKPixel pixel;
  for (const TypeRow& row : kTypes) {
    PixelFields::kind(pixel) = static_cast<pixelType>(row.type);
    EXPECT_EQ(pixel.IsRgbType(), row.isRgb) << row.type;
  }
  for (std::int32_t type = -100; type < 20000; ++type) {
    const bool ycbcr = type == -1 || (type >= 10 && type <= 19) || (type >= 33 && type <= 36) ||
                       type == 10000 || type == 10001;
    PixelFields::kind(pixel) = static_cast<pixelType>(type);
    ASSERT_EQ(pixel.IsRgbType(), ycbcr ? 0U : 1U) << type;
  }
}

TEST(Factory, ATypeOfMinusOneTouchesNothing) {
  char byte = 0;
  const Surface held = makeSurface(ptRGB24, 10, 10, 0, &byte);
  NKDraw* surface = held.get();
  EXPECT_EQ(GetDraw(0xFFFFFFFF, 99, 98, 0, nullptr, surface), 0xFFFFFFFF);
  EXPECT_EQ(surface, held.get());
  EXPECT_EQ(held->Width(), 10U);
  EXPECT_EQ(held->GetCanvas(), &byte);
}

TEST(Factory, ATypeWithoutASurfaceRebindsTheOneThatIsHeld) {
  for (const std::uint32_t type : {7U, 15U, 16U, 29U, 30U, 33U, 35U, 36U, 5000U}) {
    SCOPED_TRACE(type);
    char byte = 0;
    const Surface held(new CDrawRGB24(ptRGB24));
    NKDraw* surface = held.get();
    EXPECT_FALSE(DrawFields::wantsDefaultFont(*surface));
    EXPECT_EQ(GetDraw(type, 50, -60, 200, &byte, surface), 0U);
    EXPECT_EQ(surface, held.get());
    EXPECT_EQ(held->Width(), 50U);
    EXPECT_EQ(held->Height(), 60U);
    EXPECT_EQ(held->Pitch(), 200U);
    EXPECT_EQ(held->GetCanvas(), &byte);
    EXPECT_EQ(held->PixelType(), ptRGB24);
    EXPECT_EQ(held->Refs(), 1);
    EXPECT_TRUE(DrawFields::wantsDefaultFont(*surface));
  }
}

TEST(Factory, AServedTypeOverwritesWhatIsHeldWithoutReleasingIt) {
  const Surface held = makeSurface(ptRGB24, 10, 10, 0, nullptr);
  NKDraw* surface = held.get();
  EXPECT_EQ(GetDraw(3, 20, 20, 0, nullptr, surface), 0U);
  const Surface made(surface);
  EXPECT_NE(made.get(), held.get());
  EXPECT_EQ(held->Refs(), 1);
  EXPECT_EQ(held->Width(), 10U);
}

TEST(Factory, TheSizeStubReturnsZeroForEveryArgument) {
  EXPECT_EQ(GetDrawSize(0, 0, 0, 0), 0U);
  EXPECT_EQ(GetDrawSize(3, 1920, 1080, 7680), 0U);
  EXPECT_EQ(GetDrawSize(0xFFFFFFFF, INT_MIN, INT_MAX, -1), 0U);
}

TEST(Factory, ReferencesAreCountedAndTheLastOneDeletesAndClears) {
  NKDraw* surface = nullptr;
  ASSERT_EQ(GetDraw(1, 4, 4, 0, nullptr, surface), 0U);
  NKDraw* const object = surface;
  EXPECT_EQ(AddRefDraw(surface), 0U);
  EXPECT_EQ(object->Refs(), 2);
  EXPECT_EQ(AddRefDraw(surface), 0U);
  EXPECT_EQ(object->Refs(), 3);
  EXPECT_EQ(ReleaseDraw(surface), 0U);
  EXPECT_EQ(ReleaseDraw(surface), 0U);
  EXPECT_EQ(surface, object);
  EXPECT_EQ(object->Refs(), 1);
  EXPECT_EQ(object->TryLock(), 1U);  // the lock was left
  object->Unlock();
  EXPECT_EQ(ReleaseDraw(surface), 0U);
  EXPECT_EQ(surface, nullptr);
}

class Noted final : public CDrawRGBA32 {
 public:
  explicit Noted(bool* deleted) : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32), deleted_(deleted) {}
  ~Noted() override { *deleted_ = true; }

 private:
  bool* deleted_;
};

TEST(Factory, OnlyTheLastReleaseRunsTheDestructorOfTheWholeObject) {
  bool deleted = false;
  NKDraw* surface = new Noted(&deleted);
  AddRefDraw(surface);
  ReleaseDraw(surface);
  EXPECT_FALSE(deleted);
  EXPECT_EQ(surface->Release(), 0);  // counts, never deletes
  EXPECT_EQ(surface->Release(), 0);
  EXPECT_FALSE(deleted);
  ReleaseDraw(surface);  // a count that is 0 already is the last as well
  EXPECT_TRUE(deleted);
  EXPECT_EQ(surface, nullptr);
}

TEST(Factory, TheFontStubsReturnZeroAndTheDefaultFontIsWantedWhateverIsSaid) {
  for (const bool wanted : {false, true}) {
    NKDraw* surface = new CDrawRGBA32(ptRGBA32);
    EXPECT_FALSE(DrawFields::wantsDefaultFont(*surface));
    char name[] = "font";
    EXPECT_EQ(SetFont(surface, name), 0U);
    EXPECT_FALSE(DrawFields::wantsDefaultFont(*surface));
    EXPECT_EQ(UseDefaultFont(surface, wanted), 0U);
    EXPECT_TRUE(DrawFields::wantsDefaultFont(*surface));
    ReleaseDraw(surface);
  }
}

std::uint32_t code(const char* letters) {
  std::uint32_t value;
  std::memcpy(&value, letters, sizeof value);
  return value;
}

BITMAPINFO header(std::uint32_t compression, int width, int height, int depth,
                  std::uint32_t size = 0) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = 40;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biBitCount = static_cast<std::uint16_t>(depth);
  info.bmiHeader.biCompression = compression;
  info.bmiHeader.biSizeImage = size;
  return info;
}

TEST(FactoryByHeader, AV210HeaderGivesItsSurfaceAndReads16BitsAfterwards) {
  BITMAPINFO info = header(code("v210"), 1920, 1080, 20);
  char byte = 0;
  NKDraw* surface = nullptr;
  ASSERT_EQ(GetDraw(&info, &byte, surface), 0U);
  const Surface owned(surface);
  EXPECT_TRUE(typeid(*surface) == typeid(CDrawYCbCr10));
  EXPECT_EQ(surface->Pitch(), 5120U);
  EXPECT_EQ(surface->GetCanvas(), &byte);
  EXPECT_EQ(info.bmiHeader.biBitCount, 16);
  EXPECT_EQ(info.bmiHeader.biSizeImage, 1920U * 1080 * 16 / 6);
  EXPECT_TRUE(DrawFields::wantsDefaultFont(*surface));
}

TEST(FactoryByHeader, CompressedFormatsDrawInUyvy) {
  for (const char* letters : {"dvsd", "mpeg", "1cva"}) {
    SCOPED_TRACE(letters);
    BITMAPINFO info = header(code(letters), 720, 486, 24);
    NKDraw* surface = nullptr;
    ASSERT_EQ(GetDraw(&info, nullptr, surface), 0U);
    const Surface owned(surface);
    EXPECT_EQ(surface->PixelType(), ptUYVY);
    EXPECT_EQ(info.bmiHeader.biSizeImage, 720U * 486 * 2);
  }
}

TEST(FactoryByHeader, TheSignOfTheHeightIsDropped) {
  for (const int height : {480, -480}) {
    BITMAPINFO info = header(0, 640, height, 32);
    NKDraw* surface = nullptr;
    ASSERT_EQ(GetDraw(&info, nullptr, surface), 0U);
    const Surface owned(surface);
    EXPECT_EQ(surface->PixelType(), ptBGRA32);
    EXPECT_EQ(surface->Height(), 480U);
    EXPECT_FALSE(PixelFields::flippedOf(*surface));
    EXPECT_EQ(info.bmiHeader.biHeight, height);
  }
}

TEST(FactoryByHeader, AHeaderThatNoSurfaceServesClearsTheReference) {
  const struct {
    const char* why;
    BITMAPINFO info;
  } kRefused[] = {
      {"planar", header(code("I420"), 1920, 1080, 12)},
      {"8-bit RGB", header(0, 1920, 1080, 8)},
      {"a code of no row", header(code("ABCD"), 1920, 1080, 24, 100)},
      {"a type with a size of 0", header(code("L10R"), 1920, 1080, 10)},
      {"a size of 0xFFFFFFFF", header(code("UYVY"), 1920, 1080, 16, 0xFFFFFFFF)},
      {"no width", header(code("UYVY"), 0, 1080, 16)},
  };
  for (auto row : kRefused) {
    SCOPED_TRACE(row.why);
    const Surface held = makeSurface(ptRGB24, 10, 10, 0, nullptr);
    NKDraw* surface = held.get();
    EXPECT_EQ(GetDraw(&row.info, nullptr, surface), 0xFFFFFFFF);
    EXPECT_EQ(surface, nullptr);
  }
}

TEST(FactoryByHeader, DeepAndRawHeadersGiveTheirSurfaces) {
  const struct {
    const char* letters;
    int depth;
    const std::type_info* wanted;
  } kRows[] = {
      {"L10R", 10, &typeid(CDrawRGB30DPX)},
      {"RYBP", 10, &typeid(CDrawBayer)},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.letters);
    BITMAPINFO info = header(code(row.letters), 1920, 1080, row.depth, 8294400);
    NKDraw* surface = nullptr;
    ASSERT_EQ(GetDraw(&info, nullptr, surface), 0U);
    const Surface owned(surface);
    EXPECT_TRUE(typeid(*surface) == *row.wanted);
    EXPECT_EQ(surface->Width(), 1920U);
    EXPECT_EQ(surface->Height(), 1080U);
  }
}

}  // namespace
