// SPDX-License-Identifier: BSD-2-Clause
//
// The glyphs of the built-in label font.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

namespace nkdraw {

inline constexpr std::uint32_t kGlyphWidth = 8;
inline constexpr std::uint32_t kGlyphHeight = 10;

/// 256 cells of code page 437, ten bytes each: one byte a row, bottom row first, the highest bit
/// leftmost, a set bit is ink. 1,280 zero bytes lie in front of cell 0, so that a character code
/// that is read as a negative number shows a blank.
extern NKDRAW_API const std::uint8_t* const labelGlyphs;

}  // namespace nkdraw
