// SPDX-License-Identifier: BSD-2-Clause
//
// The packed 4:2:2 layouts as their wipes see them: groups of samples of eight bits.
#pragma once

#include "samples_422.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nkdraw {

[[nodiscard]] constexpr std::size_t ceilDivide(std::size_t value, std::size_t divisor) {
  return (value + divisor - 1) / divisor;
}

/// A pixel as a wipe sees it: its luma and both chroma samples.
using Pixel422 = std::array<std::uint8_t, kExpandedPair / 2>;

/// What the layouts have in common. A pair takes its chroma from its first pixel.
template <class Layout, std::size_t samples>
struct Groups422 {
  using Samples = std::array<std::uint8_t, samples + kSampleSlack>;
  static constexpr bool kKeepsPairs = false;

  /// Pixel `x` of a packed row.
  [[nodiscard]] static Pixel422 pixelOf(const std::uint8_t* row, std::size_t x) {
    Samples unpacked;
    Layout::unpack(row + x / Layout::kPixels * Layout::kBytes, unpacked.data(), 1);
    const std::size_t pair = x % Layout::kPixels / 2 * kPackedPair,
                      half = x % 2 * Pixel422().size();
    Pixel422 pixel;
    for (std::size_t i = 0; i < pixel.size(); ++i)
      pixel[i] = unpacked[pair + Layout::kOrder.expanded[half + i]];
    return pixel;
  }

  /// Replaces pixel `x` of a packed row.
  static void putPixel(std::uint8_t* row, std::size_t x, const Pixel422& pixel) {
    Samples unpacked;
    std::uint8_t* const group = row + x / Layout::kPixels * Layout::kBytes;
    Layout::unpack(group, unpacked.data(), 1);
    put(unpacked, x % Layout::kPixels, pixel);
    Layout::pack(unpacked.data(), group, 1);
  }

  /// The bits of a group that its pixels from `first` on replace.
  [[nodiscard]] static auto overlay(std::size_t first) {
    Samples owned{};
    for (std::size_t x = first; x < Layout::kPixels; ++x)
      put(owned, x, {0xFF, 0xFF, 0xFF});
    std::array<std::uint8_t, Layout::kBytes> bits;
    Layout::pack(owned.data(), bits.data(), 1);
    return bits;
  }

 private:
  static void put(Samples& unpacked, std::size_t x, const Pixel422& pixel) {
    for (std::size_t i = 0; i < kPackedPair; ++i) {
      const std::size_t from = Layout::kOrder.packed[i];
      if (from / pixel.size() == x % 2)
        unpacked[x / 2 * kPackedPair + i] = pixel[from % pixel.size()];
    }
  }
};

/// v210: the two low bits of its samples are dropped.
struct V210Groups : Groups422<V210Groups, kGroupSamples> {
  static constexpr std::size_t kPixels = kGroupPixels, kBytes = kGroupBytes;
  static constexpr std::size_t kSamples = kGroupSamples;
  static constexpr const PairOrder& kOrder = kChromaFirst;

  static void copy(const std::uint8_t* from, std::uint8_t* to, std::size_t groups) {
    bestKernels422().topsOfV210(from, to, groups);
  }
  static void unpack(const std::uint8_t* group, std::uint8_t* samples, std::size_t groups) {
    bestKernels422().samplesOfV210(group, samples, groups);
  }
  static void pack(const std::uint8_t* samples, std::uint8_t* group, std::size_t groups) {
    bestKernels422().v210OfSamples(samples, group, groups);
  }
  /// Groups of the pixels from `pixel` of a group's row on; may read kMoveSlack words more.
  static void move(const std::uint8_t* group, std::size_t pixel, std::uint8_t* moved,
                   std::size_t groups) {
    const std::size_t sample = pixel / 2 * kPackedPair;
    bestKernels422().moveV210({static_cast<unsigned>(sample % 3), pixel % 2 != 0, kTopsOfWord},
                              group + sample / 3 * sizeof(std::uint32_t), moved, groups);
  }
};

/// Two pixels in four bytes, which are their samples.
struct PairGroups : Groups422<PairGroups, kPackedPair> {
  static constexpr std::size_t kPixels = 2, kBytes = kPackedPair, kSamples = kPackedPair;
  static constexpr const PairOrder& kOrder = kOuterShared;

  static void copy(const std::uint8_t* from, std::uint8_t* to, std::size_t groups) {
    std::memcpy(to, from, groups * kBytes);
  }
  static void unpack(const std::uint8_t* group, std::uint8_t* samples, std::size_t groups) {
    copy(group, samples, groups);
  }
  static void pack(const std::uint8_t* samples, std::uint8_t* group, std::size_t groups) {
    copy(samples, group, groups);
  }
  /// As V210Groups. From a second pixel on, pairs get the chroma of that pixel's pair.
  static void move(const std::uint8_t* group, std::size_t pixel, std::uint8_t* moved,
                   std::size_t groups) {
    if (pixel % 2 == 0)
      return copy(group, moved, groups);
    for (; groups > 0; --groups, group += kBytes, moved += kBytes) {
      std::uint32_t pair, next;
      std::memcpy(&pair, group, sizeof pair);
      std::memcpy(&next, group + kBytes, sizeof next);
      pair = (pair & 0xFF0000FF) | (pair >> 8 & 0xFF00) | (next << 8 & 0xFF0000);
      std::memcpy(moved, &pair, sizeof pair);
    }
  }
};

}  // namespace nkdraw
