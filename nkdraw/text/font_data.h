// SPDX-License-Identifier: BSD-2-Clause
//
// The font state that the whole process shares.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

namespace nkdraw {

/// One block of memory in this order. No lock guards it: texts may be drawn on several threads at
/// once, each on a surface of its own, as long as no thread writes here and the kind is not "bmp".
struct FontData {
  std::uint8_t fontSheetPixels[1048576];  ///< pixel rows of the sheet, as in its file
  std::uint8_t fontSheetHeader[36];       ///< its header from the width on
  char fontKind[4];            ///< "ttf" outlines, "bmp" sheets, anything else built-in glyphs
  std::int32_t fontPointSize;  ///< em height of outlines in pixels; 0: 16
  std::uint64_t fontScratch;   ///< cleared by every DrawText
};

extern NKDRAW_API FontData fontData;

}  // namespace nkdraw
