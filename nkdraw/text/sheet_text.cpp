// SPDX-License-Identifier: BSD-2-Clause
//
// Text from a font sheet. The top line of the sheet is a code. Its runs of equal colour are, from
// the left: the space, then glyph cells and separators in turn.
#include <nkdraw/text/text_paths.h>

#include <nkdraw/surface/wrapping.h>
#include <nkdraw/text/sheet_data.h>

#include <optional>

namespace {

using nkdraw::SheetHeader;

constexpr const char* kSheetPath = "/ref/nkdraw/fonts code/BFont++/test.bmp";
constexpr int kFirstCode = 33;
constexpr std::size_t kPixelBytes = 3;

struct Colour {
  std::uint8_t blue, green, red;
  bool operator==(const Colour&) const = default;
};

/// The colour that lets the background show. It is taken from the last character that has a cell,
/// in this text or an earlier one. Spaces before the first such character have none.
std::optional<Colour> key;

/// The sheet in the font data. Positions are bytes of its block. A pixel that isn't wholly inside
/// the block counts as missing.
class Sheet {
 public:
  Sheet() : height_(SheetHeader::word(SheetHeader::kHeight)) {
    const std::uint32_t width = SheetHeader::word(SheetHeader::kWidth);
    stride_ = width * 3 + width % 4;
  }

  [[nodiscard]] std::uint32_t height() const { return height_; }
  /// Rows are stored bottom up, so the top line is the last one.
  [[nodiscard]] std::size_t topLine() const { return (height_ - 1) * std::size_t{stride_}; }
  /// The same column `line` lines below the top one.
  [[nodiscard]] std::size_t below(std::size_t at, std::uint32_t line) const {
    return at - line * std::size_t{stride_};
  }

  [[nodiscard]] std::optional<Colour> pixel(std::size_t at) const {
    const auto block = nkdraw::fontBlock();
    if (at > block.size() - kPixelBytes)
      return std::nullopt;
    return Colour{block[at], block[at + 1], block[at + 2]};
  }

  /// The pixels from `at` on that have its colour. The search ends with the block, not with the
  /// line: a code past the last glyph finds whatever follows in memory.
  [[nodiscard]] std::uint32_t runLength(std::size_t at) const {
    const std::optional<Colour> colour = pixel(at);
    std::uint32_t length = 0;
    while (colour && pixel(at + length * kPixelBytes) == colour)
      ++length;
    return length;
  }

  [[nodiscard]] std::size_t behindRun(std::size_t at) const {
    return at + runLength(at) * kPixelBytes;
  }

 private:
  std::uint32_t height_;
  std::uint32_t stride_;
};

/// Where a character's glyph starts in the top line; the first cell also gives the key. Deliberate:
/// callers rely on the text. Codes from 128 on are negative, and count as spaces.
std::size_t findGlyph(const Sheet& sheet, char character) {
  const int number = static_cast<signed char>(character) - kFirstCode;
  std::size_t at = sheet.topLine();
  for (int cell = 0; cell <= number; ++cell) {
    if (cell != 0)
      at = sheet.behindRun(at);  // the separator
    at = sheet.behindRun(at);
    if (cell == 0)
      key = sheet.pixel(at);
  }
  return number < 0 ? at : at + kPixelBytes;  // a cell's first pixel is not part of the glyph
}

void stampPixel(NKDraw& surface, std::int32_t x, std::int32_t y, const Colour& colour) {
  if (colour == key) {
    surface.PutPixel(x, y, false);
    return;
  }
  // Deliberate: callers rely on the colours. Full is 256, so white becomes 255/256; alpha is 0.
  constexpr double kUnit = 0.00390625;
  surface.SetColorRGBA(colour.red * kUnit, colour.green * kUnit, colour.blue * kUnit, 0.0, true);
  surface.PutPixel(x, y, true);
}

}  // namespace

void nkdraw::drawSheetText(NKDraw& surface, const char* text, const tagRECT& rect) {
  surface.ExtractBMPData(kSheetPath);  // deliberate: if there is no new sheet, the old one stays
  const Sheet sheet;
  std::int32_t pen = rect.left;
  for (; *text != '\0'; ++text) {
    const std::size_t glyph = findGlyph(sheet, *text);
    const std::uint32_t width = sheet.runLength(glyph);
    for (std::uint32_t line = 0; width > 0 && line < sheet.height(); ++line) {
      const std::size_t row = sheet.below(glyph, line);
      for (std::uint32_t column = 0; column < width; ++column) {
        if (const auto colour = sheet.pixel(row + column * kPixelBytes))
          stampPixel(surface, wrappingAdd(pen, column), wrappingAdd(rect.top, line), *colour);
      }
    }
    pen = wrappingAdd(pen, width);
  }
}
