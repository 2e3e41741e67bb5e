// SPDX-License-Identifier: BSD-2-Clause
#include "sheet/drawing_sheets.h"

#include "draw/draw_canvas.h"
#include "draw/draw_script.h"
#include "sheet/sheet_raster.h"

#include <nkdraw/nkdraw.h>

#include <algorithm>
#include <string>

namespace nkdraw::tool {
namespace {

constexpr int kNibbles = 16;
constexpr int kCellGap = 4;
constexpr int kMagnifications[] = {1, 2, 3};

/// Stamps any cell of the font. A label's text reaches only cells 1 to 127, so each is shown as the
/// first cell of a font that begins there.
class CellStamp final : public CDrawRGBA32 {
 public:
  explicit CellStamp(BgraCanvas& sheet) : NKDraw(ptBGRA32), CDrawRGBA32(ptBGRA32) {
    pixelKind = ptBGRA32;
    SetCanvas(reinterpret_cast<char*>(sheet.picture().planes[0]), sheet.height(), sheet.width(), 0);
  }
  CellStamp(const CellStamp&) = delete;
  CellStamp& operator=(const CellStamp&) = delete;
  ~CellStamp() override = default;

  void stamp(int code, int x, int y, int magnification, Colour ink) {
    SetColorRGBA(ink.r, ink.g, ink.b, 1.0, true);
    LabelFont(0U, magnification);
    labelFont = labelGlyphs + std::ptrdiff_t{kGlyphHeight} * (code - 1);
    Label(x, y, "\x01", false, false);
  }
};

/// All cells at one magnification on one background.
struct GlyphBlock {
  int left, top;  // of the background
  int magnification;
  Colour ground, ink;

  [[nodiscard]] int stepX() const { return kGlyphWidth * magnification + kCellGap; }
  [[nodiscard]] int stepY() const { return kGlyphHeight * magnification + kCellGap; }
  [[nodiscard]] int width() const { return kNibbles * stepX() + kCellGap; }
  [[nodiscard]] int height() const { return kNibbles * stepY() + kCellGap; }
  [[nodiscard]] int x(int column) const { return left + kCellGap + column * stepX(); }
  [[nodiscard]] int y(int row) const { return top + kCellGap + row * stepY(); }
};

constexpr int kCodeWidth = 2 * kGlyphWidth + kCellGap;  // of two hexadecimal digits
constexpr int kHeadHeight = kGlyphHeight + kCellGap;

std::string hex(int value) {
  return {"0123456789ABCDEF"[value]};
}

void drawBlock(BgraCanvas& sheet, const GlyphBlock& block) {
  const int m = block.magnification;
  sheet.fill(block.left, block.top, block.left + block.width(), block.top + block.height(),
             block.ground);
  for (int i = 0; i < kNibbles; ++i) {
    sheet.write(hex(i), block.x(i) + (m - 1) * kGlyphWidth / 2, block.top - kHeadHeight, kSmallText,
                kSheetFaint);
    sheet.write(hex(i) + "0", block.left - kCodeWidth, block.y(i) + (m - 1) * kGlyphHeight / 2,
                kSmallText, kSheetFaint);
  }
  CellStamp stamp(sheet);
  for (int code = 0; code < kNibbles * kNibbles; ++code)
    stamp.stamp(code, block.x(code % kNibbles), block.y(code / kNibbles), m, block.ink);
}

constexpr Colour kBlack = {0.0, 0.0, 0.0}, kWhite = {1.0, 1.0, 1.0};

/// Draws a picture in 8-bit RGB with its upper left corner at this position.
void place(BgraCanvas& sheet, const AVFrame& picture, int left, int top) {
  constexpr std::uint8_t kOpaque = 255;
  for (int y = 0; y < picture.height; ++y) {
    const std::uint8_t* from = picture.data[0] + std::ptrdiff_t{picture.linesize[0]} * y;
    std::uint8_t* to = rowOf(sheet.picture(), top + y)[0] + std::ptrdiff_t{left} * 4;
    for (int x = 0; x < picture.width; ++x, from += 3, to += 4) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
      to[3] = kOpaque;
    }
  }
}

constexpr char kShapeBegin[] =
    "color 0.07 0.08 0.1\n"
    "erase\n"
    "background 0.2 0.25 0.4\n"
    "color 1 0.8 0.25\n";

constexpr ShapeTile kShapeTiles[] = {
    {"point",
     "fill 60 20 100 70\npoint 20 45\npoint 25 45\npoint 30 45\npoint 35 45\npoint 40 45\n"
     "point 45 45\npoint 50 45\npoint-background 65 45\npoint-background 70 45\n"
     "point-background 75 45\npoint-background 80 45\npoint-background 85 45\n"
     "point-background 90 45\npoint-background 95 45\npoint 105 45\npoint 110 45\n"
     "point 115 45\npoint 120 45\npoint 125 45\npoint 130 45\npoint 135 45\npoint 140 45"},
    {"line", "line 10 80 150 10\nline 10 10 150 80\nline 10 45 150 45\nline 80 10 80 80"},
    {"dash",
     "dash 10 15 150 15 1 3\ndash 10 35 150 35 6 4\ndash 10 55 150 55 20 5\n"
     "dash 10 85 150 65 6 4"},
    {"wu", "wu 10 20 150 60\nwu 10 80 150 70"},
    {"wu, additive", "additive on\nwu 10 20 150 60\nwu 10 80 150 70"},
    {"polyline", "polyline 10 80 40 10 70 80 100 10 130 80 150 30"},
    {"rect", "rect 20 15 140 75\nrect 40 30 120 60"},
    {"fill", "fill 20 15 90 60\ncolor 0.3 0.6 1\nfill 70 35 140 75"},
    {"roundrect", "roundrect 10 10 150 80 40 40\nroundrect 40 25 120 65 80 40"},
    {"circle", "circle 80 45 40\ncircle 80 45 25\ncircle 80 45 10"},
    {"ellipse", "ellipse 80 45 70 35\nellipse 80 45 25 35"},
    {"arc", "arc 20 5 140 85 140 45 20 45\ncolor 0.3 0.6 1\narc 40 20 120 70 40 45 120 45"},
    {"anglearc",
     "anglearc 80 45 40 30 150\nanglearc 80 45 40 210 330\n"
     "color 0.3 0.6 1\nanglearc 80 45 30 300 60"},
    {"pie", "pie 10 5 90 85 45 90 50 5\ncolor 0.3 0.6 1\npie 70 5 150 85 45 70 110 85"},
    {"bezier",
     "bezier 10 80 40 -150 120 240 150 10\ncolor 0.25 0.3 0.4\n"
     "line 10 80 24 0\nline 150 10 135 89"},
    {"polybezier", "polybezier 10 45 25 5 40 5 55 45 70 85 85 85 100 45 115 5 130 5 150 45"},
    {"label",
     "label 12 10 label\nlabel-scale 3\nlabel 12 30 label\nlabel-scale 2\nlabel-inverse 12 65 "
     "inverse"},
    {"label-box", "label-scale 2\nlabel-box 12 15 a box\nlabel-inverse-box 12 50 inverse"},
    {"text", "text 12 10 10 text\ntext 12 25 20 text\ntext 12 50 30 text"},
    {"text-ground", "text-ground on\ntext 12 30 30 ground"},
    {"transparency",
     "fill 20 15 100 60\ntransparency 0.5\ncolor 0 0 1\n"
     "polyline 60 35 140 35 140 75 60 75 60 35\npolyline 62 37 138 37 138 73 62 "
     "73 62 37\npolyline 61 36 139 36 139 74 61 74 61 36"},
    {"additive",
     "color 0.5 0 0\nfill 20 15 100 60\nadditive on\ncolor 0 0.5 0.25\n"
     "circle 80 45 35\ncircle 80 45 34\ncircle 80 45 33\ncircle 80 45 32"},
};

/// A text in lines of at most `longest` characters, broken at blanks.
std::vector<std::string> wrapped(std::string_view text, std::size_t longest) {
  std::vector<std::string> lines;
  while (text.size() > longest) {
    const std::size_t end = text.rfind(' ', longest);
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  lines.emplace_back(text);
  return lines;
}

/// Lines reach every pixel in every layout; in some layouts rectangles fill other memory.
void paint(NKDraw& surface, int left, int top, int right, int bottom, Colour colour) {
  surface.SetColorRGBA(colour.r, colour.g, colour.b, 1.0, true);
  for (int y = top; y < bottom; ++y)
    surface.Line(left, y, right - 1, y);
}

/// Bars of colour above, and a circle and a text on a dark background below. If a layout draws only
/// one brightness, every other bar is drawn, and the background stays as it is.
void drawCard(DrawCanvas& canvas, bool hasColours) {
  constexpr int kBars = 8;
  const int width = canvas.width(), height = canvas.height(), barsEnd = height / 2;
  NKDraw& surface = canvas.surface();
  for (int bar = 0; bar < kBars; ++bar) {
    // White, yellow, cyan, green, magenta, red, blue, black.
    const Colour colour = {(bar & 2) == 0 ? 0.75 : 0.0, (bar & 4) == 0 ? 0.75 : 0.0,
                           (bar & 1) == 0 ? 0.75 : 0.0};
    if (hasColours || bar % 2 == 0)
      paint(surface, width * bar / kBars, 0, width * (bar + 1) / kBars, barsEnd, colour);
  }
  if (hasColours)
    paint(surface, 0, barsEnd, width, height, {0.1, 0.12, 0.2});
  const int radius = (height - barsEnd) / 2 - 4, centreY = (barsEnd + height) / 2;
  surface.SetColorRGBA(1.0, 0.8, 0.25, 1.0, true);
  for (int i = 0; i < 3; ++i)
    surface.Circle(radius + 8, centreY, radius - i);
  surface.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  constexpr int kTextHeight = 30;
  tagRECT rect = {2 * radius + 20, centreY - kTextHeight / 2, width, centreY + kTextHeight / 2};
  surface.DrawText("nkdraw", 6, &rect, 0);
}

}  // namespace

BgraCanvas glyphSheet() {
  std::vector<GlyphBlock> blocks;
  int top = kSheetMargin + kHeadHeight, right = 0;
  const GlyphBlock widest = {0, 0, *std::ranges::max_element(kMagnifications), kBlack, kWhite};
  for (const int magnification : kMagnifications) {
    GlyphBlock block = {kSheetMargin + kCodeWidth, top, magnification, kBlack, kWhite};
    blocks.push_back(block);
    block.left += widest.width() + kSheetMargin + kCodeWidth;
    std::swap(block.ground, block.ink);
    blocks.push_back(block);
    top += block.height() + kHeadHeight + kSheetGap;
    right = block.left + widest.width();
  }
  BgraCanvas sheet = emptySheet(right + kSheetMargin, top - kHeadHeight - kSheetGap + kSheetMargin);
  for (const GlyphBlock& block : blocks)
    drawBlock(sheet, block);
  return sheet;
}

std::span<const ShapeTile> shapeTiles() {
  return kShapeTiles;
}

BgraCanvas shapeSheet() {
  constexpr int kColumns = 5;
  Raster raster = captionedRaster(kShapeTileWidth, kShapeTileHeight);
  raster.rowStep = kShapeTileHeight + kLineGap + kGlyphHeight + kSheetMargin;
  BgraCanvas sheet = emptySheet(raster, kColumns, std::size(kShapeTiles));
  int index = 0;
  for (const ShapeTile& tile : kShapeTiles) {
    DrawCanvas canvas(drawLayoutNamed("bgra"), kShapeTileWidth, kShapeTileHeight);
    const DrawScript script("sheet, " + std::string(tile.name),
                            std::string(kShapeBegin).append(tile.script));
    script.draw(canvas, Outside::kRefused);
    const int x = raster.x(index % kColumns), y = raster.y(index / kColumns);
    place(sheet, *canvas.picture(), x, y);
    sheet.write(std::string(tile.name), x, y + raster.tileHeight + kLineGap, kSmallText, kSheetInk);
    ++index;
  }
  return sheet;
}

BgraCanvas layoutSheet() {
  constexpr int kColumns = 4;
  constexpr int kTileWidth = 240, kTileHeight = 136;
  Raster raster = captionedRaster(kTileWidth, kTileHeight);
  raster.rowStep += kGlyphHeight + kCellGap;  // notes have two lines
  BgraCanvas sheet = emptySheet(raster, kColumns, drawLayouts().size());
  int index = 0;
  for (const DrawLayout& layout : drawLayouts()) {
    DrawCanvas canvas(layout, kTileWidth, kTileHeight);
    drawCard(canvas, layout.shown != Shown::kWords);
    const int x = raster.x(index % kColumns), y = raster.y(index / kColumns);
    place(sheet, *canvas.picture(), x, y);
    writeCaption(sheet, raster, x, y, std::string(layout.name), "");
    int top = y + raster.tileHeight + 2 * kLineGap + kGlyphHeight * kLargeText;
    for (const std::string& line : wrapped(layout.description, kTileWidth / kGlyphWidth)) {
      sheet.write(line, x, top, kSmallText, kSheetFaint);
      top += kGlyphHeight + kCellGap;
    }
    ++index;
  }
  return sheet;
}

}  // namespace nkdraw::tool
