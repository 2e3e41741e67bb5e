// SPDX-License-Identifier: BSD-2-Clause
//
// The weights of GetLuma. Deliberate: callers rely on the values; modes pair with weights
// differently than with matrices.
#pragma once

#include <nkdraw/surface/colour_matrix.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace nkdraw {

struct LumaWeights {
  double green, red, blue;
};

/// Indexed by mode; the modes without clamping first lose their 1000.
inline constexpr auto kLumaWeights = [] {
  constexpr LumaWeights k2020 = {0.678, 0.2627, 0.0593};
  return std::array<LumaWeights, 9>{{{0.587, 0.299, 0.114},
                                     {0.587, 0.299, 0.114},
                                     {0.504, 0.257, 0.098},
                                     {0.715, 0.213, 0.072},
                                     {0.614, 0.183, 0.062},
                                     k2020,
                                     k2020,
                                     k2020,
                                     k2020}};
}();

/// An unknown mode has the weights of mode 0.
[[nodiscard]] constexpr const LumaWeights& lumaWeights(std::int32_t mode) {
  const auto index =
      static_cast<std::uint32_t>(mode >= kUnclampedModes ? mode - kUnclampedModes : mode);
  return kLumaWeights[index < kLumaWeights.size() ? index : 0];
}

}  // namespace nkdraw
