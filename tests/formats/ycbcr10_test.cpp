// SPDX-License-Identifier: BSD-2-Clause
//
// v210: pitches, codes, where each pixel's samples are, and what reading returns.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace {

using namespace nkdraw::test;

/// The lowest bit of each sample in a group of 128 bits.
constexpr int kYBit[] = {10, 32, 52, 74, 96, 116};
constexpr int kCbBit[] = {0, 42, 84};
constexpr int kCrBit[] = {20, 64, 106};

/// The ten bits from `bit` on. No sample crosses a word.
std::uint32_t sampleAt(const std::uint8_t* group, int bit) {
  return (wordAt(group + bit / 32 * 4) >> (bit % 32)) & 0x3FF;
}

void setSampleAt(std::uint8_t* group, int bit, std::uint32_t value) {
  std::uint8_t* const word = group + bit / 32 * 4;
  setWord(word, (wordAt(word) & ~(0x3FFU << (bit % 32))) | (value << (bit % 32)));
}

TEST(V210, TheSamplesAndTheTopBitsOfTheWordsFillTheGroup) {
  std::array<int, 128> owners{};
  const auto own = [&owners](int bit) {
    for (int i = 0; i < 10; ++i)
      ++owners[static_cast<std::size_t>(bit + i)];
  };
  for (const int bit : kYBit)
    own(bit);
  for (const int bit : kCbBit)
    own(bit);
  for (const int bit : kCrBit)
    own(bit);
  for (std::size_t bit = 0; bit < 128; ++bit)
    EXPECT_EQ(owners[bit], bit % 32 < 30 ? 1 : 0) << bit;
}

TEST(V210, RowsAreRaisedToAMultipleOf48Pixels) {
  const struct {
    int width;
    std::uint32_t pitch;
  } kRows[] = {{1920, 5120}, {1280, 3456}, {720, 1920},  {48, 128},
               {1, 128},     {49, 256},    {3840, 10240}};
  for (const auto& row : kRows) {
    const Surface surface = makeSurface(ptV210, row.width, 10, 0, nullptr);
    EXPECT_EQ(surface->Pitch(), row.pitch) << row.width;
    EXPECT_EQ(surface->GetPitch(), static_cast<int>(row.pitch));
  }
}

TEST(V210, AGivenPitchIsKeptWhenItIsNotSmaller) {
  const struct {
    int given;
    std::uint32_t pitch;
  } kRows[] = {{1919, 1920},
               {1920, 1920},
               {1921, 1921},
               {4000, 4000},
               {1, 1920},
               {0, 1920},
               // As an unsigned number a negative one is large; its magnitude is what was stored.
               {-500, 500},
               {-4000, 4000}};
  for (const auto& row : kRows) {
    const Surface surface = makeSurface(ptV210, 720, 10, row.given, nullptr);
    EXPECT_EQ(surface->Pitch(), row.pitch) << row.given;
  }
}

TEST(V210, SetCanvasForgetsTheModeAndTheFlip) {
  for (const int type : {14, 15, 16}) {
    CDrawYCbCr10 surface(static_cast<pixelType>(type));
    for (int mode = 0; mode < 9; ++mode) {
      for (const int width : {1, 720, 721, 1920, -1920}) {
        SCOPED_TRACE(width);
        surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
        EXPECT_EQ(surface.SetCanvas(nullptr, -30, width, 0), 0U);
        EXPECT_EQ(PixelFields::mode(surface), width > 720 ? 3 : 1);
        EXPECT_FALSE(PixelFields::flippedOf(surface));
        EXPECT_EQ(surface.Height(), 30U);
        EXPECT_EQ(surface.Width(), static_cast<std::uint32_t>(std::abs(width)));
      }
    }
  }
}

TEST(V210, TheFieldsStartAsDocumented) {
  CDrawYCbCr10 surface(ptV210);
  EXPECT_EQ(V210Fields::foreground(surface), 0x00003AC1F63AC1F6U);
  EXPECT_EQ(V210Fields::background(surface), 0x00000401F60401F6U);
  EXPECT_EQ(V210Fields::spare(surface), 0);
  constexpr double kScales[] = {64.0, 940.0, 64.0, 876.0, 64.0, 876.0};
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_EQ(*V210Fields::scales(surface)[i], kScales[i]);
}

TEST(V210, TheStartColoursPlotAsTheirBitsRead) {
  Frame frame(128);
  frame.fill(0);
  const Surface surface = makeSurface(ptV210, 48, 1, 0, frame.canvas());
  surface->PutPixel(0, 0, true);
  EXPECT_EQ(sampleAt(frame.data(), kYBit[0]), 502U);
  EXPECT_EQ(sampleAt(frame.data(), kCbBit[0]), 688U);
  EXPECT_EQ(sampleAt(frame.data(), kCrBit[0]), 867U);
  surface->PutPixel(0, 0, false);
  EXPECT_EQ(sampleAt(frame.data(), kYBit[0]), 502U);
  EXPECT_EQ(sampleAt(frame.data(), kCbBit[0]), 256U);
  EXPECT_EQ(sampleAt(frame.data(), kCrBit[0]), 864U);
}

TEST(V210, EachPlaceWritesItsLumaAndItsPairsChroma) {
  Random random(47);
  for (int m = 0; m < 6; ++m) {
    for (int group = 0; group < 8; ++group) {
      for (int i = 0; i < 40; ++i) {
        SCOPED_TRACE(testing::Message() << "pixel " << m << " of group " << group);
        Frame got(3 * 128, random.word());
        Frame want = got;
        const Surface surface = makeSurface(ptV210, 48, 3, 0, got.canvas());
        const std::uint32_t y = random.word() & 0x3FF, cb = random.word() & 0x3FF;
        const std::uint32_t cr = random.word() & 0x3FF;
        const bool ink = random.flag();
        surface->SetColorYCbCr10(y, cb, cr, 99, ink);
        surface->SetColorYCbCr10(random.word(), random.word(), 3, 4, !ink);
        EXPECT_EQ(surface->PutPixel(group * 6 + m, 1, ink), 0U);
        std::uint8_t* const at = want.data() + 128 + group * 16;
        setSampleAt(at, kYBit[m], y);
        setSampleAt(at, kCbBit[m / 2], cb);
        setSampleAt(at, kCrBit[m / 2], cr);
        ASSERT_TRUE(got.all() == want.all());
      }
    }
  }
}

TEST(V210, PlottingTheSecondPixelOfAPairLeavesTheFirstOnesLuma) {
  Frame frame(128);
  frame.fill(0);
  const Surface surface = makeSurface(ptV210, 48, 1, 0, frame.canvas());
  surface->SetColorYCbCr10(111, 222, 333, 0, true);
  surface->PutPixel(1, 0, true);
  EXPECT_EQ(sampleAt(frame.data(), kYBit[0]), 0U);
  EXPECT_EQ(sampleAt(frame.data(), kYBit[1]), 111U);
  EXPECT_EQ(sampleAt(frame.data(), kCbBit[0]), 222U);
  EXPECT_EQ(sampleAt(frame.data(), kCrBit[0]), 333U);
}

TEST(V210, NegativeCoordinatesAreRefused) {
  Frame frame(256);
  const Surface surface = makeSurface(ptV210, 48, 2, 0, frame.canvas());
  for (const bool ink : {true, false}) {
    EXPECT_EQ(surface->PutPixel(-1, 0, ink), 0xFFFFFFFF);
    EXPECT_EQ(surface->PutPixel(0, -1, ink), 0xFFFFFFFF);
    EXPECT_EQ(surface->PutPixel(-1, -1, ink), 0xFFFFFFFF);
  }
  EXPECT_TRUE(frame.untouched());
}

TEST(V210, BlendingAndAddingAreNotConsulted) {
  Frame plain(128, 3), other(128, 3);
  const Surface surface = makeSurface(ptV210, 48, 1, 0, plain.canvas());
  surface->SetColorYCbCr10(500, 600, 700, 0, true);
  surface->PutPixel(4, 0, true);
  surface->SetCanvas(other.canvas(), 1, 48, 0);
  surface->SetTransparency(0.5, true);
  surface->SetTransparency(true);
  surface->SetAlphaAdditive(true);
  surface->PutPixel(4, 0, true);
  EXPECT_TRUE(plain.all() == other.all());
}

TEST(V210, ColoursBecomeCodesByTheirScalesWithoutAClamp) {
  CDrawYCbCr10 surface(ptV210);
  Random random(53);
  for (int i = 0; i < 3000; ++i) {
    const double range = i % 3 == 0 ? 0.0 : i % 3 == 1 ? 3.0 : 1e7;
    const double y = random.real(-range, 1.0 + range), cb = random.real(-range, 1.0 + range);
    const double cr = random.real(-range, 1.0 + range);
    const bool ink = random.flag();
    const std::uint64_t other =
        ink ? V210Fields::background(surface) : V210Fields::foreground(surface);
    const auto code = [](double value) {
      return std::uint64_t{static_cast<std::uint32_t>(static_cast<std::int64_t>(value))};
    };
    const std::uint64_t want = (((code(cr * 876.0 + 64.0) << 10) + code(cb * 876.0 + 64.0)) << 10) +
                               code(y * 940.0 + 64.0);
    ASSERT_EQ(surface.SetColorYCbCr(y, cb, cr, 0.5, ink), 0U);
    ASSERT_EQ(ink ? V210Fields::foreground(surface) : V210Fields::background(surface), want);
    ASSERT_EQ(ink ? V210Fields::background(surface) : V210Fields::foreground(surface), other);
  }
}

TEST(V210, TheScaleFieldsAreNotRead) {
  CDrawYCbCr10 surface(ptV210);
  for (double* const scale : V210Fields::scales(surface))
    *scale = 1.0;
  surface.SetColorYCbCr(1.0, 0.5, 0.5, 0.0, true);
  EXPECT_EQ(V210Fields::foreground(surface), (502U << 20) + (502U << 10) + 1004U);
}

TEST(V210, BlackWithNeutralChromaIsItsDocumentedWord) {
  Frame frame(128);
  frame.fill(0);
  const Surface surface = makeSurface(ptV210, 48, 1, 0, frame.canvas());
  surface->SetColorYCbCr(0.0, 0.5, 0.5, 0.0, true);
  surface->PutPixel(0, 0, true);
  EXPECT_EQ(wordAt(frame.data()), (502U << 20) + (64U << 10) + 502U);
}

TEST(V210, TenBitColoursAreA32BitSumOfFinalCodes) {
  CDrawYCbCr10 surface(ptV210);
  Random random(59);
  for (int i = 0; i < 1000; ++i) {
    const std::uint32_t y = random.word(), cb = random.word(), cr = random.word();
    surface.SetColorYCbCr10(y, cb, cr, 1, false);
    ASSERT_EQ(V210Fields::background(surface), y + (cb << 10) + (cr << 20));
  }
}

class SetterLog final : public CDrawYCbCr10 {
 public:
  SetterLog() : NKDraw(ptV210), CDrawYCbCr10(ptV210) {}
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool ink) override {
    got = {y, cb, cr, a};
    CDrawYCbCr10::SetColorYCbCr(y, cb, cr, a, ink);
    return 888;
  }
  std::array<double, 4> got{};
};

TEST(V210, RgbColoursGoThroughTheMatrixAndTheVirtualSetter) {
  SetterLog surface;
  Random random(61);
  for (int mode = 0; mode <= 8; ++mode) {
    surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int i = 0; i < 100; ++i) {
      const double r = random.real(0, 1), g = random.real(0, 1), b = random.real(0, 1);
      double y = 0, cb = 0, cr = 0, unused = 0;
      surface.RGBToYCbCr(r, g, b, 0.0, y, cb, cr, unused);
      ASSERT_EQ(surface.SetColorRGBA(r, g, b, 0.7, true), 0U);
      ASSERT_EQ(surface.got, (std::array<double, 4>{y, cb, cr, 0.7}));
    }
  }
  surface.SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(9));
  surface.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  EXPECT_EQ(surface.got, (std::array<double, 4>{0.0, 0.0, 0.0, 1.0}));
}

TEST(V210, GetColorRgbaKnowsNoneOfItsColours) {
  CDrawYCbCr10 surface(ptV210);
  surface.SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
  surface.SetColorRGBA(0.5, 0.6, 0.7, 0.8, false);
  double r = 9, g = 9, b = 9, a = 9;
  surface.GetColorRGBA(r, g, b, a, true);
  EXPECT_EQ(r + g + b + a, 4.0);
  surface.GetColorRGBA(r, g, b, a, false);
  EXPECT_EQ(r + g + b + a, 0.0);
}

TEST(V210, ReadsPickTheirFieldsAndTheSixthPixelTheThirdsLuma) {
  Frame frame(256, 67);
  const Surface surface = makeSurface(ptV210, 96, 1, 0, frame.canvas());
  for (int x = 0; x < 96; ++x) {
    SCOPED_TRACE(x);
    const int m = x % 6;
    const std::uint8_t* const group = frame.data() + x / 6 * 16;
    const std::uint32_t luma = sampleAt(group, kYBit[m == 5 ? 2 : m]);
    const std::uint32_t blue = sampleAt(group, kCbBit[m / 2]);
    const std::uint32_t red = sampleAt(group, kCrBit[m / 2]);

    double y = 9, cb = 9, cr = 9, a = 9;
    EXPECT_EQ(surface->GetPixelYCbCr(x, 0, y, cb, cr, a), 0U);
    EXPECT_EQ(y, luma / 1024.0);
    EXPECT_EQ(cb, blue / 1024.0);
    EXPECT_EQ(cr, red / 1024.0);
    EXPECT_EQ(a, 1.0);

    std::uint32_t y10 = 9, cb10 = 9, cr10 = 9, a10 = 9;
    EXPECT_EQ(surface->GetPixelYCbCr10(x, 0, y10, cb10, cr10, a10), 0U);
    EXPECT_EQ(y10, luma);
    EXPECT_EQ(cb10, blue);
    EXPECT_EQ(cr10, red);
    EXPECT_EQ(a10, 1U);

    unsigned char y8 = 9, cb8 = 9, cr8 = 9, a8 = 9;
    EXPECT_EQ(surface->GetPixelYCbCr8(x, 0, y8, cb8, cr8, a8), 0U);
    EXPECT_EQ(y8, luma >> 2);
    EXPECT_EQ(cb8, blue >> 2);
    EXPECT_EQ(cr8, m == 0 ? red & 0xFF : red >> 2);
    EXPECT_EQ(a8, 1);

    double h = 9, s = 8, v = 7;
    a = 6;
    EXPECT_EQ(surface->GetPixelHSV(x, 0, h, s, v, a), 0xFFFFFFFF);
    EXPECT_EQ(h, 9.0);
    EXPECT_EQ(s, 8.0);
    EXPECT_EQ(v, 7.0);
    EXPECT_EQ(a, 6.0);

    constexpr int kLumaPlace[] = {0, 1, 2, 0, 1, 2};
    EXPECT_EQ(surface->GetLuma(x, 0), sampleAt(group, kYBit[kLumaPlace[m]]) / 1024.0);
  }
  EXPECT_TRUE(frame.untouched());
}

TEST(V210, RgbReadsAreTheMatrixOfTheYCbCrRead) {
  Frame frame(256, 71);
  const Surface surface = makeSurface(ptV210, 96, 1, 0, frame.canvas());
  for (int mode = 0; mode <= 9; ++mode) {
    surface->SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int x = 0; x < 96; ++x) {
      double y = 0, cb = 0, cr = 0, alpha = 0;
      surface->GetPixelYCbCr(x, 0, y, cb, cr, alpha);
      double want[] = {0.25, 0.25, 0.25};
      surface->YCbCrToRGB(y, cb, cr, 0.0, want[0], want[1], want[2], alpha);
      double r = 0.25, g = 0.25, b = 0.25, a = 0.75;
      ASSERT_EQ(surface->GetPixelRGBA(x, 0, r, g, b, a), 0U);
      ASSERT_EQ(r, want[0]);
      ASSERT_EQ(g, want[1]);
      ASSERT_EQ(b, want[2]);
      ASSERT_EQ(a, 0.75);  // not written
    }
  }
}

TEST(V210, WithoutACanvasTheReadsWriteNothing) {
  const Surface surface = makeSurface(ptV210, 96, 1, 0, nullptr);
  EXPECT_EQ(surface->GetPixel(0, 0), nullptr);
  double y = 9, cb = 8, cr = 7, a = 6;
  EXPECT_EQ(surface->GetPixelYCbCr(0, 0, y, cb, cr, a), 0U);
  EXPECT_EQ(y + cb + cr + a, 30.0);
  std::uint32_t y10 = 9, cb10 = 8, cr10 = 7, a10 = 6;
  EXPECT_EQ(surface->GetPixelYCbCr10(0, 0, y10, cb10, cr10, a10), 0U);
  EXPECT_EQ(y10 + cb10 + cr10 + a10, 30U);
  unsigned char y8 = 9, cb8 = 8, cr8 = 7, a8 = 6;
  EXPECT_EQ(surface->GetPixelYCbCr8(0, 0, y8, cb8, cr8, a8), 0U);
  EXPECT_EQ(y8 + cb8 + cr8 + a8, 30);
  double r = 9, g = 9, b = 9;
  EXPECT_EQ(surface->GetPixelRGBA(0, 0, r, g, b, a), 0U);
  // The conversion of samples that are all 0.0.
  double want[] = {9, 9, 9}, unused = 0;
  surface->YCbCrToRGB(0.0, 0.0, 0.0, 0.0, want[0], want[1], want[2], unused);
  EXPECT_EQ(r, want[0]);
  EXPECT_EQ(g, want[1]);
  EXPECT_EQ(b, want[2]);
  EXPECT_EQ(a, 6.0);
}

TEST(V210, LumaReadsOfOtherTypesAreBytesOver1024) {
  Frame frame(128, 73);
  CDrawYCbCr10 surface(ptV210);
  surface.SetCanvas(frame.canvas(), 1, 48, 0);
  for (const int type : {10, 11, 12, 13}) {
    PixelFields::kind(surface) = static_cast<pixelType>(type);
    for (int x = 0; x < 48; ++x)
      ASSERT_EQ(surface.GetLuma(x, 0), frame[x / 6 * 16 + (type % 2)] / 1024.0);
  }
}

TEST(V210, AnAssignmentCopiesTheCodesFromTheRightSide) {
  Frame one(128, 1), two(128, 2);
  CDrawYCbCr10 left(ptV210), right(ptV210);
  left.SetCanvas(one.canvas(), 1, 3, 0);
  right.SetCanvas(two.canvas(), 1, 3, 0);
  left.SetColorYCbCr10(1, 2, 3, 0, true);
  right.SetColorYCbCr10(4, 5, 6, 0, true);
  right.SetColorYCbCr10(7, 8, 9, 0, false);
  *V210Fields::scales(right)[3] = 12.5;
  V210Fields::spare(right) = 77;
  const std::uint64_t ink = V210Fields::foreground(right);
  CDrawYCbCr10& result = (left = right);
  EXPECT_EQ(&result, &left);
  EXPECT_EQ(V210Fields::foreground(left), ink);
  EXPECT_EQ(V210Fields::background(left), V210Fields::background(right));
  EXPECT_EQ(*V210Fields::scales(left)[3], 12.5);
  EXPECT_EQ(V210Fields::spare(left), 77);
  EXPECT_EQ(V210Fields::foreground(right), ink);
  // The picture went the other way: the right one was plotted on in its own colour.
  EXPECT_EQ(sampleAt(two.data(), kYBit[0]), 4U);
  EXPECT_EQ(sampleAt(two.data(), kYBit[2]), 4U);
  EXPECT_TRUE(one.untouched());
}

}  // namespace
