// SPDX-License-Identifier: BSD-2-Clause
//
// 10-bit RGB in big-endian words: packing, reads, and the plotting of the 32-bit layouts on it.
#include <tests/formats/decoded.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

using Bytes = std::vector<std::uint8_t>;

std::uint32_t bigEndian(const std::uint8_t* at) {
  return (std::uint32_t{at[0]} << 24) | (std::uint32_t{at[1]} << 16) | (std::uint32_t{at[2]} << 8) |
         at[3];
}

std::uint8_t* packed(NKDraw& surface, bool ink) {
  return ink ? PixelFields::foreground(surface) : PixelFields::background(surface);
}

/// Truncates to an integer as the machine does; a field keeps the low bits.
std::uint32_t whole(double value) {
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(value));
}

TEST(Rgb30Dpx, PitchIsFourBytesAPixelAndHasNoFloor) {
  CDrawRGB30DPX surface(ptRGB30DPX);
  EXPECT_EQ(surface.PixelType(), ptRGB30DPX);
  surface.SetCanvas(nullptr, 10, 100, 0);
  EXPECT_EQ(surface.Pitch(), 400U);
  EXPECT_EQ(surface.GetPitch(), 400);
  surface.SetCanvas(nullptr, 10, 100, 50);
  EXPECT_EQ(surface.Pitch(), 50U);
  surface.SetCanvas(nullptr, 10, 100, -500);
  EXPECT_EQ(surface.Pitch(), 500U);
  EXPECT_EQ(surface.IsRgbType(), 1U);
  for (const int type : {-1, 0, 1, 5, 14, 31, 10000})
    EXPECT_EQ(CDrawRGB30DPX(static_cast<pixelType>(type)).PixelType(), type);
}

TEST(Rgb30Dpx, PrimariesHaveTheirBitsInMemoryOrder) {
  const struct {
    double r, g, b;
    Bytes bytes;
  } kRows[] = {
      {1, 0, 0, {0xFF, 0xC0, 0x00, 0x00}}, {0, 1, 0, {0x00, 0x3F, 0xF0, 0x00}},
      {0, 0, 1, {0x00, 0x00, 0x0F, 0xFC}}, {1, 1, 1, {0xFF, 0xFF, 0xFF, 0xFC}},
      {0, 0, 0, {0x00, 0x00, 0x00, 0x00}}, {0.5, 0.25, 0.125, {0x7F, 0xCF, 0xF1, 0xFC}},
  };
  for (const auto& row : kRows) {
    for (const bool ink : {true, false}) {
      Frame frame(16);
      frame.fill(0x33);
      const Surface surface = makeSurface(ptRGB30DPX, 4, 1, 0, frame.canvas());
      EXPECT_EQ(surface->SetColorRGBA(row.r, row.g, row.b, 0.3, ink), 0U);
      EXPECT_EQ(surface->PutPixel(1, 0, ink), 0U);
      EXPECT_EQ(Bytes(frame.data() + 4, frame.data() + 8), row.bytes);
      EXPECT_EQ(frame[3], 0x33);
      EXPECT_EQ(frame[8], 0x33);
      EXPECT_TRUE(frame.guardsIntact());
      double r = 9, g = 9, b = 9, a = 9;
      EXPECT_EQ(surface->GetPixelRGBA(1, 0, r, g, b, a), 0U);
      EXPECT_EQ(r, std::trunc(row.r * 1023.0) / 1023.0);
      EXPECT_EQ(g, std::trunc(row.g * 1023.0) / 1023.0);
      EXPECT_EQ(b, std::trunc(row.b * 1023.0) / 1023.0);
      EXPECT_EQ(a, 1.0);
    }
  }
}

TEST(Rgb30Dpx, ARedAboveTenBitsRunsOffTheTopAndTheOthersAreMasked) {
  Random random(2003);
  for (int i = 0; i < 4000; ++i) {
    const Surface surface = makeSurface(ptRGB30DPX, 4, 1, 0, nullptr);
    const double range = i % 3 == 0 ? 0.0 : i % 3 == 1 ? 4.0 : 3e6;
    const double r = random.real(-range, 1 + range), g = random.real(-range, 1 + range);
    const double b = random.real(-range, 1 + range);
    const bool ink = random.flag();
    surface->SetColorRGBA(r, g, b, random.real(0, 1), ink);
    const std::uint32_t want = (whole(r * 1023.0) << 22) | ((whole(g * 1023.0) & 0x3FF) << 12) |
                               ((whole(b * 1023.0) & 0x3FF) << 2);
    ASSERT_EQ(bigEndian(packed(*surface, ink)), want) << r << " " << g << " " << b;
    ASSERT_EQ(wordAt(packed(*surface, !ink)), ink ? 0U : 0xFFFFFFFFU);
    double gotR = 9, gotG = 9, gotB = 9, gotA = 9;
    ASSERT_EQ(surface->GetColorRGBA(gotR, gotG, gotB, gotA, ink), 0U);
    ASSERT_EQ(gotR, (want >> 22) / 1023.0);
    ASSERT_EQ(gotG, ((want >> 12) & 0x3FF) / 1023.0);
    ASSERT_EQ(gotB, ((want >> 2) & 0x3FF) / 1023.0);
    ASSERT_EQ(gotA, 1.0);
  }
}

TEST(Rgb30Dpx, ItsStartColoursReadAsWhiteAndBlackAndAnAlphaIsAlwaysOne) {
  const Surface surface = makeSurface(ptRGB30DPX, 4, 1, 0, nullptr);
  for (const bool ink : {true, false}) {
    double r = 9, g = 9, b = 9, a = 9;
    surface->GetColorRGBA(r, g, b, a, ink);
    EXPECT_EQ(r, ink ? 1.0 : 0.0);
    EXPECT_EQ(g, ink ? 1.0 : 0.0);
    EXPECT_EQ(b, ink ? 1.0 : 0.0);
    EXPECT_EQ(a, 1.0);
  }
  surface->SetColorRGBA(0.5, 0.5, 0.5, 0.0, true);
  double r = 9, g = 9, b = 9, a = 9;
  surface->GetColorRGBA(r, g, b, a, true);
  EXPECT_EQ(a, 1.0);
  // The byte that GetColorRGBA of the base would take for the alpha plays no part.
  surface->SetColorYCbCr(0.1, 0.2, 0.3, 0.4, true);
  double same = 9;
  surface->GetColorRGBA(same, g, b, a, true);
  EXPECT_EQ(same, r);
}

TEST(Rgb30Dpx, TheLowTwoBitsAreZeroWhenWrittenAndIgnoredWhenRead) {
  Random random(2011);
  for (int i = 0; i < 500; ++i) {
    Frame frame(4, random.word());
    const Surface surface = makeSurface(ptRGB30DPX, 1, 1, 0, frame.canvas());
    double want[4] = {}, got[4] = {};
    frame[3] = static_cast<std::uint8_t>(frame[3] & 0xFC);
    const std::uint32_t word = bigEndian(frame.data());
    surface->GetPixelRGBA(0, 0, want[0], want[1], want[2], want[3]);
    frame[3] = static_cast<std::uint8_t>(frame[3] | random.between(0, 3));
    surface->GetPixelRGBA(0, 0, got[0], got[1], got[2], got[3]);
    for (int channel = 0; channel < 4; ++channel)
      ASSERT_EQ(got[channel], want[channel]);
    ASSERT_EQ(got[0], (word >> 22) / 1023.0);
    ASSERT_EQ(got[1], ((word >> 12) & 0x3FF) / 1023.0);
    ASSERT_EQ(got[2], ((word >> 2) & 0x3FF) / 1023.0);
    ASSERT_EQ(got[3], 1.0);
  }
}

TEST(Rgb30Dpx, BlendingIsMeantToMixTheSwappedWordAsANumber) {
  Frame frame(4);
  const Surface surface = makeSurface(ptRGB30DPX, 1, 1, 0, frame.canvas());
  surface->SetColorRGBA(1.0, 0.0, 0.0, 1.0, true);  // FF C0 00 00
  surface->SetColorRGBA(0.0, 0.0, 1.0, 1.0, false);
  surface->SetTransparency(0.5, true);
  surface->SetTransparency(0.25, false);
  surface->SetTransparency(true);
  setWord(frame.data(), 0x01000101);
  surface->PutPixel(0, 0, true);
  EXPECT_EQ(wordAt(frame.data()), whole(0.5 * 0x01000101 + 0x0000C0FF * 0.5));
  surface->PutPixel(0, 0, false);
  EXPECT_EQ(wordAt(frame.data()),
            whole(0.75 * whole(0.5 * 0x01000101 + 0x0000C0FF * 0.5) + 4228841472.0 * 0.25));
}

TEST(Rgb30Dpx, TheAdditiveStepIsMeantToWorkOnBytesAcrossTheFields) {
  Frame frame(4);
  frame.fill(10);
  const Surface surface = makeSurface(ptRGB30DPX, 1, 1, 0, frame.canvas());
  surface->SetColorRGBA(0.5, 0.25, 0.125, 1.0, true);  // 7F CF F1 FC
  surface->SetAlphaAdditive(true);
  EXPECT_EQ(surface->PutPixel(0, 0, true), 0U);
  const auto sum = [](int channel) {
    return static_cast<std::uint8_t>(static_cast<int>((0xFC / 255.0) * channel + 10));
  };
  EXPECT_EQ(Bytes(frame.data(), frame.data() + 4), (Bytes{sum(0x7F), sum(0xCF), sum(0xF1), 255}));
}

TEST(Rgb30Dpx, PlottingRefusesRowsAboveAndAMissingCanvas) {
  Frame frame(16);
  const Surface surface = makeSurface(ptRGB30DPX, 2, 2, 0, frame.canvas());
  EXPECT_EQ(surface->PutPixel(0, -1, true), 0xFFFFFFFF);
  EXPECT_EQ(surface->PutPixel(0, INT_MIN, false), 0xFFFFFFFF);
  surface->SetCanvas(nullptr, 2, 2, 0);
  EXPECT_EQ(surface->PutPixel(0, 0, true), 0xFFFFFFFF);
  EXPECT_TRUE(frame.untouched());
}

TEST(Rgb30Dpx, APitchThatIsNoMultipleOfFourSlipsRows) {
  Frame frame(64);
  const Surface surface = makeSurface(ptRGB30DPX, 2, 3, 11, frame.canvas());
  EXPECT_EQ(surface->GetPixel(1, 1), frame.canvas() + 12);
  EXPECT_EQ(surface->GetPixel(0, 2), frame.canvas() + 20);
}

/// As in the table of modes.
double weighted(int mode, double r, double g, double b) {
  switch (mode) {
    case 2:
      return 0.504 * g + 0.257 * r + 0.098 * b;
    case 3:
      return 0.715 * g + 0.213 * r + 0.072 * b;
    case 4:
      return 0.614 * g + 0.183 * r + 0.062 * b;
    default:
      return 0.587 * g + 0.299 * r + 0.114 * b;
  }
}

TEST(Rgb30Dpx, LumaKnowsThreeModesAndWeightsTheRestAlike) {
  Frame frame(4000, 23);
  const Surface surface = makeSurface(ptRGB30DPX, 1000, 1, 0, frame.canvas());
  for (const int mode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -1, 1000, 1001, 1002, 1003, 1004, 1005}) {
    surface->SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int x = 0; x < 1000; ++x) {
      const std::uint32_t word = bigEndian(frame.data() + 4 * x);
      const double want =
          weighted(mode, word >> 22, (word >> 12) & 0x3FF, (word >> 2) & 0x3FF) / 1024.0;
      ASSERT_EQ(surface->GetLuma(x, 0), want) << mode << " " << x;
    }
  }
}

TEST(Rgb30Dpx, ReadsInYCbCrAndHsvStandOnThePixelsChannels) {
  Frame frame(4000, 29);
  const Surface surface = makeSurface(ptRGB30DPX, 300, 1, 0, frame.canvas());
  for (int mode = 0; mode <= 9; ++mode) {
    surface->SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int x = 0; x < 300; ++x) {
      double r = 0, g = 0, b = 0, a = 0;
      surface->GetPixelRGBA(x, 0, r, g, b, a);
      double want[] = {7, 7, 7}, hsv[] = {7, 7, 7}, unused = 0;
      surface->RGBToYCbCr(r, g, b, a, want[0], want[1], want[2], unused);
      surface->RGBToHSV(r, g, b, a, hsv[0], hsv[1], hsv[2], unused);
      double y2 = 7, cb = 7, cr = 7, alpha = 7;
      ASSERT_EQ(surface->GetPixelYCbCr(x, 0, y2, cb, cr, alpha), 0U);
      ASSERT_EQ(y2, want[0]);
      ASSERT_EQ(cb, want[1]);
      ASSERT_EQ(cr, want[2]);
      ASSERT_EQ(alpha, 1.0);
      double h = 7, s = 7, v = 7;
      alpha = 7;
      ASSERT_EQ(surface->GetPixelHSV(x, 0, h, s, v, alpha), 0U);
      ASSERT_EQ(h, hsv[0]);
      ASSERT_EQ(s, hsv[1]);
      ASSERT_EQ(v, hsv[2]);
      ASSERT_EQ(alpha, 1.0);
    }
  }
  frame.fill(0);
  double h = 7, s = 7, v = 7, a = 7;
  surface->GetPixelHSV(0, 0, h, s, v, a);
  EXPECT_EQ(h, -1.0);
}

class Elsewhere final : public CDrawRGB30DPX {
 public:
  Elsewhere() : NKDraw(ptRGB30DPX), CDrawRGB30DPX(ptRGB30DPX) {}
  void* GetPixel(int, int) override { return pixel; }
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
    ++reads;
    return CDrawRGB30DPX::GetPixelRGBA(x, y, r, g, b, a);
  }
  std::uint32_t RGBToYCbCr(double r, double, double, double a, double& y, double&, double&,
                           double&) override {
    y = r + a;
    return 12;
  }
  std::uint8_t pixel[4] = {0xFF, 0xC0, 0x00, 0x00};
  int reads = 0;
};

TEST(Rgb30Dpx, ReadsCallTheVirtualOperationsTheyStandOn) {
  Elsewhere surface;
  double r = 0, g = 9, b = 9, a = 0;
  surface.GetPixelRGBA(100, 100, r, g, b, a);
  EXPECT_EQ(r, 1.0);
  EXPECT_EQ(g, 0.0);
  EXPECT_EQ(surface.GetLuma(1, 1), 0.299 * 1023.0 / 1024.0);
  double y = 0, cb = 0, cr = 0, h = 0, s = 0, v = 0;
  surface.reads = 0;
  EXPECT_EQ(surface.GetPixelYCbCr(1, 1, y, cb, cr, a), 0U);
  EXPECT_EQ(y, 2.0);
  EXPECT_EQ(surface.GetPixelHSV(1, 1, h, s, v, a), 0U);
  EXPECT_EQ(surface.reads, 2);
}

TEST(Rgb30Dpx, AnAssignmentIsThePictureCopyAndReturnsItsLeftSide) {
  Frame one(16, 1), two(16, 2);
  CDrawRGB30DPX left(ptRGB30DPX), right(ptRGB30DPX);
  left.SetCanvas(one.canvas(), 1, 2, 0);
  right.SetCanvas(two.canvas(), 1, 2, 0);
  right.SetColorRGBA(0.0, 0.0, 1.0, 1.0, true);
  CDrawRGB30DPX& result = (left = right);
  EXPECT_EQ(&result, &left);
  EXPECT_EQ(bigEndian(two.data() + 4), 0x00000FFCU);
  EXPECT_EQ(bigEndian(packed(left, true)), 0x00000FFCU);
  EXPECT_TRUE(one.untouched());
}

void putBig(Bytes& file, std::size_t at, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i)
    file[at + static_cast<std::size_t>(i)] =
        static_cast<std::uint8_t>(value >> (8 * (bytes - 1 - i)));
}

/// The head of a DPX file (SMPTE 268M): one RGB element of 10 bits, filled to words by method A.
Bytes dpxHeader(std::uint32_t width, std::uint32_t height) {
  Bytes file(2048);
  putBig(file, 0, 0x53445058, 4);  // "SDPX": big-endian
  putBig(file, 4, 2048, 4);        // where the picture starts
  putBig(file, 8, 0x56312E30, 4);  // "V1.0"
  putBig(file, 16, 2048 + width * height * 4, 4);
  putBig(file, 770, 1, 2);  // elements
  putBig(file, 772, width, 4);
  putBig(file, 776, height, 4);
  file[800] = 50;  // R, G, B
  file[803] = 10;
  putBig(file, 804, 1, 2);  // method A
  putBig(file, 808, 2048, 4);
  return file;
}

TEST(Rgb30Dpx, FfmpegReadsTheChannelsThatWeReadFromADpxFile) {
  constexpr int kWidth = 37, kHeight = 21;
  Frame frame(kWidth * kHeight * 4, 31);
  const Surface surface = makeSurface(ptRGB30DPX, kWidth, kHeight, 0, frame.canvas());
  surface->SetColorRGBA(0.9, 0.5, 0.1, 1.0, true);
  surface->Line(0, 0, kWidth - 1, kHeight - 1);
  surface->SetColorRGBA(0.1, 0.7, 0.3, 1.0, true);
  surface->Label(3, 5, "10", false, true);
  Bytes file = dpxHeader(kWidth, kHeight);
  file.insert(file.end(), frame.bytes().begin(), frame.bytes().end());
  const auto planes = wordsOf(throughFfmpeg(
      file, ".dpx",
      {"-f", "image2", "-c:v", "dpx", "-i", "{}", "-f", "rawvideo", "-pix_fmt", "gbrp10le", "-"}));
  constexpr std::size_t kPlane = kWidth * kHeight;
  ASSERT_EQ(planes.size(), 3 * kPlane);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const auto at = static_cast<std::size_t>(y * kWidth + x);
      double r = 0, g = 0, b = 0, a = 0;
      surface->GetPixelRGBA(x, y, r, g, b, a);
      ASSERT_EQ(g, planes[at] / 1023.0) << x << "," << y;
      ASSERT_EQ(b, planes[kPlane + at] / 1023.0) << x << "," << y;
      ASSERT_EQ(r, planes[2 * kPlane + at] / 1023.0) << x << "," << y;
    }
  }
}

}  // namespace
