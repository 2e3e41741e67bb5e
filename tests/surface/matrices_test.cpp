// SPDX-License-Identifier: BSD-2-Clause
//
// The matrices of every mode, both ways, against their formulas written out.
#include <tests/support/fields.h>
#include <tests/support/frame.h>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

using namespace nkdraw::test;

struct Triple {
  double a, b, c;
};

/// Compares the bits: no rounding is forgiven, not even the sign of a zero.
testing::AssertionResult same(double got, double want) {
  if (std::memcmp(&got, &want, sizeof got) == 0)
    return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << "got " << got << ", want " << want << ", apart by " << got - want;
}

constexpr int kModes[] = {0,    1,    2,    3,    4,    5,    6,    7,    8,
                          1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008};
constexpr int kUnknownModes[] = {-1, -1000, 9, 10, 100, 999, 1009, 1100, 2001, 0x7FFFFFFF};

/// What a mode without a matrix leaves in its outputs.
constexpr double kUnwritten = 77.5;

Triple toRgb(int mode, double y, double cb, double cr) {
  const double b = cb - 0.5;
  const double r = cr - 0.5;
  double l = 0.0;
  switch (mode) {
    case 0:
    case 1:
    case 1000:
    case 1001:
      l = (y - 0.0625) * 1.164;
      return {l + 1.596 * r, l - 0.813 * r - 0.391 * b, l + 2.017 * b};
    case 2:
    case 1002:
      return {y + 1.371 * r, y - 0.698 * r - 0.336 * b, y + 1.732 * b};
    case 3:
    case 1003:
      l = (y - 0.0625) * 1.168932;
      return {l + 1.799744 * r, l - 0.534991 * r - 0.214082 * b, l + 2.120653 * b};
    case 4:
    case 1004:
      return {y + 1.5748 * r, y - 0.468124 * r - 0.187324 * b, y + 1.8556 * b};
    case 5:
    case 1005:
      l = (y - 0.0625) * 1.164;
      return {l + 1.6786 * r, l - 0.6504 * r - 0.1873 * b, l + 2.1417 * b};
    case 6:
    case 7:
    case 1006:
      return {y + 1.4746 * r, y - 0.5714 * r - 0.1646 * b, y + 1.8815 * b};
    case 8:
    case 1007:
    case 1008:
      return {y + 1.4746 * cr, y - 0.16455312684366 * cb - 0.57135312684366 * cr, y + 1.8814 * cb};
    default:
      return {kUnwritten, kUnwritten, kUnwritten};
  }
}

double clamped(double channel) {
  if (channel < 0.0)
    return 0.0;
  if (channel > 1.0)
    return 1.0;
  return channel;
}

Triple fromRgb(int mode, double r, double g, double b) {
  switch (mode) {
    case 0:
    case 1:
    case 1000:
    case 1001:
      return {0.504 * g + 0.257 * r + 0.098 * b + 0.0625, 0.439 * b - (0.291 * g + 0.148 * r) + 0.5,
              0.439 * r - 0.368 * g - 0.071 * b + 0.5};
    case 2:
    case 1002:
      return {0.587 * g + 0.299 * r + 0.114 * b, 0.511 * b - (0.172 * r + 0.339 * g) + 0.5,
              0.511 * r - 0.428 * g - 0.083 * b + 0.5};
    case 3:
    case 1003:
      return {0.183 * r + 0.614 * g + 0.062 * b + 0.0625, 0.439 * b - (0.338 * g + 0.101 * r) + 0.5,
              0.439 * r - 0.399 * g - 0.04 * b + 0.5};
    case 4:
    case 1004:
      return {0.212585 * r + 0.71521 * g + 0.072205 * b,
              0.511414 * b - (0.394226 * g + 0.117188 * r) + 0.5,
              0.511414 * r - 0.464508 * g - 0.046906 * b + 0.5};
    case 5:
    case 1005:
      return {0.22561 * r + 0.58228 * g + 0.05093 * b, 0.43921 * b - (0.31656 * g + 0.12266 * r),
              0.43921 * r - 0.40389 * g - 0.03532 * b};
    case 6:
    case 1006:
      return {0.2627 * r + 0.678 * g + 0.0593 * b, 0.5 * b - (0.3604 * g + 0.1396 * r),
              0.5 * r - 0.4598 * g - 0.0402 * b};
    case 7:
    case 8:
    case 1007:
    case 1008: {
      const double y = 0.2627 * r + 0.678 * g + 0.0593 * b;
      const double blue = b - y <= 0.0 ? (b - y) / 1.9404 : (b - y) / 1.5816;
      const double red = r - y <= 0.0 ? (r - y) / 1.7184 : (r - y) / 0.9936;
      return {y, blue, red};
    }
    default:
      return {kUnwritten, kUnwritten, kUnwritten};
  }
}

Triple fromRgb10(int mode, double r, double g, double b) {
  constexpr double k = 6.103515625e-05;
  switch (mode) {
    case 0:
    case 1:
    case 3:
    case 1000:
    case 1001:
    case 1003:
      return {(11914.0 * r + 40095.0 * g + 4050.0 * b) * k + 64.0,
              (28073.0 * b - (6388.0 * r + 21595.0 * g)) * k + 512.0,
              (28017.0 * r + 25349.0 * g + 2566.0 * b) * k + 512.0};
    case 5:
    case 6:
    case 1005:
    case 1006:
      return {694.272 * g + 269.0 * r + 60.7232 * b + 64.0,
              512.0 * b - (142.9504 * r + 369.0496 * g) + 512.0,
              512.0 * r - 470.8352 * g - 41.1648 * b + 512.0};
    default:
      return {kUnwritten, kUnwritten, kUnwritten};
  }
}

/// Corners, the middle, values outside the range, and noise.
std::vector<Triple> samples() {
  std::vector<Triple> all;
  constexpr double kMarks[] = {-0.5, 0.0, 0.0625, 0.5, 1.0, 1.75};
  for (const double a : kMarks) {
    for (const double b : kMarks) {
      for (const double c : kMarks)
        all.push_back({a, b, c});
    }
  }
  Random random(11);
  for (int i = 0; i < 2000; ++i)
    all.push_back({random.real(-0.2, 1.2), random.real(-0.2, 1.2), random.real(-0.2, 1.2)});
  return all;
}

std::vector<int> allModes() {
  std::vector<int> modes(std::begin(kModes), std::end(kModes));
  modes.insert(modes.end(), std::begin(kUnknownModes), std::end(kUnknownModes));
  return modes;
}

void setMode(NKPixel& pixel, int mode) {
  EXPECT_EQ(pixel.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode)), 0U);
}

TEST(Matrices, SetYCbCrModeStoresAnythingAndGetYCbCrModeGivesItBack) {
  NKPixel pixel;
  for (const int mode : allModes()) {
    setMode(pixel, mode);
    NKPixel::cmYCbCr got{};
    EXPECT_EQ(pixel.GetYCbCrMode(got), 0U);
    EXPECT_EQ(got, mode);
  }
}

TEST(Matrices, YCbCrToRgbIsTheFormulaOfTheModeClampedBelow1000) {
  NKPixel pixel;
  for (const int mode : allModes()) {
    setMode(pixel, mode);
    for (const Triple& in : samples()) {
      SCOPED_TRACE(testing::Message() << mode << ": " << in.a << " " << in.b << " " << in.c);
      Triple want = toRgb(mode, in.a, in.b, in.c);
      if (mode < 1000)
        want = {clamped(want.a), clamped(want.b), clamped(want.c)};
      double r = kUnwritten, g = kUnwritten, b = kUnwritten, a = kUnwritten;
      ASSERT_EQ(pixel.YCbCrToRGB(in.a, in.b, in.c, 0.75, r, g, b, a), 0U);
      ASSERT_TRUE(same(r, want.a));
      ASSERT_TRUE(same(g, want.b));
      ASSERT_TRUE(same(b, want.c));
      ASSERT_TRUE(same(a, 0.0));
    }
  }
}

TEST(Matrices, AnUnknownModeClampsWhatTheCallerHeld) {
  NKPixel pixel;
  setMode(pixel, 9);
  double r = -3.0, g = 0.25, b = 3.0, a = 1.0;
  pixel.YCbCrToRGB(0.1, 0.2, 0.3, 1.0, r, g, b, a);
  EXPECT_TRUE(same(r, 0.0));
  EXPECT_TRUE(same(g, 0.25));
  EXPECT_TRUE(same(b, 1.0));
  EXPECT_TRUE(same(a, 0.0));
  setMode(pixel, 1009);
  r = -3.0;
  b = 3.0;
  pixel.YCbCrToRGB(0.1, 0.2, 0.3, 1.0, r, g, b, a);
  EXPECT_TRUE(same(r, -3.0));
  EXPECT_TRUE(same(b, 3.0));
}

TEST(Matrices, RgbToYCbCrIsTheFormulaOfTheModeAndLeavesAlphaUnwritten) {
  NKPixel pixel;
  for (const int mode : allModes()) {
    setMode(pixel, mode);
    for (const Triple& in : samples()) {
      SCOPED_TRACE(testing::Message() << mode << ": " << in.a << " " << in.b << " " << in.c);
      const Triple want = fromRgb(mode, in.a, in.b, in.c);
      double y = kUnwritten, cb = kUnwritten, cr = kUnwritten, a = kUnwritten;
      ASSERT_EQ(pixel.RGBToYCbCr(in.a, in.b, in.c, 0.75, y, cb, cr, a), 0U);
      ASSERT_TRUE(same(y, want.a));
      ASSERT_TRUE(same(cb, want.b));
      ASSERT_TRUE(same(cr, want.c));
      ASSERT_TRUE(same(a, kUnwritten));
    }
  }
}

TEST(Matrices, RgbToYCbCr10IsTheFormulaOfTheModeAndWritesNothingInOthers) {
  NKPixel pixel;
  for (const int mode : allModes()) {
    setMode(pixel, mode);
    for (const Triple& in : samples()) {
      SCOPED_TRACE(testing::Message() << mode << ": " << in.a << " " << in.b << " " << in.c);
      const Triple want = fromRgb10(mode, in.a, in.b, in.c);
      double y = kUnwritten, cb = kUnwritten, cr = kUnwritten, a = kUnwritten;
      ASSERT_EQ(pixel.RGBToYCbCr10(in.a, in.b, in.c, 0.75, y, cb, cr, a), 0U);
      ASSERT_TRUE(same(y, want.a));
      ASSERT_TRUE(same(cb, want.b));
      ASSERT_TRUE(same(cr, want.c));
      ASSERT_TRUE(same(a, kUnwritten));
    }
  }
}

TEST(Matrices, BlackIn601StudioIsZeroAndSoIsItsAlpha) {
  NKPixel pixel;
  setMode(pixel, 1);
  double r = 1.0, g = 1.0, b = 1.0, a = 1.0;
  pixel.YCbCrToRGB(0.0625, 0.5, 0.5, 1.0, r, g, b, a);
  EXPECT_EQ(r, 0.0);
  EXPECT_EQ(g, 0.0);
  EXPECT_EQ(b, 0.0);
  EXPECT_EQ(a, 0.0);
}

TEST(Matrices, TheModesFrom1000OnDoNotClamp) {
  NKPixel pixel;
  double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
  setMode(pixel, 1);
  pixel.YCbCrToRGB(1.0, 1.0, 1.0, 1.0, r, g, b, a);
  EXPECT_EQ(r, 1.0);
  EXPECT_EQ(b, 1.0);
  setMode(pixel, 1001);
  pixel.YCbCrToRGB(1.0, 1.0, 1.0, 1.0, r, g, b, a);
  EXPECT_EQ(r, (1.0 - 0.0625) * 1.164 + 1.596 * 0.5);
  EXPECT_GT(b, 1.0);
}

TEST(Matrices, WhiteOf709FullAndOf2020Full) {
  NKPixel pixel;
  double y = 0.0, cb = 0.0, cr = 0.0, a = 0.0;
  setMode(pixel, 4);
  pixel.RGBToYCbCr(1.0, 1.0, 1.0, 1.0, y, cb, cr, a);
  // Decimal coefficients that add up to 1 and to 0 do so but for rounding.
  EXPECT_NEAR(y, 1.0, 1e-15);
  EXPECT_NEAR(cb, 0.5, 1e-15);
  EXPECT_NEAR(cr, 0.5, 1e-15);
  setMode(pixel, 6);
  pixel.RGBToYCbCr(1.0, 1.0, 1.0, 1.0, y, cb, cr, a);
  EXPECT_NEAR(cb, 0.0, 1e-15);  // deliberately without the 0.5
  EXPECT_NEAR(cr, 0.0, 1e-15);
}

TEST(Matrices, ConstantLuminanceOfAGreyHasNoChromaByTheFirstBranch) {
  NKPixel pixel;
  setMode(pixel, 8);
  double y = 1.0, cb = 1.0, cr = 1.0, a = 1.0;
  pixel.RGBToYCbCr(0.0, 0.0, 0.0, 1.0, y, cb, cr, a);
  EXPECT_TRUE(same(y, 0.0));
  EXPECT_TRUE(same(cb, 0.0));
  EXPECT_TRUE(same(cr, 0.0));
}

TEST(Matrices, The10BitFormAddsAllThreeTermsOfCr) {
  NKPixel pixel;
  setMode(pixel, 3);
  double y = 0.0, cb = 0.0, cr = 0.0, a = 0.0;
  pixel.RGBToYCbCr10(1.0, 1.0, 1.0, 1.0, y, cb, cr, a);
  EXPECT_EQ(cr, 512.0 + (28017 + 25349 + 2566) / 16384.0);
  setMode(pixel, 2);
  y = cb = cr = 5.0;
  pixel.RGBToYCbCr10(1.0, 1.0, 1.0, 1.0, y, cb, cr, a);
  EXPECT_EQ(y, 5.0);
  EXPECT_EQ(cb, 5.0);
  EXPECT_EQ(cr, 5.0);
}

}  // namespace
