// SPDX-License-Identifier: BSD-2-Clause
//
// Which byte of an 8-bit RGB pixel is which channel. Every place that packs or reads one asks here.
#pragma once

#include <nkdraw/surface/pixel_type.h>

#include <bit>
#include <cstdint>
#include <cstring>

namespace nkdraw {

static_assert(std::endian::native == std::endian::little,
              "the words of the YCbCr layouts are little-endian in memory");

/// Byte offsets of the channels in a pixel of `bytes` bytes; without alpha `a` is the unused
/// fourth byte of a packed colour.
struct ByteOrder {
  std::uint8_t r, g, b, a;
  std::uint8_t bytes;

  [[nodiscard]] constexpr bool hasAlpha() const { return bytes == 4; }
};

/// The order of a four-byte pixel; R, G, B, A for any type that names no other.
[[nodiscard]] constexpr ByteOrder byteOrder32(pixelType type) {
  switch (type) {
    case ptARGB32:
      return {1, 2, 3, 0, 4};
    case ptBGRA32:
      return {2, 1, 0, 3, 4};
    case ptABGR32:
      return {3, 2, 1, 0, 4};
    default:
      return {0, 1, 2, 3, 4};
  }
}

/// The order of a three-byte pixel; R, G, B for any type but ptBGR24.
[[nodiscard]] constexpr ByteOrder byteOrder24(pixelType type) {
  return type == ptBGR24 ? ByteOrder{2, 1, 0, 3, 3} : ByteOrder{0, 1, 2, 3, 3};
}

/// The layouts whose rows and canvases are filled as blocks of memory.
[[nodiscard]] constexpr bool isFourByteRgb(pixelType type) {
  return type >= ptRGBA32 && type <= ptABGR32;
}

[[nodiscard]] constexpr bool isThreeByteType(pixelType type) {
  return type == ptRGB24 || type == ptBGR24;
}

[[nodiscard]] constexpr ByteOrder byteOrder(pixelType type) {
  return isThreeByteType(type) ? byteOrder24(type) : byteOrder32(type);
}

/// Channels over 255; alpha is 1.0 where the order has none.
inline void readChannels(const std::uint8_t* pixel, ByteOrder order, double& r, double& g,
                         double& b, double& a) {
  r = pixel[order.r] / 255.0;
  g = pixel[order.g] / 255.0;
  b = pixel[order.b] / 255.0;
  a = order.hasAlpha() ? pixel[order.a] / 255.0 : 1.0;
}

/// Words of the canvas, which need not be aligned.
[[nodiscard]] inline std::uint32_t load32(const void* from) {
  std::uint32_t word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

inline void store32(void* to, std::uint32_t word) {
  std::memcpy(to, &word, sizeof word);
}

/// Between the machine's byte order and the big-endian one.
[[nodiscard]] constexpr std::uint32_t swapBytes(std::uint32_t word) {
  return word >> 24 | (word >> 8 & 0xFF00) | (word & 0xFF00) << 8 | word << 24;
}

}  // namespace nkdraw
