// SPDX-License-Identifier: BSD-2-Clause
//
// The cross-fade's vector forms against the plain one.
#include <tests/support/targets.h>

#include <nkdraw/compositor/wipe_mix.h>
#include <tests/support/frame.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using nkdraw::MixKernels;
using nkdraw::MixWeights;
using nkdraw::PartKind;
using nkdraw::test::Frame;

struct Progress {
  std::uint32_t position, range;
};

/// Every progress of short ranges, and seeded ones of long ranges.
std::vector<Progress> progresses() {
  std::vector<Progress> all;
  for (const std::uint32_t range :
       {2U,   3U,   5U,   7U,   24U,  25U,  30U,  49U,  50U,  51U,  60U, 99U,
        100U, 127U, 128U, 129U, 240U, 253U, 254U, 255U, 256U, 257U, 300U}) {
    for (std::uint32_t position = 1; position < range; ++position)
      all.push_back({position, range});
  }
  auto random = [engine = std::mt19937(7)]() mutable {
    return static_cast<std::uint32_t>(engine());
  };
  for (const std::uint32_t range : {500U, 1000U, 1001U, 4096U, 32767U, 65535U, 65536U, 65537U,
                                    90000U, 1000003U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    for (int i = 0; i < 40; ++i)
      all.push_back({1 + random() % (range - 1), range});
    all.push_back({1, range});
    all.push_back({range - 1, range});
    all.push_back({range / 2, range});
  }
  return all;
}

/// All 65,536 pairs of bytes.
struct AllPairs {
  std::vector<std::uint8_t> outgoing, incoming;
  AllPairs() {
    for (unsigned o = 0; o < 256; ++o) {
      for (unsigned n = 0; n < 256; ++n) {
        outgoing.push_back(static_cast<std::uint8_t>(o));
        incoming.push_back(static_cast<std::uint8_t>(n));
      }
    }
  }
};

class Mix : public testing::TestWithParam<std::int64_t> {
 protected:
  const MixKernels& kernels = nkdraw::mixKernels(GetParam());
};

TEST_P(Mix, OfBytesEqualsTruncatedDoublesForEveryPair) {
  const AllPairs pairs;
  const std::size_t count = pairs.outgoing.size();
  std::vector<std::uint8_t> wanted(count), got(count);
  for (const auto [position, range] : progresses()) {
    nkdraw::plainMixRow(PartKind::kByte)(MixWeights(position, range), pairs.outgoing.data(),
                                         pairs.incoming.data(), wanted.data(), count);
    kernels.bytes(nkdraw::byteMix(position, range), pairs.outgoing.data(), pairs.incoming.data(),
                  got.data(), count);
    ASSERT_EQ(wanted, got) << position << " of " << range;
  }
}

/// v210 words with every pair of bytes in the tops of their samples, and noise below.
TEST_P(Mix, OfV210EqualsTruncatedDoublesOfTheTopsOfItsSamples) {
  std::vector<std::uint8_t> outgoing, incoming;
  const auto add = [](std::vector<std::uint8_t>& words, unsigned top, unsigned other) {
    const std::uint32_t word = (top << 2 | 3U) | (other << 12 | 1U << 10) | top << 22 | 1U << 31;
    for (const int shift : {0, 8, 16, 24})
      words.push_back(static_cast<std::uint8_t>(word >> shift));
  };
  for (unsigned o = 0; o < 256; ++o) {
    for (unsigned n = 0; n < 256; ++n) {
      add(outgoing, o, n);
      add(incoming, n, 255 - o);
    }
  }
  outgoing.resize(outgoing.size() - 4 * 3);  // no whole vectors
  std::vector<std::uint8_t> wanted(outgoing.size()), got(outgoing.size());
  for (std::size_t i = 0; const auto [position, range] : progresses()) {
    if (i++ % 7 != 0)
      continue;
    const nkdraw::ByteMix mix = nkdraw::byteMix(position, range);
    nkdraw::mixV210Plainly(mix, outgoing.data(), incoming.data(), wanted.data(), wanted.size());
    kernels.v210(mix, outgoing.data(), incoming.data(), got.data(), got.size());
    ASSERT_EQ(wanted, got) << position << " of " << range;
  }
}

/// Words that are equal, close, at the ends, or anything.
std::vector<std::uint8_t> words(std::size_t count, std::uint32_t seed,
                                const std::vector<std::uint8_t>* like) {
  auto random = [engine = std::mt19937(seed)]() mutable {
    return static_cast<std::uint32_t>(engine());
  };
  std::vector<std::uint8_t> bytes(count * 2);
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t near =
        like == nullptr ? 0 : (*like)[2 * i] | std::uint32_t{(*like)[2 * i + 1]} << 8;
    const std::uint32_t kinds[] = {near, near + random() % 61, random() % 2 * 0xFFFF,
                                   random() & 0xFFFF, random() & 0xFFFF};
    const std::uint32_t value = kinds[random() % 5];
    bytes[2 * i] = static_cast<std::uint8_t>(value);
    bytes[2 * i + 1] = static_cast<std::uint8_t>(value >> 8);
  }
  return bytes;
}

TEST_P(Mix, OfWordsEqualsTruncatedDoubles) {
  constexpr std::size_t kCount = 20000;
  const auto outgoing = words(kCount, 1, nullptr), incoming = words(kCount, 2, &outgoing);
  std::vector<std::uint8_t> wanted(kCount * 2), got(kCount * 2);
  for (const auto [position, range] : progresses()) {
    nkdraw::plainMixRow(PartKind::kWord)(MixWeights(position, range), outgoing.data(),
                                         incoming.data(), wanted.data(), kCount);
    kernels.words(nkdraw::wordMix(position, range), outgoing.data(), incoming.data(), got.data(),
                  kCount);
    ASSERT_EQ(wanted, got) << position << " of " << range;
  }
}

TEST_P(Mix, OfEqualWordsEqualsTruncatedDoublesForEveryWord) {
  constexpr std::size_t kCount = 65536;
  std::vector<std::uint8_t> equal(kCount * 2), wanted(kCount * 2), got(kCount * 2);
  for (std::size_t i = 0; i < kCount; ++i) {
    equal[2 * i] = static_cast<std::uint8_t>(i);
    equal[2 * i + 1] = static_cast<std::uint8_t>(i >> 8);
  }
  for (const auto [position, range] :
       {Progress{1, 3}, {11, 25}, {7, 50}, {999, 1000}, {5, 65535}}) {
    nkdraw::plainMixRow(PartKind::kWord)(MixWeights(position, range), equal.data(), equal.data(),
                                         wanted.data(), kCount);
    kernels.words(nkdraw::wordMix(position, range), equal.data(), equal.data(), got.data(), kCount);
    ASSERT_EQ(wanted, got) << position << " of " << range;
  }
}

/// Rows of every short length, at any alignment: into a third buffer, and into either input.
template <class Row>
void expectTheSameOnEveryRow(PartKind kind, std::size_t partBytes, const MixWeights& weights,
                             Row row) {
  for (std::size_t count = 0; count < 150; ++count) {
    const std::size_t bytes = count * partBytes;
    for (std::size_t offset = 0; offset < 4; ++offset) {
      Frame outgoing(bytes, 1, 64 + offset), incoming(bytes, 2, 64 + offset);
      Frame wanted(bytes, 3, 64 + offset), got(bytes, 3, 64 + offset);
      nkdraw::plainMixRow(kind)(weights, outgoing.data(), incoming.data(), wanted.data(), count);
      row(outgoing.data(), incoming.data(), got.data(), count);
      ASSERT_EQ(wanted.all(), got.all()) << count;
      for (Frame* const input : {&outgoing, &incoming}) {
        Frame kept = *input;
        row(outgoing.data(), incoming.data(), input->data(), count);
        ASSERT_TRUE(std::ranges::equal(input->bytes(), wanted.bytes())) << count;
        ASSERT_TRUE(input->guardsIntact()) << count;
        *input = kept;
      }
    }
  }
}

TEST_P(Mix, OfBytesServesEveryLengthAndStartAndMayWriteOverAnInput) {
  for (const auto [position, range] : {Progress{1, 5}, {3, 16}, {13, 25}, {777, 1000}}) {
    auto mix = nkdraw::byteMix(position, range);
    for (const bool streams : {false, true}) {
      mix.streams = streams;
      expectTheSameOnEveryRow(PartKind::kByte, 1, MixWeights(position, range),
                              [&](const std::uint8_t* o, const std::uint8_t* n, std::uint8_t* to,
                                  std::size_t count) { kernels.bytes(mix, o, n, to, count); });
    }
  }
}

TEST_P(Mix, OfWordsServesEveryLengthAndStartAndMayWriteOverAnInput) {
  for (const auto [position, range] : {Progress{1, 5}, {3, 16}, {777, 1000}}) {
    auto mix = nkdraw::wordMix(position, range);
    for (const bool streams : {false, true}) {
      mix.streams = streams;
      expectTheSameOnEveryRow(PartKind::kWord, 2, MixWeights(position, range),
                              [&](const std::uint8_t* o, const std::uint8_t* n, std::uint8_t* to,
                                  std::size_t count) { kernels.words(mix, o, n, to, count); });
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, Mix, testing::ValuesIn(nkdraw::test::everyTarget()),
                         nkdraw::test::targetName);

TEST(RowMixer, EqualsThePlainFormAtAndBeyondTheEndsOfTheRange) {
  const AllPairs pairs;
  const std::size_t count = pairs.outgoing.size();
  for (const PartKind kind : {PartKind::kByte, PartKind::kWord, PartKind::kFloat}) {
    const std::size_t partBytes = kind == PartKind::kByte ? 1 : kind == PartKind::kWord ? 2 : 4;
    for (const auto [position, range] : {Progress{0, 25},
                                         {25, 25},
                                         {12, 25},
                                         {26, 25},
                                         {100, 3},
                                         {0xFFFFFFFF, 1},
                                         {0, 0},
                                         {4, 0}}) {
      std::vector<std::uint8_t> wanted(count), got(count);
      nkdraw::plainMixRow(kind)(MixWeights(position, range), pairs.outgoing.data(),
                                pairs.incoming.data(), wanted.data(), count / partBytes);
      nkdraw::RowMixer(kind, position, range, count)(pairs.outgoing.data(), pairs.incoming.data(),
                                                     got.data(), count / partBytes);
      ASSERT_EQ(wanted, got) << position << " of " << range;
    }
  }
}

TEST(PlainMix, LetsSomeEqualPartsComeOutOneLess) {
  int less = 0;
  for (std::uint32_t position = 1; position < 100; ++position) {
    for (unsigned value = 0; value < 256; ++value) {
      const auto part = static_cast<std::uint8_t>(value);
      const unsigned result = nkdraw::mixed(MixWeights(position, 100), part, part);
      ASSERT_TRUE(result == value || result + 1 == value);
      less += result != value ? 1 : 0;
    }
  }
  EXPECT_GT(less, 0);
}

TEST(PlainMix, CountsAnIncomingFloatAsAnInteger) {
  const float outgoing[] = {0.5F, 0.5F, 0.25F}, incoming[] = {0.999F, 1.0F, -2.75F};
  float result[3] = {};
  nkdraw::plainMixRow(PartKind::kFloat)(
      MixWeights(1, 4), reinterpret_cast<const std::uint8_t*>(outgoing),
      reinterpret_cast<const std::uint8_t*>(incoming), reinterpret_cast<std::uint8_t*>(result), 3);
  EXPECT_EQ(result[0], 0.375F);
  EXPECT_EQ(result[1], 0.625F);
  EXPECT_EQ(result[2], -0.3125F);
}

}  // namespace
