// SPDX-License-Identifier: BSD-2-Clause
//
// How two frames share one display.
#pragma once

#include <cstdint>

namespace nkdraw {

/// Flags above the mode value.
inline constexpr std::uint32_t kMuxValueBits = 0x00FFFFFF;
inline constexpr std::uint32_t kMuxGrid = 1U << 24;
inline constexpr std::uint32_t kMuxMirrorSecondHorz = 1U << 25;
inline constexpr std::uint32_t kMuxMirrorSecondVert = 1U << 26;
inline constexpr std::uint32_t kMuxMarkSplit = 1U << 27;
inline constexpr std::uint32_t kMuxOtherWay = 1U << 28;
inline constexpr std::uint32_t kMuxMirrorFirstHorz = 1U << 29;
inline constexpr std::uint32_t kMuxMirrorFirstVert = 1U << 30;
inline constexpr std::uint32_t kMuxSwapInputs = 1U << 31;

/// Two frames in the places that they have on the display, and the settings of the modes. Rows of
/// all three are `pitch` bytes apart.
struct MuxTask {
  const std::uint8_t* first;
  const std::uint8_t* second;
  std::uint8_t* output;
  std::uint32_t sizeA, sizeB;  ///< bytes that the block copies of the first and second take
  std::uint32_t mode;          ///< with its flags
  std::uint32_t wipe, amount, threshold, splitX, splitY;
  std::uint32_t width, height, pitch;

  [[nodiscard]] constexpr bool has(std::uint32_t flag) const { return (mode & flag) != 0; }
};

using MuxMode = void (*)(const MuxTask&);

/// The mode of a value, bits 0 to 23 of the mode word. Values are compared whole: one that is not
/// known, a sum of known ones included, copies the first frame.
[[nodiscard]] MuxMode modeOf(std::uint32_t value);

}  // namespace nkdraw
