// SPDX-License-Identifier: BSD-2-Clause
//
// 8-bit 4:2:2: which bytes the reads take, and the matrices on byte samples.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

using namespace nkdraw::test;

/// Which byte of the pair a read takes.
struct ReadBytes {
  int luma, cb, cr;
};

ReadBytes readBytes(int type) {
  switch (type) {
    case 10:
      return {0, 1, 3};
    case 11:
      return {1, 0, 2};
    case 12:
      return {0, 3, 1};
    default:
      return {1, 2, 0};
  }
}

constexpr pixelType kOrders[] = {ptYUYV, ptUYVY, ptYVYU, ptVYUY};
constexpr int kModes[] = {0,    1,    2,    3,    4,    5,    6,    7,    8,
                          1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008};

struct Channels {
  double r, g, b;
};

constexpr double kOver256 = 0.00390625;
constexpr double kOver65536 = 1.52587890625e-05;

/// One row of the table of matrices for byte samples.
Channels toRgb(double yp, double cr, double cb, double kr, double kgr, double kgb, double kb,
               double s) {
  return {(yp + cr * kr) * s, (yp - cr * kgr - cb * kgb) * s, (yp + cb * kb) * s};
}

Channels convert(int mode, int y, int cb, int cr) {
  const double blue = cb - 128, red = cr - 128;
  switch (mode) {
    case 0:
    case 1:
    case 1000:
    case 1001:
      return toRgb((y - 16) * 1.164, red, blue, 1.596, 0.813, 0.391, 2.017, kOver256);
    case 2:
    case 1002:
      return toRgb(y * 256.0, red, blue, 350.976, 178.688, 86.016, 443.392, kOver65536);
    case 3:
    case 1003:
      return toRgb((y - 16) * 297.984, red, blue, 459.008, 136.448, 54.528, 542.72, kOver65536);
    case 4:
    case 1004:
      return toRgb(y * 256.0, red, blue, 403.1488, 119.839744, 47.954944, 475.0336, kOver65536);
    case 5:
    case 1005:
      return toRgb((y - 16) * 1.164, red, blue, 1.6786, 0.6504, 0.1873, 2.1417, kOver256);
    case 6:
    case 7:
    case 1006:
      return toRgb(y * 256.0, red, blue, 377.4976, 146.2784, 42.1376, 481.664, kOver65536);
    default:
      return toRgb(y * 256.0, cr, cb, 377.49760000000003, 146.2664004719764, 42.12560047197639,
                   481.6384, kOver65536);
  }
}

double limited(double channel, int mode) {
  if (mode >= 1000)
    return channel;
  return channel > 1.0 ? 1.0 : channel < 0.0 ? 0.0 : channel;
}

TEST(Pair422Reads, EveryModeConvertsItsByteSamples) {
  Frame frame(4);
  CDrawYCbCrYUYV surface(ptUYVY);
  surface.SetCanvas(frame.canvas(), 1, 2, 0);
  for (const int mode : kModes) {
    surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int y = 0; y < 256; y += 3) {
      for (int cb = 0; cb < 256; cb += 15) {
        for (int cr = 0; cr < 256; cr += 15) {
          frame[0] = static_cast<std::uint8_t>(cb);
          frame[1] = static_cast<std::uint8_t>(y);
          frame[2] = static_cast<std::uint8_t>(cr);
          const Channels want = convert(mode, y, cb, cr);
          double r = 7.5, g = 7.5, b = 7.5, a = 7.5;
          ASSERT_EQ(surface.GetPixelRGBA(0, 0, r, g, b, a), 0U);
          ASSERT_EQ(r, limited(want.r, mode))
              << "mode " << mode << ": " << y << " " << cb << " " << cr;
          ASSERT_EQ(g, limited(want.g, mode))
              << "mode " << mode << ": " << y << " " << cb << " " << cr;
          ASSERT_EQ(b, limited(want.b, mode))
              << "mode " << mode << ": " << y << " " << cb << " " << cr;
          ASSERT_EQ(a, 0.0);
        }
      }
    }
  }
}

TEST(Pair422Reads, AnUnknownModeLimitsWhatTheCallerHeld) {
  Frame frame(4);
  CDrawYCbCrYUYV surface(ptUYVY);
  surface.SetCanvas(frame.canvas(), 1, 2, 0);
  for (const int mode : {-1, 9, 100, 999, 1009, 5000}) {
    surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    double r = -2.0, g = 0.25, b = 2.0, a = 3.0;
    EXPECT_EQ(surface.GetPixelRGBA(0, 0, r, g, b, a), 0U);
    EXPECT_EQ(r, mode < 1000 ? 0.0 : -2.0);
    EXPECT_EQ(g, 0.25);
    EXPECT_EQ(b, mode < 1000 ? 1.0 : 2.0);
    EXPECT_EQ(a, 0.0);
  }
}

TEST(Pair422Reads, TakeTheirBytesByTheOrder) {
  for (const pixelType type : kOrders) {
    Frame frame(200, 97);
    CDrawYCbCrYUYV surface(type);
    surface.SetCanvas(frame.canvas(), 5, 20, 0);
    const ReadBytes bytes = readBytes(type);
    for (int y = 0; y < 5; ++y) {
      for (int x = 0; x < 20; ++x) {
        SCOPED_TRACE(testing::Message() << layoutName(type) << " " << x << "," << y);
        const std::uint8_t* const pair = frame.data() + 40 * y + x / 2 * 4;
        const int luma = pair[bytes.luma], blue = pair[bytes.cb], red = pair[bytes.cr];

        double yd = 9, cb = 9, cr = 9, a = 9;
        ASSERT_EQ(surface.GetPixelYCbCr(x, y, yd, cb, cr, a), 0U);
        ASSERT_EQ(yd, luma / 256.0);
        ASSERT_EQ(cb, blue / 256.0);
        ASSERT_EQ(cr, red / 256.0);
        ASSERT_EQ(a, 1.0);

        unsigned char y8 = 9, cb8 = 9, cr8 = 9, a8 = 9;
        ASSERT_EQ(surface.GetPixelYCbCr8(x, y, y8, cb8, cr8, a8), 0U);
        ASSERT_EQ(y8, luma);
        ASSERT_EQ(cb8, blue);
        ASSERT_EQ(cr8, red);
        ASSERT_EQ(a8, 255);

        std::uint32_t y10 = 9, cb10 = 9, cr10 = 9, a10 = 9;
        ASSERT_EQ(surface.GetPixelYCbCr10(x, y, y10, cb10, cr10, a10), 0U);
        ASSERT_EQ(y10, static_cast<std::uint32_t>(luma * 4));
        ASSERT_EQ(cb10, static_cast<std::uint32_t>(blue * 4));
        ASSERT_EQ(cr10, static_cast<std::uint32_t>(red * 4));
        ASSERT_EQ(a10, 255U);

        ASSERT_EQ(surface.GetLuma(x, y), pair[type == 10 || type == 12 ? 0 : 1] / 256.0);

        double h = 9, s = 8, v = 7;
        ASSERT_EQ(surface.GetPixelHSV(x, y, h, s, v, a), 0xFFFFFFFF);
        ASSERT_EQ(h + s + v + a, 25.0);

        // Only the RGB read of the UYVY order knows the second luma.
        const int own = type == 11 && x % 2 == 1 ? pair[3] : luma;
        const Channels want = convert(3, own, blue, red);
        surface.SetYCbCrMode(NKPixel::mode709Studio);
        double r = 9, g = 9, b = 9;
        ASSERT_EQ(surface.GetPixelRGBA(x, y, r, g, b, a), 0U);
        ASSERT_EQ(r, limited(want.r, 3));
        ASSERT_EQ(g, limited(want.g, 3));
        ASSERT_EQ(b, limited(want.b, 3));
        ASSERT_EQ(a, 0.0);
      }
    }
    EXPECT_TRUE(frame.untouched());
  }
}

TEST(Pair422Reads, WithoutACanvasGiveTheirDocumentedValues) {
  for (const pixelType type : kOrders) {
    SCOPED_TRACE(layoutName(type));
    CDrawYCbCrYUYV surface(type);
    surface.SetCanvas(nullptr, 4, 4, 0);
    double r = 9, g = 9, b = 9, a = 9;
    EXPECT_EQ(surface.GetPixelRGBA(0, 0, r, g, b, a), 0U);
    EXPECT_EQ(r, 0.5);
    EXPECT_EQ(g, 0.5);
    EXPECT_EQ(b, 0.5);
    EXPECT_EQ(a, 0.0);
    double y = 9, cb = 9, cr = 9;
    a = 9;
    EXPECT_EQ(surface.GetPixelYCbCr(0, 0, y, cb, cr, a), 0U);
    EXPECT_EQ(y, 0.0);
    EXPECT_EQ(cb, 0.0);
    EXPECT_EQ(cr, 0.0);
    EXPECT_EQ(a, 9.0);  // not written
    unsigned char y8 = 9, cb8 = 9, cr8 = 9, a8 = 9;
    EXPECT_EQ(surface.GetPixelYCbCr8(0, 0, y8, cb8, cr8, a8), 0U);
    EXPECT_EQ(y8 + cb8 + cr8, 0);
    EXPECT_EQ(a8, 255);
    std::uint32_t y10 = 9, cb10 = 9, cr10 = 9, a10 = 9;
    EXPECT_EQ(surface.GetPixelYCbCr10(0, 0, y10, cb10, cr10, a10), 0U);
    EXPECT_EQ(y10 + cb10 + cr10, 0U);
    EXPECT_EQ(a10, 255U);
  }
}

class WatchesAddress final : public CDrawYCbCrYUYV {
 public:
  explicit WatchesAddress(pixelType type) : NKDraw(type), CDrawYCbCrYUYV(type) {}
  void* GetPixel(int, int) override { return bytes; }
  std::uint8_t bytes[4] = {1, 2, 3, 4};
};

TEST(Pair422Reads, GetTheAddressFromTheTable) {
  for (const pixelType type : kOrders) {
    WatchesAddress surface(type);
    const ReadBytes at = readBytes(type);
    double y = 0, cb = 0, cr = 0, a = 0;
    surface.GetPixelYCbCr(50, 50, y, cb, cr, a);
    EXPECT_EQ(y, surface.bytes[at.luma] / 256.0);
    std::uint32_t y10 = 0, cb10 = 0, cr10 = 0, a10 = 0;
    surface.GetPixelYCbCr10(50, 50, y10, cb10, cr10, a10);
    EXPECT_EQ(cb10, surface.bytes[at.cb] * 4U);
    EXPECT_EQ(surface.GetLuma(50, 50), surface.bytes[at.luma] / 256.0);
    double r = 0, g = 0, b = 0;
    surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(1004));
    surface.GetPixelRGBA(50, 50, r, g, b, a);
    EXPECT_EQ(r,
              convert(1004, surface.bytes[at.luma], surface.bytes[at.cb], surface.bytes[at.cr]).r);
  }
}

}  // namespace
