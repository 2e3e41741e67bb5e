// SPDX-License-Identifier: BSD-2-Clause
//
// Operations on top of plotting and reading a pixel: SetPixel, BlendPixel, the derived reads, luma.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace {

using namespace nkdraw::test;

TEST(BlendPixel, MixesByWholePercentagesWithoutAClamp) {
  NKPixel pixel;
  Random random(17);
  for (int percent = -50; percent <= 150; ++percent) {
    const double old[] = {random.real(0, 1), random.real(0, 1), random.real(0, 1)};
    const double fresh[] = {random.real(0, 1), random.real(0, 1), random.real(0, 1)};
    double c1 = old[0], c2 = old[1], c3 = old[2];
    pixel.BlendPixel(c1, c2, c3, fresh[0], fresh[1], fresh[2], percent);
    const double w = percent / 100.0, k = 1.0 - w;
    EXPECT_EQ(c1, k * old[0] + w * fresh[0]);
    EXPECT_EQ(c2, k * old[1] + w * fresh[1]);
    EXPECT_EQ(c3, w * fresh[2] + k * old[2]);
    if (percent == 0) {
      EXPECT_EQ(c1, old[0]);
      EXPECT_EQ(c3, old[2]);
    }
    if (percent == 100) {
      EXPECT_EQ(c2, fresh[1]);
      EXPECT_EQ(c3, fresh[2]);
    }
  }
}

class SetPixelLog : public NKPixel {
 public:
  std::uint32_t IsRgbType() override { return answer; }
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool ink) override {
    log += "rgba";
    got = {r, g, b, a};
    seen = ink;
    return 99;
  }
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool ink) override {
    log += "ycbcr";
    got = {y, cb, cr, a};
    seen = ink;
    return 98;
  }
  std::uint32_t PutPixel(int x, int y, bool ink) override {
    log += " put";
    EXPECT_EQ(x, 3);
    EXPECT_EQ(y, 4);
    EXPECT_EQ(ink, seen);
    return 77;
  }
  std::uint32_t answer = 1;
  std::string log;
  std::array<double, 4> got{};
  bool seen = false;
};

TEST(SetPixel, SetsTheColourInTheLayoutsOwnTermsAndReturnsWhatPutPixelSays) {
  for (const bool ink : {true, false}) {
    for (const std::uint32_t answer : {0U, 1U, 2U}) {
      SetPixelLog pixel;
      pixel.answer = answer;
      EXPECT_EQ(pixel.SetPixel(3, 4, 0.1, 0.2, 0.3, 0.4, ink), 77U);
      EXPECT_EQ(pixel.log, answer == 1 ? "rgba put" : "ycbcr put");
      EXPECT_EQ(pixel.got, (std::array<double, 4>{0.1, 0.2, 0.3, 0.4}));
      EXPECT_EQ(pixel.seen, ink);
    }
  }
}

TEST(SetPixel, LeavesTheColourChanged) {
  Frame frame(64);
  frame.fill(0);
  const Surface surface = makeSurface(ptRGB24, 4, 4, 0, frame.canvas());
  EXPECT_EQ(surface->SetPixel(0, 0, 1.0, 0.5, 0.25, 1.0, true), 0U);
  const std::uint8_t want[] = {255, 127, 63, 0};
  EXPECT_EQ(std::memcmp(PixelFields::foreground(*surface), want, 4), 0);
  EXPECT_EQ(std::memcmp(frame.data(), want, 3), 0);
  EXPECT_EQ(surface->SetPixel(0, -1, 0.0, 0.0, 0.0, 0.0, true), 0xFFFFFFFF);
  EXPECT_EQ(PixelFields::foreground(*surface)[0], 0);
}

/// A base form under test: its pixel has the channels that it is given.
class GivenPixel : public NKPixel {
 public:
  std::uint32_t GetPixelRGBA(int, int, double& r, double& g, double& b, double& a) override {
    r = channels[0];
    g = channels[1];
    b = channels[2];
    a = channels[3];
    return 55;
  }
  std::array<double, 4> channels{};
};

constexpr int kModes[] = {0,    1,    2,    3,    4,    5,    6,    7, 8,  1000, 1001,
                          1002, 1003, 1004, 1005, 1006, 1007, 1008, 9, -1, 999,  1009};

TEST(DerivedReads, YCbCrIsTheMatrixOfTheReadChannelsWithTheirAlpha) {
  GivenPixel pixel;
  Random random(19);
  for (const int mode : kModes) {
    pixel.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int i = 0; i < 300; ++i) {
      pixel.channels = {random.real(-0.2, 1.2), random.real(-0.2, 1.2), random.real(-0.2, 1.2),
                        random.real(0.0, 1.0)};
      double want[] = {8.0, 8.0, 8.0}, unused = 0.0;
      pixel.RGBToYCbCr(pixel.channels[0], pixel.channels[1], pixel.channels[2], 0.0, want[0],
                       want[1], want[2], unused);
      double y = 8.0, cb = 8.0, cr = 8.0, a = 8.0;
      ASSERT_EQ(pixel.GetPixelYCbCr(0, 0, y, cb, cr, a), 0U);
      ASSERT_EQ(y, want[0]);
      ASSERT_EQ(cb, want[1]);
      ASSERT_EQ(cr, want[2]);
      ASSERT_EQ(a, pixel.channels[3]);
    }
  }
}

class GivenYCbCr final : public NKPixel {
 public:
  std::uint32_t GetPixelYCbCr(int, int, double& y, double& cb, double& cr, double& a) override {
    y = channels[0];
    cb = channels[1];
    cr = channels[2];
    a = channels[3];
    return 55;
  }
  std::array<double, 4> channels{};
};

TEST(DerivedReads, BytesAndTenBitCodesAreTruncatedNotClamped) {
  GivenYCbCr pixel;
  Random random(23);
  for (int i = 0; i < 3000; ++i) {
    const double range = i % 2 == 0 ? 1.2 : 40.0;
    for (double& channel : pixel.channels)
      channel = random.real(-range, range);
    unsigned char y8 = 0, cb8 = 0, cr8 = 0, a8 = 0;
    ASSERT_EQ(pixel.GetPixelYCbCr8(0, 0, y8, cb8, cr8, a8), 0U);
    std::uint32_t y10 = 0, cb10 = 0, cr10 = 0, a10 = 0;
    ASSERT_EQ(pixel.GetPixelYCbCr10(0, 0, y10, cb10, cr10, a10), 0U);
    const unsigned char got8[] = {y8, cb8, cr8, a8};
    const std::uint32_t got10[] = {y10, cb10, cr10, a10};
    for (std::size_t c = 0; c < 4; ++c) {
      const auto by255 = static_cast<std::int64_t>(pixel.channels[c] * 255.0);
      const auto by1024 = static_cast<std::int64_t>(pixel.channels[c] * 1024.0);
      ASSERT_EQ(got8[c], static_cast<unsigned char>(by255));
      ASSERT_EQ(got10[c], static_cast<std::uint32_t>(by1024));
    }
  }
}

TEST(DerivedReads, AnUnknownModeReadsAsZeroInBytesAndCodes) {
  std::uint8_t bytes[] = {10, 20, 30, 40};
  const Surface surface = makeSurface(ptRGBA32, 1, 1, 0, reinterpret_cast<char*>(bytes));
  surface->SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(9));
  std::uint32_t y = 9, cb = 9, cr = 9, a = 9;
  surface->GetPixelYCbCr10(0, 0, y, cb, cr, a);
  EXPECT_EQ(y, 0U);
  EXPECT_EQ(cb, 0U);
  EXPECT_EQ(cr, 0U);
  EXPECT_EQ(a, static_cast<std::uint32_t>(40 / 255.0 * 1024.0));
}

TEST(DerivedReads, WhiteIn709FullReadsAs1024) {
  std::uint8_t bytes[] = {255, 255, 255, 255};
  const Surface surface = makeSurface(ptRGBA32, 1, 1, 0, reinterpret_cast<char*>(bytes));
  surface->SetYCbCrMode(NKPixel::mode709Full);
  std::uint32_t y = 0, cb = 0, cr = 0, a = 0;
  surface->GetPixelYCbCr10(0, 0, y, cb, cr, a);
  EXPECT_EQ(y, 1024U);
  EXPECT_EQ(a, 1024U);
}

TEST(DerivedReads, HsvOfTheBaseGivesAGreyTheHueZero) {
  GivenPixel pixel;
  pixel.channels = {0.5, 0.5, 0.5, 0.25};
  double h = 9.0, s = 9.0, v = 9.0, a = 9.0;
  EXPECT_EQ(pixel.GetPixelHSV(0, 0, h, s, v, a), 0U);
  EXPECT_EQ(h, 0.0);
  EXPECT_EQ(s, 0.0);
  EXPECT_EQ(v, 0.5);
  EXPECT_EQ(a, 0.25);
  Random random(29);
  for (int i = 0; i < 1000; ++i) {
    pixel.channels = {random.real(0, 1), random.real(0, 1), random.real(0, 1), random.real(0, 1)};
    double want[] = {0.0, 0.0, 0.0}, alpha = 0.0;
    pixel.RGBToHSV(pixel.channels[0], pixel.channels[1], pixel.channels[2], 0.0, want[0], want[1],
                   want[2], alpha);
    pixel.GetPixelHSV(0, 0, h, s, v, a);
    ASSERT_EQ(h, want[0]);
    ASSERT_EQ(s, want[1]);
    ASSERT_EQ(v, want[2]);
    ASSERT_EQ(a, pixel.channels[3]);
  }
}

struct Order {
  int r, g, b;
};

/// Only these types name an order of their own here; ptBGR24 does not.
Order lumaOrder(int type) {
  switch (type) {
    case 2:
      return {1, 2, 3};
    case 3:
      return {2, 1, 0};
    case 4:
      return {3, 2, 1};
    default:
      return {0, 1, 2};
  }
}

double lumaOf(int mode, double r, double g, double b) {
  double sum = 0.0;
  switch (mode) {
    case 2:
    case 1002:
      sum = 0.504 * g + 0.257 * r + 0.098 * b;
      break;
    case 3:
    case 1003:
      sum = 0.715 * g + 0.213 * r + 0.072 * b;
      break;
    case 4:
    case 1004:
      sum = 0.183 * r + 0.614 * g + 0.062 * b;
      break;
    case 5:
    case 6:
    case 7:
    case 8:
    case 1005:
    case 1006:
    case 1007:
    case 1008:
      sum = 0.678 * g + 0.2627 * r + 0.0593 * b;
      break;
    default:
      sum = 0.587 * g + 0.299 * r + 0.114 * b;
  }
  return sum * 0.00390625;
}

TEST(Luma, WeighsTheBytesOfEachTypeByEachMode) {
  Random random(31);
  Frame frame(64);
  NKPixel pixel;
  for (const int type : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 20, 38, 10000}) {
    PixelFields::kind(pixel) = static_cast<pixelType>(type);
    pixel.SetCanvas(frame.canvas(), 2, 2, 32);
    for (const int mode : kModes) {
      SCOPED_TRACE(testing::Message() << type << " in mode " << mode);
      pixel.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
      for (int i = 0; i < 50; ++i) {
        for (std::uint8_t& byte : frame.bytes())
          byte = static_cast<std::uint8_t>(random.word());
        const Order order = lumaOrder(type);
        for (int y = 0; y < 2; ++y) {
          for (int x = 0; x < 2; ++x) {
            const std::uint8_t* at = frame.data() + 32 * y + (type == 5 || type == 6 ? 3 : 4) * x;
            ASSERT_EQ(pixel.GetLuma(x, y), lumaOf(mode, at[order.r], at[order.g], at[order.b]));
          }
        }
      }
    }
  }
}

TEST(Luma, OfWhiteIs255Over256) {
  std::uint8_t bytes[] = {255, 255, 255, 255};
  const Surface surface = makeSurface(ptRGBA32, 1, 1, 0, reinterpret_cast<char*>(bytes));
  EXPECT_EQ(surface->GetLuma(0, 0), 255.0 / 256.0);
}

class ElsewherePixel final : public NKPixel {
 public:
  void* GetPixel(int, int) override { return bytes; }
  std::uint8_t bytes[4] = {1, 2, 3, 4};
};

TEST(Luma, TakesTheAddressFromTheTable) {
  ElsewherePixel pixel;
  EXPECT_EQ(pixel.GetLuma(100, 100), lumaOf(1, 1, 2, 3));
}

}  // namespace
