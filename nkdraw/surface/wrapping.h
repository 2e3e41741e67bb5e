// SPDX-License-Identifier: BSD-2-Clause
//
// 32-bit arithmetic that wraps, for coordinates and sizes.
#pragma once

#include <cstdint>

namespace nkdraw {

[[nodiscard]] constexpr std::int32_t wrappingAdd(std::int32_t a, std::int64_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

[[nodiscard]] constexpr std::int32_t wrappingSubtract(std::int32_t a, std::int64_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// The number of pixels from `first` to `last`, both included; `last` is not less than `first`.
[[nodiscard]] constexpr std::uint32_t span(std::int32_t first, std::int32_t last) {
  return static_cast<std::uint32_t>(last) - static_cast<std::uint32_t>(first) + 1;
}

/// The absolute value; the lowest integer stays as it is.
[[nodiscard]] constexpr std::uint32_t magnitude(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  return value < 0 ? 0U - bits : bits;
}

}  // namespace nkdraw
