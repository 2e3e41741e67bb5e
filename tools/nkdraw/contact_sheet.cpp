// SPDX-License-Identifier: BSD-2-Clause
#include "contact_sheet.h"

#include "frame_wiper.h"
#include "mux_display.h"
#include "wipe_names.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

namespace nkdraw::tool {
namespace {

constexpr Colour kGround = {0.11, 0.12, 0.14}, kInk = {0.94, 0.94, 0.94},
                 kFaint = {0.6, 0.63, 0.67};
constexpr int kMargin = 24, kGap = 12;
constexpr int kGlyphWidth = 8, kGlyphHeight = 10;
constexpr int kLarge = 2, kSmall = 1;  // magnifications of labels
constexpr int kLineGap = 6;

constexpr int textWidth(std::size_t characters, int magnification) {
  return static_cast<int>(characters) * kGlyphWidth * magnification;
}

/// Places for tiles of one size in columns and rows.
struct Raster {
  int left, top;  // of the first tile
  int tileWidth, tileHeight;
  int columnStep, rowStep;

  [[nodiscard]] int x(int column) const { return left + column * columnStep; }
  [[nodiscard]] int y(int row) const { return top + row * rowStep; }
};

BgraCanvas emptySheet(int width, int height) {
  BgraCanvas sheet(width, height);
  sheet.fill(0, 0, width, height, kGround);
  return sheet;
}

constexpr std::string_view kPositions[] = {"0", "1/4", "1/2", "3/4", "1"};
constexpr int kSteps = 4;

void placeWipes(BgraCanvas& sheet, const Raster& raster, SheetPictures& pictures,
                const WipeName& wipe, int row) {
  FrameWiper wiper(layoutOf(ptBGRA32), Storage::kPacked, raster.tileWidth, raster.tileHeight,
                   wipe.number);
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

}  // namespace

BgraCanvas wipeSheet(SheetPictures& pictures) {
  constexpr int kHeadHeight = kGlyphHeight * kLarge + kGap;
  std::size_t longest = 0;
  for (const WipeName& wipe : wipeNames())
    longest = std::max(longest, wipe.name.size());
  const int width = pictures.first.width(), height = pictures.first.height();
  const Raster raster = {.left = kMargin + textWidth(longest, kLarge) + kMargin,
                         .top = kMargin + kHeadHeight,
                         .tileWidth = width,
                         .tileHeight = height,
                         .columnStep = width + kGap,
                         .rowStep = height + kGap};
  const int rows = static_cast<int>(wipeNames().size());
  BgraCanvas sheet =
      emptySheet(raster.x(kSteps) + width + kMargin, raster.y(rows - 1) + height + kMargin);
  for (int step = 0; step <= kSteps; ++step) {
    const std::string head(kPositions[step]);
    sheet.write(head, raster.x(step) + (width - textWidth(head.size(), kLarge)) / 2, kMargin,
                kLarge, kFaint);
  }
  int row = 0;
  for (const WipeName& wipe : wipeNames()) {
    const int labelHeight = kGlyphHeight * (kLarge + kSmall) + kLineGap;
    const int top = raster.y(row) + (height - labelHeight) / 2;
    sheet.write(std::string(wipe.name), kMargin, top, kLarge, kInk);
    sheet.write("wipe " + std::to_string(wipe.number), kMargin,
                top + kGlyphHeight * kLarge + kLineGap, kSmall, kFaint);
    placeWipes(sheet, raster, pictures, wipe, row);
    ++row;
  }
  return sheet;
}

BgraCanvas modeSheet(SheetPictures& pictures) {
  constexpr int kColumns = 5;
  constexpr int kLabelHeight = kGlyphHeight * (kLarge + kSmall) + 2 * kLineGap;
  const std::vector<ModeTile> tiles = modeTiles();
  const int width = pictures.first.width(), height = pictures.first.height();
  const Raster raster = {.left = kMargin,
                         .top = kMargin,
                         .tileWidth = width,
                         .tileHeight = height,
                         .columnStep = width + kGap,
                         .rowStep = height + kLabelHeight + kMargin};
  const int rows = (static_cast<int>(tiles.size()) + kColumns - 1) / kColumns;
  BgraCanvas sheet = emptySheet(raster.x(kColumns - 1) + width + kMargin, raster.y(rows));
  for (int i = 0; i < static_cast<int>(tiles.size()); ++i) {
    const ModeTile& tile = tiles[static_cast<std::size_t>(i)];
    const int x = raster.x(i % kColumns), y = raster.y(i / kColumns);
    BgraCanvas drawn = drawMode(tile, pictures);
    sheet.place(drawn, x, y);
    sheet.write(std::string(tile.mode->name), x, y + height + kLineGap, kLarge, kInk);
    sheet.write(modeNote(tile), x, y + height + kLineGap + kGlyphHeight * kLarge + kLineGap, kSmall,
                kFaint);
  }
  return sheet;
}

}  // namespace nkdraw::tool
