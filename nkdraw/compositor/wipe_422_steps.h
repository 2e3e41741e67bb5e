// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes of packed 4:2:2 in three steps, through a block that holds all frames with three bytes
// a pixel. These define the result.
#pragma once

#include "wipe_bands.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace nkdraw {

/// The three expanded frames, in one block that is freed with its last user.
struct ExpandedFrames {
  std::shared_ptr<void> block;  ///< null without memory
  std::uint8_t* a = nullptr;
  std::uint8_t* b = nullptr;
  std::uint8_t* result = nullptr;

  ExpandedFrames() = default;
  /// Throws what NKAlloc throws.
  ExpandedFrames(std::uint32_t width, std::uint32_t height);
};

inline constexpr std::uint32_t kExpandedBytes = 3;

/// A packed layout, and how to expand and pack its rows in whole groups.
struct PackedLayout {
  using ConvertRow = void (*)(const std::uint8_t* source, std::uint8_t* target,
                              std::uint32_t width);
  ConvertRow expand;
  ConvertRow pack;
  bool alternates;  ///< expands the frames row by row, not one after the other
};
extern const PackedLayout kPackedPairs, kPackedV210;

/// One wipe of packed frames: the caller's `frame`, and its expanded frames.
struct WipeSteps422 {
  WipeTask frame;
  const PackedLayout& layout;
  ExpandedFrames expanded{};

  void expand() const;
  void pack() const;
  /// As RunWipeBands.
  std::uint32_t wipe(WipeWait wait) const;
  /// The quarters of a mask's bits, without workers.
  void wipe(std::uint8_t quarters) const;

 private:
  [[nodiscard]] WipeTask expandedTask() const;
  [[nodiscard]] std::size_t expandedRow(std::uint32_t y) const;
  void expandRowA(std::uint32_t y) const;
  void expandRowB(std::uint32_t y) const;
};

}  // namespace nkdraw
