// SPDX-License-Identifier: BSD-2-Clause
//
// Planes of Cb and Cr: surfaces whose luma is always a half.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <type_traits>
#include <vector>

namespace {

using namespace nkdraw::test;

std::uint32_t wordOf(const std::uint8_t* at) {
  return at[0] + 256U * at[1];
}

std::uint32_t whole(double value) {
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(value));
}

template <class Surface>
class ChromaPlane : public testing::Test {
 protected:
  static constexpr bool kWide = std::is_same_v<Surface, CDrawUV16>;
  static constexpr pixelType kType = kWide ? ptUV16 : ptUV8;
  static constexpr int kBytes = kWide ? 4 : 2;  // of a pixel

  static std::vector<std::uint32_t> colour(Surface& surface, bool ink) {
    std::vector<std::uint32_t> samples;
    for (const std::uint32_t* const sample : SampleFields<Surface>::samples(surface, ink))
      samples.push_back(*sample);
    return samples;
  }
};

using Classes = testing::Types<CDrawUV8, CDrawUV16>;
TYPED_TEST_SUITE(ChromaPlane, Classes);

TYPED_TEST(ChromaPlane, StartsWithItsDocumentedFields) {
  TypeParam surface(TestFixture::kType);
  constexpr bool kWide = TestFixture::kWide;
  const std::array<double, 6> scales =
      kWide ? std::array<double, 6>{4096.0, 60160.0, 4096.0, 56064.0, 4096.0, 56064.0}
            : std::array<double, 6>{16.0, 235.0, 19.0, 219.0, 18.0, 219.0};
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_EQ(*SampleFields<TypeParam>::scales(surface)[i], scales[i]);
  using Samples = std::vector<std::uint32_t>;
  EXPECT_EQ(this->colour(surface, true),
            (kWide ? Samples{0xEB00, 0x8000, 0x8000} : Samples{235, 128, 128}));
  EXPECT_EQ(this->colour(surface, false),
            (kWide ? Samples{0x1000, 0x8000, 0x8000} : Samples{16, 128, 128}));
  EXPECT_EQ(PixelFields::mode(surface), 3);
  EXPECT_EQ(surface.IsRgbType(), 0U);
  for (const int type : {-1, 0, 1, 14, 10000, 10001, INT_MAX})
    EXPECT_EQ(TypeParam(static_cast<pixelType>(type)).PixelType(), type);
}

TYPED_TEST(ChromaPlane, SetCanvasKeepsTheSignsAndRaisesThePitch) {
  constexpr unsigned kBytes = TestFixture::kBytes;
  TypeParam surface(TestFixture::kType);
  char byte = 0;
  EXPECT_EQ(surface.SetCanvas(&byte, -1080, 1920, 0), 0U);
  EXPECT_EQ(surface.Height(), static_cast<std::uint32_t>(-1080));
  EXPECT_EQ(surface.Width(), 1920U);
  EXPECT_EQ(surface.Pitch(), 1920 * kBytes);
  EXPECT_FALSE(PixelFields::flippedOf(surface));
  EXPECT_EQ(surface.GetCanvas(), &byte);
  EXPECT_EQ(surface.GetPitch(), 3840);
  surface.SetCanvas(&byte, 10, 100, 100 * static_cast<int>(kBytes) - 1);
  EXPECT_EQ(surface.Pitch(), 100 * kBytes);
  surface.SetCanvas(&byte, 10, 100, 100 * static_cast<int>(kBytes) + 1);
  EXPECT_EQ(surface.Pitch(), 100 * kBytes + 1);
  surface.SetCanvas(&byte, 10, 100, -500);
  EXPECT_EQ(surface.Pitch(), static_cast<std::uint32_t>(-500));
  surface.SetCanvas(&byte, 10, -100, 0);
  EXPECT_EQ(surface.Width(), static_cast<std::uint32_t>(-100));
  EXPECT_EQ(surface.Pitch(), 0U - 100 * kBytes);
}

TYPED_TEST(ChromaPlane, SetCanvasKeepsAModeOfTheFamilyThatTheWidthAsksFor) {
  TypeParam surface(TestFixture::kType);
  for (const int mode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 1001, 1003, 1004, -1}) {
    for (const int width : {1, 720, 721, 1920, -1920}) {
      SCOPED_TRACE(testing::Message() << mode << " " << width);
      surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
      surface.SetCanvas(nullptr, 10, width, 0);
      const int want =
          width > 720 ? (mode == 3 || mode == 4 ? mode : 3) : (mode == 1 || mode == 2 ? mode : 1);
      EXPECT_EQ(PixelFields::mode(surface), want);
    }
  }
}

TYPED_TEST(ChromaPlane, ColoursAre65536thsInBothDepths) {
  TypeParam surface(TestFixture::kType);
  Random random(5001);
  for (int i = 0; i < 3000; ++i) {
    const double range = i % 3 == 0 ? 0.0 : i % 3 == 1 ? 3.0 : 1e7;
    const double y = random.real(-range, 1 + range), cb = random.real(-range, 1 + range);
    const double cr = random.real(-range, 1 + range);
    const bool ink = random.flag();
    const auto other = this->colour(surface, !ink);
    ASSERT_EQ(surface.SetColorYCbCr(y, cb, cr, random.real(0, 1), ink), 0U);
    const std::vector<std::uint32_t> want = {whole(y * 65536.0), whole(cb * 65536.0),
                                             whole(cr * 65536.0)};
    ASSERT_EQ(this->colour(surface, ink), want);
    ASSERT_EQ(this->colour(surface, !ink), other);
  }
  surface.SetColorYCbCr8(51, 102, 153, 0, true);
  EXPECT_EQ(this->colour(surface, true)[2], whole(153 / 255.0 * 65536.0));
  surface.SetColorYCbCr10(512, 256, 768, 0, false);
  EXPECT_EQ(this->colour(surface, false), (std::vector<std::uint32_t>{0x8000, 0x4000, 0xC000}));
  EXPECT_EQ(wordAt(PixelFields::foreground(surface)), 0xFFFFFFFFU);
}

template <class Base>
class SetterLog final : public Base {
 public:
  explicit SetterLog(pixelType type) : NKDraw(type), Base(type) {}
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool ink) override {
    got = {y, cb, cr, a};
    inkSeen = ink;
    return 888;
  }
  std::array<double, 4> got{};
  bool inkSeen = false;
};

TYPED_TEST(ChromaPlane, RgbColoursGoThroughTheMatrixAndTheVirtualSetter) {
  SetterLog<TypeParam> surface(TestFixture::kType);
  Random random(5003);
  for (int mode = 0; mode <= 8; ++mode) {
    surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int i = 0; i < 50; ++i) {
      const double r = random.real(0, 1), g = random.real(0, 1), b = random.real(0, 1);
      double y = 0, cb = 0, cr = 0, unused = 0;
      surface.RGBToYCbCr(r, g, b, 0.0, y, cb, cr, unused);
      const bool ink = random.flag();
      ASSERT_EQ(surface.SetColorRGBA(r, g, b, 0.7, ink), 0U);
      ASSERT_EQ(surface.got, (std::array<double, 4>{y, cb, cr, 0.7}));
      ASSERT_EQ(surface.inkSeen, ink);
    }
  }
  // SetPixel takes Y, Cb and Cr here.
  Frame frame(64);
  surface.SetCanvas(frame.canvas(), 1, 4, 0);
  surface.SetPixel(0, 0, 0.1, 0.2, 0.3, 0.4, true);
  EXPECT_EQ(surface.got, (std::array<double, 4>{0.1, 0.2, 0.3, 0.4}));
}

TYPED_TEST(ChromaPlane, PlotsCbAndThenCrAndTestsNothing) {
  constexpr int kBytes = TestFixture::kBytes;
  Random random(5007);
  for (int i = 0; i < 400; ++i) {
    Frame got(4096, 3, 256), want(4096, 3, 256);
    TypeParam surface(TestFixture::kType);
    const int pitch = 60 + random.between(0, 50);
    surface.SetCanvas(got.canvas(), 9, 7, pitch);
    const bool ink = random.flag();
    for (std::uint32_t* const sample : SampleFields<TypeParam>::samples(surface, ink))
      *sample = random.word();
    surface.SetTransparency(0.5, ink);
    surface.SetTransparency(random.flag());
    surface.SetAlphaAdditive(random.flag());
    const int x = random.between(-9, 20), y = random.between(0, 12);
    ASSERT_EQ(surface.GetPixel(x, y), got.canvas() + y * pitch + kBytes * x);
    ASSERT_EQ(surface.PutPixel(x, y, ink), 0U);
    const auto colour = this->colour(surface, ink);
    for (int sample = 0; sample < 2; ++sample) {
      for (int byte = 0; byte < kBytes / 2; ++byte) {
        want[y * pitch + kBytes * x + kBytes / 2 * sample + byte] =
            static_cast<std::uint8_t>(colour[static_cast<std::size_t>(sample) + 1] >> (8 * byte));
      }
    }
    ASSERT_TRUE(got.all() == want.all());
  }
}

TYPED_TEST(ChromaPlane, ReadsAreWordsAtTwoByteSpacingAndALumaOfAHalf) {
  constexpr int kBytes = TestFixture::kBytes;
  Frame frame(65536 * 4 + 8, 7);
  for (int value = 0; value < 65536; ++value) {
    frame[kBytes * value] = static_cast<std::uint8_t>(value);
    frame[kBytes * value + 1] = static_cast<std::uint8_t>(value >> 8);
  }
  TypeParam surface(TestFixture::kType);
  surface.SetCanvas(frame.canvas(), 1, 65536, 0);
  for (int x = 0; x < 65536; ++x) {
    const std::uint8_t* const at = frame.data() + kBytes * x;
    double y2 = 9, cb = 9, cr = 9, a = 9;
    ASSERT_EQ(surface.GetPixelYCbCr(x, 0, y2, cb, cr, a), 0U);
    ASSERT_EQ(y2, 0.5);
    ASSERT_EQ(cb, x / 65536.0);
    ASSERT_EQ(cr, wordOf(at + 2) / 65536.0);  // in bytes, the next pixel's two
    ASSERT_EQ(a, 9.0);
  }
}

TYPED_TEST(ChromaPlane, RgbReadsGoThroughTheMatrixAndLeaveTheAlpha) {
  Frame frame(1024, 9);
  TypeParam surface(TestFixture::kType);
  surface.SetCanvas(frame.canvas(), 1, 200, 0);
  for (const int mode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 1001, 1003}) {
    surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int x = 0; x < 200; ++x) {
      double y2 = 0, cb = 0, cr = 0, unused = 0;
      surface.GetPixelYCbCr(x, 0, y2, cb, cr, unused);
      double want[] = {9, 9, 9};
      surface.YCbCrToRGB(y2, cb, cr, 0.0, want[0], want[1], want[2], unused);
      double r = 9, g = 9, b = 9, a = 9;
      ASSERT_EQ(surface.GetPixelRGBA(x, 0, r, g, b, a), 0U);
      ASSERT_EQ(r, want[0]);
      ASSERT_EQ(g, want[1]);
      ASSERT_EQ(b, want[2]);
      ASSERT_EQ(a, 9.0);
    }
  }
}

template <class Base>
class ReadLog final : public Base {
 public:
  explicit ReadLog(pixelType type) : NKDraw(type), Base(type) {}
  std::uint32_t GetPixelYCbCr(int x, int, double& y2, double& cb, double& cr, double&) override {
    y2 = x / 16.0;
    cb = 0.5;
    cr = 0.5;
    return 77;
  }
};

TYPED_TEST(ChromaPlane, TheRgbReadCallsTheVirtualYCbCrRead) {
  ReadLog<TypeParam> surface(TestFixture::kType);
  surface.SetYCbCrMode(NKPixel::mode709Full);
  double r = 9, g = 9, b = 9, a = 9;
  EXPECT_EQ(surface.GetPixelRGBA(4, 3, r, g, b, a), 0U);
  EXPECT_EQ(r, 0.25);
  EXPECT_EQ(b, 0.25);
  EXPECT_EQ(a, 9.0);
}

TYPED_TEST(ChromaPlane, LumaIsAHalfEvenWithoutACanvasAndHsvIsRefused) {
  TypeParam surface(TestFixture::kType);
  EXPECT_EQ(surface.GetLuma(0, 0), 0.5);
  EXPECT_EQ(surface.GetLuma(INT_MIN, INT_MAX), 0.5);
  double h = 9, s = 8, v = 7, a = 6;
  EXPECT_EQ(surface.GetPixelHSV(0, 0, h, s, v, a), 0xFFFFFFFF);
  EXPECT_EQ(h, 9);
  EXPECT_EQ(s, 8);
  EXPECT_EQ(v, 7);
  EXPECT_EQ(a, 6);
}

TYPED_TEST(ChromaPlane, CopiesAndAssignmentsTakeEveryField) {
  Frame one(64, 1), two(64, 2);
  TypeParam left(TestFixture::kType), right(TestFixture::kType);
  left.SetCanvas(one.canvas(), 1, 2, 0);
  right.SetCanvas(two.canvas(), 1, 2, 0);
  for (const bool ink : {true, false}) {
    std::uint32_t value = ink ? 100 : 200;
    for (std::uint32_t* const sample : SampleFields<TypeParam>::samples(right, ink))
      *sample = value++;
  }
  double scale = 1.0;
  for (double* const field : SampleFields<TypeParam>::scales(right))
    *field = scale++;
  TypeParam copy(right);
  TypeParam& result = (left = right);
  EXPECT_EQ(&result, &left);
  for (TypeParam* const taken : {&copy, &left}) {
    EXPECT_EQ(this->colour(*taken, true), (std::vector<std::uint32_t>{100, 101, 102}));
    EXPECT_EQ(this->colour(*taken, false), (std::vector<std::uint32_t>{200, 201, 202}));
    for (std::size_t i = 0; i < 6; ++i)
      EXPECT_EQ(*SampleFields<TypeParam>::scales(*taken)[i], 1.0 + static_cast<double>(i));
  }
  EXPECT_EQ(two[0], 101);
  EXPECT_TRUE(one.untouched());
}

TEST(ChromaPlaneBytes, AByteIsMeantToBeTheLowOneOfA16BitFraction) {
  Frame frame(4);
  CDrawUV8 surface(ptUV8);
  surface.SetCanvas(frame.canvas(), 1, 2, 0);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(frame[0], 128);
  EXPECT_EQ(frame[1], 128);
  surface.SetColorYCbCr(0.5, 0.25, 0.75, 0, true);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(frame[0], 0);
  EXPECT_EQ(frame[1], 0);
  surface.SetColorYCbCr(0.5, 77 / 65536.0, 0.5 + 9 / 65536.0, 0, true);
  surface.PutPixel(1, 0, true);
  EXPECT_EQ(frame[2], 77);
  EXPECT_EQ(frame[3], 9);
  EXPECT_TRUE(frame.guardsIntact());
}

TEST(ChromaPlaneBytes, WordsArePlottedInLittleEndian) {
  Frame frame(8);
  CDrawUV16 surface(ptUV16);
  surface.SetCanvas(frame.canvas(), 1, 2, 0);
  surface.SetColorYCbCr(0.5, 0.25, 0.75, 0, true);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(wordOf(frame.data()), 0x4000U);
  EXPECT_EQ(wordOf(frame.data() + 2), 0xC000U);
  surface.SetColorYCbCr(0.0, 1.0, 0x1234 / 65536.0, 0, true);
  surface.PutPixel(1, 0, true);
  EXPECT_EQ(wordOf(frame.data() + 4), 0U);  // 65536 does not fit
  EXPECT_EQ(frame[6], 0x34);
  EXPECT_EQ(frame[7], 0x12);
}

}  // namespace
