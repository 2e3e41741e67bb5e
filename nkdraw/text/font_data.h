// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The font state that the whole process shares.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

namespace nkdraw {

/// One block of memory, in this order. No lock guards it: several threads may draw text at once,
/// each on its own surface, as long as none writes here and the kind is not "bmp".
struct FontData {
  std::uint8_t fontSheetPixels[1048576];  ///< rows of the font sheet's pixels, as in its BMP file
  std::uint8_t fontSheetHeader[36];       ///< the file's header, from the width on
  char fontKind[4];            ///< "ttf": outlines; "bmp": a sheet; else the built-in glyphs
  std::int32_t fontPointSize;  ///< em height of outlines in pixels; 0: 16
  std::uint64_t fontScratch;   ///< cleared by every DrawText
};

/// The block. All zero at first, which selects the built-in glyphs.
extern NKDRAW_API FontData fontData;

}  // namespace nkdraw
