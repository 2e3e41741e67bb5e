// SPDX-License-Identifier: BSD-2-Clause
//
// Text in a rectangle: chooses a font, and draws the built-in glyphs, magnified by a whole number,
// upward from the rectangle's bottom edge.
#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>
#include <nkdraw/text/font_data.h>
#include <nkdraw/text/label_glyphs.h>
#include <nkdraw/text/text_extent.h>
#include <nkdraw/text/text_paths.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace {

using nkdraw::wrappingAdd;
using nkdraw::wrappingSubtract;

void centre(tagRECT& rect, std::uint32_t length, std::uint32_t magnification) {
  const std::uint32_t line = nkdraw::kGlyphHeight * magnification;
  const auto height = static_cast<std::uint32_t>(wrappingSubtract(rect.bottom, rect.top));
  if (height > line)
    rect.top = wrappingAdd(rect.top, (height - line) / 2);
  // Deliberate: callers rely on the position. Characters count as 10 pixels wide here, although
  // cells are 8.
  const auto half = static_cast<std::int32_t>(length * magnification * 10 / 2);
  const std::int32_t middle = wrappingSubtract(rect.right, rect.left) / 2;
  if (middle > half)
    rect.left = wrappingAdd(rect.left, std::int64_t{middle} - half);
}

/// Moves the rectangle's edges to where the format puts the text.
void align(tagRECT& rect, std::uint32_t format, std::uint32_t length, std::uint32_t count,
           std::uint32_t magnification) {
  if ((format & DT_CENTER) != 0)
    centre(rect, length, magnification);
  else if ((format & DT_RIGHT) != 0)
    rect.left = wrappingSubtract(rect.right, count * magnification * nkdraw::kGlyphWidth);
  else if ((format & DT_BOTTOM) == 0)
    rect.bottom = wrappingAdd(rect.top, nkdraw::kGlyphHeight * magnification);
}

/// Stamps cells of glyphs. A cell covers one line more than its height, and moves to its next row
/// after line 0 already. So its first byte fills one line and the others `magnification` lines
/// each; then the first byte of the next cell follows. The topmost line is always background.
class GlyphStamp {
 public:
  GlyphStamp(NKPixel& surface, std::uint32_t magnification, bool transparent)
      : plotter_(surface), magnification_(magnification), transparent_(transparent) {
    constexpr std::uint32_t kMostWide = nkdraw::BitBox::kMostPixels / nkdraw::kGlyphWidth;
    cellsAtOnce_ =
        std::min<std::uint32_t>(kMostWide / magnification_, nkdraw::BitLines::kMostBytes);
    rows_[0].lines = 1;
    std::fill(rows_.begin() + 1, rows_.end(), nkdraw::BitLines{{}, magnification_});
    rows_[nkdraw::kGlyphHeight].lines = magnification_ - 1;
    rows_.back().lines = 1;
  }

  /// A text with its lower left corner at (left, bottom). With a background many cells form one
  /// box. Without a background, or if the surface has no fast way for boxes, cells are stamped one
  /// by one.
  void stamp(std::string_view text, std::int32_t left, std::int32_t bottom) {
    while (!text.empty()) {
      const std::string_view cells = text.substr(0, transparent_ ? 1 : std::size_t{cellsAtOnce_});
      if (transparent_ || !stampBox(cells, left, bottom)) {
        for (std::size_t i = 0; i < cells.size(); ++i)
          stampCell(cells[i], wrappingAdd(left, advance(i)), bottom);
      }
      left = wrappingAdd(left, advance(cells.size()));
      text.remove_prefix(cells.size());
    }
  }

 private:
  /// The bytes of a cell from its bottom row on; codes count as signed.
  static const std::uint8_t* cellOf(char code) {
    return nkdraw::labelGlyphs +
           std::ptrdiff_t{static_cast<signed char>(code)} * nkdraw::kGlyphHeight;
  }

  [[nodiscard]] std::uint32_t advance(std::size_t cells) const {
    return nkdraw::kGlyphWidth * static_cast<std::uint32_t>(cells) * magnification_;
  }

  bool stampBox(std::string_view cells, std::int32_t left, std::int32_t bottom) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::uint8_t* const cell = cellOf(cells[i]);
      for (std::size_t row = 0; row <= nkdraw::kGlyphHeight; ++row)
        rows_[row].bits[i] = cell[row];
      rows_.back().bits[i] = 0;
    }
    return plotter_.box(
        {rows_, static_cast<std::uint32_t>(cells.size()), left, bottom, magnification_});
  }

  void stampCell(char code, std::int32_t left, std::int32_t bottom) const {
    const std::uint8_t* const cell = cellOf(code);
    std::int32_t y = bottom;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      const unsigned bits = row <= nkdraw::kGlyphHeight ? cell[row] : 0U;
      for (std::uint32_t line = 0; line < rows_[row].lines; ++line, y = wrappingSubtract(y, 1))
        plotter_.bits(bits, left, y, magnification_, transparent_);
    }
  }

  nkdraw::RunPlotter plotter_;
  std::uint32_t magnification_;
  bool transparent_;
  std::uint32_t cellsAtOnce_;
  // The bytes of a cell, the first byte of the next one, and the topmost line.
  std::array<nkdraw::BitLines, nkdraw::kGlyphHeight + 2> rows_;
};

/// Every text clears the word, from any thread. A word that is already clear is not written, so
/// that all caches keep it.
void clearFontScratch() {
  const std::atomic_ref scratch(nkdraw::fontData.fontScratch);
  if (scratch.load(std::memory_order_relaxed) != 0)
    scratch.store(0, std::memory_order_relaxed);
}

bool fontKindIs(const char (&kind)[4]) {
  return std::memcmp(nkdraw::fontData.fontKind, kind, sizeof kind) == 0;
}

void drawGlyphs(NKDraw& surface, const char* text, std::int32_t count, tagRECT& rect,
                std::uint32_t format, bool transparent) {
  const std::uint32_t magnification = nkdraw::textMagnification(rect);
  const auto length = static_cast<std::uint32_t>(std::strlen(text));
  const auto counted = static_cast<std::uint32_t>(count);
  align(rect, format, length, counted, magnification);
  GlyphStamp(surface, magnification, transparent).stamp(text, rect.left, rect.bottom);
  if ((format & DT_CALCRECT) != 0)
    nkdraw::setTextBox(rect, counted, magnification);
}

}  // namespace

std::int32_t NKDraw::DrawText(const char* text, std::int32_t count, tagRECT* rect,
                              std::uint32_t format) {
  clearFontScratch();
  antialias = false;
  if (fontKindIs("ttf"))
    nkdraw::drawOutlineText(*this, text, count, *rect, format);
  else if (fontKindIs("bmp"))
    nkdraw::drawSheetText(*this, text, *rect);
  else
    drawGlyphs(*this, text, count, *rect, format, textTransparent);
  return 0;
}

std::int32_t NKDraw::NKDrawText(const char* text, std::int32_t count, tagRECT* rect,
                                std::uint32_t format) {
  return DrawText(text, count, rect, format);
}

std::int32_t NKDraw::DrawTextExA(const char*, std::int32_t, tagRECT*, std::uint32_t,
                                 tagDRAWTEXTPARAMS*) {
  return 0;
}

std::int32_t NKDraw::TextOutA(int, int, const char*, int) {
  return 0;
}
