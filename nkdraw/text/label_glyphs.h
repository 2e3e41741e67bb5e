// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The glyphs of the built-in label font.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

namespace nkdraw {

inline constexpr std::uint32_t kGlyphWidth = 8;    ///< pixels
inline constexpr std::uint32_t kGlyphHeight = 10;  ///< rows

/// The glyphs of the 256 codes of code page 437, ten bytes each: one byte a row, bottom row first,
/// the highest bit leftmost; a set bit is ink. Negative codes down to -128 are blank: 1,280 zero
/// bytes lie in front of the first glyph.
extern NKDRAW_API const std::uint8_t* const labelGlyphs;

}  // namespace nkdraw
