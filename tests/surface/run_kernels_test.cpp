// SPDX-License-Identifier: BSD-2-Clause
//
// The vector forms of the loops for runs, against the plain ones and against their definitions.
#include <nkdraw/surface/rgb_plotter.h>
#include <nkdraw/surface/run_kernels.h>

#include <tests/support/frame.h>
#include <tests/support/targets.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

namespace {

using nkdraw::Block;
using nkdraw::RunKernels;
using nkdraw::test::Frame;
using nkdraw::test::Random;

constexpr std::size_t kLongest = 300;
constexpr std::size_t kMisalignments = 33;

class RunKernelsTest : public testing::TestWithParam<std::int64_t> {
 protected:
  /// The same run in both forms, at every start against the vectors.
  template <class Run>
  void compare(std::size_t bytes, std::uint32_t seed, Run run) {
    for (std::size_t start = 0; start < kMisalignments; ++start) {
      Frame plain(kMisalignments + bytes, seed), vectors(kMisalignments + bytes, seed);
      run(nkdraw::kPlainRuns, plain.data() + start);
      run(nkdraw::runKernels(GetParam()), vectors.data() + start);
      ASSERT_EQ(plain.all(), vectors.all()) << bytes << " bytes from " << start;
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Targets, RunKernelsTest, testing::ValuesIn(nkdraw::test::everyTarget()),
                         nkdraw::test::targetName);

template <std::size_t kPixel>
std::array<std::uint8_t, kPixel> pixelOf(Random& random) {
  std::array<std::uint8_t, kPixel> pixel;
  for (std::uint8_t& byte : pixel)
    byte = static_cast<std::uint8_t>(random.word());
  return pixel;
}

template <std::size_t kPixel>
void expectBlock() {
  Random random(7);
  const auto pixel = pixelOf<kPixel>(random);
  const Block block(pixel);
  for (std::size_t from = 0; from < Block::kBytes; ++from) {
    const Block other = block.from(from);
    for (std::size_t i = 0; i < Block::kBytes; ++i)
      ASSERT_EQ(other[i], pixel[(from + i) % kPixel]) << kPixel << " from " << from << " at " << i;
  }
}

TEST(Blocks, RepeatAPixelFromAnyOfTheirBytesOn) {
  expectBlock<1>();
  expectBlock<2>();
  expectBlock<3>();
  expectBlock<4>();
  expectBlock<6>();
  expectBlock<8>();
}

TEST(PlainRuns, RepeatTheBlock) {
  Random random(3);
  const auto pixel = pixelOf<6>(random);
  std::vector<std::uint8_t> bytes(100);
  nkdraw::kPlainRuns.repeat(bytes.data(), Block(pixel), bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i)
    ASSERT_EQ(bytes[i], pixel[i % 6]);
}

TEST_P(RunKernelsTest, RepeatIsThePlainOneForEveryLength) {
  Random random(1);
  for (std::size_t bytes = 0; bytes <= kLongest; ++bytes) {
    const Block three(pixelOf<3>(random)), eight(pixelOf<8>(random));
    compare(bytes, 1, [&](const RunKernels& k, std::uint8_t* at) { k.repeat(at, three, bytes); });
    compare(bytes, 2, [&](const RunKernels& k, std::uint8_t* at) { k.repeat(at, eight, bytes); });
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_P(RunKernelsTest, BitsAreSetAsInThePlainFormForEveryNumberOfGroups) {
  Random random(2);
  for (std::size_t groups = 0; groups <= 20; ++groups) {
    nkdraw::MaskedGroup group;
    group.kept = pixelOf<16>(random);
    group.colour = pixelOf<16>(random);
    compare(16 * groups, 3,
            [&](const RunKernels& k, std::uint8_t* at) { k.setBits(at, group, groups); });
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST(PlainRuns, LeaveTheBitsThatAreKept) {
  nkdraw::MaskedGroup group = {};
  group.kept.fill(0xF0);
  group.colour.fill(0x5A);
  std::vector<std::uint8_t> bytes(32, 0xC3);
  nkdraw::kPlainRuns.setBits(bytes.data(), group, 2);
  EXPECT_EQ(bytes, std::vector<std::uint8_t>(32, 0xCA));
}

TEST_P(RunKernelsTest, MergeIsThePlainOneForEveryLength) {
  for (std::size_t bytes = 0; bytes <= kLongest; ++bytes) {
    // Sources end with the run, so that a sanitizer reports reads past it.
    Frame kept(bytes, 11, 0), row(bytes, 12, 0);
    for (std::size_t i = 0; i < bytes; ++i)
      row.data()[i] = static_cast<std::uint8_t>(row.data()[i] & ~kept.data()[i]);
    compare(bytes, 4, [&](const RunKernels& k, std::uint8_t* at) {
      k.merge(at, kept.data(), row.data(), bytes);
    });
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_P(RunKernelsTest, BlendsAreThoseOfDoublesForEveryNumberOfWords) {
  Random random(5);
  constexpr double kAlphas[] = {1.0, 0.5, 1.0 / 3.0, 1e-9, 0.999999999, 4.9e-324, 1.0 / 255.0};
  for (std::size_t words = 0; words <= 40; ++words) {
    const double alpha = words < std::size(kAlphas) ? kAlphas[words] : random.real(1e-6, 1.0);
    const std::uint32_t colour = words % 5 == 0 ? 0xFFFFFFFF : random.word();
    compare(4 * words, 5 + static_cast<std::uint32_t>(words),
            [&](const RunKernels& k, std::uint8_t* at) { k.blendWords(at, colour, alpha, words); });
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_P(RunKernelsTest, BlendsOfExtremeWordsAreThoseOfDoubles) {
  constexpr std::uint32_t kWords[] = {0,          1,          2,          0x7FFFFFFF,
                                      0x80000000, 0x80000001, 0xFFFFFFFE, 0xFFFFFFFF};
  Random random(6);
  for (const std::uint32_t under : kWords) {
    for (const std::uint32_t colour : kWords) {
      for (int i = 0; i < 200; ++i) {
        const double alpha = i == 0 ? 1.0 : random.real(0.0, 1.0);
        std::array<std::uint32_t, 8> words;
        words.fill(under);
        nkdraw::runKernels(GetParam())
            .blendWords(reinterpret_cast<std::uint8_t*>(words.data()), colour, alpha, words.size());
        const auto want = static_cast<std::uint32_t>(
            static_cast<std::int64_t>((1.0 - alpha) * under + colour * alpha));
        for (const std::uint32_t word : words)
          ASSERT_EQ(word, want) << under << " under " << colour << " at " << alpha;
      }
    }
  }
}

TEST_P(RunKernelsTest, BlendsRoundEachOfTheirProducts) {
  // Words whose result differs by one if the product is fused with the sum.
  struct Blend {
    std::uint32_t under, colour;
    double alpha;
  };
  constexpr Blend kBlends[] = {
      {0x9A96FFA0, 0x41A424CC, 0.3},       {0x36958E71, 0x01DA1283, 0.3},
      {0x1B47B95E, 0xDE7F1CCC, 1.0 / 3.0}, {0x92057A67, 0x2CE07597, 0.55},
      {0x016191C1, 0x7942D728, 1.0 / 3.0}, {0x1E1B7A80, 0x226EBA52, 0.3},
  };
  for (const auto& [under, colour, alpha] : kBlends) {
    const double rest = (1.0 - alpha) * under, part = colour * alpha;
    const double fused = std::floor(std::fma(1.0 - alpha, under, part));
    const double alsoFused = std::floor(std::fma(colour, alpha, rest));
    const double want = std::floor(rest + part);
    EXPECT_TRUE(fused != want || alsoFused != want);
    std::array<std::uint32_t, 9> words;
    words.fill(under);
    nkdraw::runKernels(GetParam())
        .blendWords(reinterpret_cast<std::uint8_t*>(words.data()), colour, alpha, words.size());
    for (const std::uint32_t word : words)
      EXPECT_EQ(word, want) << under << " under " << colour << " at " << alpha;
  }
}

TEST_P(RunKernelsTest, BytesAreAddedAsInThePlainFormForEveryNumberOfWords) {
  Random random(8);
  for (std::size_t words = 0; words <= 40; ++words) {
    const std::uint32_t addends = random.word();
    compare(4 * words, 9,
            [&](const RunKernels& k, std::uint8_t* at) { k.addBytes(at, addends, words); });
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST(PlainRuns, AddBytesThatWrapAndSetTheLast) {
  std::array<std::uint8_t, 4> word = {100, 200, 0, 7};
  nkdraw::kPlainRuns.addBytes(word.data(), 0x09FF64C8, 1);
  EXPECT_EQ(word, (std::array<std::uint8_t, 4>{44, 44, 255, 255}));
}

/// All weights and channels: what the short way adds is what doubles give over every byte, and
/// where that differs from byte to byte there is no short way.
TEST(AdditiveStep, AddsTheSameToEveryByteWhereverItSaysSo) {
  int withoutShortWay = 0;
  for (unsigned weight = 0; weight < 256; ++weight) {
    for (unsigned channel = 0; channel < 256; ++channel) {
      const auto c = static_cast<std::uint8_t>(channel);
      const nkdraw::rgb::AddBytes step{{c, c, c, static_cast<std::uint8_t>(weight)}};
      const auto addends = step.wholeAddends();
      withoutShortWay += addends ? 0 : 1;
      for (unsigned old = 0; addends && old < 256; ++old) {
        const double sum = (weight / 255.0) * channel + old;
        ASSERT_EQ(static_cast<std::uint8_t>(static_cast<std::int64_t>(sum)),
                  static_cast<std::uint8_t>(*addends + old))
            << weight << ' ' << channel << ' ' << old;
      }
    }
  }
  EXPECT_LT(withoutShortWay, 700);
}

}  // namespace
