// SPDX-License-Identifier: BSD-2-Clause
//
// How large DrawText's built-in text is.
#pragma once

#include <nkdraw/platform/records.h>
#include <nkdraw/surface/wrapping.h>
#include <nkdraw/text/label_glyphs.h>

#include <algorithm>
#include <cstdint>

namespace nkdraw {

/// The magnification of text in this rectangle.
[[nodiscard]] inline std::uint32_t textMagnification(const tagRECT& rect) {
  constexpr std::uint32_t kLargest = 20;
  if (rect.bottom == 0 || rect.top < 0)
    return 1;
  const std::uint32_t height = magnitude(wrappingSubtract(rect.bottom, rect.top));
  return std::clamp(height / kGlyphHeight, 1U, kLargest);
}

/// Moves the right and the bottom edge to where DT_CALCRECT puts them for `count` characters.
inline void setTextBox(tagRECT& rect, std::uint32_t count, std::uint32_t magnification) {
  rect.right = wrappingAdd(rect.left, count * magnification * kGlyphWidth);
  rect.bottom = wrappingAdd(rect.top, kGlyphHeight * magnification);
}

}  // namespace nkdraw
