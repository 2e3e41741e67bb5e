// SPDX-License-Identifier: BSD-2-Clause
//
// Which byte of an 8-bit RGB pixel is which channel, taken from the layouts' facts.
#pragma once

#include <nkdraw/surface/layout_facts.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace nkdraw {

static_assert(std::endian::native == std::endian::little,
              "the words of the YCbCr layouts are little-endian in memory");

/// Byte offsets of the channels in a pixel of `bytes` bytes. Without alpha, `a` is the unused
/// fourth byte of a packed colour.
struct ByteOrder {
  std::uint8_t r, g, b, a;
  std::uint8_t bytes;

  [[nodiscard]] constexpr bool hasAlpha() const { return bytes == 4; }
};

/// The order of a layout with one byte a channel.
[[nodiscard]] constexpr ByteOrder byteOrderOf(const LayoutFacts& facts) {
  const auto place = [&facts](Channel channel) {
    return static_cast<std::uint8_t>(sampleOf(facts, channel));
  };
  return {place(Channel::kR), place(Channel::kG), place(Channel::kB), place(Channel::kA),
          facts.groupBytes};
}

/// Indexed by pixelType, from ptRGBA32 and from ptRGB24 on.
inline constexpr std::array<ByteOrder, 4> kByteOrders32 = {
    byteOrderOf(kFactsOf<ptRGBA32>), byteOrderOf(kFactsOf<ptARGB32>),
    byteOrderOf(kFactsOf<ptBGRA32>), byteOrderOf(kFactsOf<ptABGR32>)};
inline constexpr std::array<ByteOrder, 2> kByteOrders24 = {byteOrderOf(kFactsOf<ptRGB24>),
                                                           byteOrderOf(kFactsOf<ptBGR24>)};

/// The order of a four-byte pixel; R, G, B, A for any other type.
[[nodiscard]] constexpr ByteOrder byteOrder32(pixelType type) {
  const bool named = type >= ptRGBA32 && type <= ptABGR32;
  return kByteOrders32[named ? static_cast<std::size_t>(type - ptRGBA32) : 0];
}

/// The order of a three-byte pixel: B, G, R for ptBGR24, else R, G, B.
[[nodiscard]] constexpr ByteOrder byteOrder24(pixelType type) {
  return kByteOrders24[type == ptBGR24 ? 1 : 0];
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

/// Channels divided by 255; alpha is 1.0 if the order has none.
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
