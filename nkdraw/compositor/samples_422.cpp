// SPDX-License-Identifier: BSD-2-Clause
//
// The plain form of packing and expanding 4:2:2: one pair or group at a time.
#include "samples_422.h"

#include <cstring>

namespace nkdraw {
namespace {

template <const PairOrder& order>
void expand(const std::uint8_t* packed, std::uint8_t* expanded, std::size_t pairs) {
  for (; pairs > 0; --pairs, packed += kPackedPair, expanded += kExpandedPair) {
    for (std::size_t i = 0; i < kExpandedPair; ++i)
      expanded[i] = packed[order.expanded[i]];
  }
}

template <const PairOrder& order>
void pack(const std::uint8_t* expanded, std::uint8_t* packed, std::size_t pairs) {
  for (; pairs > 0; --pairs, expanded += kExpandedPair, packed += kPackedPair) {
    for (std::size_t i = 0; i < kPackedPair; ++i)
      packed[i] = expanded[order.packed[i]];
  }
}

void samplesOfV210(const std::uint8_t* group, std::uint8_t* samples, std::size_t groups) {
  for (std::size_t words = groups * 4; words > 0; --words, group += 4, samples += 3) {
    samples[0] = static_cast<std::uint8_t>(group[0] >> 2 | group[1] << 6);
    samples[1] = static_cast<std::uint8_t>(group[1] >> 4 | group[2] << 4);
    samples[2] = static_cast<std::uint8_t>(group[2] >> 6 | group[3] << 2);
  }
}

void v210OfSamples(const std::uint8_t* samples, std::uint8_t* group, std::size_t groups) {
  for (std::size_t words = groups * 4; words > 0; --words, samples += 3, group += 4) {
    group[0] = static_cast<std::uint8_t>(samples[0] << 2);
    group[1] = static_cast<std::uint8_t>(samples[0] >> 6 | samples[1] << 4);
    group[2] = static_cast<std::uint8_t>(samples[1] >> 4 | samples[2] << 6);
    group[3] = static_cast<std::uint8_t>(samples[2] >> 2);
  }
}

void topsOfV210(const std::uint8_t* group, std::uint8_t* tops, std::size_t groups) {
  for (std::size_t words = groups * 4; words > 0; --words, group += 4, tops += 4) {
    std::uint32_t word;
    std::memcpy(&word, group, sizeof word);
    word &= kTopsOfWord;
    std::memcpy(tops, &word, sizeof word);
  }
}

std::uint32_t sampleAt(const std::uint8_t* group, std::size_t index) {
  std::uint32_t word;
  std::memcpy(&word, group + index / 3 * sizeof word, sizeof word);
  return word >> index % 3 * 10 & 0x3FF;
}

void moveV210(const V210Move& move, const std::uint8_t* group, std::uint8_t* moved,
              std::size_t groups) {
  for (std::size_t i = 0; i < groups * kGroupSamples; i += 3, moved += 4) {
    std::uint32_t word = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      const bool luma = (i + k) % 2 != 0;
      const std::size_t from = i + k + move.rest + (luma && move.byOne ? 2 : 0);
      word |= sampleAt(group, from) << k * 10;
    }
    word &= move.mask;
    std::memcpy(moved, &word, sizeof word);
  }
}

}  // namespace

constexpr Kernels422 kPlain422 = {
    expand<kOuterShared>, expand<kChromaFirst>, pack<kOuterShared>, pack<kChromaFirst>,
    samplesOfV210,        v210OfSamples,        moveV210,           topsOfV210};

}  // namespace nkdraw
