// SPDX-License-Identifier: BSD-2-Clause
//
// Labels: the built-in font stamped through Point and LineHoriz.
#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>
#include <nkdraw/text/label_glyphs.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <functional>
#include <optional>
#include <string_view>

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

/// The coordinates of labels that can't wrap.
constexpr bool isNear(int coordinate) {
  return nkdraw::magnitude(coordinate) < 1U << 24;
}

/// Draws magnified labels on the library's own classes, a run of equal bits at a time. That is the
/// same as a LineHoriz or single points for each bit, as long as no pixel is blended.
class MagnifiedLabel {
 public:
  /// `farEnd` tells whether LineHoriz plots its last column.
  MagnifiedLabel(NKDraw& surface, std::uint32_t scale, bool invert, bool fill, bool farEnd)
      : surface_(surface),
        plotter_(surface),
        scale_(scale),
        invert_(invert),
        fill_(fill),
        farEnd_(farEnd) {}

  /// A block fill of words, as LineHoriz then is, is only NKPixel's way of plotting.
  [[nodiscard]] bool possible() const {
    return scale_ > 1 && scale_ <= kLargest && plotter_.ownClass() &&
           (farEnd_ || plotter_.plotsAsPixel());
  }

  /// How many of the first characters are drawn at once: those of a box, if nothing that is drawn
  /// can change the text.
  [[nodiscard]] std::size_t countAtOnce(std::string_view text) const {
    const std::size_t most =
        fill_ && !liesInCanvas(text) ? nkdraw::BitBox::kMostPixels / kCellBits / scale_ : 1;
    const auto shown = [](char code) { return static_cast<unsigned char>(code) <= kLastCode; };
    const auto end = std::find_if_not(text.begin(), text.end(), shown);
    return std::min(most, static_cast<std::size_t>(end - text.begin()));
  }

  /// Draws these characters of a font; `left` and `top` are near. Returns the last single point, if
  /// any.
  [[nodiscard]] std::optional<tagPOINT> draw(const std::uint8_t* font, std::string_view text,
                                             int left, int top) const {
    const int bottom = top + kCellLines * scale() - 1;
    const auto cellOf = [&](std::size_t i) {
      return font + static_cast<std::size_t>(text[i]) * nkdraw::kGlyphHeight;
    };
    const auto leftOf = [&](std::size_t i) { return left + static_cast<int>(i) * advance(); };
    const bool drawn = fill_ && drawBox(text.size(), cellOf, left, bottom);
    std::optional<tagPOINT> last;
    for (std::size_t i = 0; i < text.size(); ++i) {
      for (int line = 0; !drawn && line < kCellLines * scale(); ++line)
        plotLine(cellOf(i)[kCellLines - 1 - line / scale()], leftOf(i), top + line);
      if (const auto point = lastPoint(cellOf(i), leftOf(i), bottom))
        last = point;
    }
    return last;
  }

 private:
  static constexpr std::uint32_t kLargest = 20;
  static constexpr int kCellLines = static_cast<int>(nkdraw::kGlyphHeight);
  static constexpr int kCellBits = static_cast<int>(nkdraw::kGlyphWidth);

  [[nodiscard]] int scale() const { return static_cast<int>(scale_); }
  /// The bits of a row that are runs in the foreground, and those that are points in the
  /// background.
  [[nodiscard]] unsigned runBits(std::uint8_t row) const {
    return invert_ ? (fill_ ? ~unsigned{row} & 0xFF : 0U) : row;
  }
  [[nodiscard]] unsigned pointBits(std::uint8_t row) const {
    return invert_ ? row : fill_ ? ~unsigned{row} & 0xFF : 0U;
  }

  [[nodiscard]] int advance() const { return kCellBits * scale(); }

  [[nodiscard]] bool liesInCanvas(std::string_view text) const {
    const char* const canvas = surface_.GetCanvas();
    const std::less<> isBefore;
    return isBefore(canvas, text.data() + text.size()) &&
           isBefore(text.data(),
                    canvas + std::size_t{surface_.Height()} * std::size_t{surface_.Pitch()});
  }

  /// Both kinds of bits, if the surface has a fast way. A run at the right edge ends one column
  /// outside the box.
  template <class CellOf>
  [[nodiscard]] bool drawBox(std::size_t cells, CellOf cellOf, int left, int bottom) const {
    const int right = left + static_cast<int>(cells) * advance();
    std::array<nkdraw::BitLines, nkdraw::kGlyphHeight> rows;
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (std::size_t i = 0; i < cells; ++i)
        rows[row].bits[i] = static_cast<std::uint8_t>(runBits(cellOf(i)[row]));
      rows[row].lines = scale_;
    }
    const nkdraw::BitBox box = {rows, static_cast<std::uint32_t>(cells), left, bottom, scale_};
    if (std::int64_t{right} >= surface_.Width() || !plotter_.box(box))
      return false;
    for (int line = 0; farEnd_ && line < kCellLines * scale(); ++line) {
      if ((rows[static_cast<std::size_t>(line / scale())].bits[cells - 1] & 1) != 0)
        plotter_.row(right, bottom - line, 1, 1, true);
    }
    return true;
  }

  void plotLine(std::uint8_t row, int left, int y) const {
    const unsigned runs = runBits(row), points = pointBits(row);
    for (int first = 0, end = 0; first < kCellBits; first = end) {
      const auto has = [](unsigned bits, int place) { return (bits & 0x80U >> place) != 0; };
      const bool run = has(runs, first), point = has(points, first);
      for (end = first + 1; end < kCellBits; ++end) {
        if (has(runs, end) != run || has(points, end) != point)
          break;
      }
      const int pixels = (end - first) * scale() + (run && farEnd_ ? 1 : 0);
      if (run || point)
        plotter_.row(left + first * scale(), y, static_cast<std::uint32_t>(pixels), 1, run);
    }
  }

  [[nodiscard]] std::optional<tagPOINT> lastPoint(const std::uint8_t* cell, int left,
                                                  int bottom) const {
    for (int row = 0; row < kCellLines; ++row) {
      if (const unsigned points = pointBits(cell[row]); points != 0)
        return tagPOINT{left + (kCellBits - std::countr_zero(points)) * scale() - 1,
                        bottom - row * scale()};
    }
    return std::nullopt;
  }

  const NKDraw& surface_;
  nkdraw::RunPlotter plotter_;
  std::uint32_t scale_;
  bool invert_, fill_, farEnd_;
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
  const MagnifiedLabel magnified(*this, labelFontScale, invert, fill,
                                 !nkdraw::isFourByteRgb(pixelKind));
  const bool inRuns = !transparencyOn && !alphaAdditive && magnified.possible() && isNear(y) &&
                      labelFontWidth == nkdraw::kGlyphWidth &&
                      labelFontHeight == nkdraw::kGlyphHeight;
  for (std::size_t i = 0; i < std::strlen(text); ++i) {
    const auto code = static_cast<unsigned char>(text[i]);
    if (code > kLastCode)
      continue;
    const int left = nkdraw::wrappingAdd(x, advance * static_cast<std::uint32_t>(i));
    const std::uint8_t* row = labelFont + (std::size_t{code} + 1) * labelFontHeight - 1;
    if (inRuns && isNear(left)) {
      const std::string_view rest = text + i;
      const std::string_view now = rest.substr(0, magnified.countAtOnce(rest));
      if (const auto last = magnified.draw(labelFont, now, left, y))
        NKDraw::MoveTo(last->x, last->y);
      i += now.size() - 1;
      continue;
    }
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
