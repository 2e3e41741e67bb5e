// SPDX-License-Identifier: BSD-2-Clause
#include "sheet/contact_sheet.h"

#include "compare/mux_display.h"
#include "sheet/sheet_raster.h"
#include "wipe/frame_wiper.h"
#include "wipe/wipe_names.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

namespace nkdraw::tool {
namespace {

constexpr std::string_view kPositions[] = {"0", "1/4", "1/2", "3/4", "1"};
constexpr int kSteps = 4;

void placeWipes(BgraCanvas& sheet, const Raster& raster, SheetPictures& pictures,
                const WipeName& wipe, int row) {
  FrameWiper wiper(layoutOf(ptBGRA32), Storage::kPacked, raster.tileWidth, raster.tileHeight,
                   wipe.number, WipeWay::kClassic);
  for (int step = 0; step <= kSteps; ++step) {
    BgraCanvas tile(raster.tileWidth, raster.tileHeight);
    wiper.wipe(pictures.first.picture(), pictures.second.picture(), tile.picture(),
               {static_cast<std::uint32_t>(step), kSteps});
    sheet.place(tile, raster.x(step), raster.y(row));
  }
}

/// A tile of the sheet of modes.
struct ModeTile {
  const MuxMode* mode;
  bool otherWay;
};

std::vector<ModeTile> modeTiles() {
  std::vector<ModeTile> tiles;
  for (const MuxMode& mode : muxModes()) {
    tiles.push_back({&mode, false});
    if (mode.runs != MuxRuns::kOneWay)
      tiles.push_back({&mode, true});
  }
  return tiles;
}

BgraCanvas drawMode(const ModeTile& tile, SheetPictures& pictures) {
  const int width = pictures.first.width(), height = pictures.first.height();
  MuxRequest request;
  request.mode = tile.mode;
  request.vertical = tile.otherWay && tile.mode->runs == MuxRuns::kHorizontally;
  request.horizontal = tile.otherWay && tile.mode->runs == MuxRuns::kVertically;
  MuxDisplay display(planMux(request, width, height), width, height);
  const std::uint8_t* const shown = display.show(*pictures.first.frame(), *pictures.second.frame());
  BgraCanvas drawn(width, height);
  std::memcpy(drawn.picture().planes[0], shown,
              static_cast<std::size_t>(drawn.picture().pitches[0] * height));
  return drawn;
}

std::string modeNote(const ModeTile& tile) {
  const char* const way =
      tile.mode->runs == MuxRuns::kHorizontally ? " --vertical" : " --horizontal";
  return std::to_string(tile.mode->value) + (tile.otherWay ? way : "");
}

/// A row of tiles for each wipe, with its name in front, and a heading above the columns.
Raster wipeRaster(SheetPictures& pictures) {
  constexpr int kHeadHeight = kGlyphHeight * kLargeText + kSheetGap;
  std::size_t longest = 0;
  for (const WipeName& wipe : wipeNames())
    longest = std::max(longest, wipe.name.size());
  const int width = pictures.first.width(), height = pictures.first.height();
  return {.left = kSheetMargin + textWidth(longest, kLargeText) + kSheetMargin,
          .top = kSheetMargin + kHeadHeight,
          .tileWidth = width,
          .tileHeight = height,
          .columnStep = width + kSheetGap,
          .rowStep = height + kSheetGap};
}

void writeHeads(BgraCanvas& sheet, const Raster& raster) {
  for (int step = 0; step <= kSteps; ++step) {
    const std::string head(kPositions[step]);
    sheet.write(head, raster.x(step) + (raster.tileWidth - textWidth(head.size(), kLargeText)) / 2,
                kSheetMargin, kLargeText, kSheetFaint);
  }
}

void writeLabel(BgraCanvas& sheet, const Raster& raster, const WipeName& wipe, int row) {
  constexpr int kLabelHeight = kGlyphHeight * (kLargeText + kSmallText) + kLineGap;
  const int top = raster.y(row) + (raster.tileHeight - kLabelHeight) / 2;
  sheet.write(std::string(wipe.name), kSheetMargin, top, kLargeText, kSheetInk);
  sheet.write("wipe " + std::to_string(wipe.number), kSheetMargin,
              top + kGlyphHeight * kLargeText + kLineGap, kSmallText, kSheetFaint);
}

}  // namespace

BgraCanvas wipeSheet(SheetPictures& pictures) {
  const Raster raster = wipeRaster(pictures);
  const int rows = static_cast<int>(wipeNames().size());
  BgraCanvas sheet = emptySheet(raster.x(kSteps) + raster.tileWidth + kSheetMargin,
                                raster.y(rows - 1) + raster.tileHeight + kSheetMargin);
  writeHeads(sheet, raster);
  int row = 0;
  for (const WipeName& wipe : wipeNames()) {
    writeLabel(sheet, raster, wipe, row);
    placeWipes(sheet, raster, pictures, wipe, row);
    ++row;
  }
  return sheet;
}

BgraCanvas modeSheet(SheetPictures& pictures) {
  constexpr int kColumns = 5;
  const std::vector<ModeTile> tiles = modeTiles();
  const int width = pictures.first.width(), height = pictures.first.height();
  const Raster raster = captionedRaster(width, height);
  BgraCanvas sheet = emptySheet(raster, kColumns, tiles.size());
  for (int i = 0; i < static_cast<int>(tiles.size()); ++i) {
    const ModeTile& tile = tiles[static_cast<std::size_t>(i)];
    const int x = raster.x(i % kColumns), y = raster.y(i / kColumns);
    BgraCanvas drawn = drawMode(tile, pictures);
    sheet.place(drawn, x, y);
    writeCaption(sheet, raster, x, y, std::string(tile.mode->name), modeNote(tile));
  }
  return sheet;
}

}  // namespace nkdraw::tool
