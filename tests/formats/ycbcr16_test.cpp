// SPDX-License-Identifier: BSD-2-Clause
//
// 16-bit YCbCr: surfaces that present themselves as 32-bit RGB, and plot words.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <type_traits>
#include <vector>

namespace {

using namespace nkdraw::test;

using Words = std::vector<std::uint32_t>;

std::uint32_t wordOf(const std::uint8_t* pixel, int word) {
  return pixel[2 * word] + 256U * pixel[2 * word + 1];
}

template <class Surface>
class YCbCr16 : public testing::Test {
 protected:
  static constexpr bool kAlpha = std::is_same_v<Surface, CDrawYCbCrYCbCrA16>;
  static constexpr int kBytes = kAlpha ? 8 : 6;  // of a pixel in memory
  static constexpr int kWords = kAlpha ? 4 : 3;

  static Words colour(Surface& surface, bool ink) {
    Words words;
    for (const std::uint32_t* const sample : SampleFields<Surface>::samples(surface, ink))
      words.push_back(*sample);
    if constexpr (kAlpha)
      words.push_back(SampleAlphaFields::alpha(surface, ink));
    return words;
  }
};

using Classes = testing::Types<CDrawYCbCrYCbCr16, CDrawYCbCrYCbCrA16>;
TYPED_TEST_SUITE(YCbCr16, Classes);

TYPED_TEST(YCbCr16, StartsWithItsDocumentedFields) {
  TypeParam surface(ptYCbCr48);
  const std::array<double, 6> scales = {
      4096.0, TestFixture::kAlpha ? 62275.0 : 60160.0, 4864.0, 56064.0, 4608.0, 56064.0};
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_EQ(*SampleFields<TypeParam>::scales(surface)[i], scales[i]);
  Words ink = {0xEB00, 0x8000, 0x8000}, paper = {0x1000, 0x8000, 0x8000};
  if (TestFixture::kAlpha) {
    ink.push_back(0x108F6);  // does not fit a word
    paper.push_back(0);
  }
  EXPECT_EQ(this->colour(surface, true), ink);
  EXPECT_EQ(this->colour(surface, false), paper);
  EXPECT_EQ(PixelFields::mode(surface), 3);
}

TYPED_TEST(YCbCr16, IsMeantToPresentItselfAs32BitRgbWhateverTypeItGot) {
  for (const int type : {-1, 0, 1, 3, 10, 14, 35, 36, 10001}) {
    TypeParam surface(static_cast<pixelType>(type));
    EXPECT_EQ(surface.PixelType(), 1);
    EXPECT_EQ(surface.IsRgbType(), 1U);
  }
}

TYPED_TEST(YCbCr16, SetPixelTakesRedGreenAndBlue) {
  Frame frame(64);
  TypeParam surface(ptYCbCr48);
  surface.SetCanvas(frame.canvas(), 1, 4, 0);
  TypeParam other(ptYCbCr48);
  other.SetCanvas(nullptr, 1, 4, 0);  // of the same mode
  other.SetColorRGBA(0.9, 0.5, 0.1, 0.0, true);
  EXPECT_EQ(surface.SetPixel(0, 0, 0.9, 0.5, 0.1, 0.0, true), 0U);
  const Words colour = this->colour(other, true);
  for (int word = 0; word < TestFixture::kWords; ++word)
    EXPECT_EQ(wordOf(frame.data(), word), colour[static_cast<std::size_t>(word)] & 0xFFFF);
}

TYPED_TEST(YCbCr16, PlotsAreMeantToLieSixBytesApartInBothClasses) {
  Random random(4007);
  for (int i = 0; i < 400; ++i) {
    Frame got(4096, 3, 256), want(4096, 3, 256);
    TypeParam surface(ptYCbCr48);
    const int pitch = 60 + random.between(0, 50);
    surface.SetCanvas(got.canvas(), 9, 7, pitch);
    const bool ink = random.flag();
    for (std::uint32_t* const sample : SampleFields<TypeParam>::samples(surface, ink))
      *sample = random.word();
    if constexpr (TestFixture::kAlpha)
      SampleAlphaFields::alpha(surface, ink) = random.word();
    // No switch is read, and no coordinate is tested.
    surface.SetTransparency(0.5, ink);
    surface.SetTransparency(random.flag());
    surface.SetAlphaAdditive(random.flag());
    const int x = random.between(-9, 20), y = random.between(0, 12);
    ASSERT_EQ(surface.PutPixel(x, y, ink), 0U);
    const Words colour = this->colour(surface, ink);
    for (int word = 0; word < TestFixture::kWords; ++word) {
      const std::uint32_t value = colour[static_cast<std::size_t>(word)];
      want[y * pitch + 6 * x + 2 * word] = static_cast<std::uint8_t>(value);
      want[y * pitch + 6 * x + 2 * word + 1] = static_cast<std::uint8_t>(value >> 8);
    }
    ASSERT_TRUE(got.all() == want.all());
  }
}

TYPED_TEST(YCbCr16, GetPixelStepsByTheWholePixel) {
  Frame frame(4096, 1, 256);
  TypeParam surface(ptYCbCr48);
  surface.SetCanvas(frame.canvas(), 10, 8, 77);
  for (int y = 0; y < 10; ++y) {
    for (int x = -8; x < 20; ++x) {
      ASSERT_EQ(static_cast<char*>(surface.GetPixel(x, y)) - frame.canvas(),
                77 * y + TestFixture::kBytes * x);
    }
  }
}

TYPED_TEST(YCbCr16, WordsReadOver65536AndOnlyTheFourthIsAnAlpha) {
  Frame frame(65536 * 8 + 16, 5);
  TypeParam surface(ptYCbCr48);
  surface.SetCanvas(frame.canvas(), 1, 65536, 0);
  for (int value = 0; value < 65536; ++value) {
    std::uint8_t* const at = frame.data() + TestFixture::kBytes * value;
    at[0] = static_cast<std::uint8_t>(value);
    at[1] = static_cast<std::uint8_t>(value >> 8);
  }
  for (int x = 0; x < 65536; ++x) {
    const std::uint8_t* const at = frame.data() + TestFixture::kBytes * x;
    double y2 = 9, cb = 9, cr = 9, a = 9;
    ASSERT_EQ(surface.GetPixelYCbCr(x, 0, y2, cb, cr, a), 0U);
    ASSERT_EQ(y2, x / 65536.0);
    ASSERT_EQ(cb, wordOf(at, 1) / 65536.0);
    ASSERT_EQ(cr, wordOf(at, 2) / 65536.0);
    ASSERT_EQ(a, TestFixture::kAlpha ? wordOf(at, 3) / 65536.0 : 9.0);
    ASSERT_EQ(surface.GetLuma(x, 0), x / 65536.0);
  }
}

TYPED_TEST(YCbCr16, TheFastFillsAreMeantToWriteTheBasesColourFourBytesAPixel) {
  Frame frame(256);
  TypeParam surface(ptYCbCr48);
  surface.SetCanvas(frame.canvas(), 2, 8, 0);
  frame.fill(0x11);
  surface.SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
  EXPECT_EQ(surface.LineHoriz(0, 0, 4), 0U);
  EXPECT_EQ(frame.changed().size(), 16U);
  for (int i = 0; i < 16; ++i)
    EXPECT_EQ(frame[i], 0xFF);
  frame.fill(0x11);
  EXPECT_EQ(surface.EraseCanvas(false), 0U);
  EXPECT_EQ(frame.changed().size(), 2U * 8 * 4);
  EXPECT_EQ(frame.changed().back(), 63);
  frame.fill(0x11);
  const tagRECT rect = {3, 3, 11, 5};
  EXPECT_EQ(surface.FillRect(&rect), 0U);
  EXPECT_EQ(frame.changed().size(), 2U * 8 * 4);
  EXPECT_EQ(frame.changed().front(), 0);
  EXPECT_TRUE(frame.guardsIntact());
}

TEST(YCbCr16Bytes, AFullLumaIsMeantToPlotAsZero) {
  Frame frame(16);
  CDrawYCbCrYCbCr16 surface(ptYCbCr48);
  surface.SetCanvas(frame.canvas(), 1, 2, 0);
  surface.SetColorYCbCr(0.5, 0.5, 0.5, 0, true);
  surface.PutPixel(0, 0, true);
  for (int word = 0; word < 3; ++word)
    EXPECT_EQ(wordOf(frame.data(), word), 0x8000U);
  surface.SetColorYCbCr(1.0, 0.5, 0.5, 0, true);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(wordOf(frame.data(), 0), 0U);
  EXPECT_EQ(wordOf(frame.data(), 1), 0x8000U);
}

TEST(YCbCr16Bytes, APlotOfTheSurfaceWithAlphaIsMeantToCoverTheAlphaBeforeIt) {
  Frame frame(32);
  CDrawYCbCrYCbCrA16 surface(ptYCbCrA64);
  surface.SetCanvas(frame.canvas(), 1, 3, 0);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(wordOf(frame.data(), 3), 0x08F6U);
  surface.SetColorYCbCr(0.25, 0.5, 0.75, 1.0, true);
  surface.PutPixel(1, 0, true);
  const Words want = {0xEB00, 0x8000, 0x8000, 0x4000, 0x8000, 0xC000, 0xC000};
  for (int word = 0; word < 7; ++word)
    EXPECT_EQ(wordOf(frame.data(), word), want[static_cast<std::size_t>(word)]) << word;
  EXPECT_EQ(surface.GetPixel(1, 0), frame.canvas() + 8);
  double y = 0, cb = 0, cr = 0, a = 0;
  surface.GetPixelYCbCr(1, 0, y, cb, cr, a);
  EXPECT_EQ(y, 0.5);  // not the pixel that was put there
}

TEST(YCbCr16Bytes, LumaOfAMiddleWordIsAHalf) {
  Frame frame(16);
  frame[0] = 0x00;
  frame[1] = 0x80;
  CDrawYCbCrYCbCr16 surface(ptYCbCr48);
  surface.SetCanvas(frame.canvas(), 1, 2, 0);
  EXPECT_EQ(surface.GetLuma(0, 0), 0.5);
}

}  // namespace
