// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes of packed 4:2:2 against their steps: expand both inputs, wipe them, pack the result.
#include "own_services.h"
#include "wipe_frames_of_noise.h"

#include <nkdraw/compositor/samples_422.h>
#include <nkdraw/compositor/wipe_422_steps.h>
#include <nkdraw/nkdraw_c.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace {

using namespace nkdraw::test;
using nkdraw::WipeTask;

std::size_t to512(std::size_t bytes) {
  return (bytes + 511) / 512 * 512;
}

/// The block of one call and the three expanded frames in it.
struct Expanded {
  std::vector<std::uint8_t> block;
  std::uint8_t *a, *b, *result;

  explicit Expanded(const WipeTask& task)
      : block(contentsOfNewBlock(std::size_t{9} * task.width * task.height + 3072)) {
    const std::size_t length = to512(std::size_t{3} * task.width * task.height);
    a = block.data() + to512(host->addressBeyond512) - host->addressBeyond512;
    b = a + length;
    result = b + length;
  }

  void wipe(const WipeTask& packed) {
    WipeTask task = packed;
    task.srcA = a;
    task.srcB = b;
    task.dst = result;
    task.pitchA = task.pitchB = 3 * task.width;
    task.pixelType = 33;
    task.left = task.top = 0;
    task.right = task.width;
    task.bottom = task.height;
    drawNumber(task);
  }
};

std::size_t at(const WipeTask& t, std::uint32_t y, std::uint32_t x) {
  return std::size_t{3} * (std::size_t{y} * t.width + x);
}

void wipeYCbCr(const WipeTask& t, Expanded& expanded) {
  const auto expand = [](const std::uint8_t* s, std::uint8_t* to) {
    for (const int i : {1, 0, 3, 2, 0, 3, 5, 4, 7, 6, 4, 7})
      *to++ = s[i];
  };
  for (std::uint32_t y = 0; y < t.height; ++y) {
    for (std::uint32_t x = 0; x < t.width; x += 4) {
      expand(t.srcA + y * t.pitchA + 2 * x, expanded.a + at(t, y, x));
      expand(t.srcB + y * t.pitchB + 2 * x, expanded.b + at(t, y, x));
    }
  }
  expanded.wipe(t);
  for (std::uint32_t y = 0; y < t.height; ++y) {
    for (std::uint32_t x = 0; x < t.width; x += 2) {
      const std::uint8_t* const m = expanded.result + at(t, y, x);
      std::uint8_t* const to = t.dst + y * t.pitchDst + 2 * x;
      to[0] = m[1];
      to[1] = m[0];
      to[2] = m[3];
      to[3] = m[2];
    }
  }
}

std::uint32_t v210Pitch(std::uint32_t width) {
  const std::uint32_t w48 = (width + 47) / 48 * 48;
  return w48 * 8 / 3;
}

void wipeV210(const WipeTask& given, Expanded& expanded) {
  WipeTask t = given;
  for (std::uint32_t* const pitch : {&t.pitchA, &t.pitchB, &t.pitchDst})
    *pitch = std::max(*pitch, v210Pitch(t.width));
  const auto expand = [&](const std::uint8_t* source, std::uint32_t pitch, std::uint8_t* target) {
    for (std::uint32_t y = 0; y < t.height; ++y) {
      for (std::uint32_t x = 0; x < t.width; x += 6) {
        std::uint32_t w[4];
        for (std::size_t i = 0; i < 4; ++i)
          w[i] = wordAt(source + y * pitch + x / 6 * 16 + i * 4);
        const auto a = [&](int i) { return static_cast<std::uint8_t>(w[i] >> 2); };
        const auto b = [&](int i) { return static_cast<std::uint8_t>(w[i] >> 12); };
        const auto c = [&](int i) { return static_cast<std::uint8_t>(w[i] >> 22); };
        const std::uint8_t pixels[18] = {b(0), a(0), c(0), a(1), a(0), c(0), c(1), b(1), a(2),
                                         b(2), b(1), a(2), a(3), c(2), b(3), c(3), c(2), b(3)};
        std::ranges::copy(pixels, target + at(t, y, x));
      }
    }
  };
  expand(t.srcA, t.pitchA, expanded.a);
  expand(t.srcB, t.pitchB, expanded.b);
  expanded.wipe(t);
  for (std::uint32_t y = 0; y < t.height; ++y) {
    for (std::uint32_t x = 0; x < t.width; x += 6) {
      const std::uint8_t* const m = expanded.result + at(t, y, x);
      std::uint8_t* const to = t.dst + y * t.pitchDst + x / 6 * 16;
      const auto word = [&](int low, int middle, int high) {
        return std::uint32_t{m[low]} << 2 | std::uint32_t{m[middle]} << 12 |
               std::uint32_t{m[high]} << 22;
      };
      setWord(to, word(1, 0, 2));
      setWord(to + 4, word(3, 7, 6));
      setWord(to + 8, word(8, 9, 13));
      setWord(to + 12, word(12, 14, 15));
    }
  }
}

/// A packed layout: its entry point, its steps, and the bytes of a row.
struct PackedLayout {
  const char* name;
  decltype(&NKDraw_DisplayWipe) entry;
  void (*steps)(const WipeTask& task, Expanded& expanded);
  std::uint32_t (*bytesRead)(std::uint32_t width);
  std::uint32_t (*bytesWritten)(std::uint32_t width);
  std::uint32_t (*leastPitch)(std::uint32_t width);
  const nkdraw::PackedLayout& plain;
};

std::uint32_t v210Bytes(std::uint32_t width) {
  return (width + 5) / 6 * 16;
}

constexpr PackedLayout kYCbCr = {
    "YCbCr",
    NKDraw_DisplayWipeYCbCr,
    wipeYCbCr,
    [](std::uint32_t width) { return (width + 3) / 4 * 8; },
    [](std::uint32_t width) { return (width + 1) / 2 * 4; },
    [](std::uint32_t /*width*/) { return 0U; },
    nkdraw::kPackedPairs,
};
constexpr PackedLayout kV210 = {"V210",    NKDraw_DisplayWipeV210, wipeV210, v210Bytes, v210Bytes,
                                v210Pitch, nkdraw::kPackedV210};

/// Sources end with the last group that is read, so that a sanitizer reports reads past it.
class PackedFrames {
 public:
  PackedFrames(const PackedLayout& layout, std::uint32_t width, std::uint32_t height,
               std::array<std::uint32_t, 3> pitches, std::uint32_t seed)
      : layout_(layout),
        a(Frame(bytes(width, height, pitches[0], layout.bytesRead), seed, 0).all()),
        b(Frame(bytes(width, height, pitches[1], layout.bytesRead), seed + 1, 0).all()),
        dst(bytes(width, height, pitches[2], layout.bytesWritten), seed + 2) {
    task.pitchA = pitches[0];
    task.pitchB = pitches[1];
    task.pitchDst = pitches[2];
    task.width = width;
    task.height = height;
  }

  void setProgress(const Progress& progress) {
    task.rangeStart = progress.start;
    task.rangeEnd = progress.end;
    task.position = progress.position;
  }

  /// The entry draws what its steps draw.
  void expectTheSteps() {
    host->threads = 0;
    const Frame before = dst;
    Frame wanted = dst;
    task.srcA = a.data();
    task.srcB = b.data();
    task.dst = wanted.data();
    Expanded expanded(task);
    layout_.steps(task, expanded);
    const auto keptA = a, keptB = b;
    task.dst = dst.data();
    run();
    ASSERT_TRUE(wanted.all() == dst.all()) << task << ' ' << task.pitchDst;
    ASSERT_TRUE(a == keptA && b == keptB) << task;
    dst = before;
    runPlainForm();
    ASSERT_TRUE(wanted.all() == dst.all()) << task << ' ' << task.pitchDst;
    ASSERT_TRUE(expanded.block == host->freedBlock) << task;
    dst = before;
  }

  /// The library's own steps, which leave the same in their block.
  void runPlainForm() {
    WipeTask t = task;
    for (std::uint32_t* const pitch : {&t.pitchA, &t.pitchB, &t.pitchDst})
      *pitch = std::max(*pitch, layout_.leastPitch(t.width));
    nkdraw::WipeSteps422 steps{t, layout_.plain, nkdraw::ExpandedFrames(t.width, t.height)};
    steps.expand();
    steps.wipe(0b1111);
    steps.pack();
  }

  void run() {
    task.srcA = a.data();
    task.srcB = b.data();
    task.dst = dst.data();
    const WipeTask& t = task;
    EXPECT_EQ(
        layout_.entry(t.srcA, t.pitchA, t.srcB, t.pitchB, t.dst, t.pitchDst, t.wipe, t.pixelType,
                      t.width, t.height, 1, 2, 3, 4, 5, t.rangeStart, t.rangeEnd, t.position),
        0U);
  }

 private:
  std::size_t bytes(std::uint32_t width, std::uint32_t height, std::uint32_t pitch,
                    std::uint32_t (*rowBytes)(std::uint32_t)) const {
    const std::uint32_t step = std::max(pitch, layout_.leastPitch(width));
    return height == 0 ? 0 : std::size_t{height - 1} * step + rowBytes(width);
  }
  const PackedLayout& layout_;

 public:
  WipeTask task{};
  std::vector<std::uint8_t> a, b;
  Frame dst;
};

/// Shorter than a row, as long, and padded.
std::uint32_t anyPitch(Random& random, std::uint32_t rowBytes) {
  const std::uint32_t pitches[] = {random.word() % (rowBytes + 1), rowBytes,
                                   rowBytes + random.word() % 30, (rowBytes + 127) / 128 * 128};
  return pitches[random.word() % std::size(pitches)];
}

class Wipe422 : public testing::TestWithParam<PackedLayout> {
 protected:
  Wipe422() { resetHost(); }

  void expectTheStepsOf(Random& random, std::uint32_t width, std::uint32_t height) {
    const PackedLayout& layout = GetParam();
    const std::uint32_t rowBytes = layout.bytesRead(width);
    PackedFrames frames(
        layout, width, height,
        {anyPitch(random, rowBytes), anyPitch(random, rowBytes), anyPitch(random, rowBytes)},
        random.word() % 1000);
    frames.task.wipe = kNumbersOfEveryKind[random.word() % std::size(kNumbersOfEveryKind)] |
                       random.word() % 4 / 3 << 31;
    frames.task.pixelType = static_cast<std::int32_t>(random.word());
    frames.setProgress(anyProgress(random));
    if (random.word() % 16 == 0)
      frames.task.rangeEnd = frames.task.rangeStart;
    host->addressBeyond512 = random.word() % 512;
    host->calls.clear();
    frames.expectTheSteps();
  }
};

TEST_P(Wipe422, FollowsItsStepsForEveryWidth) {
  Random random(422);
  for (std::uint32_t width = 1; width <= 60; ++width) {
    for (std::uint32_t height = 0; height <= 5; ++height) {
      for (int i = 0; i < 6; ++i)
        ASSERT_NO_FATAL_FAILURE(expectTheStepsOf(random, width, height));
    }
  }
}

TEST_P(Wipe422, FollowsItsStepsForLargeFrames) {
  Random random(4220);
  for (const auto& [width, height] : {std::pair{720U, 5U},
                                      {959U, 4U},
                                      {960U, 3U},
                                      {961U, 3U},
                                      {1280U, 7U},
                                      {1920U, 4U},
                                      {1921U, 3U},
                                      {3840U, 2U},
                                      {190U, 175U},
                                      {5U, 700U}}) {
    for (int i = 0; i < 4; ++i)
      ASSERT_NO_FATAL_FAILURE(expectTheStepsOf(random, width, height));
  }
}

TEST_P(Wipe422, FollowsItsStepsWhereTheExpandedFramesLieWithoutAGap) {
  Random random(512);
  for (const auto& [width, height] : {std::pair{1U, 512U},
                                      {2U, 256U},
                                      {2U, 512U},
                                      {3U, 512U},
                                      {5U, 512U},
                                      {6U, 256U},
                                      {10U, 256U},
                                      {4U, 1U},
                                      {169U, 1U},
                                      {170U, 1U},
                                      {341U, 1U},
                                      {512U, 1U},
                                      {681U, 1U},
                                      {682U, 1U},
                                      {4U, 128U}})
    for (int i = 0; i < 6; ++i)
      ASSERT_NO_FATAL_FAILURE(expectTheStepsOf(random, width, height));
}

TEST_P(Wipe422, DrawsEveryNumberAtEveryPositionOfAShortRange) {
  Random random(77);
  const PackedLayout& layout = GetParam();
  for (const std::uint32_t width : {12U, 13U, 14U, 17U, 25U}) {
    PackedFrames frames(layout, width, 5, {160, 160, 160}, width);
    for (const std::uint32_t number : kNumbersOfEveryKind) {
      for (std::uint32_t position = 0; position <= width + 1; ++position) {
        frames.task.wipe = number | random.word() % 4 / 3 << 31;
        frames.setProgress({0, width, position});
        host->calls.clear();
        ASSERT_NO_FATAL_FAILURE(frames.expectTheSteps());
      }
    }
  }
}

TEST_P(Wipe422, DrawsOntoAnInputWhatItDrawsElsewhere) {
  Random random(5);
  for (const std::uint32_t width : {12U, 13U, 49U}) {
    for (const std::uint32_t number : kNumbersOfEveryKind) {
      PackedFrames frames(GetParam(), width, 4, {256, 256, 256}, number);
      frames.task.wipe = number;
      frames.setProgress({0, 10, random.word() % 11});
      const auto keptA = frames.a, keptB = frames.b;
      frames.run();
      for (auto* const input : {&frames.a, &frames.b}) {
        auto target = frames.dst;
        target.fill(0);
        std::ranges::copy(*input, target.data());
        const auto& t = frames.task;
        const bool first = input == &frames.a;
        EXPECT_EQ(GetParam().entry(first ? target.data() : keptA.data(), 256,
                                   first ? keptB.data() : target.data(), 256, target.data(), 256,
                                   t.wipe, 0, t.width, t.height, 1, 2, 3, 4, 5, t.rangeStart,
                                   t.rangeEnd, t.position),
                  0U);
        for (std::size_t y = 0; y < 4 && number != 508 && number != 515; ++y) {
          const auto bytes = static_cast<std::size_t>(GetParam().bytesWritten(width));
          ASSERT_TRUE(std::equal(target.data() + y * 256, target.data() + y * 256 + bytes,
                                 frames.dst.data() + y * 256))
              << number << ' ' << width << ' ' << first;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Layouts, Wipe422, testing::Values(kYCbCr, kV210),
                         [](const auto& layout) { return std::string(layout.param.name); });

TEST(WipeYCbCr, GivesTheInputsBackAtTheEndsOfTheRange) {
  resetHost();
  PackedFrames frames(kYCbCr, 8, 3, {16, 16, 16}, 1);
  frames.task.wipe = 1;
  frames.setProgress({0, 10, 0});
  frames.run();
  EXPECT_TRUE(std::ranges::equal(frames.a, frames.dst.bytes()));
  frames.setProgress({0, 10, 10});
  frames.run();
  EXPECT_TRUE(std::ranges::equal(frames.b, frames.dst.bytes()));
  frames.task.wipe |= 0x80000000;
  frames.run();
  EXPECT_TRUE(std::ranges::equal(frames.a, frames.dst.bytes()));
}

TEST(WipeYCbCr, APairAtTheEdgeTakesOnlyItsThirdByteFromTheSecondPixel) {
  resetHost();
  PackedFrames frames(kYCbCr, 4, 1, {8, 8, 8}, 1);
  frames.a = {0, 1, 2, 3, 4, 5, 6, 7};
  frames.b = {10, 11, 12, 13, 14, 15, 16, 17};
  frames.task.wipe = 1;
  frames.setProgress({0, 4, 1});
  frames.run();
  const std::vector<std::uint8_t> wanted = {10, 11, 2, 13, 4, 5, 6, 7};
  EXPECT_TRUE(std::ranges::equal(frames.dst.bytes(), wanted));
}

TEST(WipeYCbCr, TheLastGroupOfTheFirstFrameStaysAtTheStartOfTheSecond) {
  resetHost();
  PackedFrames frames(kYCbCr, 2, 256, {8, 8, 4}, 1);
  frames.task.wipe = 1;
  frames.setProgress({0, 2, 2});
  frames.run();
  for (std::ptrdiff_t i = 0; i < 4; ++i) {
    EXPECT_EQ(frames.dst[i], frames.a[static_cast<std::size_t>(255 * 8 + 4 + i)]);
    EXPECT_EQ(frames.dst[4 + i], frames.b[static_cast<std::size_t>(8 + i)]);
  }
}

TEST(WipeV210, ClearsTheLowBitsOfEverySampleEvenWhereNothingChanges) {
  resetHost();
  PackedFrames frames(kV210, 48, 2, {128, 128, 128}, 1);
  frames.task.wipe = 1;
  frames.setProgress({0, 10, 0});
  frames.run();
  for (std::size_t i = 0; i < 256; i += 4)
    ASSERT_EQ(wordAt(frames.dst.data() + i), wordAt(frames.a.data() + i) & 0x3FCFF3FC) << i;
}

TEST(WipeV210, APitchIsAtLeast128BytesForEvery48PixelsBegun) {
  EXPECT_EQ(nkdraw::packedPitch(nkdraw::v210::kFacts, 1920), 5120U);
  EXPECT_EQ(nkdraw::packedPitch(nkdraw::v210::kFacts, 1280), 3456U);
  for (std::uint32_t width = 0; width <= 500; ++width)
    ASSERT_EQ(nkdraw::packedPitch(nkdraw::v210::kFacts, width), v210Pitch(width)) << width;
}

}  // namespace
