// SPDX-License-Identifier: BSD-2-Clause
//
// The ways to draw text that the process-wide font kind can choose instead of the built-in glyphs.
#pragma once

#include <nkdraw/draw/draw.h>

namespace nkdraw {

/// Stamps the glyphs of a font sheet side by side, from the rectangle's upper left corner. Draws
/// the whole text, and leaves the rectangle unchanged.
void drawSheetText(NKDraw& surface, const char* text, const tagRECT& rect);

/// Draws the outlines of the platform's font, and fills them pixel by pixel.
void drawOutlineText(NKDraw& surface, const char* text, std::int32_t count, tagRECT& rect,
                     std::uint32_t format);

}  // namespace nkdraw
