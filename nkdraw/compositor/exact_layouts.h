// SPDX-License-Identifier: BSD-2-Clause
//
// The layouts as exact wipes see them: groups whose bits all stay.
#pragma once

#include "samples_422.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nkdraw {

/// Groups of `pixels` pixels in `bytes` bytes, which move as a whole.
template <std::size_t pixels, std::size_t bytes>
struct WholeGroups {
  static constexpr std::size_t kPixels = pixels, kBytes = bytes;
  static constexpr bool kKeepsPairs = pixels > 1;
  using Group = std::array<std::uint8_t, bytes>;

  static void copy(const std::uint8_t* from, std::uint8_t* to, std::size_t groups) {
    std::memcpy(to, from, groups * bytes);
  }
  static void move(const std::uint8_t* group, std::size_t /*pixel*/, std::uint8_t* moved,
                   std::size_t groups) {
    copy(group, moved, groups);
  }
  /// No run begins within a group.
  [[nodiscard]] static Group overlay(std::size_t /*first*/) { return {}; }
};

using ExactPairs = WholeGroups<2, kPackedPair>;
template <std::size_t bytes>
using ExactPixels = WholeGroups<1, bytes>;

struct ExactV210 : WholeGroups<kGroupPixels, kGroupBytes> {
  static constexpr std::uint32_t kSamplesOfWord = 0x3FFFFFFF;

  /// From an even pixel on.
  static void move(const std::uint8_t* group, std::size_t pixel, std::uint8_t* moved,
                   std::size_t groups) {
    const std::size_t sample = pixel * 2;
    bestKernels422().moveV210({static_cast<unsigned>(sample % 3), false, kSamplesOfWord},
                              group + sample / 3 * sizeof(std::uint32_t), moved, groups);
  }
  [[nodiscard]] static Group overlay(std::size_t first) {
    const v210::Halves bits = v210::ownedBits(static_cast<int>(first), v210::kGroupPixels);
    Group group;
    std::memcpy(group.data(), &bits.low, sizeof bits.low);
    std::memcpy(group.data() + sizeof bits.low, &bits.high, sizeof bits.high);
    return group;
  }
};

}  // namespace nkdraw
