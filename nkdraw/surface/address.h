// SPDX-License-Identifier: BSD-2-Clause
//
// Addresses of pixels in NKPixel's own layouts. Products of pitch and y wrap at 32 bits and are
// added zero-extended; x offsets are signed.
#pragma once

#include <cstddef>
#include <cstdint>

namespace nkdraw {

[[nodiscard]] constexpr std::uint32_t rowOffset(std::uint32_t pitch, int y) {
  return pitch * static_cast<std::uint32_t>(y);
}

/// Four bytes a pixel: a row starts a multiple of four bytes from the canvas, whatever the pitch.
[[nodiscard]] constexpr char* wordAddress(char* canvas, std::uint32_t pitch, int x, int y) {
  return canvas + (static_cast<std::ptrdiff_t>(rowOffset(pitch, y) >> 2) + x) * 4;
}

/// Three bytes a pixel.
[[nodiscard]] constexpr char* threeByteAddress(char* canvas, std::uint32_t pitch, int x, int y) {
  return canvas + rowOffset(pitch, y) + std::ptrdiff_t{3} * x;
}

}  // namespace nkdraw
