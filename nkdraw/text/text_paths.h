// SPDX-License-Identifier: BSD-2-Clause
//
// The ways of DrawText that the process-wide font kind chooses in place of the built-in glyphs.
#pragma once

#include <nkdraw/draw/draw.h>

namespace nkdraw {

/// Stamps the glyphs of a font sheet, side by side from the rectangle's upper left corner. The
/// whole text is drawn, and the rectangle stays.
void drawSheetText(NKDraw& surface, const char* text, const tagRECT& rect);

/// Draws the outlines of the platform's font, and the fill between them pixel by pixel.
void drawOutlineText(NKDraw& surface, const char* text, std::int32_t count, tagRECT& rect,
                     std::uint32_t format);

}  // namespace nkdraw
