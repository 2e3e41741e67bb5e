// SPDX-License-Identifier: BSD-2-Clause
//
// Which family of matrices a colour mode stands for.
#pragma once

#include <nkdraw/surface/pixel.h>

#include <cstdint>

namespace nkdraw {

/// The families, as indices into the tables of constants.
enum class MatrixFamily : std::uint8_t {
  k601Studio,
  k601Full,
  k709Studio,
  k709Full,
  k2020Studio,
  k2020Full,
  k2020Constant,
  kUnknown
};

/// Modes from here on are the same families with unclamped RGB.
inline constexpr std::int32_t kUnclampedModes = 1000;

/// The family for conversion to RGB.
[[nodiscard]] MatrixFamily familyToRgb(NKPixel::cmYCbCr mode);

/// The family for conversion from RGB. It differs only for mode 7: constant-luminance here,
/// full-range on the way back.
[[nodiscard]] MatrixFamily familyFromRgb(NKPixel::cmYCbCr mode);

/// Limits a channel to 0.0 to 1.0, for the modes that clamp.
[[nodiscard]] constexpr double clampToUnit(double channel) {
  return channel > 1.0 ? 1.0 : channel < 0.0 ? 0.0 : channel;
}

}  // namespace nkdraw
