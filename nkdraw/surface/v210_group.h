// SPDX-License-Identifier: BSD-2-Clause
//
// A v210 group as numbers: which bits each pixel has, and how colours are stored.
#pragma once

#include <nkdraw/surface/layout_facts.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nkdraw::v210 {

inline constexpr const LayoutFacts& kFacts = kFactsOf<ptV210>;
inline constexpr int kGroupPixels = kFacts.groupPixels;
inline constexpr int kGroupBytes = kFacts.groupBytes;
inline constexpr std::uint32_t kSampleMask = (1U << kFacts.depth) - 1;

/// A sample's position in a group: one of four little-endian words, and the lowest bit there.
struct Sample {
  std::uint8_t word;
  std::uint8_t shift;
};

/// The first samples of a channel.
template <std::size_t count>
constexpr std::array<Sample, count> samplesOf(Channel channel) {
  std::array<Sample, count> samples{};
  for (std::size_t n = 0; n < count; ++n) {
    const unsigned bit = sampleBit(kFacts, sampleOf(kFacts, channel, n));
    samples[n] = {static_cast<std::uint8_t>(bit / 32), static_cast<std::uint8_t>(bit % 32)};
  }
  return samples;
}

inline constexpr auto kLuma = samplesOf<kGroupPixels>(Channel::kY);
inline constexpr auto kCb = samplesOf<kGroupPixels / 2>(Channel::kCb);
inline constexpr auto kCr = samplesOf<kGroupPixels / 2>(Channel::kCr);

/// A group in two halves of eight bytes, as numbers.
struct Halves {
  std::uint64_t low = 0, high = 0;

  constexpr void put(Sample sample, std::uint64_t value) {
    (sample.word < 2 ? low : high) |= value << (sample.shift + (sample.word % 2) * 32);
  }
};

/// The bits that pixels from `first` up to, but not including, `last` own or share.
constexpr Halves ownedBits(int first, int last) {
  Halves bits;
  for (int m = first; m < last; ++m) {
    bits.put(kLuma[static_cast<std::size_t>(m)], kSampleMask);
    bits.put(kCb[static_cast<std::size_t>(m / 2)], kSampleMask);
    bits.put(kCr[static_cast<std::size_t>(m / 2)], kSampleMask);
  }
  return bits;
}

/// ownedBits for every range of pixels in a group.
inline constexpr auto kOwned = [] {
  std::array<std::array<Halves, kGroupPixels + 1>, kGroupPixels> table{};
  for (int first = 0; first < kGroupPixels; ++first) {
    for (int last = first + 1; last <= kGroupPixels; ++last)
      table[static_cast<std::size_t>(first)][static_cast<std::size_t>(last)] =
          ownedBits(first, last);
  }
  return table;
}();

/// A whole group in the colour `code` (Y, Cb, Cr in ten bits each, from bit 0).
constexpr Halves filledGroup(std::uint64_t code) {
  Halves group;
  for (const Sample sample : kLuma)
    group.put(sample, code & kSampleMask);
  for (const Sample sample : kCb)
    group.put(sample, (code >> 10) & kSampleMask);
  for (const Sample sample : kCr)
    group.put(sample, (code >> 20) & kSampleMask);
  return group;
}

/// Some pixels of a group, each in its own colour.
class GroupEditor {
 public:
  explicit GroupEditor(char* group) : group_(group) {
    std::memcpy(&bits_.low, group_, sizeof bits_.low);
    std::memcpy(&bits_.high, group_ + 8, sizeof bits_.high);
  }

  /// Sets pixel `m` to the colour `code`, in the form that filledGroup takes.
  void put(std::size_t m, std::uint64_t code) {
    Halves colour;
    colour.put(kLuma[m], code & kSampleMask);
    colour.put(kCb[m / 2], (code >> 10) & kSampleMask);
    colour.put(kCr[m / 2], (code >> 20) & kSampleMask);
    const Halves& owned = kOwned[m][m + 1];
    bits_.low = (bits_.low & ~owned.low) | colour.low;
    bits_.high = (bits_.high & ~owned.high) | colour.high;
  }

  void store() const {
    std::memcpy(group_, &bits_.low, sizeof bits_.low);
    std::memcpy(group_ + 8, &bits_.high, sizeof bits_.high);
  }

 private:
  char* group_;
  Halves bits_;
};

}  // namespace nkdraw::v210
