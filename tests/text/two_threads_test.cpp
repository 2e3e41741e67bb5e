// SPDX-License-Identifier: BSD-2-Clause
//
// Text on several threads at once, each with a surface of its own.
#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/factory.h>
#include <nkdraw/text/font_data.h>

#include <gtest/gtest.h>

#include <barrier>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kWidth = 200, kHeight = 40, kRounds = 50;

/// The canvas after `text` was drawn on a surface of layout `type`, opaque and transparent in turn.
std::vector<char> drawn(pixelType type, const std::string& text) {
  std::vector<char> canvas(std::size_t{kWidth} * kHeight * 8);
  NKDraw* surface = nullptr;
  EXPECT_EQ(GetDraw(static_cast<std::uint32_t>(type), kWidth, kHeight, 0, canvas.data(), surface),
            0U);
  for (int round = 0; round < kRounds; ++round) {
    surface->SetTextTransparent(round % 2 == 0);
    tagRECT rect = {0, 0, kWidth, 10 + round % 30};
    EXPECT_EQ(surface->DrawText(text.c_str(), static_cast<int>(text.size()), &rect, DT_CALCRECT),
              0);
  }
  ReleaseDraw(surface);
  return canvas;
}

class TextOnTwoThreads : public testing::TestWithParam<pixelType> {};

TEST_P(TextOnTwoThreads, IsTheSameAsOnOne) {
  const std::string texts[] = {"first", "SECOND"};
  const std::vector<char> wanted[] = {drawn(GetParam(), texts[0]), drawn(GetParam(), texts[1])};
  nkdraw::fontData.fontScratch = 77;  // both find it set
  std::vector<char> shown[2];
  std::barrier together(2);
  std::vector<std::jthread> threads;
  for (std::size_t i = 0; i < 2; ++i)
    threads.emplace_back([&, i] {
      together.arrive_and_wait();
      shown[i] = drawn(GetParam(), texts[i]);
    });
  threads.clear();
  EXPECT_EQ(shown[0], wanted[0]);
  EXPECT_EQ(shown[1], wanted[1]);
  EXPECT_EQ(nkdraw::fontData.fontScratch, 0U);
}

INSTANTIATE_TEST_SUITE_P(Layouts, TextOnTwoThreads,
                         testing::Values(ptBGRA32, ptBGR24, ptV210, ptUYVY, ptRGB48, ptRGB30DPX,
                                         ptBayerRGGB, ptUV8, ptUV16));

}  // namespace
