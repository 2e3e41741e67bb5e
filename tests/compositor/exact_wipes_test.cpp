// SPDX-License-Identifier: BSD-2-Clause
//
// Exact wipes against their rules, one sample after the other.
#include "wipe_frames_of_noise.h"

#include <tests/support/targets.h>

#include <nkdraw/compositor/exact.h>
#include <nkdraw/compositor/exact_mix.h>
#include <nkdraw/compositor/wipe_bands.h>
#include <nkdraw/nkdraw_c.h>

#include <functional>
#include <vector>

namespace {

using namespace nkdraw::test;
using nkdraw::WipeTask;

/// A frame's samples, read and written one at a time.
struct ExactCase {
  const char* name;
  std::int32_t type;
  std::uint32_t groupPixels, groupBytes, samplesPerPixel;  ///< of 4:2:2: a luma and a chroma
  bool pairs;
  std::uint32_t (*get)(const std::uint8_t* group, std::uint32_t sample);
  void (*put)(std::uint8_t* group, std::uint32_t sample, std::uint32_t value);

  [[nodiscard]] std::uint32_t rowBytes(std::uint32_t width) const {
    return (width + groupPixels - 1) / groupPixels * groupBytes;
  }
  [[nodiscard]] std::uint32_t groupSamples() const { return groupPixels * samplesPerPixel; }
};

std::uint32_t getByte(const std::uint8_t* group, std::uint32_t sample) {
  return group[sample];
}
void putByte(std::uint8_t* group, std::uint32_t sample, std::uint32_t value) {
  group[sample] = static_cast<std::uint8_t>(value);
}
std::uint32_t getWord(const std::uint8_t* group, std::uint32_t sample) {
  return group[sample * 2] | std::uint32_t{group[sample * 2 + 1]} << 8;
}
void putWord(std::uint8_t* group, std::uint32_t sample, std::uint32_t value) {
  group[sample * 2] = static_cast<std::uint8_t>(value);
  group[sample * 2 + 1] = static_cast<std::uint8_t>(value >> 8);
}
std::uint32_t getTen(const std::uint8_t* group, std::uint32_t sample) {
  return wordAt(group + sample / 3 * 4) >> sample % 3 * 10 & 0x3FF;
}
void putTen(std::uint8_t* group, std::uint32_t sample, std::uint32_t value) {
  std::uint8_t* const word = group + sample / 3 * 4;
  const std::uint32_t shift = sample % 3 * 10;
  setWord(word, (wordAt(word) & ~(0x3FFU << shift)) | value << shift);
}

constexpr ExactCase kCases[] = {
    {"V210", ptV210, 6, 16, 2, true, getTen, putTen},
    {"YUYV", ptYUYV, 2, 4, 2, true, getByte, putByte},
    {"UYVY", ptUYVY, 2, 4, 2, true, getByte, putByte},
    {"YVYU", ptYVYU, 2, 4, 2, true, getByte, putByte},
    {"VYUY", ptVYUY, 2, 4, 2, true, getByte, putByte},
    {"BGR24", ptBGR24, 1, 3, 3, false, getByte, putByte},
    {"RGBA32", ptRGBA32, 1, 4, 4, false, getByte, putByte},
    {"YCbCr24", ptYCbCr24, 1, 3, 3, false, getByte, putByte},
    {"RGB48", ptRGB48, 1, 6, 3, false, getWord, putWord},
    {"ARGB64", ptARGB64, 1, 8, 4, false, getWord, putWord},
};

/// Which pixel of which input the rules show at a place, by the numbers' patterns and slides.
struct Shown {
  bool incoming;
  std::uint32_t x, y;
};

std::uint32_t even(std::uint32_t column, const WipeTask& t, bool pairs) {
  return pairs && column < t.width ? column / 2 * 2 : column;
}

Shown shownBySlide(const WipeTask& t, bool pairs, std::uint32_t x, std::uint32_t y) {
  const std::uint32_t rows = t.height * t.position / t.rangeEnd;
  const std::uint32_t columns = even(t.width * t.position / t.rangeEnd, t, pairs);
  switch (t.wipe) {
    case 500:
      return y >= t.height - rows ? Shown{true, x, y} : Shown{false, x, y + rows};
    case 501: {
      const std::uint32_t edge = columns == 0 ? t.width : even(t.width - columns, t, pairs);
      return x >= edge ? Shown{true, x, y} : Shown{false, x + columns, y};
    }
    case 503:
      return x < columns ? Shown{true, x, y} : Shown{false, x - columns, y};
    default:
      return y < rows ? Shown{true, x, y} : Shown{false, x, y - rows};
  }
}

/// In 4:2:2 both pixels of a pair are shown as the second one by the pattern: an edge between them
/// moves to their left.
Shown shownAt(const WipeTask& t, bool pairs, std::uint32_t x, std::uint32_t y) {
  const std::uint32_t number = t.wipe & 0x7FFFFFFF;
  if (number >= 500 && number <= 507)
    return shownBySlide(t, pairs, x, y);
  const std::uint32_t column = pairs ? std::min(x | 1, t.width - 1) : x;
  if (number == 2)
    return {y < t.height * t.position / t.rangeEnd, x, y};
  const auto* const pattern = std::ranges::find(kPatterns, number, &Pattern::number);
  return {pattern->incoming({column, y, t.width, t.height, t.rangeEnd, t.position}), x, y};
}

bool mixes(std::uint32_t wipe) {
  const std::uint32_t number = wipe & 0x7FFFFFFF;
  return number == 0 || number > 515;
}

std::uint32_t mixedBy(const WipeTask& t, std::uint32_t outgoing, std::uint32_t incoming) {
  const std::uint64_t sum =
      std::uint64_t{outgoing} * (t.rangeEnd - t.position) + std::uint64_t{incoming} * t.position;
  return static_cast<std::uint32_t>((sum * 2 + t.rangeEnd) / (std::uint64_t{t.rangeEnd} * 2));
}

/// Sample `s` of the pixels' row; a pixel has `samplesPerPixel` in a row.
void drawSample(const ExactCase& c, const WipeTask& t, std::uint32_t y, std::uint32_t s) {
  const bool swapped = t.wipe >> 31 != 0;
  const auto rowOf = [&](bool incoming, std::uint32_t row) {
    return incoming != swapped ? t.srcB + t.pitchB * row : t.srcA + t.pitchA * row;
  };
  const auto get = [&](bool incoming, std::uint32_t row, std::uint32_t sample) {
    return c.get(rowOf(incoming, row) + sample / c.groupSamples() * c.groupBytes,
                 sample % c.groupSamples());
  };
  const std::uint32_t pixel = s / c.samplesPerPixel, x = c.pairs ? pixel / 2 * 2 : pixel;
  std::uint32_t value;
  if (mixes(t.wipe)) {
    value = mixedBy(t, get(false, y, s), get(true, y, s));
  } else {
    const Shown shown = shownAt(t, c.pairs, x, y);
    value = get(shown.incoming, shown.y, s + (shown.x - x) * c.samplesPerPixel);
  }
  c.put(t.dst + t.pitchDst * y + s / c.groupSamples() * c.groupBytes, s % c.groupSamples(), value);
}

std::uint32_t exactly(const WipeTask& t) {
  const NKWipe wipe = {t.srcA, t.pitchA,    t.srcB,  t.pitchB, t.dst,      t.pitchDst,
                       t.wipe, t.pixelType, t.width, t.height, t.position, t.rangeEnd};
  return NKDraw_ExactWipe(&wipe);
}

/// Frames of noise with their own pitches.
struct ExactFrames {
  ExactFrames(const ExactCase& c, std::uint32_t width, std::uint32_t height, Random& random)
      : layout(c) {
    for (std::uint32_t* const pitch : {&task.pitchA, &task.pitchB, &task.pitchDst})
      *pitch = c.rowBytes(width) + random.word() % 3 * (random.word() % 9);
    a = Frame(std::size_t{task.pitchA} * height, random.word() % 1000);
    b = Frame(std::size_t{task.pitchB} * height, random.word() % 1000);
    dst = Frame(std::size_t{task.pitchDst} * height, random.word() % 1000);
    task.pixelType = c.type;
    task.width = width;
    task.height = height;
    task.srcA = a.data();
    task.srcB = b.data();
  }

  /// Compares the samples inside the width, and every byte outside the groups.
  void expectTheRules() {
    Frame wanted = dst, got = dst;
    task.dst = got.data();
    ASSERT_EQ(exactly(task), 0U) << task;
    task.dst = wanted.data();
    const std::uint32_t pixels = layout.pairs ? (task.width + 1) / 2 * 2 : task.width;
    for (std::uint32_t y = 0; y < task.height; ++y) {
      // Pixels past the last pair, and the bits between samples, may hold anything.
      std::uint8_t* const row = wanted.data() + task.pitchDst * y;
      std::copy_n(got.data() + task.pitchDst * y, layout.rowBytes(task.width), row);
      for (std::uint32_t s = 0; s < pixels * layout.samplesPerPixel; ++s)
        drawSample(layout, task, y, s);
    }
    ASSERT_TRUE(wanted.all() == got.all()) << task;
    ASSERT_TRUE(a.untouched() && b.untouched()) << task;
  }

  const ExactCase& layout;
  WipeTask task{};
  Frame a{0, 0}, b{0, 0}, dst{0, 0};
};

class ExactWipes : public testing::TestWithParam<ExactCase> {};

TEST_P(ExactWipes, FollowTheirRulesForEveryNumberAndWidth) {
  Random random(2026);
  for (std::uint32_t width = 1; width <= 26; ++width) {
    for (const std::uint32_t number : kNumbersOfEveryKind) {
      if (number == 508 || number == 515)
        continue;
      for (int i = 0; i < 4; ++i) {
        ExactFrames frames(GetParam(), width, 1 + random.word() % 6, random);
        const bool slides = number >= 500 && number <= 507;
        frames.task.wipe = number | (slides ? 0 : random.word() % 2 << 31);
        const std::uint32_t ranges[] = {1, 2, width, 26, 65536, 10007, 0x00FFFFFF};
        frames.task.rangeEnd = ranges[random.word() % std::size(ranges)];
        frames.task.position =
            random.word() % 4 == 0 ? frames.task.rangeEnd : random.word() % frames.task.rangeEnd;
        ASSERT_NO_FATAL_FAILURE(frames.expectTheRules());
      }
    }
  }
}

TEST_P(ExactWipes, FollowTheirRulesForLargeFrames) {
  Random random(7);
  for (const std::uint32_t number : {0U, 1U, 41U, 501U, 503U}) {
    ExactFrames frames(GetParam(), 1021, 540, random);
    frames.task.wipe = number;
    frames.task.rangeEnd = 1000;
    frames.task.position = 377;
    ASSERT_NO_FATAL_FAILURE(frames.expectTheRules());
  }
}

TEST_P(ExactWipes, GiveTheInputBackAtTheEndsOfACrossFade) {
  Random random(11);
  ExactFrames frames(GetParam(), 13, 3, random);
  frames.task.rangeEnd = 10;
  for (const std::uint32_t position : {0U, 10U}) {
    frames.task.position = position;
    frames.task.dst = frames.dst.data();
    ASSERT_EQ(exactly(frames.task), 0U);
    const WipeTask& t = frames.task;
    for (std::uint32_t y = 0; y < t.height; ++y) {
      const std::uint8_t* const row = position == 0 ? t.srcA + t.pitchA * y : t.srcB + t.pitchB * y;
      ASSERT_TRUE(std::equal(row, row + GetParam().rowBytes(t.width), t.dst + t.pitchDst * y));
    }
  }
}

TEST_P(ExactWipes, RefuseWhatTheyCannotDraw) {
  Random random(3);
  ExactFrames frames(GetParam(), 7, 3, random);
  frames.task.rangeEnd = 10;
  frames.task.position = 4;
  frames.task.wipe = NKWipeEdgeHorz;
  frames.task.dst = frames.dst.data();
  ASSERT_EQ(exactly(frames.task), 0U);
  Frame untouched = frames.dst;
  const std::uint32_t rowBytes = GetParam().rowBytes(7);
  const std::function<void(WipeTask&)> mistakes[] = {
      [](WipeTask& t) { t.srcA = nullptr; },
      [](WipeTask& t) { t.srcB = nullptr; },
      [](WipeTask& t) { t.dst = nullptr; },
      [](WipeTask& t) { t.width = 0; },
      [](WipeTask& t) { t.height = 0; },
      [](WipeTask& t) { t.rangeEnd = 0; },
      [](WipeTask& t) { t.position = 11; },
      [](WipeTask& t) { t.pixelType = ptRGBAFloat; },
      [](WipeTask& t) { t.pixelType = -1; },
      [&](WipeTask& t) { t.pitchA = rowBytes - 1; },
      [&](WipeTask& t) { t.pitchB = rowBytes - 1; },
      [&](WipeTask& t) { t.pitchDst = rowBytes - 1; },
      [](WipeTask& t) { t.pitchA = 0x80000000; },
      [](WipeTask& t) { t.dst = const_cast<std::uint8_t*>(t.srcA); },
      [](WipeTask& t) { t.dst = const_cast<std::uint8_t*>(t.srcB) + 1; },
      [](WipeTask& t) { t.wipe = 508; },
      [](WipeTask& t) { t.wipe = 515; },
      [](WipeTask& t) { t.wipe = NKWipeFirstSlide | NKWipeSwap; },
      [](WipeTask& t) { t.position = t.rangeEnd = 0xFFFFFFFF; },
  };
  for (const auto& mistake : mistakes) {
    WipeTask task = frames.task;
    mistake(task);
    EXPECT_EQ(exactly(task), NKStatusRefused) << task;
    EXPECT_TRUE(frames.dst.all() == untouched.all());
  }
  EXPECT_EQ(NKDraw_ExactWipe(nullptr), NKStatusRefused);
}

INSTANTIATE_TEST_SUITE_P(Layouts, ExactWipes, testing::ValuesIn(kCases),
                         [](const auto& layout) { return std::string(layout.param.name); });

TEST(ExactWipe, DrawsEveryNumberAsThePatternThatTheNumberNames) {
  Random random(9);
  for (std::uint32_t number = 0; number <= 520; ++number) {
    NoiseFrames frames(8, 5, 32, 32, number);
    frames.task.pixelType = ptRGBA32;
    frames.task.pitchDst = 32;
    frames.task.wipe = number;
    frames.setProgress({0, 10, 3});
    if (!mixes(number) && nkdraw::kernelOfWipe(number) != nkdraw::WipeDissolve) {
      frames.expectTheSame(
          [](const WipeTask& t) { nkdraw::drawQuarters(t, nkdraw::kernelOfWipe(t.wipe), 0b1111); },
          [&](const WipeTask& t) {
            EXPECT_EQ(exactly(t), number >= 508 && number <= 515 ? NKStatusRefused : 0U);
          });
    }
  }
}

class ExactMixTargets : public testing::TestWithParam<std::int64_t> {};

using Kernel = nkdraw::ExactMixKernels::MixRow nkdraw::ExactMixKernels::*;

void expectPlainMix(std::int64_t target, Kernel kernel, std::size_t unitBytes,
                    const nkdraw::ExactMix& mix, std::size_t count, std::uint32_t seed) {
  const std::size_t bytes = count * unitBytes;
  Frame a(bytes, seed), b(bytes, seed + 1), wanted(bytes, 9), got(bytes, 9);
  (nkdraw::kPlainExactMix.*kernel)(mix, a.data(), b.data(), wanted.data(), count);
  (nkdraw::exactMixKernels(target).*kernel)(mix, a.data(), b.data(), got.data(), count);
  ASSERT_TRUE(wanted.all() == got.all())
      << mix.position << " of " << mix.range << ", " << count << " units of " << unitBytes;
}

TEST_P(ExactMixTargets, EqualThePlainFormForEveryCount) {
  const nkdraw::ExactMix mix = nkdraw::exactMix(7, 26);
  for (std::size_t count = 0; count <= 140; ++count) {
    const auto seed = static_cast<std::uint32_t>(count);
    ASSERT_NO_FATAL_FAILURE(
        expectPlainMix(GetParam(), &nkdraw::ExactMixKernels::bytes, 1, mix, count, seed));
    ASSERT_NO_FATAL_FAILURE(
        expectPlainMix(GetParam(), &nkdraw::ExactMixKernels::words, 2, mix, count, seed));
    ASSERT_NO_FATAL_FAILURE(
        expectPlainMix(GetParam(), &nkdraw::ExactMixKernels::v210, 4, mix, count, seed));
  }
}

/// Progress that lies near a half for some difference, or exactly there.
std::vector<nkdraw::ExactMix> hardMixes() {
  std::vector<nkdraw::ExactMix> mixes;
  const auto add = [&](std::uint64_t position, std::uint64_t range) {
    if (position > 0 && position < range && range <= 0xFFFFFFFF)
      mixes.push_back(nkdraw::exactMix(static_cast<std::uint32_t>(position),
                                       static_cast<std::uint32_t>(range)));
  };
  Random random(31);
  for (int i = 0; i < 60; ++i) {
    const std::uint64_t d = 1 + random.word() % 1023, odd = 2 * (random.word() % d) + 1;
    const std::uint64_t scale = 0xFFFFFFFF / (2 * d);
    add(odd, 2 * d);
    for (const std::int64_t off : {-1, 1})
      add(odd * scale + static_cast<std::uint64_t>(off), 2 * d * scale);
    const std::uint64_t range = random.word();
    add(random.word() % (range + 1), range);
    add(1 + random.word() % 60, 61);
  }
  add(1, 0xFFFFFFFF);
  add(0xFFFFFFFE, 0xFFFFFFFF);
  add(1, 2);
  return mixes;
}

TEST_P(ExactMixTargets, RoundEveryDifferenceOfTenBitsAsThePlainFormDoes) {
  std::vector<std::uint8_t> a, b;
  for (std::uint32_t i = 0; i < 2048; ++i) {
    const std::uint32_t low = i < 1024 ? 0 : 1023, other = i % 1024, mirrored = 1023 - other;
    std::uint8_t word[4];
    setWord(word, low | other << 10 | mirrored << 20);
    a.insert(a.end(), word, word + 4);
    setWord(word, other | low << 10 | other << 20);
    b.insert(b.end(), word, word + 4);
  }
  std::vector<std::uint8_t> wanted(a.size()), got(a.size());
  for (const nkdraw::ExactMix& mix : hardMixes()) {
    nkdraw::kPlainExactMix.v210(mix, a.data(), b.data(), wanted.data(), 2048);
    nkdraw::exactMixKernels(GetParam()).v210(mix, a.data(), b.data(), got.data(), 2048);
    ASSERT_TRUE(wanted == got) << mix.position << " of " << mix.range;
  }
}

TEST_P(ExactMixTargets, RoundBytesAndWordsAsThePlainFormDoes) {
  std::uint32_t seed = 0;
  for (const nkdraw::ExactMix& mix : hardMixes()) {
    ASSERT_NO_FATAL_FAILURE(
        expectPlainMix(GetParam(), &nkdraw::ExactMixKernels::bytes, 1, mix, 4096, ++seed));
    ASSERT_NO_FATAL_FAILURE(
        expectPlainMix(GetParam(), &nkdraw::ExactMixKernels::words, 2, mix, 4096, ++seed));
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, ExactMixTargets, testing::ValuesIn(nkdraw::test::everyTarget()),
                         nkdraw::test::targetName);

}  // namespace
