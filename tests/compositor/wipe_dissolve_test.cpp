// SPDX-License-Identifier: BSD-2-Clause
//
// The cross-fade, against truncated doubles.
#include "wipe_frames_of_noise.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace {

using namespace nkdraw::test;
using nkdraw::WipeTask;

void runDissolve(const WipeTask& task) {
  EXPECT_EQ(nkdraw::WipeDissolve(task), 0U);
}

/// Floats instead of noise; some are not-a-number.
void fillWithFloats(Random& random, Frame& frame) {
  const float kinds[] = {0.0F, -0.0F, 0.5F,   0.9999F, 1.0F,  1.5F,
                         2.0F, -1.0F, -2.75F, 1e20F,   255.0F};
  for (std::size_t i = 0; i + 4 <= frame.bytes().size(); i += 4) {
    const float value = random.flag() ? kinds[random.word() % std::size(kinds)]
                                      : static_cast<float>(random.real(0.0, 1.0));
    setWord(frame.data() + i, std::bit_cast<std::uint32_t>(value));
  }
  frame.remember();
}

NoiseFrames anyPictures(Random& random, const Layout& layout, int largest = 12) {
  NoiseFrames frames = anyFrames(random, layout.bytes, largest);
  if (layout.part == Part::kFloat) {
    frames.task.pitchA = frames.task.pitchA / 4 * 4;
    frames.task.pitchB = frames.task.pitchB / 4 * 4;
    fillWithFloats(random, frames.a);
    fillWithFloats(random, frames.b);
  }
  frames.task.pixelType = layout.type;
  frames.task.wipe = random.word();
  return frames;
}

TEST(WipeDissolve, MixesInTruncatedDoublesInEveryLayoutRectangleAndProgress) {
  Random random(516);
  for (const Layout& layout : kLayouts) {
    for (int i = 0; i < 400; ++i) {
      NoiseFrames frames = anyPictures(random, layout);
      frames.setProgress(anyProgress(random));
      setAnyRectangle(random, frames);
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(drawDissolve, runDissolve));
    }
  }
}

TEST(WipeDissolve, MixesLargeRectanglesAsItDoesSmallOnes) {
  Random random(1);
  for (const Layout& layout : kLayouts) {
    if (layout.part == Part::kFloat)
      continue;
    for (const Progress& progress :
         {Progress{0, 25, 12}, {0, 65536, 21845}, {5, 12, 5}, {0, 3, 1}, {0, 1000, 999}}) {
      NoiseFrames frames(150, 50, 150 * layout.bytes, 151 * layout.bytes, 77);
      frames.task.pixelType = layout.type;
      frames.task.wipe = random.word();
      frames.setProgress(progress);
      frames.setRectangle(7, 149, 1, 50);
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(drawDissolve, runDissolve));
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSameOnto(frames.b, drawDissolve, runDissolve));
    }
  }
}

TEST(WipeDissolve, MixesVeryLargeFramesAsItDoesSmallOnes) {
  for (const Layout& layout : {Layout{ptBGRA32, 4, Part::kByte}, {ptRGB48, 6, Part::kWord}}) {
    const std::uint32_t width = 600, height = 1048576 / 1800 + 2;
    NoiseFrames frames(width, height, width * layout.bytes + 10, width * layout.bytes + 2, 3);
    frames.task.pixelType = layout.type;
    frames.setProgress({0, 25, 11});
    frames.setRectangle(1, width, 0, height);
    frames.expectTheSame(drawDissolve, runDissolve);
  }
}

TEST(WipeDissolve, MixesEveryPairOfBytesAtEveryHundredth) {
  NoiseFrames frames(64, 256, 256, 256, 1);
  for (std::size_t i = 0; i < 65536; ++i) {
    frames.a.bytes()[i] = static_cast<std::uint8_t>(i >> 8);
    frames.b.bytes()[i] = static_cast<std::uint8_t>(i);
  }
  frames.a.remember();
  frames.b.remember();
  frames.task.pixelType = ptARGB32;
  for (std::uint32_t position = 0; position <= 102; ++position) {
    frames.setProgress({0, 100, position});
    ASSERT_NO_FATAL_FAILURE(frames.expectTheSame(drawDissolve, runDissolve));
  }
}

TEST(WipeDissolve, MayDrawOntoEitherInput) {
  Random random(9);
  for (const Layout& layout : kLayouts) {
    for (int i = 0; i < 40; ++i) {
      NoiseFrames frames = anyPictures(random, layout);
      frames.setProgress(anyProgress(random));
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSameOnto(frames.b, drawDissolve, runDissolve));
      frames.task.pitchA = frames.task.pitchB;
      ASSERT_NO_FATAL_FAILURE(frames.expectTheSameOnto(frames.a, drawDissolve, runDissolve));
    }
  }
}

TEST(WipeDissolve, TruncatesEqualPartsOneLowerAndWrapsBeyondTheRange) {
  struct Mixed {
    std::uint8_t outgoing, incoming;
    std::uint32_t position;
    std::uint8_t result;
  };
  const Mixed kMixed[] = {
      {100, 200, 0, 100},  {100, 200, 5, 150}, {100, 201, 5, 150},
      {100, 200, 10, 200}, {0, 255, 20, 254},  // 510
      {255, 0, 20, 1},                         // -255
      {10, 20, 20, 30},    {100, 0, 15, 206},  // -50
  };
  for (const auto& [outgoing, incoming, position, result] : kMixed) {
    NoiseFrames frames(1, 1, 4, 4, 1);
    frames.a.fill(outgoing);
    frames.b.fill(incoming);
    frames.task.pixelType = ptRGBA32;
    frames.setProgress({0, 10, position});
    frames.expectTheSame([part = result](const WipeTask& t) { std::memset(t.dst, part, 4); },
                         runDissolve);
  }
}

TEST(WipeDissolve, KeepsTheLowBitsOfResultsBeyond32Bits) {
  struct Mixed {
    std::uint8_t outgoing, incoming;
    std::uint32_t position;
    std::uint8_t byte;
    std::uint16_t word;  // of parts of both bytes
  };
  // With a range of 1 the result is outgoing + (incoming - outgoing) * position.
  const Mixed kMixed[] = {
      {0, 1, 0x80000000, 0x00, 0x0000},  // 2^31, the first that 32 bits do not hold
      {0, 1, 0x80000001, 0x01, 0x0101},  {0, 255, 0xFFFFFFFF, 0x01, 0x0001},
      {7, 10, 0xFFFFFFFE, 0x01, 0x0101}, {255, 0, 0xFFFFFFFF, 0xFE, 0xFFFE},
  };
  for (const auto& [outgoing, incoming, position, byte, word] : kMixed) {
    const auto check = [&, o = outgoing, n = incoming, p = position](
                           std::int32_t type, std::uint32_t bytes, auto expected) {
      NoiseFrames frames(1, 1, bytes, bytes, 1);
      frames.a.fill(o);
      frames.b.fill(n);
      frames.task.pixelType = type;
      frames.setProgress({0, 1, p});
      frames.expectTheSame(
          [&](const WipeTask& t) {
            for (std::uint32_t at = 0; at < bytes; at += sizeof expected)
              std::memcpy(t.dst + at, &expected, sizeof expected);
          },
          runDissolve);
    };
    check(ptRGBA32, 4, byte);
    check(ptRGB48, 6, word);
  }
}

TEST(WipeDissolve, StoresZerosInIntegersWhenTheRangeIsEmpty) {
  for (const Layout& layout : kLayouts) {
    if (layout.part == Part::kFloat)
      continue;
    for (const std::uint32_t position : {0U, 1U, 0xFFFFFFFFU}) {
      NoiseFrames frames(5, 3, 5 * layout.bytes, 5 * layout.bytes, 1);
      frames.task.pixelType = layout.type;
      frames.setProgress({8, 8, position});
      frames.expectTheSame(
          [&](const WipeTask& t) { std::memset(t.dst, 0, std::size_t{15} * layout.bytes); },
          runDissolve);
    }
  }
}

TEST(WipeDissolve, StoresNoNumbersInFloatsWhenTheRangeIsEmpty) {
  for (const Layout& layout : kLayouts) {
    if (layout.part != Part::kFloat)
      continue;
    for (const std::uint32_t position : {0U, 1U}) {
      NoiseFrames frames(5, 3, 5 * layout.bytes, 5 * layout.bytes, 1);
      Random random(3);
      for (std::size_t i = 0; i < frames.a.bytes().size(); i += 4) {
        setWord(frames.a.data() + i,
                std::bit_cast<std::uint32_t>(static_cast<float>(random.real(0.0, 1.0))));
        setWord(frames.b.data() + i,
                std::bit_cast<std::uint32_t>(static_cast<float>(random.real(0.0, 1.0))));
      }
      frames.task.pixelType = layout.type;
      frames.task.srcA = frames.a.data();
      frames.task.srcB = frames.b.data();
      frames.task.dst = frames.dst.data();
      frames.setProgress({8, 8, position});
      runDissolve(frames.task);
      for (std::size_t i = 0; i < frames.dst.bytes().size(); i += 4)
        ASSERT_TRUE(std::isnan(std::bit_cast<float>(wordAt(frames.dst.data() + i)))) << i;
      EXPECT_TRUE(frames.dst.guardsIntact());
    }
  }
}

TEST(WipeDissolve, CountsAnIncomingFloatAsAWholeNumber) {
  struct Mixed {
    float outgoing, incoming;
    std::uint32_t position;
    float result;
  };
  const Mixed kMixed[] = {
      {0.5F, 0.75F, 0, 0.5F},          {0.5F, 0.75F, 1, 0.375F}, {0.5F, 1.0F, 1, 0.625F},
      {0.5F, 0.75F, 4, 0.0F},          {0.5F, 1.0F, 4, 1.0F},    {0.5F, -3.75F, 2, -1.25F},
      {0.5F, 3e9F, 4, -2147483648.0F},
  };
  for (const auto& [outgoing, incoming, position, result] : kMixed) {
    NoiseFrames frames(1, 1, 16, 16, 1);
    for (std::size_t i = 0; i < 16; i += 4) {
      setWord(frames.a.data() + i, std::bit_cast<std::uint32_t>(outgoing));
      setWord(frames.b.data() + i, std::bit_cast<std::uint32_t>(incoming));
    }
    frames.task.srcA = frames.a.data();
    frames.task.srcB = frames.b.data();
    frames.task.dst = frames.dst.data();
    frames.task.pixelType = ptRGBAFloat;
    frames.setProgress({100, 104, position});
    runDissolve(frames.task);
    for (std::size_t i = 0; i < 16; i += 4)
      ASSERT_EQ(std::bit_cast<float>(wordAt(frames.dst.data() + i)), result) << incoming;
  }
}

TEST(WipeDissolve, DrawsNothingInOtherLayouts) {
  NoiseFrames frames(4, 4, 64, 64, 1);
  frames.setProgress({0, 4, 2});
  for (const std::int32_t type :
       {-1, 0, 7, 9, 10, 14, 20, 28, 37, 38, 10000, INT32_MAX, INT32_MIN}) {
    frames.task.pixelType = type;
    frames.expectTheSame([](const WipeTask&) {}, runDissolve);
  }
}

TEST(WipeDissolve, DrawsNothingInEmptyRectangles) {
  NoiseFrames frames(4, 4, 16, 16, 1);
  frames.task.pixelType = ptRGBA32;
  frames.setProgress({0, 4, 2});
  for (const auto& [left, right, top, bottom] :
       {std::array{2U, 2U, 0U, 4U}, {0U, 4U, 3U, 3U}, {3U, 1U, 0U, 4U}, {0U, 4U, 3U, 1U}}) {
    frames.setRectangle(left, right, top, bottom);
    frames.expectTheSame([](const WipeTask&) {}, runDissolve);
  }
}

}  // namespace
