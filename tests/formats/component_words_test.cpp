// SPDX-License-Identifier: BSD-2-Clause
//
// What the surfaces of chroma planes and of 16-bit YCbCr have in common.
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

/// Truncates to an integer as the machine does; the low 32 bits.
std::uint32_t whole(double value) {
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(value));
}

template <class Surface>
constexpr pixelType kTypeOf = std::is_same_v<Surface, CDrawUV8>    ? ptUV8
                              : std::is_same_v<Surface, CDrawUV16> ? ptUV16
                                                                   : ptYCbCr48;

template <class Surface>
class Components : public testing::Test {
 protected:
  static constexpr pixelType kType = kTypeOf<Surface>;
  static constexpr bool kAlpha = std::is_same_v<Surface, CDrawYCbCrYCbCrA16>;
  static constexpr bool kLuma = kType == ptYCbCr48;
  static constexpr int kBytes = kAlpha ? 8 : kLuma ? 6 : kType == ptUV16 ? 4 : 2;  // of a pixel

  static Words colour(Surface& surface, bool ink) {
    Words words;
    for (const std::uint32_t* const sample : SampleFields<Surface>::samples(surface, ink))
      words.push_back(*sample);
    if constexpr (kAlpha)
      words.push_back(SampleAlphaFields::alpha(surface, ink));
    return words;
  }
};

using Classes = testing::Types<CDrawUV8, CDrawUV16, CDrawYCbCrYCbCr16, CDrawYCbCrYCbCrA16>;
TYPED_TEST_SUITE(Components, Classes);

TYPED_TEST(Components, SetCanvasKeepsTheSignsAndRaisesThePitch) {
  TypeParam surface(TestFixture::kType);
  constexpr unsigned kBytes = TestFixture::kBytes;
  char byte = 0;
  EXPECT_EQ(surface.SetCanvas(&byte, -1080, 1920, 0), 0U);
  EXPECT_EQ(surface.Height(), static_cast<std::uint32_t>(-1080));
  EXPECT_EQ(surface.Width(), 1920U);
  EXPECT_EQ(surface.Pitch(), 1920 * kBytes);
  EXPECT_FALSE(PixelFields::flippedOf(surface));
  EXPECT_EQ(surface.GetCanvas(), &byte);
  EXPECT_EQ(surface.GetPitch(), 3840);  // two bytes a pixel, which SetCanvas corrects
  surface.SetCanvas(&byte, 10, 100, 100 * static_cast<int>(kBytes) - 1);
  EXPECT_EQ(surface.Pitch(), 100 * kBytes);
  surface.SetCanvas(&byte, 10, 100, 100 * static_cast<int>(kBytes) + 1);
  EXPECT_EQ(surface.Pitch(), 100 * kBytes + 1);
  surface.SetCanvas(&byte, 10, 100, -500);  // large as an unsigned number, and kept as it is
  EXPECT_EQ(surface.Pitch(), static_cast<std::uint32_t>(-500));
  surface.SetCanvas(&byte, 10, -100, 0);
  EXPECT_EQ(surface.Width(), static_cast<std::uint32_t>(-100));
  EXPECT_EQ(surface.Pitch(), 0U - 100 * kBytes);
  EXPECT_EQ(surface.GetPitch(), -200);
}

TYPED_TEST(Components, SetCanvasKeepsAModeOfTheFamilyThatTheWidthAsksFor) {
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

TYPED_TEST(Components, ColoursAreTruncatedFrom65536thsWithoutAClampAndTheAlphaIsMeantToBeTheCr) {
  TypeParam surface(TestFixture::kType);
  Random random(4001);
  for (int i = 0; i < 3000; ++i) {
    const double range = i % 3 == 0 ? 0.0 : i % 3 == 1 ? 3.0 : 1e7;
    const double y = random.real(-range, 1 + range), cb = random.real(-range, 1 + range);
    const double cr = random.real(-range, 1 + range);
    const bool ink = random.flag();
    const Words other = this->colour(surface, !ink);
    ASSERT_EQ(surface.SetColorYCbCr(y, cb, cr, random.real(0, 1), ink), 0U);
    Words want = {whole(y * 65536.0), whole(cb * 65536.0), whole(cr * 65536.0)};
    if (TestFixture::kAlpha)
      want.push_back(want[2]);
    ASSERT_EQ(this->colour(surface, ink), want);
    ASSERT_EQ(this->colour(surface, !ink), other);
  }
}

TYPED_TEST(Components, TheColoursOfTheBaseAreNotTouched) {
  TypeParam surface(TestFixture::kType);
  surface.SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
  surface.SetColorYCbCr(0.1, 0.2, 0.3, 0.4, false);
  EXPECT_EQ(wordAt(PixelFields::foreground(surface)), 0xFFFFFFFFU);
  EXPECT_EQ(wordAt(PixelFields::background(surface)), 0U);
  double r = 9, g = 9, b = 9, a = 9;
  surface.GetColorRGBA(r, g, b, a, true);
  EXPECT_EQ(r + g + b + a, 4.0);
}

template <class Base>
class SetterLog final : public Base {
 public:
  SetterLog() : NKDraw(kTypeOf<Base>), Base(kTypeOf<Base>) {}
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool ink) override {
    got = {y, cb, cr, a};
    inkSeen = ink;
    return 888;
  }
  std::array<double, 4> got{};
  bool inkSeen = false;
};

TYPED_TEST(Components, RgbColoursGoThroughTheMatrixAndTheVirtualSetter) {
  SetterLog<TypeParam> surface;
  Random random(4003);
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
}

TYPED_TEST(Components, ByteAndTenBitColoursEndInTheSamePlace) {
  TypeParam surface(TestFixture::kType);
  surface.SetColorYCbCr8(51, 102, 153, 0, true);
  Words want = {whole(51 / 255.0 * 65536.0), whole(102 / 255.0 * 65536.0),
                whole(153 / 255.0 * 65536.0)};
  if (TestFixture::kAlpha)
    want.push_back(want[2]);
  EXPECT_EQ(this->colour(surface, true), want);
  surface.SetColorYCbCr10(512, 256, 768, 0, false);
  want = {0x8000, 0x4000, 0xC000};
  if (TestFixture::kAlpha)
    want.push_back(0xC000);
  EXPECT_EQ(this->colour(surface, false), want);
}

TYPED_TEST(Components, RgbReadsGoThroughTheMatrixAndLeaveTheAlpha) {
  Frame frame(2048, 7);
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
  ReadLog() : NKDraw(kTypeOf<Base>), Base(kTypeOf<Base>) {}
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                              double& a) override {
    y2 = x / 16.0;
    cb = 0.5;
    cr = 0.5;
    a = y;
    return 77;
  }
};

TYPED_TEST(Components, TheRgbReadCallsTheVirtualYCbCrRead) {
  ReadLog<TypeParam> surface;
  surface.SetYCbCrMode(NKPixel::mode709Full);
  double r = 9, g = 9, b = 9, a = 9;
  EXPECT_EQ(surface.GetPixelRGBA(4, 3, r, g, b, a), 0U);
  EXPECT_EQ(r, 0.25);
  EXPECT_EQ(g, 0.25);
  EXPECT_EQ(b, 0.25);
  EXPECT_EQ(a, 9.0);
  // The base forms of the coded reads stand on it, too.
  std::uint32_t y10 = 0, cb10 = 0, cr10 = 0, a10 = 0;
  EXPECT_EQ(surface.GetPixelYCbCr10(4, 1, y10, cb10, cr10, a10), 0U);
  EXPECT_EQ(y10, 256U);
  EXPECT_EQ(cb10, 512U);
  EXPECT_EQ(a10, 1024U);
}

TYPED_TEST(Components, HsvReadsAreRefusedAndWriteNothing) {
  Frame frame(64);
  TypeParam surface(TestFixture::kType);
  for (char* const canvas : {static_cast<char*>(nullptr), frame.canvas()}) {
    surface.SetCanvas(canvas, 1, 4, 0);
    double h = 9, s = 8, v = 7, a = 6;
    EXPECT_EQ(surface.GetPixelHSV(0, 0, h, s, v, a), 0xFFFFFFFF);
    EXPECT_EQ(h, 9);
    EXPECT_EQ(s, 8);
    EXPECT_EQ(v, 7);
    EXPECT_EQ(a, 6);
  }
}

TYPED_TEST(Components, CopiesAndAssignmentsTakeEveryField) {
  Frame one(64, 1), two(64, 2);
  TypeParam left(TestFixture::kType), right(TestFixture::kType);
  left.SetCanvas(one.canvas(), 1, 2, 0);
  right.SetCanvas(two.canvas(), 1, 2, 0);
  for (const bool ink : {true, false}) {
    std::uint32_t value = ink ? 100 : 200;
    for (std::uint32_t* const sample : SampleFields<TypeParam>::samples(right, ink))
      *sample = value++;
    if constexpr (TestFixture::kAlpha)
      SampleAlphaFields::alpha(right, ink) = value;
  }
  double scale = 1.0;
  for (double* const field : SampleFields<TypeParam>::scales(right))
    *field = scale++;
  TypeParam copy(right);
  TypeParam& result = (left = right);
  EXPECT_EQ(&result, &left);
  EXPECT_EQ(this->colour(right, true)[2], 102U);
  EXPECT_EQ(this->colour(right, false)[2], 202U);
  for (TypeParam* const taken : {&copy, &left}) {
    EXPECT_EQ(this->colour(*taken, true), this->colour(right, true));
    EXPECT_EQ(this->colour(*taken, false), this->colour(right, false));
    for (std::size_t i = 0; i < 6; ++i)
      EXPECT_EQ(*SampleFields<TypeParam>::scales(*taken)[i], 1.0 + static_cast<double>(i));
  }
  EXPECT_EQ(two[0], TestFixture::kLuma ? 100 : 101);  // the samples of its colour were plotted
  EXPECT_TRUE(one.untouched());
}

}  // namespace
