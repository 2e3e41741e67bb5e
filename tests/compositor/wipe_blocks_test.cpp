// SPDX-License-Identifier: BSD-2-Clause
//
// The kernels that copy whole rows and whole frames.
#include "wipe_frames_of_noise.h"

#include <vector>

namespace {

using namespace nkdraw::test;
using nkdraw::WipeTask;

void nothing(const WipeTask& /*task*/) {}

void runEdgeVert(const WipeTask& task) {
  EXPECT_EQ(nkdraw::WipeEdgeVert(task), 0U);
}

void runSlide(const WipeTask& task) {
  EXPECT_EQ(nkdraw::WipeSlide(task), 0U);
}

TEST(WipeEdgeVert, CopiesWholeRowsWithThePitchOfTheirPlace) {
  Random random(2);
  for (const Layout& layout : kLayouts) {
    for (int i = 0; i < 200; ++i) {
      NoiseFrames frames = anyFrames(random, layout.bytes);
      frames.task.pixelType = layout.type;
      frames.task.wipe = random.word();
      frames.setProgress(anyProgress(random));
      setAnyRectangle(random, frames);
      frames.task.left = 0;
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(drawEdgeVert, runEdgeVert));
    }
  }
}

TEST(WipeEdgeVert, TakesTheByteCountFromTheSideOfTheEdgeAndNotFromTheInput) {
  NoiseFrames frames(2, 2, 8, 11, 1);
  frames.task.pixelType = ptBGRA32;
  frames.setProgress({0, 2, 1});
  for (const bool swapped : {false, true}) {
    frames.task.wipe = swapped ? 0x80000002 : 2;
    frames.expectTheSame(
        [&](const WipeTask& t) {
          std::memcpy(t.dst, swapped ? t.srcA : t.srcB, 8);
          std::memcpy(t.dst + 11, swapped ? t.srcB + 11 : t.srcA + 8, 11);
        },
        runEdgeVert);
  }
}

TEST(WipeEdgeVert, DrawsWholeRowsInTheRectanglesAtTheLeftAlone) {
  NoiseFrames frames(6, 4, 24, 24, 1);
  frames.task.pixelType = ptBGRA32;
  frames.setProgress({0, 4, 3});
  frames.setRectangle(3, 6, 0, 4);
  frames.expectTheSame(nothing, runEdgeVert);
  frames.setRectangle(0, 0, 1, 3);
  frames.expectTheSame([](const WipeTask& t) { std::memcpy(t.dst + 24, t.srcB + 24, 48); },
                       runEdgeVert);
}

TEST(WipeEdgeVert, MayDrawOntoEitherInputOfItsPitch) {
  NoiseFrames frames(5, 7, 20, 20, 1);
  frames.task.pixelType = ptBGRA32;
  frames.setProgress({0, 7, 4});
  for (const std::uint32_t wipe : {2U, 0x80000002U}) {
    frames.task.wipe = wipe;
    frames.expectTheSameOnto(frames.a, drawEdgeVert, runEdgeVert);
    frames.expectTheSameOnto(frames.b, drawEdgeVert, runEdgeVert);
  }
}

TEST(WipeEdgeVert, DrawsNothingInOtherLayoutsAndEmptyRanges) {
  NoiseFrames frames(4, 4, 64, 64, 1);
  frames.setProgress({0, 4, 2});
  for (const std::int32_t type : {-1, 0, 7, 14, 28, 37, 38, 10000}) {
    frames.task.pixelType = type;
    frames.expectTheSame(nothing, runEdgeVert);
  }
  frames.task.pixelType = ptBGRA32;
  frames.setProgress({9, 9, 2});
  frames.expectTheSame(nothing, runEdgeVert);
}

/// Layouts that the wipes know, and others, which are taken as four bytes a pixel.
std::vector<Layout> layoutsOfSlides() {
  std::vector<Layout> layouts(std::begin(kLayouts), std::end(kLayouts));
  for (const std::int32_t type : {-1, 0, 7, 10, 14, 20, 28, 37, 38, 10001, INT32_MAX, INT32_MIN})
    layouts.push_back({type, 4, Part::kByte});
  return layouts;
}

TEST(WipeSlide, CopiesPackedFramesByItsNumberAndIgnoresPitches) {
  Random random(500);
  for (const Layout& layout : layoutsOfSlides()) {
    for (std::uint32_t number = 498; number <= 517; ++number) {
      for (int i = 0; i < 12; ++i) {
        NoiseFrames frames = anyFrames(random, layout.bytes);
        frames.task.pitchA = random.word();
        frames.task.pitchB = random.word();
        frames.task.pixelType = layout.type;
        frames.task.wipe = number;
        frames.setProgress(anyProgress(random));
        setAnyRectangle(random, frames);
        frames.task.left = frames.task.top = 0;
        ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(drawSlide, runSlide));
      }
    }
  }
}

TEST(WipeSlide, MovesThePictureInItsDirection) {
  // One byte names each of 3x3 pixels; progress is a third.
  const std::vector<std::uint8_t> a = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  const std::vector<std::uint8_t> b = {11, 12, 13, 14, 15, 16, 17, 18, 19};
  const std::pair<std::uint32_t, std::vector<std::uint8_t>> kShown[] = {
      {500, {4, 5, 6, 7, 8, 9, 17, 18, 19}}, {501, {2, 3, 13, 5, 6, 16, 8, 9, 19}},
      {502, {11, 12, 13, 1, 2, 3, 4, 5, 6}}, {503, {11, 1, 2, 14, 4, 5, 17, 7, 8}},
      {504, {11, 12, 13, 1, 2, 3, 4, 5, 6}}, {505, {11, 12, 13, 1, 2, 3, 4, 5, 6}},
      {506, {11, 12, 13, 1, 2, 3, 4, 5, 6}}, {507, {11, 12, 13, 1, 2, 3, 4, 5, 6}},
  };
  for (const auto& [number, shown] : kShown) {
    NoiseFrames frames(3, 3, 9, 9, 1);
    for (std::size_t i = 0; i < 27; ++i) {
      frames.a.bytes()[i] = a[i / 3];
      frames.b.bytes()[i] = b[i / 3];
    }
    frames.task.srcA = frames.a.data();
    frames.task.srcB = frames.b.data();
    frames.task.dst = frames.dst.data();
    frames.task.pixelType = ptRGB24;
    frames.task.wipe = number;
    frames.setProgress({10, 13, 1});
    runSlide(frames.task);
    for (std::size_t i = 0; i < 27; ++i)
      ASSERT_EQ(frames.dst.bytes()[i], shown[i / 3]) << number << ", byte " << i;
    EXPECT_TRUE(frames.dst.guardsIntact());
  }
}

TEST(WipeSlide, StopsAtTheWholeFrame) {
  for (std::uint32_t number = 500; number <= 507; ++number) {
    for (const std::uint32_t position : {10U, 11U, 1000U}) {
      NoiseFrames frames(5, 4, 20, 20, 1);
      frames.task.pixelType = ptBGRA32;
      frames.task.wipe = number;
      frames.setProgress({0, 10, position});
      frames.expectTheSame([](const WipeTask& t) { std::memcpy(t.dst, t.srcB, 80); }, runSlide);
    }
  }
}

TEST(WipeSlide, DrawsTheWholeFrameInTheTopLeftRectangleAlone) {
  NoiseFrames frames(5, 4, 20, 20, 1);
  frames.task.pixelType = ptBGRA32;
  frames.task.wipe = 502;
  frames.setProgress({0, 4, 4});
  frames.setRectangle(2, 5, 0, 2);
  frames.expectTheSame(nothing, runSlide);
  frames.setRectangle(0, 2, 2, 4);
  frames.expectTheSame(nothing, runSlide);
  frames.setRectangle(0, 0, 0, 0);
  frames.expectTheSame([](const WipeTask& t) { std::memcpy(t.dst, t.srcB, 80); }, runSlide);
}

TEST(WipeSlide, DrawsNothingWithSwappedInputsOrAnEmptyRange) {
  NoiseFrames frames(5, 4, 20, 20, 1);
  frames.task.pixelType = ptBGRA32;
  for (std::uint32_t number = 500; number <= 515; ++number) {
    frames.task.wipe = number | 0x80000000;
    frames.setProgress({0, 10, 5});
    frames.expectTheSame(nothing, runSlide);
    frames.task.wipe = number;
    frames.setProgress({10, 10, 5});
    frames.expectTheSame(nothing, runSlide);
  }
}

}  // namespace
