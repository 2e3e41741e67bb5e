// SPDX-License-Identifier: BSD-2-Clause
//
// The kernels with hard edges, against their rules.
#include "wipe_frames_of_noise.h"

#include <array>
#include <cstring>
#include <functional>
#include <string>
#include <utility>

namespace {

using namespace nkdraw::test;
using nkdraw::WipeTask;

class WipePattern : public testing::TestWithParam<Pattern> {
 protected:
  static auto reference() {
    return [](const WipeTask& task) { drawPattern(GetParam(), task); };
  }
  static auto kernel() {
    return [](const WipeTask& task) { EXPECT_EQ(GetParam().kernel(task), 0U); };
  }
};

TEST_P(WipePattern, FollowsItsRuleInEveryLayoutRectangleAndProgress) {
  Random random(GetParam().number);
  for (const Layout& layout : kLayouts) {
    for (int i = 0; i < 150; ++i) {
      NoiseFrames frames = anyFrames(random, layout.bytes);
      frames.task.pixelType = layout.type;
      frames.task.wipe = random.word();
      frames.setProgress(anyProgress(random));
      setAnyRectangle(random, frames);
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(reference(), kernel()));
    }
  }
}

TEST_P(WipePattern, FollowsItsRuleAtEveryStepOfSmallFrames) {
  for (std::uint32_t width = 1; width <= 6; ++width) {
    for (std::uint32_t height = 1; height <= 6; ++height) {
      NoiseFrames frames(width, height, width * 4, width * 4, width);
      frames.task.pixelType = ptBGRA32;
      for (const std::uint32_t range : {1U, 6U, 12U}) {
        for (std::uint32_t position = 0; position <= range + 2; ++position) {
          frames.setProgress({0, range, position});
          ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(reference(), kernel()));
        }
      }
    }
  }
}

TEST_P(WipePattern, IsWholeWhenDrawnInFourQuarters) {
  for (std::uint32_t width = 1; width <= 9; ++width) {
    for (std::uint32_t height = 1; height <= 9; ++height) {
      NoiseFrames frames(width, height, width * 3, width * 3 + 5, 3);
      frames.task.pixelType = ptRGB24;
      for (const std::uint32_t position : {0U, 20U, 33U, 50U, 75U, 100U, 101U}) {
        frames.task.wipe = position % 2 << 31;
        frames.setProgress({7, 107, position});
        frames.setRectangle(0, width, 0, height);
        const auto quarters = [&](const WipeTask& task) {
          const std::uint32_t halfW = task.width / 2, halfH = task.height / 2;
          WipeTask quarter = task;
          for (const auto& [left, right, top, bottom] : {std::array{0U, halfW, 0U, halfH},
                                                         {halfW, width, 0U, halfH},
                                                         {0U, halfW, halfH, height},
                                                         {halfW, width, halfH, height}}) {
            quarter.left = left;
            quarter.right = right;
            quarter.top = top;
            quarter.bottom = bottom;
            kernel()(quarter);
          }
        };
        ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(reference(), quarters));
      }
    }
  }
}

TEST_P(WipePattern, MayDrawOntoEitherInput) {
  Random random(GetParam().number);
  for (const Layout& layout : kLayouts) {
    for (int i = 0; i < 10; ++i) {
      NoiseFrames frames = anyFrames(random, layout.bytes);
      frames.task.pixelType = layout.type;
      frames.task.wipe = random.word();
      frames.setProgress(anyProgress(random));
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSameOnto(frames.b, reference(), kernel()));
      frames.task.pitchA = frames.task.pitchB;
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSameOnto(frames.a, reference(), kernel()));
    }
  }
}

TEST_P(WipePattern, WrapsItsProductsInWideFrames) {
  for (const auto& [width, height] : {std::pair{70000U, 1U}, {1U, 70000U}, {131072U, 1U}}) {
    NoiseFrames frames(width, height, width * 3, width * 3, 8);
    frames.task.pixelType = ptYCbCr24;
    for (const std::uint32_t position : {61000U, 65535U, 65536U}) {
      frames.setProgress({0, 65536, position});
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(reference(), kernel()));
    }
  }
}

TEST_P(WipePattern, WrapsTheOffsetsOfRows) {
  // Every second row lies at the same place, and the pitch is a row short of four gibibytes.
  NoiseFrames frames(2, 5, 16, 16, 4);
  frames.task.pixelType = ptBGRA32;
  frames.setProgress({0, 10, 6});
  frames.task.pitchA = 0x80000000;
  frames.task.pitchB = 0x80000008;
  frames.setRectangle(0, 2, 4, 5);
  ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(reference(), kernel()));
}

TEST_P(WipePattern, DrawsNothingInOtherLayouts) {
  for (const std::int32_t type :
       {-1, 0, 7, 8, 9, 10, 13, 14, 20, 21, 28, 37, 38, 10000, 10001, INT32_MAX, INT32_MIN}) {
    NoiseFrames frames(4, 4, 64, 64, 1);
    frames.task.pixelType = type;
    frames.setProgress({0, 4, 2});
    frames.expectTheSame([](const WipeTask&) {}, kernel());
  }
}

TEST_P(WipePattern, DrawsNothingInEmptyRectanglesAndRanges) {
  NoiseFrames frames(4, 4, 16, 16, 1);
  frames.task.pixelType = ptRGBA32;
  frames.setProgress({0, 4, 2});
  const auto nothing = [](const WipeTask&) {};
  for (const auto& [left, right, top, bottom] :
       {std::array{2U, 2U, 0U, 4U}, {0U, 4U, 3U, 3U}, {3U, 1U, 0U, 4U}, {0U, 4U, 3U, 1U}}) {
    frames.setRectangle(left, right, top, bottom);
    frames.expectTheSame(nothing, kernel());
  }
  frames.setRectangle(0, 4, 0, 4);
  frames.setProgress({5, 5, 2});
  frames.expectTheSame(nothing, kernel());
}

INSTANTIATE_TEST_SUITE_P(Kernels, WipePattern, testing::ValuesIn(kPatterns),
                         [](const auto& kernel) { return std::string(kernel.param.name); });

// --- what the ends of the range show ----------------------------------------------------------

using Incoming = std::function<bool(std::uint32_t x, std::uint32_t y)>;

bool never(std::uint32_t, std::uint32_t) {
  return false;
}
bool always(std::uint32_t, std::uint32_t) {
  return true;
}
bool atRow0(std::uint32_t, std::uint32_t y) {
  return y == 0;
}
bool atColumn0(std::uint32_t x, std::uint32_t) {
  return x == 0;
}
bool atEither0(std::uint32_t x, std::uint32_t y) {
  return x == 0 || y == 0;
}
bool atBoth0(std::uint32_t x, std::uint32_t y) {
  return x == 0 && y == 0;
}
bool butRow0(std::uint32_t, std::uint32_t y) {
  return y != 0;
}
bool butEither0(std::uint32_t x, std::uint32_t y) {
  return x != 0 && y != 0;
}

struct Ends {
  const nkdraw::WipeKernel& kernel;
  Incoming first, last;
};

TEST(WipeEnds, ShowTheirSingleRowsAndColumns) {
  const Ends kEnds[] = {
      {nkdraw::WipeEdgeHorz, never, always},
      {nkdraw::WipeEdgeVert, never, always},
      {nkdraw::WipeCornerTL, never, always},
      {nkdraw::WipeCornerTR, never, always},
      {nkdraw::WipeCornerBR, never, butEither0},
      {nkdraw::WipeCornerBL, never, butRow0},
      {nkdraw::WipeFourCorners, atBoth0, always},
      {nkdraw::WipeBoxIn, atEither0, always},
      {nkdraw::WipeBoxRight, atEither0, always},
      {nkdraw::WipeBoxBottom, atEither0, always},
      {nkdraw::WipeBarnDoorVert, atColumn0, always},
      {nkdraw::WipeBoxTop, atColumn0, always},
      {nkdraw::WipeBarnDoorHorz, atRow0, always},
      {nkdraw::WipeBoxLeft, atRow0, always},
      {nkdraw::WipeIris, never, butRow0},
      {nkdraw::WipeDissolve, never, always},
  };
  constexpr std::uint32_t kRange = 60;
  for (std::size_t i = 0; i < std::size(kEnds); ++i) {
    for (std::uint32_t width = 3; width <= 8; ++width) {
      for (std::uint32_t height = 3; height <= 8; ++height) {
        for (const bool last : {false, true}) {
          NoiseFrames frames(width, height, width * 4, width * 4, 1);
          frames.a.fill(1);
          frames.b.fill(2);
          frames.task.pixelType = ptBGRA32;
          frames.setProgress({0, kRange, last ? kRange : 0});
          frames.task.srcA = frames.a.data();
          frames.task.srcB = frames.b.data();
          frames.task.dst = frames.dst.data();
          kEnds[i].kernel(frames.task);
          const Incoming& incoming = last ? kEnds[i].last : kEnds[i].first;
          for (std::uint32_t at = 0; at < width * height * 4; ++at)
            ASSERT_EQ(frames.dst[at], incoming(at / 4 % width, at / 4 / width) ? 2 : 1)
                << "row " << i << " of the table, byte " << at << ", " << frames.task;
        }
      }
    }
  }
}

TEST(WipeEnds, ShowTheFirstPictureAgainBeyondTheRangeOfACorner) {
  NoiseFrames frames(8, 8, 32, 32, 1);
  frames.task.pixelType = ptBGRA32;
  frames.setProgress({0, 10, 12});
  frames.expectTheSame([](const WipeTask& task) { std::memcpy(task.dst, task.srcA, 8 * 32); },
                       [](const WipeTask& task) { nkdraw::WipeCornerBR(task); });
}

}  // namespace
