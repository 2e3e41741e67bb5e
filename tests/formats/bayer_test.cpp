// SPDX-License-Identifier: BSD-2-Clause
//
// 12-bit mosaics: which sample a position writes, what the odd columns spill, and which samples of
// a cell its colour is read from.
#include <tests/formats/decoded.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

using Bytes = std::vector<std::uint8_t>;

/// The letters of a cell, first row first.
std::string cellOf(int type) {
  constexpr const char* kCells[] = {"BGGR", "RGGB", "GBRG", "GRBG"};
  return type >= 21 && type <= 28 ? kCells[(type - 21) % 4] : "BGGR";
}

int channelOf(char letter) {
  return letter == 'R' ? 0 : letter == 'G' ? 1 : 2;
}

constexpr pixelType kMosaics[] = {ptBayerBGGR,   ptBayerRGGB,   ptBayerGBRG,   ptBayerGRBG,
                                  ptBayerBGGR12, ptBayerRGGB12, ptBayerGBRG12, ptBayerGRBG12};

class Bayer : public testing::TestWithParam<pixelType> {};

INSTANTIATE_TEST_SUITE_P(AllTypes, Bayer, testing::ValuesIn(kMosaics),
                         [](const auto& each) { return layoutName(each.param); });

void setBytes(CDrawBayer& surface, bool ink, std::uint8_t r, std::uint8_t g, std::uint8_t b) {
  const std::uint8_t bytes[] = {r, g, b, 0};
  for (int i = 0; i < 4; ++i)
    BayerFields::rgba(surface, ink)[i] = bytes[i];
}

TEST_P(Bayer, StartsWithItsDocumentedFields) {
  CDrawBayer surface(GetParam());
  EXPECT_EQ(surface.PixelType(), GetParam());
  EXPECT_EQ(surface.IsRgbType(), 1U);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(BayerFields::rgba(surface, true)[i], 0xFF);
    EXPECT_EQ(BayerFields::rgba(surface, false)[i], 0);
  }
}

TEST_P(Bayer, APackedRowIsThreeBytesForTwoPixelsAndThePitchHasNoFloor) {
  const Surface surface = makeSurface(GetParam(), 101, 10, 0, nullptr);
  EXPECT_EQ(surface->Pitch(), 151U);
  EXPECT_EQ(surface->GetPitch(), 151);
  EXPECT_EQ(surface->BufferLength(), 1510U);
  surface->SetCanvas(nullptr, 10, 100, 50);
  EXPECT_EQ(surface->Pitch(), 50U);
  surface->SetCanvas(nullptr, -10, -100, -77);
  EXPECT_EQ(surface->Pitch(), 77U);
  EXPECT_EQ(surface->Width(), 100U);
  EXPECT_EQ(surface->Height(), 10U);
  // Unsigned: the product wraps before it is halved.
  PixelFields::widthOf(*surface) = 0x60000000;
  EXPECT_EQ(surface->GetPitch(), static_cast<int>((0x60000000U * 3U) / 2));
}

TEST_P(Bayer, GetPixelDividesThreeTimesXByTwoTowardsZero) {
  Frame frame(4096, 1, 256);
  const Surface surface = makeSurface(GetParam(), 20, 10, 37, frame.canvas());
  for (int y = 0; y < 10; ++y) {
    for (int x = -20; x < 40; ++x)
      ASSERT_EQ(static_cast<char*>(surface->GetPixel(x, y)) - frame.canvas(), 37 * y + 3 * x / 2);
  }
}

TEST_P(Bayer, ColoursAreCutToBytesOfTheirOwn) {
  Random random(3001);
  CDrawBayer surface(GetParam());
  for (int i = 0; i < 2000; ++i) {
    std::array<double, 4> channels{};
    for (double& channel : channels)
      channel = i % 2 == 0 ? random.real(0, 1) : random.real(-4, 5);
    const bool ink = random.flag();
    ASSERT_EQ(surface.SetColorRGBA(channels[0], channels[1], channels[2], channels[3], ink), 0U);
    for (std::size_t c = 0; c < 4; ++c) {
      ASSERT_EQ(BayerFields::rgba(surface, ink)[c],
                static_cast<std::uint8_t>(static_cast<int>(channels[c] * 255.0)));
    }
  }
}

TEST_P(Bayer, GetColorRgbaKeepsReportingTheUntouchedBase) {
  CDrawBayer surface(GetParam());
  surface.SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
  surface.SetColorRGBA(0.1, 0.2, 0.3, 0.4, false);
  for (const bool ink : {true, false}) {
    double r = 9, g = 9, b = 9, a = 9;
    EXPECT_EQ(surface.GetColorRGBA(r, g, b, a, ink), 0U);
    EXPECT_EQ(r + g + b + a, ink ? 4.0 : 0.0);
  }
}

TEST_P(Bayer, YCbCrColoursAreIgnored) {
  CDrawBayer surface(GetParam());
  surface.SetColorRGBA(0.5, 0.5, 0.5, 0.5, true);
  EXPECT_EQ(surface.SetColorYCbCr(0.1, 0.2, 0.3, 0.4, true), 0U);
  EXPECT_EQ(surface.SetColorYCbCr8(1, 2, 3, 4, true), 0U);
  EXPECT_EQ(surface.SetColorYCbCr10(1, 2, 3, 4, true), 0U);
  EXPECT_EQ(BayerFields::rgba(surface, true)[0], 127);
}

TEST_P(Bayer, AnEvenColumnWritesOneByteAndAnOddOneIsMeantToMixTwoColours) {
  const std::string cell = cellOf(GetParam());
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 6; ++x) {
      for (const bool ink : {true, false}) {
        SCOPED_TRACE(testing::Message() << x << "," << y);
        Frame frame(4 * 16);
        frame.fill(0x77);
        CDrawBayer surface(GetParam());
        surface.SetCanvas(frame.canvas(), 4, 6, 16);
        const std::array<std::uint8_t, 3> colour = {0xAB, 0xCD, 0xEF};
        setBytes(surface, ink, colour[0], colour[1], colour[2]);
        EXPECT_EQ(surface.PutPixel(x, y, ink), 0U);
        const std::size_t row = y % 2 == 0 ? 0 : 2;
        const auto even = colour[static_cast<std::size_t>(channelOf(cell[row]))];
        const auto odd = colour[static_cast<std::size_t>(channelOf(cell[row + 1]))];
        Bytes want(64, 0x77);
        const auto at = static_cast<std::size_t>(16 * y + 3 * x / 2);
        if (x % 2 == 0) {
          want[at] = even;
        } else {
          want[at] = static_cast<std::uint8_t>(odd >> 4);  // the even sample's low bits are lost
          want[at + 1] = static_cast<std::uint8_t>(even << 4);
        }
        EXPECT_EQ(Bytes(frame.bytes().begin(), frame.bytes().end()), want);
        EXPECT_TRUE(frame.guardsIntact());
      }
    }
  }
}

TEST_P(Bayer, BlendingAndAddingHaveNoEffect) {
  Frame plain(64, 3), other(64, 3);
  CDrawBayer surface(GetParam());
  surface.SetColorRGBA(0.2, 0.4, 0.6, 0.8, true);
  for (Frame* const frame : {&plain, &other}) {
    surface.SetCanvas(frame->canvas(), 2, 8, 0);
    for (int x = 0; x < 8; ++x)
      surface.PutPixel(x, x % 2, true);
    surface.SetTransparency(0.5, true);
    surface.SetTransparency(true);
    surface.SetAlphaAdditive(true);
  }
  EXPECT_TRUE(plain.all() == other.all());
}

/// S0 and S1 of the triple at q.
double first(const std::uint8_t* q) {
  return q[0] / 255.0;
}
double second(const std::uint8_t* q) {
  return (((q[1] & 0x0F) << 4) | (q[2] >> 4)) / 255.0;
}

TEST_P(Bayer, ACellGivesItsFourPositionsOneColour) {
  constexpr int kPitch = 53;
  Frame frame(kPitch * 12, 17);
  const Surface surface = makeSurface(GetParam(), 34, 12, kPitch, frame.canvas());
  const std::string cell = cellOf(GetParam());
  for (int y = 0; y < 12; ++y) {
    for (int x = 0; x < 34; ++x) {
      const std::uint8_t* const p = frame.data() + kPitch * (y & ~1) + 3 * (x & ~1) / 2;
      double want[3] = {};
      // The green of the second row is not looked at.
      want[channelOf(cell[3])] = second(p + kPitch);
      want[channelOf(cell[2])] = first(p + kPitch);
      want[channelOf(cell[1])] = second(p);
      want[channelOf(cell[0])] = first(p);
      double r = 9, g = 9, b = 9, a = 9;
      ASSERT_EQ(surface->GetPixelRGBA(x, y, r, g, b, a), 0U);
      ASSERT_EQ(r, want[0]) << x << "," << y;
      ASSERT_EQ(g, want[1]) << x << "," << y;
      ASSERT_EQ(b, want[2]) << x << "," << y;
      ASSERT_EQ(a, 1.0);
    }
  }
}

/// Offsets of the bytes whose mean is the luma, in the order R, G, B.
std::array<int, 3> lumaBytes(int type, int pitch) {
  const std::string cell = cellOf(type);
  if (cell == "RGGB")
    return {0, 1, pitch + 1};
  if (cell == "GBRG")
    return {pitch, 0, 1};
  if (cell == "GRBG")
    return {1, 0, pitch};
  return {pitch + 1, 1, 0};
}

TEST_P(Bayer, LumaIsTheMeanOfWholeBytesAndIsMeantToStraddleCellsAtAnOddRow) {
  constexpr int kPitch = 53;
  Frame frame(kPitch * 12, 19);
  const Surface surface = makeSurface(GetParam(), 34, 12, kPitch, frame.canvas());
  for (const int mode : {1, 2, 3, 4, 8}) {
    surface->SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));  // plays no part
    for (int y = 0; y < 11; ++y) {
      for (int x = 0; x < 34; ++x) {
        const std::uint8_t* const p = frame.data() + kPitch * y + 3 * (x & ~1) / 2;
        const auto at = lumaBytes(GetParam(), kPitch);
        const double sum = p[at[0]] / 255.0 + p[at[1]] / 255.0 + p[at[2]] / 255.0;
        ASSERT_EQ(surface->GetLuma(x, y), sum / 3.0) << x << "," << y;
      }
    }
  }
}

TEST_P(Bayer, ReadsStandOnTheCellsColour) {
  Frame frame(600, 21);
  const Surface surface = makeSurface(GetParam(), 40, 8, 0, frame.canvas());
  for (int mode = 0; mode <= 9; ++mode) {
    surface->SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
    for (int x = 0; x < 40; ++x) {
      double r = 0, g = 0, b = 0, a = 0;
      surface->GetPixelRGBA(x, 3, r, g, b, a);
      double want[] = {7, 7, 7}, hsv[] = {7, 7, 7}, unused = 0;
      surface->RGBToYCbCr(r, g, b, a, want[0], want[1], want[2], unused);
      surface->RGBToHSV(r, g, b, a, hsv[0], hsv[1], hsv[2], unused);
      double y2 = 7, cb = 7, cr = 7, alpha = 7;
      ASSERT_EQ(surface->GetPixelYCbCr(x, 3, y2, cb, cr, alpha), 0U);
      ASSERT_EQ(y2, want[0]);
      ASSERT_EQ(cb, want[1]);
      ASSERT_EQ(cr, want[2]);
      ASSERT_EQ(alpha, 1.0);
      double h = 7, s = 7, v = 7;
      ASSERT_EQ(surface->GetPixelHSV(x, 3, h, s, v, alpha), 0U);
      ASSERT_EQ(h, hsv[0]);
      ASSERT_EQ(s, hsv[1]);
      ASSERT_EQ(v, hsv[2]);
    }
  }
  frame.fill(0x55);
  double h = 7, s = 7, v = 7, a = 7;
  surface->GetPixelHSV(2, 2, h, s, v, a);
  EXPECT_EQ(h, -1.0);
  EXPECT_EQ(s, 0.0);
}

TEST_P(Bayer, BothRangesOfTypesGiveTheSameBytes) {
  const auto twin = static_cast<pixelType>(GetParam() > 24 ? GetParam() - 4 : GetParam() + 4);
  Frame one(400, 5), two(400, 5);
  const Surface surface = makeSurface(GetParam(), 20, 10, 0, one.canvas());
  const Surface other = makeSurface(twin, 20, 10, 0, two.canvas());
  for (NKDraw* const each : {surface.get(), other.get()}) {
    each->SetColorRGBA(0.9, 0.6, 0.3, 1.0, true);
    each->Line(0, 0, 19, 9);
    each->Label(1, 0, "b", false, true);
  }
  EXPECT_TRUE(one.all() == two.all());
  EXPECT_EQ(surface->GetLuma(3, 3), other->GetLuma(3, 3));
}

TEST_P(Bayer, CopiesAndAssignmentsTakeBothQuads) {
  Frame one(64, 1), two(64, 2);
  CDrawBayer left(GetParam()), right(GetParam());
  left.SetCanvas(one.canvas(), 1, 2, 0);
  right.SetCanvas(two.canvas(), 1, 2, 0);
  setBytes(right, true, 11, 12, 13);
  setBytes(right, false, 14, 15, 16);
  CDrawBayer copy(right);
  CDrawBayer& result = (left = right);
  EXPECT_EQ(&result, &left);
  for (CDrawBayer* const taken : {&copy, &left}) {
    EXPECT_EQ(BayerFields::rgba(*taken, true)[1], 12);
    EXPECT_EQ(BayerFields::rgba(*taken, false)[2], 16);
  }
  EXPECT_TRUE(one.untouched());
}

TEST(BayerBytes, AnOddColumnLeavesAGreenThatIsMeantToBeNeitherColour) {
  Frame frame(16);
  frame.fill(0);
  CDrawBayer surface(ptBayerRGGB);
  surface.SetCanvas(frame.canvas(), 2, 4, 0);
  setBytes(surface, true, 0xAB, 0xCD, 0xEF);
  surface.PutPixel(0, 0, true);
  EXPECT_EQ(frame[0], 0xAB);
  surface.PutPixel(1, 0, true);
  EXPECT_EQ(frame[1], 0x0C);
  EXPECT_EQ(frame[2], 0xB0);
  double r = 0, g = 0, b = 0, a = 0;
  surface.GetPixelRGBA(0, 0, r, g, b, a);
  EXPECT_EQ(r, 0xAB / 255.0);
  EXPECT_EQ(g, 0xCB / 255.0);
}

TEST(BayerBytes, AnOddColumnOfAnOddRowTakesItsOwnPair) {
  Frame frame(16);
  frame.fill(0);
  CDrawBayer surface(ptBayerRGGB);
  surface.SetCanvas(frame.canvas(), 2, 4, 8);
  setBytes(surface, true, 0xAB, 0xCD, 0xEF);
  surface.PutPixel(1, 1, true);
  EXPECT_EQ(frame[9], 0x0E);   // the top of blue
  EXPECT_EQ(frame[10], 0xD0);  // the foot of green
}

TEST_P(Bayer, RunsLeftOfTheCanvasWherePixelsOverlapKeepTheOrderOfTheirPixels) {
  for (const auto& [from, to] : {std::pair(9, -9), std::pair(-9, 9), std::pair(-2, -9),
                                 std::pair(-9, -2), std::pair(0, -1), std::pair(-1, 0)}) {
    Frame run(64, 5), byPixel(64, 5);
    CDrawBayer surface(GetParam());
    surface.SetColorRGBA(0.9, 0.6, 0.3, 1.0, true);
    surface.SetCanvas(run.canvas(), 1, 10, 32);
    surface.Line(from, 0, to, 0);
    surface.SetCanvas(byPixel.canvas(), 1, 10, 32);
    for (int x = from; x != to; x += to > from ? 1 : -1)
      surface.PutPixel(x, 0, true);
    surface.PutPixel(to, 0, true);
    EXPECT_TRUE(run.all() == byPixel.all()) << from << " to " << to;
  }
}

TEST(BayerBytes, AnyOtherTypeIsPlottedAndReadAsBggr) {
  for (const int type : {-1, 0, 1, 20, 29, 10000}) {
    Frame one(128, 5), two(128, 5);
    CDrawBayer odd(static_cast<pixelType>(type)), plain(ptBayerBGGR);
    odd.SetCanvas(one.canvas(), 4, 8, 32);
    plain.SetCanvas(two.canvas(), 4, 8, 32);
    for (CDrawBayer* const surface : {&odd, &plain}) {
      surface->SetColorRGBA(0.9, 0.6, 0.3, 1.0, true);
      for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 8; x += 3)
          surface->PutPixel(x, y, true);
      }
    }
    ASSERT_TRUE(one.all() == two.all());
    double got[4] = {}, want[4] = {};
    odd.GetPixelRGBA(3, 2, got[0], got[1], got[2], got[3]);
    plain.GetPixelRGBA(3, 2, want[0], want[1], want[2], want[3]);
    for (int i = 0; i < 4; ++i)
      EXPECT_EQ(got[i], want[i]);
    EXPECT_EQ(odd.GetLuma(3, 2), plain.GetLuma(3, 2));
  }
}

class Elsewhere final : public CDrawBayer {
 public:
  Elsewhere() : NKDraw(ptBayerRGGB), CDrawBayer(ptBayerRGGB) {}
  void* GetPixel(int x, int y) override {
    seen = {x, y};
    return bytes + 4;
  }
  std::pair<int, int> seen;
  std::uint8_t bytes[16] = {1, 2, 3, 4, 50, 60, 70, 80, 90, 100, 110, 120, 130, 140, 150, 160};
};

TEST(BayerBytes, TheVirtualGetPixelGivesTheAddressOfAPlotAndOfACell) {
  Elsewhere surface;
  surface.SetCanvas(nullptr, 4, 4, 5);
  double r = 0, g = 0, b = 0, a = 0;
  surface.GetPixelRGBA(7, 9, r, g, b, a);
  EXPECT_EQ(surface.seen, std::pair(6, 8));
  EXPECT_EQ(r, 50 / 255.0);
  EXPECT_EQ(g, (((60 & 15) << 4) | (70 >> 4)) / 255.0);
  EXPECT_EQ(b, (((110 & 15) << 4) | (120 >> 4)) / 255.0);
  EXPECT_EQ(surface.GetLuma(7, 9), (50 / 255.0 + 60 / 255.0 + 110 / 255.0) / 3.0);
  EXPECT_EQ(surface.seen, std::pair(6, 9));
  surface.PutPixel(7, 9, true);
  EXPECT_EQ(surface.seen, std::pair(7, 9));
  EXPECT_EQ(surface.bytes[4], 0x0F);
  EXPECT_EQ(surface.bytes[5], 0xF0);
}

TEST_P(Bayer, FfmpegReadsTheSamplesThatWeRead) {
  constexpr int kWidth = 46, kHeight = 4;  // at so few rows the cells are not interpolated
  constexpr int kPitch = kWidth * 3 / 2;
  Frame frame(kPitch * kHeight, 23);
  const Surface surface = makeSurface(GetParam(), kWidth, kHeight, 0, frame.canvas());
  surface->SetColorRGBA(0.9, 0.6, 0.3, 1.0, true);
  surface->Line(0, 0, kWidth - 1, kHeight - 1);
  surface->LineVert(7, 0, 3);
  // The 12 bits of a sample become the top ones of 16.
  Bytes samples;
  for (int i = 0; i < kPitch * kHeight; i += 3) {
    const std::uint8_t* const triple = frame.data() + i;
    for (const int sample : {triple[0] << 4 | triple[1] >> 4, (triple[1] & 15) << 8 | triple[2]}) {
      samples.push_back(static_cast<std::uint8_t>(sample << 4));
      samples.push_back(static_cast<std::uint8_t>(sample >> 4));
    }
  }
  const std::string cell = cellOf(GetParam());
  std::string format = "bayer_" + cell + "16le";
  for (char& letter : format)
    letter = static_cast<char>(std::tolower(letter));
  const auto rgb = decodedWords(samples, format, kWidth, kHeight, "rgb48le");
  ASSERT_EQ(rgb.size(), static_cast<std::size_t>(3 * kWidth * kHeight));
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      double r = 0, g = 0, b = 0, a = 0;
      surface->GetPixelRGBA(x, y, r, g, b, a);
      const auto own = static_cast<std::size_t>(3 * (y * kWidth + x));
      // Where the first row of this cell has its green.
      const int greenX = (x & ~1) + (cell[0] == 'G' ? 0 : 1);
      const auto green = static_cast<std::size_t>(3 * ((y & ~1) * kWidth + greenX));
      ASSERT_EQ(r, (rgb[own] >> 8) / 255.0) << x << "," << y;
      ASSERT_EQ(g, (rgb[green + 1] >> 8) / 255.0) << x << "," << y;
      ASSERT_EQ(b, (rgb[own + 2] >> 8) / 255.0) << x << "," << y;
    }
  }
}

}  // namespace
