// SPDX-License-Identifier: BSD-2-Clause
//
// Labels: the built-in font stamped through Point and LineHoriz.
#include <nkdraw/draw/draw.h>
#include <nkdraw/text/label_glyphs.h>

#include <cstddef>
#include <cstring>

namespace {

/// What a label plots for the set bits of a cell, or for the clear ones.
enum class Stroke { kNone, kForeground, kBackground };

constexpr Stroke strokeOf(bool set, bool invert, bool fill) {
  if (!set && !fill)
    return Stroke::kNone;
  return set != invert ? Stroke::kForeground : Stroke::kBackground;
}

/// One bit of a cell, `scale` pixels wide. In the foreground a magnified bit is one run of
/// LineHoriz, in the background single points.
void plotBit(NKDraw& surface, int x, int y, std::uint32_t scale, Stroke stroke) {
  if (stroke == Stroke::kNone)
    return;
  if (stroke == Stroke::kForeground && scale != 1) {
    surface.LineHoriz(x, y, static_cast<int>(static_cast<std::uint32_t>(x) + scale));
    return;
  }
  for (std::uint32_t k = 0; k < scale; ++k)
    surface.Point(static_cast<int>(static_cast<std::uint32_t>(x) + k), y,
                  stroke == Stroke::kForeground);
}

}  // namespace

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
  const Stroke strokes[] = {strokeOf(false, invert, fill), strokeOf(true, invert, fill)};
  const auto top = static_cast<std::uint32_t>(y);
  // Signed, so that a label above the canvas walks down into it.
  const auto end = static_cast<int>(top + labelFontHeight * labelFontScale);
  for (std::size_t i = 0; i < std::strlen(text); ++i) {
    const auto code = static_cast<signed char>(text[i]);
    if (code < 0)
      continue;
    const auto left = static_cast<std::uint32_t>(x) +
                      labelFontWidth * labelFontScale * static_cast<std::uint32_t>(i);
    const std::uint8_t* row =
        labelFont + static_cast<std::uint32_t>(code) * labelFontHeight + labelFontHeight - 1;
    for (int line = y; line < end; --row) {
      for (std::uint32_t repeat = 0; repeat < labelFontScale; ++repeat, ++line) {
        for (std::uint32_t bit = 0; bit < nkdraw::kGlyphWidth; ++bit) {
          const bool set = (*row & (0x80U >> bit)) != 0;
          plotBit(*this, static_cast<int>(left + bit * labelFontScale), line, labelFontScale,
                  strokes[set ? 1 : 0]);
        }
      }
    }
  }
  return 0;
}
