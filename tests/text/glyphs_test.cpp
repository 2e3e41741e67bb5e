// SPDX-License-Identifier: BSD-2-Clause
//
// The glyph table of the label font.
#include <nkdraw/text/label_glyphs.h>

#include <gtest/gtest.h>

#include <bit>
#include <cctype>
#include <cstdint>
#include <set>
#include <vector>

namespace {

using Cell = std::vector<std::uint8_t>;

Cell cell(int code) {
  const std::uint8_t* const first = nkdraw::labelGlyphs + 10 * code;
  return {first, first + 10};
}

int inkOf(const Cell& rows) {
  int bits = 0;
  for (const std::uint8_t row : rows)
    bits += std::popcount(row);
  return bits;
}

TEST(Glyphs, TellingCellsByteForByteBottomRowFirst) {
  const struct {
    int code;
    Cell rows;
  } kCells[] = {
      {3, {0x00, 0x10, 0x38, 0x7C, 0xFE, 0xFE, 0xFE, 0xFE, 0x6C, 0x00}},
      {48, {0x00, 0x7C, 0xC6, 0xC6, 0xE6, 0xF6, 0xDE, 0xCE, 0xC6, 0x7C}},
      {65, {0x00, 0xC6, 0xC6, 0xC6, 0xFE, 0xC6, 0xC6, 0x6C, 0x38, 0x10}},
      {103, {0x00, 0xFC, 0x0C, 0x7C, 0xCC, 0xCC, 0xCC, 0x76, 0x00, 0x00}},
      {128, {0x06, 0x0C, 0x3C, 0x66, 0xC2, 0xC0, 0xC0, 0xC2, 0x66, 0x3C}},
      {176, {0x44, 0x11, 0x44, 0x11, 0x44, 0x11, 0x44, 0x11, 0x44, 0x11}},
      {219, Cell(10, 0xFF)},
      {255, {0x00, 0x00, 0x00, 0x70, 0xDF, 0xDF, 0x70, 0x00, 0x00, 0x00}},
  };
  for (const auto& row : kCells)
    EXPECT_EQ(cell(row.code), row.rows) << row.code;
}

TEST(Glyphs, AreABlankAt0And32AndInkAtAllOtherCodes) {
  for (int code = 0; code < 256; ++code)
    EXPECT_EQ(inkOf(cell(code)) == 0, code == 0 || code == 32) << code;
}

TEST(Glyphs, HaveZeroBytesFor128CellsInFront) {
  for (int i = 1; i <= 1280; ++i)
    ASSERT_EQ(*(nkdraw::labelGlyphs - i), 0) << i;
}

TEST(Glyphs, Cell255Repeats254) {
  EXPECT_EQ(cell(255), cell(254));
}

TEST(Glyphs, OfAsciiOnlyTheUnderscoreUsesTheLowestRow) {
  for (int code = 32; code <= 126; ++code)
    EXPECT_EQ(cell(code)[0] != 0, code == 95) << code;
}

TEST(Glyphs, LettersAndDigitsStandOnTheSecondRow) {
  for (int code = 33; code <= 126; ++code) {
    if (std::isalnum(code) != 0) {
      EXPECT_NE(cell(code)[1], 0) << static_cast<char>(code);
    }
  }
}

int differingPixels(char one, char other) {
  Cell pixels = cell(one);
  for (std::size_t row = 0; row < pixels.size(); ++row)
    pixels[row] ^= cell(other)[row];
  return inkOf(pixels);
}

TEST(Glyphs, WhoseTailsHaveNoRoomBelowTheLineAreToldFromTheirLikes) {
  for (const char other : {'u', 'g', 'v'})
    EXPECT_GE(differingPixels('y', other), 12) << other;
  EXPECT_GE(differingPixels('y', 'u'), 24);
  EXPECT_GE(differingPixels('y', 'g'), 20);
  EXPECT_GE(differingPixels(',', '.'), 8);
}

TEST(Glyphs, OfAsciiAreAllDifferent) {
  std::set<Cell> cells;
  for (int code = 32; code <= 126; ++code)
    cells.insert(cell(code));
  EXPECT_EQ(cells.size(), 95U);
}

TEST(Glyphs, ShadesGrowDarkerToTheFullBlock) {
  EXPECT_EQ(inkOf(cell(176)), 20);
  EXPECT_EQ(inkOf(cell(177)), 40);
  EXPECT_EQ(inkOf(cell(178)), 60);
  EXPECT_EQ(inkOf(cell(219)), 80);
}

TEST(Glyphs, HalfBlocksFillTheCellTogether) {
  for (const auto& [one, other] : {std::pair{220, 223}, std::pair{221, 222}}) {
    for (std::size_t row = 0; row < 10; ++row) {
      EXPECT_EQ(cell(one)[row] & cell(other)[row], 0) << one;
      EXPECT_EQ(cell(one)[row] | cell(other)[row], 0xFF) << one;
    }
  }
  EXPECT_EQ(cell(220)[0], 0xFF);         // the lower half
  EXPECT_EQ(cell(221)[0] & 0x80, 0x80);  // the left half
}

TEST(Glyphs, BoxLinesReachTheEdgesOfTheirCell) {
  // Vertical ones from bottom to top, so that boxes close.
  for (const int code : {179, 180, 195, 197, 186, 185, 204, 206}) {
    EXPECT_NE(cell(code)[0], 0) << code;
    EXPECT_NE(cell(code)[9], 0) << code;
  }
  // Horizontal ones from left to right.
  for (const int code : {196, 193, 194, 197, 205, 202, 203, 206}) {
    int both = 0;
    for (const std::uint8_t row : cell(code))
      both |= (row & 0x81) == 0x81 ? 1 : 0;
    EXPECT_EQ(both, 1) << code;
  }
  // Of one weight they meet in one column, and in one row.
  EXPECT_EQ(cell(179)[0], cell(197)[0]);
  EXPECT_EQ(cell(186)[0], cell(206)[0]);
}

}  // namespace
