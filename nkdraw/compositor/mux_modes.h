// SPDX-License-Identifier: BSD-2-Clause
//
// How two frames share one display.
#pragma once

#include "wipe_bands.h"

#include <cstdint>

namespace nkdraw {

/// Two frames in their places on the display, and the settings of the modes. Rows of all three
/// frames are `pitch` bytes apart.
struct MuxTask {
  const std::uint8_t* first;
  const std::uint8_t* second;
  std::uint8_t* output;
  std::uint32_t sizeA, sizeB;  ///< bytes that the block copies of the first and second take
  std::uint32_t mode;          ///< with its flags
  std::uint32_t wipe, amount, threshold, splitX, splitY;
  std::uint32_t width, height, pitch;
  WipeWait wait;  ///< of a wipe

  [[nodiscard]] constexpr bool has(std::uint32_t flag) const { return (mode & flag) != 0; }
};

using MuxMode = void (*)(const MuxTask&);

/// The mode for bits 0 to 23 of the mode word. Values are not flags: an unknown value, even a sum
/// of known ones, copies the first frame.
[[nodiscard]] MuxMode modeOf(std::uint32_t value);

}  // namespace nkdraw
