// SPDX-License-Identifier: BSD-2-Clause
//
// Colours as channels: the setters and getters of NKPixel, and hue, saturation and value.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

namespace {

using namespace nkdraw::test;

/// Letters in memory order; '0' is a byte that is zero.
std::string packing(int type) {
  switch (type) {
    case 2:
      return "ARGB";
    case 3:
      return "BGRA";
    case 4:
      return "ABGR";
    case 5:
      return "RGB0";
    case 6:
      return "BGR0";
    default:
      return "RGBA";
  }
}

/// Times 255, towards zero, low eight bits.
std::uint8_t byteOf(double channel) {
  return static_cast<std::uint8_t>(static_cast<std::int64_t>(channel * 255.0));
}

constexpr int kTypes[] = {-1, 0, 1, 2, 3, 4, 5, 6, 7, 14, 20, 31, 10000};

TEST(Colours, AreReducedToBytesAtOnceWithoutClamping) {
  EXPECT_EQ(byteOf(1.0), 255);
  EXPECT_EQ(byteOf(0.5), 127);
  EXPECT_EQ(byteOf(1.5), 126);
  Random random(5);
  for (const int type : kTypes) {
    NKPixel pixel;
    PixelFields::kind(pixel) = static_cast<pixelType>(type);
    pixel.SetTransparency(0.5, true);
    for (int i = 0; i < 3000; ++i) {
      const double scale = i % 3 == 0 ? 1.0 : i % 3 == 1 ? 20.0 : 1e9;
      const double r = random.real(-scale, scale), g = random.real(-scale, scale);
      const double b = random.real(-scale, scale), a = random.real(-scale, scale);
      const bool ink = random.flag();
      const std::array<std::uint8_t, 4> other = [&] {
        std::array<std::uint8_t, 4> bytes{};
        const auto& packed = ink ? PixelFields::background(pixel) : PixelFields::foreground(pixel);
        std::copy(std::begin(packed), std::end(packed), bytes.begin());
        return bytes;
      }();
      ASSERT_EQ(pixel.SetColorRGBA(r, g, b, a, ink), 0U);
      const auto& packed = ink ? PixelFields::foreground(pixel) : PixelFields::background(pixel);
      const auto& untouched = ink ? PixelFields::background(pixel) : PixelFields::foreground(pixel);
      const std::string letters = packing(type);
      for (std::size_t at = 0; at < 4; ++at) {
        const char letter = letters[at];
        const std::uint8_t want = letter == 'R'   ? byteOf(r)
                                  : letter == 'G' ? byteOf(g)
                                  : letter == 'B' ? byteOf(b)
                                  : letter == 'A' ? byteOf(a)
                                                  : std::uint8_t{0};
        ASSERT_EQ(packed[at], want) << "type " << type << " byte " << at;
        ASSERT_EQ(untouched[at], other[at]);
      }
    }
    EXPECT_EQ(PixelFields::alpha(pixel, true), 0.5);
    EXPECT_FALSE(pixel.GetTransparency());
  }
}

TEST(Colours, OutsideOf64BitsBecomeZero) {
  NKPixel pixel;
  pixel.SetColorRGBA(1e30, -1e30, std::nan(""), HUGE_VAL, true);
  for (const std::uint8_t byte : PixelFields::foreground(pixel))
    EXPECT_EQ(byte, 0);
}

TEST(Colours, ComeBackAsTheirBytesOver255) {
  for (const int type : kTypes) {
    SCOPED_TRACE(type);
    NKPixel pixel;
    PixelFields::kind(pixel) = static_cast<pixelType>(type);
    const std::string letters = packing(type);
    for (const bool ink : {true, false}) {
      auto& packed = ink ? PixelFields::foreground(pixel) : PixelFields::background(pixel);
      for (int value = 0; value < 256; ++value) {
        for (std::size_t at = 0; at < 4; ++at)
          packed[at] = static_cast<std::uint8_t>(value + static_cast<int>(at) * 50);
        double r = -1.0, g = -1.0, b = -1.0, a = -1.0;
        ASSERT_EQ(pixel.GetColorRGBA(r, g, b, a, ink), 0U);
        const auto byteNamed = [&](char letter) { return packed[letters.find(letter)] / 255.0; };
        ASSERT_EQ(r, byteNamed('R'));
        ASSERT_EQ(g, byteNamed('G'));
        ASSERT_EQ(b, byteNamed('B'));
        ASSERT_EQ(a, letters.find('A') == std::string::npos ? 1.0 : byteNamed('A'));
      }
    }
  }
}

TEST(Colours, The24BitLayoutsLoseTheirFourthByteAtTheFirstSetting) {
  CDrawRGB24 surface(ptRGB24);
  EXPECT_EQ(PixelFields::foreground(surface)[3], 0xFF);
  surface.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  EXPECT_EQ(PixelFields::foreground(surface)[3], 0);
  double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
  surface.SetColorRGBA(1.0, 1.0, 1.0, 1.0, false);
  surface.GetColorRGBA(r, g, b, a, false);
  EXPECT_EQ(r, 1.0);
  EXPECT_EQ(g, 1.0);
  EXPECT_EQ(b, 1.0);
  EXPECT_EQ(a, 1.0);
}

TEST(Colours, InYCbCrAreIgnoredByTheBase) {
  NKPixel pixel;
  pixel.SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
  const std::uint32_t before = wordAt(PixelFields::foreground(pixel));
  EXPECT_EQ(pixel.SetColorYCbCr(1.0, 0.5, 0.5, 1.0, true), 0U);
  EXPECT_EQ(pixel.SetColorYCbCr8(1, 2, 3, 4, true), 0U);
  EXPECT_EQ(pixel.SetColorYCbCr10(1, 2, 3, 4, true), 0U);
  EXPECT_EQ(wordAt(PixelFields::foreground(pixel)), before);
  double y = 5.0, cb = 6.0, cr = 7.0, a = 8.0;
  EXPECT_EQ(pixel.GetColorYCbCr(y, cb, cr, a, true), 0U);
  EXPECT_EQ(y, 5.0);
  EXPECT_EQ(cb, 6.0);
  EXPECT_EQ(cr, 7.0);
  EXPECT_EQ(a, 8.0);
}

class TakesYCbCr final : public NKPixel {
 public:
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool ink) override {
    got = {y, cb, cr, a};
    foregroundSeen = ink;
    return 1234;
  }
  std::array<double, 4> got{};
  bool foregroundSeen = false;
};

TEST(Colours, ByteAndTenBitSettersScaleAndCallTheVirtualSetterWithItsResult) {
  TakesYCbCr pixel;
  for (int value = 0; value < 256; ++value) {
    const auto byte = static_cast<unsigned char>(value);
    const auto next = static_cast<unsigned char>(255 - value);
    ASSERT_EQ(pixel.SetColorYCbCr8(byte, next, byte, next, value % 2 == 0), 1234U);
    ASSERT_EQ(pixel.got[0], value / 255.0);
    ASSERT_EQ(pixel.got[1], (255 - value) / 255.0);
    ASSERT_EQ(pixel.got[2], value / 255.0);
    ASSERT_EQ(pixel.got[3], (255 - value) / 255.0);
    ASSERT_EQ(pixel.foregroundSeen, value % 2 == 0);
  }
  for (const std::uint32_t value : {0U, 1U, 64U, 940U, 1023U, 1024U, 0xFFFFFFFFU}) {
    ASSERT_EQ(pixel.SetColorYCbCr10(value, 1, 2, 3, false), 1234U);
    ASSERT_EQ(pixel.got[0], static_cast<double>(value) * 0.0009765625);
    ASSERT_EQ(pixel.got[1], 1 * 0.0009765625);
    ASSERT_EQ(pixel.got[2], 2 * 0.0009765625);
    ASSERT_EQ(pixel.got[3], 3 * 0.0009765625);
  }
}

TEST(Transparency, ValuesAreCutToTheUnitAndGoToTheChosenColour) {
  NKPixel pixel;
  EXPECT_EQ(pixel.SetTransparency(1.5, true), 0U);
  EXPECT_EQ(PixelFields::alpha(pixel, true), 1.0);
  EXPECT_EQ(PixelFields::alpha(pixel, false), 0.0);
  EXPECT_EQ(pixel.SetTransparency(-1.0, false), 0U);
  EXPECT_EQ(PixelFields::alpha(pixel, false), 0.0);
  EXPECT_EQ(pixel.SetTransparency(0.375, false), 0U);
  EXPECT_EQ(PixelFields::alpha(pixel, false), 0.375);
  EXPECT_EQ(PixelFields::alpha(pixel, true), 1.0);
  EXPECT_FALSE(pixel.GetTransparency());  // the value is no switch
  pixel.SetTransparency(true);
  EXPECT_TRUE(pixel.GetTransparency());
  pixel.SetTransparency(false);
  EXPECT_FALSE(pixel.GetTransparency());
  EXPECT_FALSE(pixel.GetAlphaAdditive());
  pixel.SetAlphaAdditive(true);
  EXPECT_TRUE(pixel.GetAlphaAdditive());
  EXPECT_FALSE(pixel.GetTransparency());
}

struct Hsv {
  double h, s, v;
  bool coloured;
};

/// The steps in their order: red wins a tie for the largest channel, then green.
Hsv hsvOf(double r, double g, double b) {
  double largest = r, smallest = r;
  for (const double channel : {g, b}) {
    if (channel > largest)
      largest = channel;
    if (channel < smallest)
      smallest = channel;
  }
  const double delta = largest - smallest;
  if (largest == 0.0 || delta == 0.0)
    return {-1.0, 0.0, largest, false};
  double h = 0.0;
  if (r == largest)
    h = (g - b) / delta;
  else if (g == largest)
    h = (b - r) / delta + 2.0;
  else
    h = (r - g) / delta + 4.0;
  h *= 60.0;
  if (h < 0.0)
    h += 360.0;
  return {h, delta / largest, largest, true};
}

TEST(Hsv, FollowsItsStepsOnAllTiesAndOnNoise) {
  NKPixel pixel;
  std::vector<std::array<double, 3>> colours;
  constexpr double kMarks[] = {-0.5, 0.0, 0.25, 0.5, 1.0, 2.0};
  for (const double r : kMarks) {
    for (const double g : kMarks) {
      for (const double b : kMarks)
        colours.push_back({r, g, b});
    }
  }
  Random random(9);
  for (int i = 0; i < 5000; ++i)
    colours.push_back({random.real(-0.1, 1.1), random.real(-0.1, 1.1), random.real(-0.1, 1.1)});
  for (const auto& [r, g, b] : colours) {
    SCOPED_TRACE(testing::Message() << r << " " << g << " " << b);
    const Hsv want = hsvOf(r, g, b);
    double h = 9.0, s = 9.0, v = 9.0, a = 9.0;
    ASSERT_EQ(pixel.RGBToHSV(r, g, b, 0.625, h, s, v, a), 0U);
    ASSERT_EQ(h, want.h);
    ASSERT_EQ(s, want.s);
    ASSERT_EQ(v, want.v);
    ASSERT_EQ(a, want.coloured ? 0.625 : 9.0);
  }
}

TEST(Hsv, RedWinsATieAndThenGreen) {
  NKPixel pixel;
  double h = 0.0, s = 0.0, v = 0.0, a = 0.0;
  pixel.RGBToHSV(1.0, 1.0, 0.0, 1.0, h, s, v, a);
  EXPECT_EQ(h, 60.0);
  pixel.RGBToHSV(1.0, 0.0, 1.0, 1.0, h, s, v, a);
  EXPECT_EQ(h, 300.0);
  pixel.RGBToHSV(0.0, 1.0, 1.0, 1.0, h, s, v, a);
  EXPECT_EQ(h, 180.0);
  pixel.RGBToHSV(0.5, 0.5, 0.5, 1.0, h, s, v, a);
  EXPECT_EQ(h, -1.0);
  EXPECT_EQ(s, 0.0);
  EXPECT_EQ(v, 0.5);
}

TEST(Hsv, FromYCbCrGoesThroughTheModesMatrixAndItsAlphaIsZeroOrUnwritten) {
  NKPixel pixel;
  Random random(13);
  for (int i = 0; i < 2000; ++i) {
    pixel.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(random.between(0, 8)));
    const double y = random.real(0.0, 1.0), cb = random.real(0.0, 1.0), cr = random.real(0.0, 1.0);
    double r = 0.0, g = 0.0, b = 0.0, alpha = 0.0;
    pixel.YCbCrToRGB(y, cb, cr, 1.0, r, g, b, alpha);
    const Hsv want = hsvOf(r, g, b);
    double h = 9.0, s = 9.0, v = 9.0, a = 9.0;
    ASSERT_EQ(pixel.YCbCrToHSV(y, cb, cr, 1.0, h, s, v, a), 0U);
    ASSERT_EQ(h, want.h);
    ASSERT_EQ(s, want.s);
    ASSERT_EQ(v, want.v);
    ASSERT_EQ(a, want.coloured ? 0.0 : 9.0);
  }
}

class FixedConversions final : public NKPixel {
 public:
  std::uint32_t YCbCrToRGB(double, double, double, double, double& r, double& g, double& b,
                           double& a) override {
    r = 0.1;
    g = 0.2;
    b = 0.3;
    a = 0.4;
    return 5;
  }
  std::uint32_t RGBToHSV(double r, double g, double b, double a, double& h, double& s, double& v,
                         double& aOut) override {
    h = r;
    s = g;
    v = b;
    aOut = a;
    return 6;
  }
};

TEST(Hsv, FromYCbCrRunsBothVirtualConversions) {
  FixedConversions pixel;
  double h = 0.0, s = 0.0, v = 0.0, a = 0.0;
  EXPECT_EQ(pixel.YCbCrToHSV(9.0, 9.0, 9.0, 9.0, h, s, v, a), 0U);  // whatever they return
  EXPECT_EQ(h, 0.1);
  EXPECT_EQ(s, 0.2);
  EXPECT_EQ(v, 0.3);
  EXPECT_EQ(a, 0.4);
}

}  // namespace
