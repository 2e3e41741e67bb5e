// SPDX-License-Identifier: BSD-2-Clause
//
// The rows of the multiplexed display: every implementation against the rule.
#include "mux_reference.h"

#include <nkdraw/compositor/mux_rows.h>
#include <nkdraw/simd/vector_targets.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using nkdraw::MuxRows;
namespace reference = nkdraw::test::reference;

enum class Kind { kPlain, kKept, kStreamed };

/// An implementation of the rows, and the instructions that it needs; none if it runs everywhere.
struct Form {
  const char* name;
  std::int64_t target;
  Kind kind;
};

constexpr Form kForms[] = {
    {"Plain", 0, Kind::kPlain},
    {"Everywhere", 0, Kind::kKept},
    {"EverywhereStreamed", 0, Kind::kStreamed},
    {"SSE4", HWY_SSE4, Kind::kKept},
    {"SSE4Streamed", HWY_SSE4, Kind::kStreamed},
    {"AVX2", HWY_AVX2, Kind::kKept},
    {"AVX2Streamed", HWY_AVX2, Kind::kStreamed},
    {"AVX3", HWY_AVX3, Kind::kKept},
    {"AVX3Streamed", HWY_AVX3, Kind::kStreamed},
};

class MuxRowForm : public testing::TestWithParam<Form> {
 protected:
  void SetUp() override {
    const auto& [name, target, kind] = GetParam();
    if ((nkdraw::runnableTargets() & target) != target)
      GTEST_SKIP() << "this machine has no " << name;
    const nkdraw::MuxForms& forms = nkdraw::muxFormsFor(target);
    const MuxRows* const rowsByKind[] = {&nkdraw::kPlainMuxRows, &forms.kept, &forms.streamed};
    rows = rowsByKind[static_cast<std::size_t>(kind)];
  }

  const MuxRows* rows = nullptr;
};

INSTANTIATE_TEST_SUITE_P(, MuxRowForm, testing::ValuesIn(kForms),
                         [](const auto& form) { return form.param.name; });

/// Rows in memory of exactly their size, so that the sanitizer sees every byte beyond.
class Row {
 public:
  Row(std::size_t bytes, std::size_t offset, std::uint32_t seed)
      : storage_(std::make_unique<std::uint8_t[]>(offset + bytes)), bytes_(bytes), offset_(offset) {
    std::mt19937 noise(seed);
    for (std::size_t i = 0; i < offset + bytes; ++i)
      storage_[i] = static_cast<std::uint8_t>(noise() >> 24);
  }
  [[nodiscard]] std::uint8_t* data() { return storage_.get() + offset_; }
  [[nodiscard]] std::vector<std::uint8_t> all() const {
    return {storage_.get(), storage_.get() + offset_ + bytes_};
  }
  [[nodiscard]] std::size_t pixels() const { return bytes_ / 4; }

 private:
  std::unique_ptr<std::uint8_t[]> storage_;
  std::size_t bytes_, offset_;
};

constexpr std::size_t kPairs = 65536;

/// Rows in which all 65,536 pairs of bytes of the first and the second appear at each of the four
/// places of a pixel: in the same order at all places, or in a different order at each.
struct AllPairs {
  explicit AllPairs(bool sameEverywhere) : first(kPairs * 4), second(kPairs * 4) {
    constexpr std::uint32_t kOrders[] = {1, 12345, 40503, 60013};  // odd: each reaches every pair
    for (std::uint32_t i = 0; i < kPairs; ++i) {
      for (std::size_t place = 0; place < 4; ++place) {
        const std::uint32_t pair = i * (sameEverywhere ? 1 : kOrders[place]);
        first[4 * i + place] = static_cast<std::uint8_t>(pair);
        second[4 * i + place] = static_cast<std::uint8_t>(pair >> 8);
      }
    }
  }
  std::vector<std::uint8_t> first, second;
};

using PixelRule = std::function<std::uint32_t(std::uint32_t f, std::uint32_t s)>;

template <class Rule>
void expectForAllPairs(nkdraw::MuxRow<Rule> row, Rule rule, const PixelRule& pixel,
                       std::uint32_t setting) {
  static const AllPairs kPairsTwice[] = {AllPairs(true), AllPairs(false)};
  for (const AllPairs& pairs : kPairsTwice) {
    std::vector<std::uint8_t> shown(kPairs * 4), expected(kPairs * 4);
    row(rule, pairs.first.data(), pairs.second.data(), shown.data(), kPairs);
    for (std::size_t i = 0; i < expected.size(); i += 4)
      reference::store(&expected[i],
                       pixel(reference::load(&pairs.first[i]), reference::load(&pairs.second[i])));
    ASSERT_EQ(shown, expected) << "setting " << setting;
  }
}

TEST_P(MuxRowForm, AveragesEveryPairOfBytes) {
  expectForAllPairs(rows->average, nkdraw::Average{}, reference::average, 0);
}

TEST_P(MuxRowForm, MixesTheChannelsOfEveryPairOfBytes) {
  expectForAllPairs(
      rows->channels, nkdraw::ChannelMix{0x00FF0000, 0x000000FF},
      [](std::uint32_t f, std::uint32_t s) { return reference::channels(4, f, s); }, 4);
  expectForAllPairs(
      rows->channels, nkdraw::ChannelMix{0xFF00FF00, 0x00FF00FF},
      [](std::uint32_t f, std::uint32_t s) { return reference::channels(32, f, s); }, 32);
}

TEST_P(MuxRowForm, TakesTheDifferenceOfEveryPairOfBytesWithEveryGain) {
  for (std::int16_t gain = 1; gain <= 255; ++gain) {
    const auto threshold = static_cast<std::uint32_t>(gain);
    expectForAllPairs(
        rows->difference, nkdraw::Difference{gain},
        [threshold](std::uint32_t f, std::uint32_t s) {
          return reference::difference(f, s, threshold);
        },
        threshold);
  }
}

TEST_P(MuxRowForm, ComparesEveryPairOfBytesWithEveryThreshold) {
  std::vector<std::uint32_t> thresholds = {256, 257, 65535, 65536, 0x80000000, 0xFFFFFFFF};
  for (std::uint32_t threshold = 0; threshold < 256; ++threshold)
    thresholds.push_back(threshold);
  for (const std::uint32_t threshold : thresholds) {
    const bool swapped = threshold % 2 != 0;
    const nkdraw::Compare rule{threshold, static_cast<std::uint8_t>(swapped ? 0xFF : 0)};
    expectForAllPairs(
        rows->compare, rule,
        [&](std::uint32_t f, std::uint32_t s) {
          return reference::compare(f, s, threshold, swapped);
        },
        threshold);
  }
}

TEST_P(MuxRowForm, FadesEveryPairOfBytesByEveryWeightAndByWeightsThatWrap) {
  std::vector<std::uint32_t> amounts = {257U << 8,   300U << 8,   511U << 8,   512U << 8,
                                        32767U << 8, 32768U << 8, 65535U << 8, 65536U << 8,
                                        70000,       0x00800000,  0x80000000,  0xFFFFFFFF};
  for (std::uint32_t weight = 0; weight <= 256; ++weight)
    amounts.push_back(weight << 8);
  for (const std::uint32_t amount : amounts) {
    const nkdraw::Fade rule{amount >> 8, 256 - (amount >> 8)};
    expectForAllPairs(
        rows->fade, rule,
        [amount](std::uint32_t f, std::uint32_t s) { return reference::fade(f, s, amount); },
        amount);
  }
}

TEST_P(MuxRowForm, ShowsEachByteInGrey) {
  static constexpr std::uint32_t kMasks[] = {0x000000FF, 0x0000FF00, 0x00FF0000, 0xFF000000};
  for (std::uint8_t place = 0; place < 4; ++place)
    expectForAllPairs(
        rows->greyByte, nkdraw::GreyByte{place},
        [place](std::uint32_t f, std::uint32_t) { return reference::grey(f, kMasks[place]); },
        place);
}

TEST_P(MuxRowForm, ShowsTheMeanOfAnyThreeBytesInGrey) {
  std::vector<std::uint8_t> pixels(kPairs * 4), shown(kPairs * 4), expected(kPairs * 4);
  for (int third = 0; third < 256; ++third) {
    for (std::size_t i = 0; i < kPairs; ++i) {
      const std::uint32_t pixel =
          static_cast<std::uint32_t>(i) | static_cast<std::uint32_t>(third) << 16 | 0xA5000000;
      reference::store(&pixels[4 * i], pixel);
      reference::store(&expected[4 * i], reference::grey(pixel, 1));
    }
    rows->greyMean({}, pixels.data(), nullptr, shown.data(), kPairs);
    ASSERT_EQ(shown, expected) << third;
  }
}

/// A row of two frames, and the rule for pixel x.
struct RowCase {
  const char* name;
  std::function<void(const MuxRows& rows, const std::uint8_t* f, const std::uint8_t* s,
                     std::uint8_t* output, std::size_t width)>
      draw;
  std::function<std::uint32_t(std::uint32_t f, std::uint32_t s, std::size_t x)> pixel;
};

template <class Argument, class Rule>
RowCase rowCase(const char* name, nkdraw::MuxRow<Argument> MuxRows::*form, const Rule& rule,
                std::function<std::uint32_t(std::uint32_t, std::uint32_t, std::size_t)> pixel) {
  return {name,
          [form, rule](const MuxRows& rows, const std::uint8_t* f, const std::uint8_t* s,
                       std::uint8_t* output,
                       std::size_t width) { (rows.*form)(rule, f, s, output, width); },
          std::move(pixel)};
}

std::vector<RowCase> allRowCases() {
  using Word = std::uint32_t;
  std::vector<RowCase> cases = {
      rowCase("channels", &MuxRows::channels, nkdraw::ChannelMix{0xFFFF0000, 0x0000FFFF},
              [](Word f, Word s, std::size_t) { return reference::channels(8, f, s); }),
      rowCase("average", &MuxRows::average, nkdraw::Average{},
              [](Word f, Word s, std::size_t) { return reference::average(f, s); }),
      rowCase("difference", &MuxRows::difference, nkdraw::Difference{3},
              [](Word f, Word s, std::size_t) { return reference::difference(f, s, 3); }),
      rowCase("compare", &MuxRows::compare, nkdraw::Compare{160, 0xFF},
              [](Word f, Word s, std::size_t) { return reference::compare(f, s, 160, true); }),
      rowCase("fade", &MuxRows::fade, nkdraw::Fade{77, 179},
              [](Word f, Word s, std::size_t) { return reference::fade(f, s, 77 << 8); }),
      rowCase("grey byte", &MuxRows::greyByte, nkdraw::GreyByte{2},
              [](Word f, Word, std::size_t) { return reference::grey(f, 0x00FF0000); }),
      rowCase("grey mean", &MuxRows::greyMean, nkdraw::GreyMean{},
              [](Word f, Word, std::size_t) { return reference::grey(f, 0); })};
  for (std::uint32_t run = 1; run <= nkdraw::Runs::kLongest; ++run)
    cases.push_back(rowCase<const nkdraw::Runs&>(
        "runs", &MuxRows::runs, nkdraw::Runs(run),
        [run](Word f, Word s, std::size_t x) { return x / run % 2 == 0 ? f : s; }));
  return cases;
}

TEST_P(MuxRowForm, DrawsEveryWidthAtEveryAlignmentAndNoByteBeside) {
  for (const RowCase& row : allRowCases()) {
    for (std::size_t width = 0; width <= 70; ++width) {
      const std::size_t offsets = width * 7;
      Row f(4 * width, offsets % 4, 1), s(4 * width, offsets / 4 % 4, 2);
      for (std::size_t offset = 0; offset < 8; ++offset) {
        Row output(4 * width, offset, 3);
        std::vector<std::uint8_t> expected = output.all();
        for (std::size_t x = 0; x < width; ++x)
          reference::store(
              &expected[offset + 4 * x],
              row.pixel(reference::load(f.data() + 4 * x), reference::load(s.data() + 4 * x), x));
        row.draw(*rows, f.data(), s.data(), output.data(), width);
        ASSERT_EQ(output.all(), expected) << row.name << " width " << width << " at " << offset;
      }
    }
  }
}

TEST_P(MuxRowForm, DrawsInPlaceOfEitherInput) {
  for (const RowCase& row : allRowCases()) {
    for (const std::size_t width : {1U, 15U, 16U, 17U, 69U, 230U}) {
      for (const bool ofFirst : {true, false}) {
        Row f(4 * width, 0, 1), s(4 * width, 0, 2);
        Row& output = ofFirst ? f : s;
        std::vector<std::uint8_t> expected = output.all();
        for (std::size_t x = 0; x < width; ++x)
          reference::store(&expected[4 * x], row.pixel(reference::load(f.data() + 4 * x),
                                                       reference::load(s.data() + 4 * x), x));
        row.draw(*rows, f.data(), s.data(), output.data(), width);
        ASSERT_EQ(output.all(), expected) << row.name << " width " << width;
      }
    }
  }
}

TEST_P(MuxRowForm, TakesEveryOtherPixelUpToTheLastOneOnly) {
  for (std::size_t count = 0; count <= 70; ++count) {
    for (std::size_t offset = 0; offset < 4; ++offset) {
      Row source(count == 0 ? 0 : 4 * (2 * count - 1), offset, 1);
      Row output(4 * count, 3 - offset, 2);
      std::vector<std::uint8_t> expected = output.all();
      for (std::size_t i = 0; i < count; ++i)
        reference::store(&expected[3 - offset + 4 * i], reference::load(source.data() + 8 * i));
      rows->everyOther(source.data(), output.data(), count);
      ASSERT_EQ(output.all(), expected) << count;
    }
  }
}

TEST_P(MuxRowForm, TakesPixelsBackwardsDownToTheFirstOneOnly) {
  for (std::size_t count = 1; count <= 70; ++count) {
    for (std::size_t offset = 0; offset < 4; ++offset) {
      Row source(4 * count, offset, 1), output(4 * count, 3 - offset, 2);
      std::vector<std::uint8_t> expected = output.all();
      for (std::size_t i = 0; i < count; ++i)
        reference::store(&expected[3 - offset + 4 * i],
                         reference::load(source.data() + 4 * (count - 1 - i)));
      rows->backwards(source.data() + 4 * (count - 1), output.data(), count);
      ASSERT_EQ(output.all(), expected) << count;
    }
  }
}

TEST(MuxRows, OfThisMachineAreTheBestThatItRuns) {
  EXPECT_EQ(&nkdraw::muxForms(), &nkdraw::muxFormsFor(nkdraw::runnableTargets()));
}

}  // namespace
