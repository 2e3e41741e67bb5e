// SPDX-License-Identifier: BSD-2-Clause
//
// PutPixel of every layout against the model, on padded, odd and slipping pitches and with every
// state of the switches.
#include <tests/support/model.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

namespace {

using namespace nkdraw::test;

class Plotting : public testing::TestWithParam<pixelType> {};

INSTANTIATE_TEST_SUITE_P(AllLayouts, Plotting, testing::ValuesIn(kLayouts),
                         [](const auto& each) { return layoutName(each.param); });

void setRandomState(NKDraw& surface, Random& random) {
  for (const bool ink : {true, false}) {
    for (int i = 0; i < 4; ++i)
      setDeepWord(surface, ink, i, random.word());
    surface.SetColorRGBA(random.real(0, 1), random.real(0, 1), random.real(0, 1), random.real(0, 1),
                         ink);
    surface.SetTransparency(random.between(0, 3) == 0 ? 0.0 : random.real(0, 1), ink);
  }
  surface.SetTransparency(random.flag());
  surface.SetAlphaAdditive(random.between(0, 2) == 0);
}

/// What GetPixel steps by where each pixel has its own whole words or bytes; else 0.
int bytesOfDeepPixel(pixelType type) {
  switch (type) {
    case ptRGB48:
    case ptRGBHalf48:
    case ptYCbCr48:
      return 6;
    case ptARGB64:
    case ptYCbCrA64:
      return 8;
    case ptUV8:
      return 2;
    case ptUV16:
      return 4;
    default:
      return 0;
  }
}

TEST_P(Plotting, WritesWhatTheModelWritesAndNothingElse) {
  const pixelType type = GetParam();
  Random random(static_cast<std::uint32_t>(type) + 100);
  constexpr std::size_t kSlack = 8192;
  for (int round = 0; round < 60; ++round) {
    const int width = random.between(1, 60), height = random.between(1, 12);
    const int pitch = random.flag() ? 0 : 240 + random.between(0, 99);
    Frame got(static_cast<std::size_t>(height) * 400, 5, kSlack);
    Frame want(static_cast<std::size_t>(height) * 400, 5, kSlack);
    const Surface surface = makeSurface(type, width, height, pitch, got.canvas());
    for (int i = 0; i < 200; ++i) {
      if (i % 10 == 0)
        setRandomState(*surface, random);
      Model model;
      model.take(*surface, want.data());
      const int x = random.between(-20, width + 20);
      const int y = random.between(takesRowsAbove(type) ? -3 : 0, height + 2);
      const bool ink = random.flag();
      ASSERT_EQ(surface->PutPixel(x, y, ink), model.put(x, y, ink));
      ASSERT_TRUE(got.all() == want.all())
          << x << "," << y << " on " << width << "x" << height << " pitch " << surface->Pitch();
    }
  }
}

TEST_P(Plotting, PitchTimesYWrapsAt32Bits) {
  const pixelType type = GetParam();
  Frame frame(65536);
  const Surface surface = makeSurface(type, 48, 0x20000, 0x10000, frame.canvas());
  const int far = 0x10000;  // 0x10000 rows of 0x10000 bytes are 0
  frame.remember();
  EXPECT_EQ(surface->PutPixel(0, far, true), 0U);
  const auto offsets = frame.changed();
  ASSERT_FALSE(offsets.empty());
  EXPECT_LT(offsets.back(), 16);
  EXPECT_GE(offsets.front(), 0);
  EXPECT_EQ(surface->GetPixel(0, far), frame.canvas());
}

TEST_P(Plotting, TheRowOffsetIsAddedWithoutASign) {
  // Rows 0x80000000 bytes or more into the canvas lie after it, not before it.
  const pixelType type = GetParam();
  const Surface surface = makeSurface(type, 48, 0x10000, 0x10000, nullptr);
  char* const canvas = reinterpret_cast<char*>(std::uintptr_t{1} << 40);
  surface->SetCanvas(canvas, 0x10000, 48, 0x10000);
  EXPECT_EQ(static_cast<char*>(surface->GetPixel(0, 0xC000)) - canvas, 0xC0000000LL);
  EXPECT_EQ(static_cast<char*>(surface->GetPixel(0, -1)) - canvas, 0xFFFF0000LL);
}

TEST_P(Plotting, GetPixelGivesTheAddressOfThePixelThePairOrTheGroup) {
  const pixelType type = GetParam();
  Frame frame(8192);
  const Surface surface = makeSurface(type, 48, 10, 203, frame.canvas());
  for (int y = 0; y < 10; ++y) {
    for (int x = -8; x < 60; ++x) {
      std::ptrdiff_t want = 0;
      const std::ptrdiff_t row = std::ptrdiff_t{surface->Pitch()} * y;
      if (isBayer(type))
        want = row + std::ptrdiff_t{3} * x / 2;
      else if (const int bytes = bytesOfDeepPixel(type); bytes != 0)
        want = row + std::ptrdiff_t{bytes} * x;
      else if (isFourByteRgb(type) || type == ptRGB30DPX)
        want = (row / 4 + x) * 4;
      else if (type == ptRGB24 || type == ptBGR24)
        want = row + 3 * x;
      else if (type == ptV210)
        want = row + std::ptrdiff_t{x / 6} * 16;
      else
        want = row + std::ptrdiff_t{x / 2} * 4;
      ASSERT_EQ(static_cast<char*>(surface->GetPixel(x, y)) - frame.canvas(), want)
          << x << "," << y;
    }
  }
}

}  // namespace
