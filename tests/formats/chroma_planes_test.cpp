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

template <class Base>
class SetterLog final : public Base {
 public:
  SetterLog() : NKDraw(ptUV8), Base(ptUV8) {}
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool) override {
    got = {y, cb, cr, a};
    return 888;
  }
  std::array<double, 4> got{};
};

TYPED_TEST(ChromaPlane, SetPixelTakesYAndCbAndCr) {
  Frame frame(64);
  SetterLog<TypeParam> surface;
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

TYPED_TEST(ChromaPlane, LumaIsAHalfEvenWithoutACanvas) {
  TypeParam surface(TestFixture::kType);
  EXPECT_EQ(surface.GetLuma(0, 0), 0.5);
  EXPECT_EQ(surface.GetLuma(INT_MIN, INT_MAX), 0.5);
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
