// SPDX-License-Identifier: BSD-2-Clause
//
// The style of contact sheets: colours, margins, and tiles in columns and rows.
#pragma once

#include "sheet/bgra_canvas.h"

#include <cstddef>

namespace nkdraw::tool {

inline constexpr Colour kSheetGround = {0.11, 0.12, 0.14}, kSheetInk = {0.94, 0.94, 0.94},
                        kSheetFaint = {0.6, 0.63, 0.67};
inline constexpr int kSheetMargin = 24, kSheetGap = 12;
inline constexpr int kGlyphWidth = 8, kGlyphHeight = 10;
inline constexpr int kLargeText = 2, kSmallText = 1;  // magnifications
inline constexpr int kLineGap = 6;
/// A name and a note below a tile, with space around them.
inline constexpr int kCaptionHeight = kGlyphHeight * (kLargeText + kSmallText) + 2 * kLineGap;

[[nodiscard]] constexpr int textWidth(std::size_t characters, int magnification) {
  return static_cast<int>(characters) * kGlyphWidth * magnification;
}

/// Positions for tiles of one size in columns and rows.
struct Raster {
  int left, top;  // of the first tile
  int tileWidth, tileHeight;
  int columnStep, rowStep;

  [[nodiscard]] int x(int column) const { return left + column * columnStep; }
  [[nodiscard]] int y(int row) const { return top + row * rowStep; }
};

/// Tiles with a caption below each.
[[nodiscard]] constexpr Raster captionedRaster(int tileWidth, int tileHeight) {
  return {.left = kSheetMargin,
          .top = kSheetMargin,
          .tileWidth = tileWidth,
          .tileHeight = tileHeight,
          .columnStep = tileWidth + kSheetGap,
          .rowStep = tileHeight + kCaptionHeight + kSheetMargin};
}

[[nodiscard]] inline BgraCanvas emptySheet(int width, int height) {
  BgraCanvas sheet(width, height);
  sheet.fill(0, 0, width, height, kSheetGround);
  return sheet;
}

/// A sheet for a number of captioned tiles.
[[nodiscard]] inline BgraCanvas emptySheet(const Raster& raster, int columns, std::size_t tiles) {
  const int rows = (static_cast<int>(tiles) + columns - 1) / columns;
  return emptySheet(raster.x(columns - 1) + raster.tileWidth + kSheetMargin, raster.y(rows));
}

/// Writes the caption of the tile whose upper left corner is at this position.
inline void writeCaption(BgraCanvas& sheet, const Raster& raster, int x, int y,
                         const std::string& name, const std::string& note) {
  const int top = y + raster.tileHeight + kLineGap;
  sheet.write(name, x, top, kLargeText, kSheetInk);
  sheet.write(note, x, top + kGlyphHeight * kLargeText + kLineGap, kSmallText, kSheetFaint);
}

}  // namespace nkdraw::tool
