// SPDX-License-Identifier: BSD-2-Clause
//
// Converts doubles to integers as x86-64 truncates them, on every machine and without undefined
// behaviour: not-a-number, and values out of range, give the lowest integer.
#pragma once

#include <cstdint>
#include <limits>

namespace nkdraw {

/// Towards zero into 32 bits; 0x80000000 if it does not fit.
[[nodiscard]] constexpr std::int32_t truncateToInt32(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value)
                                                       : std::numeric_limits<std::int32_t>::min();
}

/// Towards zero into 64 bits, then the low 32; 0 if it does not fit into 64. Narrower fields are
/// cut from this.
[[nodiscard]] constexpr std::uint32_t truncateToLow32(double value) {
  return value >= -9223372036854775808.0 && value < 9223372036854775808.0
             ? static_cast<std::uint32_t>(static_cast<std::int64_t>(value))
             : 0U;
}

[[nodiscard]] constexpr std::uint8_t truncateToLow8(double value) {
  return static_cast<std::uint8_t>(truncateToLow32(value));
}

}  // namespace nkdraw
