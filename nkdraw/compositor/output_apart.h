// SPDX-License-Identifier: BSD-2-Clause
//
// Whether rows can be written in any order, while others are read.
#pragma once

#include "wipe_band.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace nkdraw {

/// The bytes from the first row of a frame to the end of its last.
[[nodiscard]] inline std::uint64_t extentOf(const WipeTask& frame, std::uint32_t pitch,
                                            std::size_t rowBytes) {
  return std::uint64_t{pitch} * (frame.height - 1) + rowBytes;
}

[[nodiscard]] inline bool areApart(const std::uint8_t* a, std::uint64_t bytesA,
                                   const std::uint8_t* b, std::uint64_t bytesB) {
  const auto startA = reinterpret_cast<std::uintptr_t>(a);
  const auto startB = reinterpret_cast<std::uintptr_t>(b);
  return startA >= startB + bytesB || startB >= startA + bytesA;
}

/// Whether every row of the output has bytes of its own, no input has any of them, and no frame
/// reaches 4 GiB. The height must not be 0.
[[nodiscard]] inline bool outputIsApart(const WipeTask& frame, std::size_t rowBytes) {
  const std::uint64_t output = extentOf(frame, frame.pitchDst, rowBytes);
  const std::uint64_t a = extentOf(frame, frame.pitchA, rowBytes);
  const std::uint64_t b = extentOf(frame, frame.pitchB, rowBytes);
  return frame.pitchDst >= rowBytes &&
         std::max({output, a, b}) <= std::numeric_limits<std::uint32_t>::max() &&
         areApart(frame.dst, output, frame.srcA, a) && areApart(frame.dst, output, frame.srcB, b);
}

}  // namespace nkdraw
