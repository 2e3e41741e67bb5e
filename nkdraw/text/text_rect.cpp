// SPDX-License-Identifier: BSD-2-Clause
//
// Text in a rectangle: the choice of a font, and the built-in glyphs, magnified by whole numbers,
// drawn upward from the rectangle's bottom edge.
#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>
#include <nkdraw/text/font_data.h>
#include <nkdraw/text/label_glyphs.h>
#include <nkdraw/text/text_paths.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint32_t kLargestMagnification = 20;

using nkdraw::magnitude;
using nkdraw::wrappingAdd;
using nkdraw::wrappingSubtract;

std::uint32_t magnificationFor(const tagRECT& rect) {
  if (rect.bottom == 0 || rect.top < 0)
    return 1;
  const std::uint32_t height = magnitude(wrappingSubtract(rect.bottom, rect.top));
  return std::clamp(height / nkdraw::kGlyphHeight, 1U, kLargestMagnification);
}

void centre(tagRECT& rect, std::uint32_t length, std::uint32_t magnification) {
  const std::uint32_t line = nkdraw::kGlyphHeight * magnification;
  const auto height = static_cast<std::uint32_t>(wrappingSubtract(rect.bottom, rect.top));
  if (height > line)
    rect.top = wrappingAdd(rect.top, (height - line) / 2);
  // Meant as coarse as it is: characters count 10 pixels wide here, although cells are 8.
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

class GlyphStamp {
 public:
  GlyphStamp(NKPixel& surface, std::uint32_t magnification, bool transparent)
      : plotter_(surface), magnification_(magnification), transparent_(transparent) {}

  /// Stamps the cell of `code` with its lower left corner at (left, bottom). A cell covers one line
  /// more than it is high, and its row moves on after line 0 already: its first byte fills one
  /// line, the others `magnification` each, then follows the first byte of the next cell. The
  /// topmost line is always background.
  void stamp(signed char code, std::int32_t left, std::int32_t bottom) const {
    const std::uint8_t* row = nkdraw::labelGlyphs + std::ptrdiff_t{code} * nkdraw::kGlyphHeight;
    const std::uint32_t top = nkdraw::kGlyphHeight * magnification_;
    std::uint32_t untilNext = 1;
    for (std::uint32_t line = 0; line <= top; ++line) {
      plotLine(line == top ? 0 : *row, left, wrappingSubtract(bottom, line));
      if (--untilNext == 0) {
        ++row;
        untilNext = magnification_;
      }
    }
  }

 private:
  /// One line of a cell as runs of equal bits, from left to right.
  void plotLine(unsigned cellRow, std::int32_t x, std::int32_t y) const {
    for (std::uint32_t bit = 0; bit < nkdraw::kGlyphWidth;) {
      const bool ink = isSet(cellRow, bit);
      std::uint32_t end = bit + 1;
      while (end < nkdraw::kGlyphWidth && isSet(cellRow, end) == ink)
        ++end;
      if (ink || !transparent_)
        plotter_.row(wrappingAdd(x, bit * magnification_), y, (end - bit) * magnification_, 1, ink);
      bit = end;
    }
  }

  static bool isSet(unsigned cellRow, std::uint32_t bit) { return (cellRow & (0x80U >> bit)) != 0; }

  nkdraw::RunPlotter plotter_;
  std::uint32_t magnification_;
  bool transparent_;
};

bool fontKindIs(const char (&kind)[4]) {
  return std::memcmp(nkdraw::fontData.fontKind, kind, sizeof kind) == 0;
}

void drawGlyphs(NKDraw& surface, const char* text, std::int32_t count, tagRECT& rect,
                std::uint32_t format, bool transparent) {
  const std::uint32_t magnification = magnificationFor(rect);
  const auto length = static_cast<std::uint32_t>(std::strlen(text));
  const auto counted = static_cast<std::uint32_t>(count);
  align(rect, format, length, counted, magnification);
  const GlyphStamp glyphs(surface, magnification, transparent);
  for (std::uint32_t i = 0; i < length; ++i)
    glyphs.stamp(static_cast<signed char>(text[i]),
                 wrappingAdd(rect.left, nkdraw::kGlyphWidth * i * magnification), rect.bottom);
  if ((format & DT_CALCRECT) != 0) {
    rect.right = wrappingAdd(rect.left, counted * magnification * nkdraw::kGlyphWidth);
    rect.bottom = wrappingAdd(rect.top, nkdraw::kGlyphHeight * magnification);
  }
}

}  // namespace

std::int32_t NKDraw::DrawText(const char* text, std::int32_t count, tagRECT* rect,
                              std::uint32_t format) {
  nkdraw::fontData.fontScratch = 0;
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
