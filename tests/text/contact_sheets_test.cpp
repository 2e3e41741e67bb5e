// SPDX-License-Identifier: BSD-2-Clause
//
// Contact sheets of the label font, for a person to look at: pictures/ under the build folder.
#include <tests/support/call_log.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>
#include <string>
#include <string_view>

#include <png.h>

namespace {

using namespace nkdraw::test;

constexpr int kColumns = 16;

/// A BGRA frame with a surface on it.
class Sheet {
 public:
  Sheet(int width, int height, bool lightOnDark)
      : width_(width),
        height_(height),
        frame_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4) {
    surface_ = makeSurface(ptBGRA32, width, height, 0, frame_.canvas());
    const double ink = lightOnDark ? 0.9 : 0.1, paper = 1.0 - ink;
    surface_->SetColorRGBA(paper, paper, paper, 1.0, true);
    for (int y = 0; y < height; ++y)
      surface_->LineHoriz(0, y, width);
    surface_->SetColorRGBA(ink, ink, ink, 1.0, true);
    surface_->SetColorRGBA(paper, paper, paper, 1.0, false);
  }

  NKDraw* operator->() { return surface_.get(); }
  NKDraw& operator*() { return *surface_; }

  [[nodiscard]] bool inked(int x, int y) {
    return frame_[4 * (std::ptrdiff_t{y} * width_ + x)] == PixelFields::foreground(*surface_)[0];
  }

  using Colour = std::array<std::uint8_t, 3>;  // blue first
  [[nodiscard]] Colour at(int x, int y) {
    const std::uint8_t* const pixel = &frame_[4 * (std::ptrdiff_t{y} * width_ + x)];
    return {pixel[0], pixel[1], pixel[2]};
  }
  /// Pixels of this colour from `left` up to `right`, in these rows.
  [[nodiscard]] int count(const Colour& colour, int left, int top, int right, int bottom) {
    int found = 0;
    for (int y = top; y < bottom; ++y) {
      for (int x = left; x < right; ++x)
        found += at(x, y) == colour ? 1 : 0;
    }
    return found;
  }

  void write(const std::string& name) {
    EXPECT_TRUE(frame_.guardsIntact());
    for (std::size_t i = 3; i < frame_.bytes().size(); i += 4)
      frame_.bytes()[i] = 255;  // some texts leave an alpha of none
    const std::filesystem::path folder = NKDRAW_TEST_PICTURES;
    std::filesystem::create_directories(folder);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width_);
    image.height = static_cast<png_uint_32>(height_);
    image.format = PNG_FORMAT_BGRA;
    const std::string path = (folder / (name + ".png")).string();
    EXPECT_NE(png_image_write_to_file(&image, path.c_str(), 0, frame_.data(), 0, nullptr), 0)
        << image.message;
    testing::Test::RecordProperty("picture", path);
  }

 private:
  int width_, height_;
  Frame frame_;
  Surface surface_;
};

std::string sheetName(const char* operation, int m, bool lightOnDark) {
  return std::string("font_") + operation + "_x" + std::to_string(m) +
         (lightOnDark ? "_light_on_dark" : "_dark_on_light");
}

/// Whether the label font has ink in column x and row y of a glyph, from its upper left corner.
bool isInk(int code, int x, int y) {
  return (nkdraw::labelGlyphs[10 * code + 9 - y] & (0x80 >> x)) != 0;
}

/// Expects that in the cells of `text`, magnified by a number, exactly the glyphs are inked.
/// DrawText draws them one glyph row below the rectangle, and cuts that row off below except for
/// one line.
void expectGlyphs(Sheet& sheet, const std::string& text, int left, int top, int m) {
  for (int y = 0; y <= 9 * m; ++y) {
    for (int x = 0; x < static_cast<int>(text.size()) * 8 * m; ++x) {
      const int code = static_cast<unsigned char>(text[static_cast<std::size_t>(x / (8 * m))]);
      ASSERT_EQ(sheet.inked(left + x, top + m + y), isInk(code, x / m % 8, y / m))
          << text << ": " << x << "," << y;
    }
  }
}

class ContactSheets : public testing::TestWithParam<std::tuple<int, bool>> {};

INSTANTIATE_TEST_SUITE_P(Magnified, ContactSheets,
                         testing::Combine(testing::Values(1, 2, 3), testing::Bool()));

TEST_P(ContactSheets, OfLabelsShowAllCells) {
  const auto [m, lightOnDark] = GetParam();
  const int stepX = 8 * m + 4, stepY = 10 * m + 4;
  Sheet sheet(kColumns * stepX + 4, 16 * stepY + 4, lightOnDark);
  sheet->LabelFont(0U, m);
  for (int code = 0; code < 256; ++code) {
    // A text can't hold code 0 or those above 127: each cell is shown as the first of a font.
    DrawFields::font(*sheet) = nkdraw::labelGlyphs + 10 * (code - 1);
    sheet->Label(4 + code % kColumns * stepX, 4 + code / kColumns * stepY, "\x01", false, true);
  }
  for (int code = 0; code < 256; ++code) {
    for (int y = 0; y < 10 * m; ++y) {
      for (int x = 0; x < 8 * m; ++x) {
        ASSERT_EQ(sheet.inked(4 + code % kColumns * stepX + x, 4 + code / kColumns * stepY + y),
                  isInk(code, x / m, y / m))
            << code;
      }
    }
  }
}

TEST_P(ContactSheets, OfDrawTextShowTheAsciiLines) {
  const auto [m, lightOnDark] = GetParam();
  const int stepY = 12 * m + 2;
  Sheet sheet(8 * m * kColumns + 8, 8 * stepY + 4, lightOnDark);
  sheet->SetTextTransparent(false);
  for (int line = 0; line < 8; ++line) {
    std::string text;
    for (int code = line * kColumns; code < (line + 1) * kColumns; ++code)
      text += static_cast<char>(code == 0 ? ' ' : code);
    tagRECT rect = {4, 3 + line * stepY, 0, 3 + line * stepY + 10 * m};
    EXPECT_EQ(sheet->DrawText(text.c_str(), kColumns, &rect, DT_CALCRECT), 0);
    EXPECT_EQ(rect.right, 4 + 8 * m * kColumns);
    expectGlyphs(sheet, text, 4, 3 + line * stepY, m);
  }
  sheet.write(sheetName("drawtext", m, lightOnDark));
}

TEST(Pictures, TextOnAFrameAsAnOverlayPutsIt) {
  Sheet sheet(640, 200, true);
  sheet->SetTextTransparent(false);
  struct Line {
    const char* text;
    int top, magnification;
  };
  for (const Line& line : {Line{"01:23:45;12", 20, 2}, Line{"29.97 MOV v210 1920x1080 i", 60, 3},
                           Line{"gjpqy_|^ Quick", 110, 5}}) {
    const std::string text = line.text;
    const int bottom = line.top + 10 * line.magnification;
    tagRECT rect = {20, line.top, 0, bottom};
    sheet->DrawText(text.c_str(), static_cast<int>(text.size()), &rect, DT_CALCRECT);
    expectGlyphs(sheet, text, 20, line.top, line.magnification);
  }
  sheet.write("font_overlay_lines");
}

/// Chooses a way of DrawText, and lets go of it.
class FontKind {
 public:
  explicit FontKind(const char (&kind)[4]) { CleanFontData::chooseKind(kind); }

 private:
  CleanFontData clean_;
};

TEST(TextPictures, OfOutlineTextShowFillsAndOutlines) {
  constexpr Sheet::Colour kFill = {1, 1, 1}, kOutline = {0, 0, 0};
  const FontKind kind("ttf");
  Sheet sheet(860, 330, false);
  int y = 6;
  for (const int em : {12, 20, 32, 48, 96}) {
    nkdraw::fontData.fontPointSize = em;
    tagRECT rect = {8, y, 0, 0};
    sheet->SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);  // the fill shows only of a full colour
    const std::string text = em < 96 ? "Take 7, \x80 5 \x97 (Sphinx) \xC4\xE9" : "O&g8";
    sheet->DrawText(text.c_str(), static_cast<int>(text.size()), &rect, 0);
    rect = {570, y, 0, 0};
    sheet->SetColorRGBA(0.9, 0.9, 0.9, 1.0, true);
    sheet->DrawText(text.c_str(), em < 48 ? 15 : 4, &rect, 0);
    const int bottom = y + em * 4 / 3;
    EXPECT_GT(sheet.count(kFill, 0, y, 570, bottom), em) << em;
    EXPECT_EQ(sheet.count(kFill, 570, y, 860, bottom), 0) << em;
    EXPECT_GT(sheet.count(kOutline, 0, y, 570, bottom), em) << em;
    EXPECT_GT(sheet.count(kOutline, 570, y, 860, bottom), em) << em;
    y += em * 4 / 3 + 6;
  }
  sheet.write("outline_text");
}

/// Fills the font data with a sheet of the label font's glyphs, white on blue, the key, a yellow
/// line for a foot.
void loadLabelGlyphs(std::uint32_t first, std::uint32_t last) {
  constexpr std::uint32_t kCell = 10, kHeight = 13;
  const std::uint32_t width = 6 + (last - first + 1) * kCell;
  const std::uint32_t stride = width * 3 + width % 4;
  std::uint8_t* const pixels = CleanFontData::bytes();
  const auto set = [&](std::uint32_t x, std::uint32_t line, std::array<std::uint8_t, 3> bgr) {
    std::copy(bgr.begin(), bgr.end(), pixels + (kHeight - 1 - line) * stride + x * 3);
  };
  for (std::uint32_t x = 0; x < width; ++x) {
    const std::uint32_t cell = (x - 6) / kCell, column = (x - 6) % kCell;
    const bool glyph = x >= 6 && column < 9;
    for (std::uint32_t line = 0; line < kHeight; ++line) {
      const std::uint32_t row = 11 - line;  // of the label font, from below
      const bool ink = glyph && column >= 1 && line >= 2 && line <= 11 &&
                       (nkdraw::labelGlyphs[(first + cell) * 10 + row] >> (8 - column) & 1) != 0;
      if (ink)
        set(x, line, {255, 255, 255});
      else if (glyph && line == 12)
        set(x, line, {0, 200, 255});
      else if (glyph)
        set(x, line, {200, 40, 0});
      else
        set(x, line, {0, 0, 0});
    }
  }
  setWord(nkdraw::fontData.fontSheetHeader, width);
  setWord(nkdraw::fontData.fontSheetHeader + 4, kHeight);
}

TEST(TextPictures, OfSheetTextShowTheSheetsGlyphsOnTheBackground) {
  const FontKind kind("bmp");
  loadLabelGlyphs(33, 126);
  Sheet sheet(420, 80, true);
  sheet->SetColorRGBA(0.5, 0.0, 0.0, 1.0, false);
  int y = 4;
  for (const char* const text : {"A font sheet, stamped: 0123456789", "ABCDEFGHIJKLMNOPQRSTUVWXYZ",
                                 "abcdefghijklmnopqrstuvwxyz {|}~"}) {
    tagRECT rect = {4, y, 0, 0};
    sheet->DrawText(text, 0, &rect, 0);
    int glyphs = 0, ink = 0;
    for (const char letter : std::string_view(text)) {
      const auto code = static_cast<unsigned char>(letter);
      glyphs += code != ' ' ? 1 : 0;
      for (int row = 0; code != ' ' && row < 10; ++row)
        ink += std::popcount(nkdraw::labelGlyphs[10 * code + row]);
    }
    constexpr Sheet::Colour kInk = {254, 254, 254}, kFoot = {0, 199, 254}, kGround = {0, 0, 127};
    EXPECT_EQ(sheet.count(kInk, 0, y, 420, y + 24), ink) << text;
    EXPECT_EQ(sheet.count(kFoot, 0, y, 420, y + 24), glyphs * 8) << text;
    EXPECT_EQ(sheet.count(kGround, 0, y, 420, y + 24), glyphs * 8 * 12 - ink) << text;
    y += 24;
  }
  sheet.write("sheet_text");
}

}  // namespace
