// SPDX-License-Identifier: BSD-2-Clause
//
// The smallest frames, where several quarters have the same corner. The workers run together, so
// the thread sanitizer reports two that write one row.
#include "own_services.h"
#include "wipe_calls.h"
#include "wipe_frames_of_noise.h"

#include <vector>

namespace {

using namespace nkdraw::test;
using nkdraw::WipeTask;

constexpr std::uint32_t kLargest = 8, kSwap = 0x80000000;

/// Cross-fades count pixels of a layout of floats as numbers: these have some.
NoiseFrames framesFor(const Layout& layout, std::uint32_t width, std::uint32_t height,
                      Random& random) {
  const std::uint32_t packed = width * layout.bytes;
  NoiseFrames frames(width, height, packed + random.word() % 3 * 5, packed + random.word() % 3 * 5,
                     width * kLargest + height);
  if (layout.part == Part::kFloat) {
    frames.a.fill(0x3F);
    frames.b.fill(0x40);
  }
  frames.task.pixelType = layout.type;
  return frames;
}

class SmallWipes : public testing::Test {
 protected:
  SmallWipes() { resetHost(); }

  /// Draws every number of `words` by `reference`, and by `entry` on four threads that run
  /// together.
  template <class Reference>
  void expectTheSame(NoiseFrames& frames, const std::vector<std::uint32_t>& words, Entry entry,
                     Reference reference) {
    for (const std::uint32_t word : words) {
      frames.task.wipe = word;
      frames.setProgress(anyProgress(random));
      frames.expectTheSame(
          [&](const WipeTask& task) {
            host->runsTogether = false;
            reference(task);
          },
          [&](const WipeTask& task) {
            host->runsTogether = true;
            EXPECT_EQ(call(entry, task), 0U);
          });
      host->calls.clear();
    }
  }

  Random random{17};
};

template <class Body>
void forEverySize(Body body) {
  for (std::uint32_t width = 0; width <= kLargest; ++width) {
    for (std::uint32_t height = 0; height <= kLargest; ++height)
      ASSERT_NO_FATAL_FAILURE(body(width, height));
  }
}

std::vector<std::uint32_t> wordsOfEveryKind() {
  std::vector<std::uint32_t> words;
  for (const std::uint32_t number : kNumbersOfEveryKind)
    words.insert(words.end(), {number, number | kSwap});
  return words;
}

std::vector<std::uint32_t> wordsOfEveryNumber() {
  std::vector<std::uint32_t> words;
  for (std::uint32_t number = 0; number <= 520; ++number)
    words.insert(words.end(), {number, number | kSwap});
  return words;
}

TEST_F(SmallWipes, AreDrawnByOneWorkerEachInEveryLayout) {
  const auto words = wordsOfEveryKind();
  forEverySize([&](std::uint32_t width, std::uint32_t height) {
    for (const Layout& layout : kLayouts) {
      NoiseFrames frames = framesFor(layout, width, height, random);
      expectTheSame(frames, words, NKDraw_DisplayWipe, drawNumber);
    }
  });
}

TEST_F(SmallWipes, AreDrawnByOneWorkerEachOfEveryNumber) {
  const auto words = wordsOfEveryNumber();
  forEverySize([&](std::uint32_t width, std::uint32_t height) {
    const Layout& layout = kLayouts[(width + 9 * height) % std::size(kLayouts)];
    NoiseFrames frames = framesFor(layout, width, height, random);
    expectTheSame(frames, words, NKDraw_DisplayWipe,
                  [](const WipeTask& task) { nkdraw::kernelOfWipe(task.wipe)(task); });
  });
}

TEST_F(SmallWipes, AreDrawnByOneWorkerEachInLayoutsThatOnlySlidesDraw) {
  forEverySize([&](std::uint32_t width, std::uint32_t height) {
    for (const std::int32_t type : {0, 10, 14, 37}) {
      NoiseFrames frames = framesFor({type, 4, Part::kByte}, width, height, random);
      expectTheSame(frames, wordsOfEveryKind(), NKDraw_DisplayWipe, drawNumber);
    }
  });
}

TEST_F(SmallWipes, OfPackedFramesAreTheSameOnOneThread) {
  const auto words = wordsOfEveryKind();
  forEverySize([&](std::uint32_t width, std::uint32_t height) {
    for (const Entry entry : {NKDraw_DisplayWipeYCbCr, NKDraw_DisplayWipeV210}) {
      NoiseFrames frames(width, height, 128, 128, width + height);
      frames.task.pitchDst = 128;
      expectTheSame(frames, words, entry,
                    [&](const WipeTask& task) { EXPECT_EQ(call(entry, task), 0U); });
    }
  });
}

}  // namespace
