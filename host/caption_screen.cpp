// SPDX-License-Identifier: BSD-2-Clause
#include "caption_screen.h"

#include "caption_glyphs.h"

#include <nkdraw/text/label_glyphs.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace nkdraw {
namespace {

constexpr int kCellWidth = static_cast<int>(kGlyphWidth);
constexpr int kCellHeight = static_cast<int>(kGlyphHeight);
constexpr int kScreenWidth = CaptionDecoder::kColumns * kCellWidth;
constexpr int kScreenHeight = CaptionDecoder::kRows * kCellHeight;

// Title-safe area, as a part of the frame's width and height.
constexpr int kSafeTenths = 8;

constexpr unsigned kWholeRow = 0xFF;
constexpr int kHighDefinition = 720;  // BT.709 is usual from this many lines on
constexpr int kLargestSide = 1 << 20;

int largestScale(int size, int dots) {
  return size * kSafeTenths / 10 / dots;
}

/// Rounded to an even number, so that pixels that share chroma, and lines of one field, belong to
/// one cell.
int centred(int size, int screen) {
  return ((size - screen) / 2) & ~1;
}

/// The dots of a glyph's line, counted from the top. Italics slant: their upper half moves one dot
/// to the right.
unsigned dotsOf(const vbi_char& cell, int line) {
  const int fromBottom = kCellHeight - 1 - line;
  if (cell.underline && fromBottom == 0)
    return kWholeRow;
  const unsigned dots = labelGlyphs[captionGlyph(cell.unicode) * kCellHeight + fromBottom];
  return cell.italic && line < kCellHeight / 2 ? dots >> 1 : dots;
}

bool isShown(const vbi_char& cell) {
  return cell.opacity != VBI_TRANSPARENT_SPACE;
}

bool hasBox(const vbi_char& cell) {
  return isShown(cell) && cell.opacity != VBI_TRANSPARENT_FULL;
}

}  // namespace

CaptionScreen::CaptionScreen(const HZWVIDEO& video) {
  BITMAPINFO info{};
  std::memcpy(&info, &video, sizeof info);
  width_ = video.biWidth;
  height_ = std::abs(std::max(video.biHeight, -kLargestSide));
  NKDraw* made = nullptr;
  if (width_ <= 0 || width_ > kLargestSide || height_ > kLargestSide ||
      GetDraw(&info, nullptr, made) != 0)
    return;
  surface_.reset(made);
  plotsNeighbour_ = made->PixelType() == ptYUYV || made->PixelType() == ptYVYU;
  if (height_ >= kHighDefinition)
    made->SetYCbCrMode(NKPixel::mode709Studio);
  scale_ = std::max(
      1, std::min(largestScale(width_, kScreenWidth), largestScale(height_, kScreenHeight)));
  // If the frame is too small, the screen is cut at the right and at the top.
  left_ = std::max(0, centred(width_, kScreenWidth * scale_));
  columns_ = static_cast<std::size_t>(
      std::min(CaptionDecoder::kColumns, (width_ - left_) / (kCellWidth * scale_)));
  top_ = std::min(centred(height_, kScreenHeight * scale_), height_ - kScreenHeight * scale_);
  made->SetCanvas(nullptr, height_, width_, 0);
  strips_ = CaptionStrips(
      {made->PixelType(), made->Pitch(), left_, leftOf(columns_), kCellHeight, scale_});
}

void CaptionScreen::draw(std::span<const vbi_char> cells, char* pixels, bool boxes) {
  const int lineHeight = kCellHeight * scale_;
  int top = top_;
  for (std::size_t row = 0; !cells.empty(); ++row, top += lineHeight) {
    const auto shown = cells.first(columns_);
    cells = cells.subspan(CaptionDecoder::kColumns);
    if (top < 0 || top > height_ - lineHeight || std::ranges::none_of(shown, isShown))
      continue;
    strips_.lay(shown, row, boxes, pixels, top, [&](char* canvas) {
      surface_->SetCanvas(canvas, kCellHeight * strips_.linesPerDot(), width_, 0);
      drawRow(shown, boxes);
    });
  }
}

void CaptionScreen::drawRow(std::span<const vbi_char> row, bool boxes) {
  if (boxes)
    drawBoxes(row);
  int left = left_;
  for (const vbi_char& cell : row) {
    if (isShown(cell) && (cell.unicode != ' ' || cell.underline))
      drawGlyph(cell, left);
    left += kCellWidth * scale_;
  }
}

/// Neighbouring cells of one colour share one box.
void CaptionScreen::drawBoxes(std::span<const vbi_char> row) {
  for (std::size_t first = 0, end = 0; first < row.size(); first = std::max(end, first + 1)) {
    end = first;
    while (end < row.size() && hasBox(row[end]) && row[end].background == row[first].background)
      ++end;
    if (end == first)
      continue;
    setColour(row[first].background);
    for (int y = 0; y < kCellHeight * strips_.linesPerDot(); ++y)
      drawRun(leftOf(first), leftOf(end) - 1, y);
  }
}

int CaptionScreen::leftOf(std::size_t column) const {
  return left_ + static_cast<int>(column) * kCellWidth * scale_;
}

void CaptionScreen::drawGlyph(const vbi_char& cell, int left) {
  setColour(cell.foreground);
  for (int line = 0; line < kCellHeight; ++line)
    drawBits(dotsOf(cell, line), left, line * strips_.linesPerDot());
}

/// Eight dots side by side; runs of set dots are drawn together.
void CaptionScreen::drawBits(unsigned bits, int left, int top) {
  for (int first = 0; first < kCellWidth; ++first) {
    int end = first;
    while (end < kCellWidth && (bits & (0x80U >> end)) != 0)
      ++end;
    if (end == first)
      continue;
    for (int y = top; y < top + strips_.linesPerDot(); ++y)
      drawRun(left + first * scale_, left + end * scale_ - 1, y);
    first = end;
  }
}

/// The pixels from `first` to `last` of a row. In layouts that plot the luma of a pixel's
/// neighbour, half pairs at the ends are plotted through their neighbours.
void CaptionScreen::drawRun(int first, int last, int y) {
  if (plotsNeighbour_ && first % 2 == 1)
    surface_->Point(first++ - 1, y, true);
  if (plotsNeighbour_ && last % 2 == 0)
    surface_->Point(last-- + 1, y, true);
  if (first <= last)
    surface_->Line(first, y, last, y);
}

/// The decoder's colours: one bit each for red, green and blue.
void CaptionScreen::setColour(unsigned colour) {
  surface_->SetColorRGBA(colour & 1, colour >> 1 & 1, colour >> 2 & 1, 1.0, true);
}

}  // namespace nkdraw
