// SPDX-License-Identifier: BSD-2-Clause
//
// Labels: the built-in font stamped through Point and LineHoriz.
#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>
#include <nkdraw/text/label_glyphs.h>

#include <bit>
#include <cstddef>
#include <cstring>
#include <optional>

namespace {

constexpr unsigned char kLastCode = 127;

/// What a label plots for the set bits of a cell, or for the clear ones.
enum class Stroke { kNone, kForeground, kBackground };

constexpr Stroke strokeOf(bool set, bool invert, bool fill) {
  if (!set && !fill)
    return Stroke::kNone;
  return set != invert ? Stroke::kForeground : Stroke::kBackground;
}

/// One bit of a cell, `scale` pixels wide. In the foreground a magnified bit is one LineHoriz; in
/// the background it is single points.
void plotBit(NKDraw& surface, int x, int y, std::uint32_t scale, Stroke stroke) {
  if (stroke == Stroke::kNone)
    return;
  if (stroke == Stroke::kForeground && scale != 1) {
    surface.LineHoriz(x, y, nkdraw::wrappingAdd(x, scale));
    return;
  }
  for (std::uint32_t k = 0; k < scale; ++k)
    surface.Point(nkdraw::wrappingAdd(x, k), y, stroke == Stroke::kForeground);
}

/// One line of a cell, from left to right.
void plotRow(NKDraw& surface, int x, int y, std::uint32_t scale, unsigned cellRow, Stroke clear,
             Stroke set) {
  for (unsigned mask = 0x80; mask != 0; mask >>= 1, x = nkdraw::wrappingAdd(x, scale))
    plotBit(surface, x, y, scale, (cellRow & mask) != 0 ? set : clear);
}

/// Draws labels at scale 1 on the library's own classes. These override neither Point nor
/// LineHoriz, so a line of a cell is plotted at once.
class DirectLabel {
 public:
  DirectLabel(NKDraw& surface, bool invert, bool fill)
      : plotter_(surface), invert_(invert), fill_(fill) {}

  /// Without a box this plots only the foreground, but an inverted label needs the background.
  [[nodiscard]] bool possible() const { return plotter_.ownClass() && (fill_ || !invert_); }

  /// The column of the last point plotted, if any.
  [[nodiscard]] std::optional<int> plotRow(int x, int y, std::uint8_t cellRow) const {
    plotter_.bits(invert_ ? ~unsigned{cellRow} : cellRow, x, y, 1, !fill_);
    if (!fill_ && cellRow == 0)
      return std::nullopt;
    return nkdraw::wrappingAdd(x, fill_ ? 7 : 7 - std::countr_zero(cellRow));
  }

 private:
  nkdraw::RunPlotter plotter_;
  bool invert_, fill_;
};

}  // namespace

const std::uint8_t* NKDraw::builtInFont() {
  return nkdraw::labelGlyphs;
}

std::uint32_t NKDraw::LabelFont(const char* /*name*/, std::uint32_t /*size*/) {
  return 0;
}

std::uint32_t NKDraw::LabelFont(std::uint32_t /*size*/, int scale) {
  labelFontWidth = nkdraw::kGlyphWidth;
  labelFontHeight = nkdraw::kGlyphHeight;
  labelFont = nkdraw::labelGlyphs;
  labelFontScale = static_cast<std::uint32_t>(scale);
  return 0;
}

std::uint32_t NKDraw::LabelGetFontWidth() {
  return labelFontScale * labelFontWidth;
}

std::uint32_t NKDraw::LabelGetFontHeight() {
  return labelFontScale * labelFontHeight;
}

std::uint32_t NKDraw::Label(int x, int y, const char* text, bool invert, bool fill) {
  const Stroke clear = strokeOf(false, invert, fill), set = strokeOf(true, invert, fill);
  const std::uint32_t advance = labelFontWidth * labelFontScale;
  // Signed, so a label above the canvas continues down into it.
  const int end = nkdraw::wrappingAdd(y, labelFontHeight * labelFontScale);
  const DirectLabel direct(*this, invert, fill);
  const bool atOnce = labelFontScale == 1 && direct.possible();
  for (std::size_t i = 0; i < std::strlen(text); ++i) {
    const auto code = static_cast<unsigned char>(text[i]);
    if (code > kLastCode)
      continue;
    const int left = nkdraw::wrappingAdd(x, advance * static_cast<std::uint32_t>(i));
    const std::uint8_t* row = labelFont + (std::size_t{code} + 1) * labelFontHeight - 1;
    for (int line = y; atOnce && line < end; ++line, --row) {
      if (const auto last = direct.plotRow(left, line, *row)) {
        penX = *last;
        penY = line;
      }
    }
    for (int line = y; !atOnce && line < end; --row) {
      for (std::uint32_t repeat = 0; repeat < labelFontScale;
           ++repeat, line = nkdraw::wrappingAdd(line, 1))
        plotRow(*this, left, line, labelFontScale, *row, clear, set);
    }
  }
  return 0;
}
