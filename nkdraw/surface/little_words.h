// SPDX-License-Identifier: BSD-2-Clause
//
// 16-bit little-endian words of a pixel.
#pragma once

#include <nkdraw/surface/byte_order.h>

#include <array>
#include <cstddef>

namespace nkdraw {

inline constexpr double kWordUnit = 1.52587890625e-05;  // 1/65536

[[nodiscard]] inline std::uint16_t load16(const void* pixel, std::size_t word) {
  std::uint16_t value;
  std::memcpy(&value, static_cast<const char*>(pixel) + 2 * word, sizeof value);
  return value;
}

/// The low 16 bits of each value, in memory order.
template <class... Values>
[[nodiscard]] constexpr auto packWords(Values... values) {
  std::array<std::uint8_t, 2 * sizeof...(Values)> bytes{};
  std::size_t at = 0;
  for (const std::uint32_t value : {static_cast<std::uint32_t>(values)...}) {
    bytes[at++] = static_cast<std::uint8_t>(value);
    bytes[at++] = static_cast<std::uint8_t>(value >> 8);
  }
  return bytes;
}

}  // namespace nkdraw
