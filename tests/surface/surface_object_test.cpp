// SPDX-License-Identifier: BSD-2-Clause
//
// The surface object: its initial state, and how a canvas is bound.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

using namespace nkdraw::test;

TEST(SurfaceObject, ANewOneHasItsDocumentedFields) {
  NKPixel pixel;
  EXPECT_EQ(PixelFields::kind(pixel), 1);
  EXPECT_EQ(PixelFields::mode(pixel), 1);
  EXPECT_EQ(pixel.Width(), 0U);
  EXPECT_EQ(pixel.Height(), 0U);
  EXPECT_EQ(pixel.Pitch(), 0U);
  EXPECT_FALSE(PixelFields::flippedOf(pixel));
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(PixelFields::foreground(pixel)[i], 0xFF);
    EXPECT_EQ(PixelFields::background(pixel)[i], 0);
  }
  EXPECT_EQ(PixelFields::alpha(pixel, true), 0.0);
  EXPECT_EQ(PixelFields::alpha(pixel, false), 0.0);
  EXPECT_FALSE(pixel.GetTransparency());
  EXPECT_FALSE(pixel.GetAlphaAdditive());
  EXPECT_EQ(pixel.LastChange(0xFFFFFFFF), 0U);
  EXPECT_FALSE(PixelFields::antialiased(pixel));
  EXPECT_FALSE(PixelFields::spare(pixel));
  EXPECT_EQ(pixel.Refs(), 1);
  EXPECT_NE(PixelFields::event(pixel), nullptr);
  EXPECT_EQ(pixel.GetCanvas(), nullptr);
  EXPECT_EQ(pixel.GetPitch(), 0);
  EXPECT_EQ(pixel.BufferLength(), 0U);
}

TEST(SurfaceObject, TheConstructorsOfTheClassesStoreTheirTypes) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    const Surface surface = makeSurface(type, 8, 8, 0, nullptr);
    EXPECT_EQ(surface->PixelType(), presentedType(type));
  }
  // The RGB classes do not test what they get.
  for (const int type : {-1, 0, 1, 6, 14, 38, 10000}) {
    CDrawRGBA32 four(static_cast<pixelType>(type));
    CDrawRGB24 three(static_cast<pixelType>(type));
    EXPECT_EQ(four.PixelType(), type);
    EXPECT_EQ(three.PixelType(), type);
  }
  // The YCbCr ones normalise it.
  for (int type = -1; type < 40; ++type) {
    CDrawYCbCrYUYV pair(static_cast<pixelType>(type));
    EXPECT_EQ(pair.PixelType(), type == 10 || type == 12 || type == 13 ? type : 11) << type;
    CDrawYCbCr10 group(static_cast<pixelType>(type));
    EXPECT_EQ(group.PixelType(), type == 15 || type == 16 ? type : 14) << type;
  }
}

TEST(SurfaceObject, TheMatrixStartsAsBt709WhereComponentsAreKeptWholeAndIn8Bit422) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    withClassOf(type, [type]<class Class>(Class*) {
      Class surface(type);
      NKPixel::cmYCbCr mode{};
      EXPECT_EQ(surface.GetYCbCrMode(mode), 0U);
      const bool bt709 = (type >= ptYUYV && type <= ptVYUY) || isDeepYCbCr(type) || type == ptUV8 ||
                         type == ptUV16;
      EXPECT_EQ(mode, bt709 ? 3 : 1);
    });
  }
}

/// The bytes a pixel that SetCanvas of NKPixel requires of the pitch at least.
std::uint32_t minimumBytes(int type) {
  switch (type) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 10001:
      return 4;
    case 5:
    case 6:
      return 3;
    case 31:
    case 37:
      return 6;
    case 32:
    case 38:
      return 8;
    case 10000:
      return 2;
    default:
      return 0;
  }
}

TEST(SurfaceObject, SetCanvasRaisesThePitchToTheMinimumOfTheTypeField) {
  NKPixel pixel;
  std::vector<int> types = {-1, 0, 9999, 10000, 10001, 10002, INT_MAX, INT_MIN};
  for (int type = 1; type < 60; ++type)
    types.push_back(type);
  for (const int type : types) {
    for (const int width : {0, 1, 7, 100, -100, 1920}) {
      for (const int pitch : {1, 50, 199, 200, 300, 400, 599, 600, 800, 801, 100000, -500, -1}) {
        SCOPED_TRACE(testing::Message() << type << " " << width << " " << pitch);
        PixelFields::kind(pixel) = static_cast<pixelType>(type);
        EXPECT_EQ(pixel.SetCanvas(nullptr, 10, width, pitch), 0U);
        const auto columns = static_cast<std::uint32_t>(std::abs(width));
        const auto given = static_cast<std::uint32_t>(std::abs(pitch));
        EXPECT_EQ(pixel.Pitch(), std::max(given, columns * minimumBytes(type)));
        EXPECT_EQ(pixel.Width(), columns);
      }
    }
  }
}

TEST(SurfaceObject, APitchOfZeroOnThePlainBaseKeepsTheOldPitchAboveTheMinimum) {
  NKPixel pixel;
  pixel.SetCanvas(nullptr, 10, 100, 1000);
  pixel.SetCanvas(nullptr, 10, 50, 0);
  EXPECT_EQ(pixel.Pitch(), 1000U);
  pixel.SetCanvas(nullptr, 10, 300, 0);
  EXPECT_EQ(pixel.Pitch(), 1200U);
}

class FixedPitch final : public CDrawRGBA32 {
 public:
  FixedPitch() : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32) {}
  int GetPitch() override {
    seen = width;
    return answer;
  }
  int answer = -9000;
  std::uint32_t seen = 0;
};

TEST(SurfaceObject, APitchOfZeroAsksTheTableAfterTheNewWidthIsStored) {
  FixedPitch surface;
  surface.SetCanvas(nullptr, 10, 77, 0);
  EXPECT_EQ(surface.seen, 77U);
  EXPECT_EQ(surface.Pitch(), 9000U);  // without its sign
  surface.answer = 12;
  surface.SetCanvas(nullptr, 10, 77, 0);
  EXPECT_EQ(surface.Pitch(), 308U);
  surface.seen = 0;
  surface.SetCanvas(nullptr, 10, 77, 400);
  EXPECT_EQ(surface.seen, 0U);
}

TEST(SurfaceObject, ANegativeHeightIsMarkedAndRowsStillRunDownward) {
  Frame frame(1920UL * 4 * 3);
  const Surface surface = makeSurface(ptRGBA32, 1920, -1080, 0, frame.canvas());
  EXPECT_EQ(surface->Height(), 1080U);
  EXPECT_TRUE(PixelFields::flippedOf(*surface));
  EXPECT_EQ(surface->Pitch(), 7680U);
  EXPECT_EQ(surface->GetPixel(3, 2), frame.canvas() + 2 * 7680 + 12);
  surface->SetCanvas(frame.canvas(), 1080, 1920, 0);
  EXPECT_FALSE(PixelFields::flippedOf(*surface));
}

TEST(SurfaceObject, ASmallPitchIsRaisedAndANegativeOneTurned) {
  const Surface surface = makeSurface(ptRGBA32, 100, 10, 50, nullptr);
  EXPECT_EQ(surface->Pitch(), 400U);
  surface->SetCanvas(nullptr, 10, 100, -500);
  EXPECT_EQ(surface->Pitch(), 500U);
  surface->SetCanvas(nullptr, 10, -100, 0);
  EXPECT_EQ(surface->Width(), 100U);
  EXPECT_EQ(surface->Pitch(), 400U);
}

TEST(SurfaceObject, RebindingKeepsColoursAndSwitches) {
  const Surface surface = makeSurface(ptBGRA32, 10, 10, 0, nullptr);
  surface->SetColorRGBA(0.2, 0.4, 0.6, 0.8, true);
  surface->SetColorRGBA(0.9, 0.7, 0.5, 0.3, false);
  surface->SetTransparency(0.25, true);
  surface->SetTransparency(0.75, false);
  surface->SetTransparency(true);
  surface->SetAlphaAdditive(true);
  surface->SetYCbCrMode(NKPixel::mode2020Full);
  const std::vector<std::uint8_t> before(PixelFields::foreground(*surface),
                                         PixelFields::foreground(*surface) + 4);
  char byte = 0;
  surface->SetCanvas(&byte, 20, 2000, 0);
  EXPECT_TRUE(std::equal(before.begin(), before.end(), PixelFields::foreground(*surface)));
  EXPECT_EQ(PixelFields::alpha(*surface, true), 0.25);
  EXPECT_EQ(PixelFields::alpha(*surface, false), 0.75);
  EXPECT_TRUE(surface->GetTransparency());
  EXPECT_TRUE(surface->GetAlphaAdditive());
  EXPECT_EQ(PixelFields::mode(*surface), 6);
  EXPECT_EQ(byte, 0);
}

TEST(SurfaceObject, BufferLengthWrapsAt32Bits) {
  NKPixel pixel;
  pixel.SetCanvas(nullptr, 70000, 1, 70000);
  EXPECT_EQ(pixel.BufferLength(), static_cast<std::uint32_t>(70000ULL * 70000ULL));
}

TEST(SurfaceObject, PercentTakesAFractionAndTruncates) {
  NKPixel pixel;
  pixel.SetCanvas(nullptr, 1080, 1919, 0);
  EXPECT_EQ(pixel.PercentX(0.5), 959);
  EXPECT_EQ(pixel.PercentY(0.5), 540);
  EXPECT_EQ(pixel.PercentX(1.0), 1919);
  EXPECT_EQ(pixel.PercentX(0.0), 0);
  EXPECT_EQ(pixel.PercentX(-0.5), -959);
  EXPECT_EQ(pixel.PercentY(2.5), 2700);
  EXPECT_EQ(pixel.PercentY(50.0), 54000);  // not divided by 100
  EXPECT_EQ(pixel.PercentX(1e300), INT_MIN);
  EXPECT_EQ(pixel.PercentY(-1e300), INT_MIN);
  EXPECT_EQ(pixel.PercentY(std::nan("")), INT_MIN);
  Random random(3);
  for (int i = 0; i < 1000; ++i) {
    const double fraction = random.real(-3.0, 3.0);
    EXPECT_EQ(pixel.PercentX(fraction), static_cast<int>(1919.0 * fraction));
    EXPECT_EQ(pixel.PercentY(fraction), static_cast<int>(1080.0 * fraction));
  }
}

TEST(SurfaceObject, LastChangeReadsWithAllBitsSetAndWritesOtherwise) {
  NKPixel pixel;
  EXPECT_EQ(pixel.LastChange(0xFFFFFFFF), 0U);
  EXPECT_EQ(pixel.LastChange(7), 7U);
  EXPECT_EQ(pixel.LastChange(0xFFFFFFFF), 7U);
  EXPECT_EQ(pixel.LastChange(0), 0U);
  EXPECT_EQ(pixel.LastChange(0xFFFFFFFE), 0xFFFFFFFEU);
  EXPECT_EQ(pixel.LastChange(0xFFFFFFFF), 0xFFFFFFFEU);
}

TEST(SurfaceObject, PitchAndGetPitchAreTwoQuestions) {
  const Surface surface = makeSurface(ptRGB24, 100, 10, 777, nullptr);
  EXPECT_EQ(surface->Pitch(), 777U);
  EXPECT_EQ(surface->GetPitch(), 300);
}

}  // namespace
