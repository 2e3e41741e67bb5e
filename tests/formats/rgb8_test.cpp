// SPDX-License-Identifier: BSD-2-Clause
//
// 8-bit RGB: addresses, the blend of whole words, the additive step, and the direct reads.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

using Bytes = std::vector<std::uint8_t>;

Bytes firstBytes(Frame& frame, std::size_t count) {
  return {frame.data(), frame.data() + count};
}

constexpr pixelType kRgbLayouts[] = {ptRGBA32, ptARGB32, ptBGRA32, ptABGR32, ptRGB24, ptBGR24};

TEST(Rgb8, RedGoesToItsPlaceInEachOrder) {
  const struct {
    pixelType type;
    Bytes bytes;
  } kRows[] = {
      {ptRGBA32, {255, 0, 0, 255}}, {ptARGB32, {255, 255, 0, 0}}, {ptBGRA32, {0, 0, 255, 255}},
      {ptABGR32, {255, 0, 0, 255}}, {ptRGB24, {255, 0, 0, 7}},    {ptBGR24, {0, 0, 255, 7}},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(layoutName(row.type));
    Frame frame(64);
    frame.fill(7);
    const Surface surface = makeSurface(row.type, 4, 4, 0, frame.canvas());
    surface->SetColorRGBA(1.0, 0.0, 0.0, 1.0, true);
    EXPECT_EQ(surface->PutPixel(0, 0, true), 0U);
    EXPECT_EQ(firstBytes(frame, 4), row.bytes);
    EXPECT_TRUE(frame.guardsIntact());
  }
}

TEST(Rgb8, TheBackgroundOf24BitsIsFourBytesAtFourTimesX) {
  for (const pixelType type : {ptRGB24, ptBGR24}) {
    Frame frame(64);
    frame.fill(7);
    const Surface surface = makeSurface(type, 4, 4, 0, frame.canvas());
    surface->SetColorRGBA(1.0, 0.5, 0.0, 1.0, false);
    EXPECT_EQ(surface->PutPixel(1, 0, false), 0U);
    const Bytes want = type == ptRGB24 ? Bytes{7, 7, 7, 7, 255, 127, 0, 0, 7}
                                       : Bytes{7, 7, 7, 7, 0, 127, 255, 0, 7};
    EXPECT_EQ(firstBytes(frame, 9), want);
  }
}

TEST(Rgb8, BlendAndAdditiveOn24BitsWorkAtFourTimesX) {
  for (const bool additive : {false, true}) {
    Frame frame(64);
    frame.fill(100);
    const Surface surface = makeSurface(ptRGB24, 4, 4, 0, frame.canvas());
    surface->SetTransparency(1.0, true);
    surface->SetTransparency(!additive);
    surface->SetAlphaAdditive(additive);
    surface->PutPixel(1, 0, true);  // the first colour: all 0xFF
    const std::vector<std::ptrdiff_t> want = {4, 5, 6, 7};
    EXPECT_EQ(frame.changed(), want);
    // 255/255 * 255 + 100 wraps to 99; the blend stores the colour.
    const std::uint8_t channel = additive ? 99 : 255;
    EXPECT_EQ(firstBytes(frame, 9),
              (Bytes{100, 100, 100, 100, channel, channel, channel, 255, 100}));
  }
}

TEST(Rgb8, APitchOf4102SlipsRowOneToOffset4100) {
  for (const pixelType type : {ptRGBA32, ptARGB32, ptBGRA32, ptABGR32}) {
    Frame frame(3 * 4102);
    const Surface surface = makeSurface(type, 1000, 3, 4102, frame.canvas());
    EXPECT_EQ(surface->Pitch(), 4102U);
    EXPECT_EQ(surface->GetPixel(0, 1), frame.canvas() + 4100);
    EXPECT_EQ(surface->GetPixel(0, 2), frame.canvas() + 8204);
    EXPECT_EQ(surface->GetPixel(-1, 1), frame.canvas() + 4096);
    surface->SetColorRGBA(0.0, 0.0, 0.0, 0.0, true);
    frame.bytes()[4100] = frame.bytes()[4103] = 1;
    frame.remember();
    surface->PutPixel(0, 1, true);
    EXPECT_EQ(frame.changed().front(), 4100);
    EXPECT_EQ(frame.changed().back(), 4103);
  }
}

TEST(Rgb8, ANegativeXWritesInFrontAndReturnsZeroANegativeYIsRefused) {
  for (const pixelType type : kRgbLayouts) {
    SCOPED_TRACE(layoutName(type));
    Frame frame(64);
    const Surface surface = makeSurface(type, 4, 4, 0, frame.canvas());
    EXPECT_EQ(surface->PutPixel(0, -1, true), 0xFFFFFFFF);
    EXPECT_EQ(surface->PutPixel(0, -1, false), 0xFFFFFFFF);
    EXPECT_TRUE(frame.untouched());
    const std::ptrdiff_t bytes = isFourByteRgb(type) ? 4 : 3;
    for (std::ptrdiff_t i = -4; i < 0; ++i)
      frame[i] = 1;
    frame.remember();
    EXPECT_EQ(surface->PutPixel(-1, 0, true), 0U);
    EXPECT_EQ(frame.changed().front(), -bytes);
    EXPECT_EQ(frame.changed().back(), -1);
  }
}

TEST(Rgb8, WithoutACanvasPlottingIsRefused) {
  for (const pixelType type : kRgbLayouts) {
    const Surface surface = makeSurface(type, 4, 4, 0, nullptr);
    for (const bool additive : {false, true}) {
      surface->SetAlphaAdditive(additive);
      EXPECT_EQ(surface->PutPixel(0, 0, true), 0xFFFFFFFF);
      EXPECT_EQ(surface->PutPixel(0, 0, false), 0xFFFFFFFF);
    }
  }
}

TEST(Rgb8, NeitherXNorTheHeightIsTested) {
  Frame frame(4 * 4 * 4, 1, 256);
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, frame.canvas());
  EXPECT_EQ(surface->PutPixel(10, 6, true), 0U);
  EXPECT_EQ(frame.changed().front() / 4, 6 * 4 + 10);
}

TEST(Rgb8, AnAlphaOfZeroAndASwitchThatIsOffActAlike) {
  for (const bool on : {false, true}) {
    for (const bool ink : {false, true}) {
      Frame frame(64);
      frame.fill(90);
      const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, frame.canvas());
      surface->SetColorRGBA(0.2, 0.4, 0.6, 0.8, ink);
      surface->SetTransparency(on ? 0.0 : 0.5, ink);
      surface->SetTransparency(on);
      surface->PutPixel(0, 0, ink);
      EXPECT_EQ(firstBytes(frame, 4), (Bytes{51, 102, 153, 204}));
    }
  }
}

TEST(Rgb8, ABlendByOneStoresTheColour) {
  Random random(37);
  for (int i = 0; i < 500; ++i) {
    Frame frame(16, random.word());
    const Surface surface = makeSurface(ptABGR32, 1, 1, 0, frame.canvas());
    surface->SetColorRGBA(random.real(0, 1), random.real(0, 1), random.real(0, 1),
                          random.real(0, 1), true);
    surface->SetTransparency(7.0, true);
    surface->SetTransparency(true);
    surface->PutPixel(0, 0, true);
    ASSERT_EQ(wordAt(frame.data()), wordAt(PixelFields::foreground(*surface)));
  }
}

TEST(Rgb8, ABlendIsOneOf32BitNumbersAndCarriesBetweenChannels) {
  Frame frame(16);
  const Surface surface = makeSurface(ptRGBA32, 1, 1, 0, frame.canvas());
  surface->SetTransparency(0.5, true);
  surface->SetTransparency(0.25, false);
  surface->SetTransparency(true);
  setWord(frame.data(), 0x00000100);
  setWord(PixelFields::foreground(*surface), 0x00000000);
  surface->PutPixel(0, 0, true);
  EXPECT_EQ(wordAt(frame.data()), 0x80U);  // a channel of 0 in both has become 128
  setWord(frame.data(), 0xFFFFFFFF);
  setWord(PixelFields::background(*surface), 0x01020304);
  surface->PutPixel(0, 0, false);
  EXPECT_EQ(wordAt(frame.data()),
            static_cast<std::uint32_t>((1.0 - 0.25) * 4294967295.0 + 16909060.0 * 0.25));
}

TEST(Rgb8, TheAdditiveStepWrapsAndSetsByteThree) {
  Frame frame(16);
  const Surface surface = makeSurface(ptRGBA32, 1, 1, 0, frame.canvas());
  const std::uint8_t colour[] = {200, 200, 200, 255};
  std::copy(std::begin(colour), std::end(colour), PixelFields::foreground(*surface));
  frame[0] = frame[1] = frame[2] = 100;
  frame[3] = 0;
  surface->SetAlphaAdditive(true);
  EXPECT_EQ(surface->PutPixel(0, 0, true), 0U);
  EXPECT_EQ(firstBytes(frame, 4), (Bytes{44, 44, 44, 255}));
}

TEST(Rgb8, TheAdditiveStepTakesByteThreeAsItsWeightInEveryOrder) {
  for (int weight = 0; weight < 256; ++weight) {
    for (const int channel : {0, 1, 77, 254, 255}) {
      for (const int old : {0, 1, 128, 255}) {
        Frame frame(16);
        const Surface surface = makeSurface(ptARGB32, 1, 1, 0, frame.canvas());
        for (int i = 0; i < 3; ++i) {
          PixelFields::foreground(*surface)[i] = static_cast<std::uint8_t>(channel + i);
          frame[i] = static_cast<std::uint8_t>(old);
        }
        PixelFields::foreground(*surface)[3] = static_cast<std::uint8_t>(weight);
        surface->SetAlphaAdditive(true);
        surface->PutPixel(0, 0, true);
        for (int i = 0; i < 3; ++i) {
          const double sum = (weight / 255.0) * static_cast<std::uint8_t>(channel + i) + old;
          ASSERT_EQ(frame[i], static_cast<std::uint8_t>(static_cast<int>(sum)));
        }
        ASSERT_EQ(frame[3], 255);
      }
    }
  }
}

TEST(Rgb8, AdditiveWinsOverTransparencyInTheForegroundOnly) {
  for (const bool ink : {true, false}) {
    Frame frame(16);
    frame.fill(10);
    const Surface surface = makeSurface(ptRGBA32, 1, 1, 0, frame.canvas());
    surface->SetColorRGBA(20 / 255.0, 20 / 255.0, 20 / 255.0, 1.0, ink);
    surface->SetTransparency(0.5, ink);
    surface->SetTransparency(true);
    surface->SetAlphaAdditive(true);
    const std::uint32_t colour =
        wordAt(ink ? PixelFields::foreground(*surface) : PixelFields::background(*surface));
    surface->PutPixel(0, 0, ink);
    const double mixed = (1.0 - 0.5) * 0x0A0A0A0A + colour * 0.5;
    EXPECT_EQ(wordAt(frame.data()), ink ? 0xFF1E1E1E : static_cast<std::uint32_t>(mixed));
  }
}

/// Letters in memory order.
std::string orderOf(int type) {
  switch (type) {
    case 2:
      return "ARGB";
    case 3:
      return "BGRA";
    case 4:
      return "ABGR";
    case 5:
      return "RGB";
    case 6:
      return "BGR";
    default:
      return "RGBA";
  }
}

TEST(Rgb8, PixelsReadBackAsTheirBytesOver255) {
  Random random(41);
  Frame frame(4096);
  for (const pixelType type : kRgbLayouts) {
    SCOPED_TRACE(layoutName(type));
    const Surface surface = makeSurface(type, 20, 6, 91, frame.canvas());
    const std::string order = orderOf(type);
    for (int y = 0; y < 6; ++y) {
      for (int x = 0; x < 20; ++x) {
        const auto* const at = static_cast<const std::uint8_t*>(surface->GetPixel(x, y));
        const auto channel = [&](char letter) {
          const std::size_t place = order.find(letter);
          return place == std::string::npos ? 1.0 : at[place] / 255.0;
        };
        double r = 9, g = 9, b = 9, a = 9;
        ASSERT_EQ(surface->GetPixelRGBA(x, y, r, g, b, a), 0U);
        ASSERT_EQ(r, channel('R'));
        ASSERT_EQ(g, channel('G'));
        ASSERT_EQ(b, channel('B'));
        ASSERT_EQ(a, channel('A'));
      }
    }
  }
}

// A 32-bit class reads four bytes whatever its type says, a 24-bit one three.
TEST(Rgb8, DirectYCbCrReadsGoByTheirClassForAnyType) {
  Random random(43);
  Frame frame(256);
  for (int type = -1; type < 12; ++type) {
    CDrawRGBA32 four(static_cast<pixelType>(type));
    CDrawRGB24 three(static_cast<pixelType>(type));
    for (NKDraw* const surface : {static_cast<NKDraw*>(&four), static_cast<NKDraw*>(&three)}) {
      SCOPED_TRACE(testing::Message() << type << (surface == &four ? " four" : " three"));
      surface->SetCanvas(frame.canvas(), 2, 8, 0);
      const bool isFour = surface == &four;
      const std::string order =
          isFour ? (type >= 2 && type <= 4 ? orderOf(type) : "RGBA") : (type == 6 ? "BGR" : "RGB");
      for (int mode = 0; mode <= 9; ++mode) {
        surface->SetYCbCrMode(static_cast<NKPixel::cmYCbCr>(mode));
        for (int x = 0; x < 8; ++x) {
          const auto* const at = static_cast<const std::uint8_t*>(surface->GetPixel(x, 1));
          const auto channel = [&](char letter) { return at[order.find(letter)] / 255.0; };
          double want[] = {7.0, 7.0, 7.0}, unused = 0.0;
          surface->RGBToYCbCr(channel('R'), channel('G'), channel('B'), 0.0, want[0], want[1],
                              want[2], unused);
          double y = 7.0, cb = 7.0, cr = 7.0, a = 7.0;
          ASSERT_EQ(surface->GetPixelYCbCr(x, 1, y, cb, cr, a), 0U);
          ASSERT_EQ(y, want[0]);
          ASSERT_EQ(cb, want[1]);
          ASSERT_EQ(cr, want[2]);
          ASSERT_EQ(a, isFour ? channel('A') : 1.0);
        }
      }
    }
  }
}

template <class Base>
class WatchesReads final : public Base {
 public:
  explicit WatchesReads(pixelType type) : NKDraw(type), Base(type) {}
  void* GetPixel(int x, int y) override {
    log += 'p';
    return Base::GetPixel(x, y);
  }
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
    log += 'r';
    return Base::GetPixelRGBA(x, y, r, g, b, a);
  }
  std::uint32_t RGBToYCbCr(double r, double g, double b, double a, double& y, double& cb,
                           double& cr, double& aOut) override {
    log += 'm';
    Base::RGBToYCbCr(r, g, b, a, y, cb, cr, aOut);
    return 321;
  }
  std::string log;
};

template <class Base>
void expectReadsThroughTable(pixelType type) {
  std::uint8_t bytes[4] = {1, 2, 3, 4};
  WatchesReads<Base> surface(type);
  surface.SetCanvas(reinterpret_cast<char*>(bytes), 1, 1, 0);
  double c1 = 0, c2 = 0, c3 = 0, a = 0;
  EXPECT_EQ(surface.GetPixelYCbCr(0, 0, c1, c2, c3, a), 0U);
  EXPECT_EQ(surface.log, "pm");  // directly, not through GetPixelRGBA
  surface.log.clear();
  EXPECT_EQ(surface.GetPixelHSV(0, 0, c1, c2, c3, a), 0U);
  EXPECT_EQ(surface.log, "rp");
}

TEST(Rgb8, ReadsCallTheVirtualOperationsTheyStandOn) {
  expectReadsThroughTable<CDrawRGBA32>(ptBGRA32);
  expectReadsThroughTable<CDrawRGB24>(ptRGB24);
}

TEST(Rgb8, AnArgbPixelOf80_10_20_30ReadsItsAlphaAsByteZero) {
  std::uint8_t bytes[] = {0x80, 0x10, 0x20, 0x30};
  const Surface surface = makeSurface(ptARGB32, 1, 1, 0, reinterpret_cast<char*>(bytes));
  double y = 0, cb = 0, cr = 0, a = 0;
  surface->GetPixelYCbCr(0, 0, y, cb, cr, a);
  EXPECT_EQ(a, 128 / 255.0);
}

TEST(Rgb8, HsvReadsOfGreysHaveTheHueMinusOne) {
  for (const pixelType type : kRgbLayouts) {
    std::uint8_t bytes[] = {60, 60, 60, 60};
    const Surface surface = makeSurface(type, 1, 1, 0, reinterpret_cast<char*>(bytes));
    double h = 9, s = 9, v = 9, a = 9;
    EXPECT_EQ(surface->GetPixelHSV(0, 0, h, s, v, a), 0U);
    EXPECT_EQ(h, -1.0);
    EXPECT_EQ(s, 0.0);
    EXPECT_EQ(v, 60 / 255.0);
    EXPECT_EQ(a, isFourByteRgb(type) ? 60 / 255.0 : 1.0);
  }
}

TEST(Rgb8, HsvReadsFollowTheStepsOfTheConversion) {
  Frame frame(4000);
  for (const pixelType type : kRgbLayouts) {
    const Surface surface = makeSurface(type, 900, 1, 0, frame.canvas());
    for (int x = 0; x < 900; ++x) {
      double r = 0, g = 0, b = 0, a = 0;
      surface->GetPixelRGBA(x, 0, r, g, b, a);
      double want[] = {0, 0, 0}, unused = 0;
      surface->RGBToHSV(r, g, b, a, want[0], want[1], want[2], unused);
      double h = 9, s = 9, v = 9, alpha = 9;
      surface->GetPixelHSV(x, 0, h, s, v, alpha);
      ASSERT_EQ(h, want[0]);
      ASSERT_EQ(s, want[1]);
      ASSERT_EQ(v, want[2]);
      ASSERT_EQ(alpha, a);
    }
  }
}

}  // namespace
