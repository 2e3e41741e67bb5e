// SPDX-License-Identifier: BSD-2-Clause
//
// Contact sheets.
#include "clip.h"
#include "program.h"

#include <nkdraw/text/label_glyphs.h>
#include <sheet/drawing_sheets.h>

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace {

/// The colour of a pixel of a sheet, red first.
std::array<int, 3> colourAt(const Clip& sheet, int x, int y) {
  const std::uint8_t* const pixel =
      sheet.frames[0].data() +
      (static_cast<std::size_t>(y) * static_cast<std::size_t>(sheet.width) +
       static_cast<std::size_t>(x)) *
          3;
  return {pixel[0], pixel[1], pixel[2]};
}

Clip drawSheet(const Arguments& arguments) {
  Arguments all = {"sheet"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  const Outcome outcome = nkdrawTool(all);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return decode(arguments[1]);
}

void makeColour(const std::string& name, const std::string& colour, const std::string& size) {
  ffmpeg({"-f", "lavfi", "-i", "color=" + colour + ":size=" + size + ":rate=25,format=rgb24",
          "-frames:v", "1", "-c:v", "rawvideo", "-pix_fmt", "bgra", at(name)});
}

constexpr std::array<int, 3> kRed = {255, 0, 0}, kBlue = {0, 0, 255};

}  // namespace

TEST(Sheet, OfWipesHasARowForEachAndFiveColumns) {
  const Clip sheet = drawSheet({"wipes", at("w.png")});
  EXPECT_EQ(sheet.format, AV_PIX_FMT_RGB24);
  EXPECT_EQ(sheet.width, 1144);
  EXPECT_EQ(sheet.height, 2108);
}

TEST(Sheet, OfModesHasFiveColumns) {
  const Clip sheet = drawSheet({"modes", at("m.png")});
  EXPECT_EQ(sheet.width, 1296);
  EXPECT_EQ(sheet.height, 1034);
}

TEST(Sheet, ShowsClipsInTheirShape) {
  makeColour("a.mov", "red", "80x60");
  makeColour("b.mov", "blue", "80x60");
  const Clip sheet = drawSheet({"wipes", at("w.png"), "--a", at("a.mov"), "--b", at("b.mov")});
  EXPECT_EQ(sheet.width, 1144);
  EXPECT_EQ(sheet.height, 24 + 32 + 20 * 132 - 12 + 24);
  // The edge that travels to the right, in the second row, at 0, 1/4 and 1.
  const int left = 24 + 14 * 16 + 24, top = 24 + 32 + 132;
  EXPECT_EQ(colourAt(sheet, left, top + 60), kRed);
  EXPECT_EQ(colourAt(sheet, left + 172 + 39, top + 60), kBlue);
  EXPECT_EQ(colourAt(sheet, left + 172 + 40, top + 60), kRed);
  EXPECT_EQ(colourAt(sheet, left + 4 * 172 + 159, top + 119), kBlue);
}

TEST(Sheet, OfGlyphsShowsEveryCellInThreeSizesOnBothGrounds) {
  const Clip sheet = drawSheet({"glyphs", at("g.png")});
  constexpr std::array<int, 3> kBlack = {0, 0, 0}, kWhite = {255, 255, 255};
  int top = 24 + 14;
  for (const int m : {1, 2, 3}) {
    for (const bool dark : {true, false}) {
      const int left = dark ? 44 : 44 + 452 + 24 + 20;
      for (int code = 0; code < 256; ++code) {
        for (int pixel = 0; pixel < 80 * m * m; ++pixel) {
          const int x = pixel % (8 * m), y = pixel / (8 * m);
          const bool ink = (nkdraw::labelGlyphs[10 * code + 9 - y / m] & (0x80 >> (x / m))) != 0;
          ASSERT_EQ(colourAt(sheet, left + 4 + code % 16 * (8 * m + 4) + x,
                             top + 4 + code / 16 * (10 * m + 4) + y),
                    ink == dark ? kWhite : kBlack)
              << m << " " << code;
        }
      }
    }
    top += 16 * (10 * m + 4) + 4 + 14 + 12;
  }
}

TEST(Sheet, OfShapesShowsEachAsItsScriptDrawsIt) {
  const Clip sheet = drawSheet({"shapes", at("s.png")});
  EXPECT_EQ(sheet.width, 24 + 5 * 172 - 12 + 24);
  const auto tiles = nkdraw::tool::shapeTiles();
  for (std::size_t i = 0; i < tiles.size(); ++i) {
    const int left = 24 + static_cast<int>(i % 5) * 172, top = 24 + static_cast<int>(i / 5) * 130;
    std::set<std::array<int, 3>> colours;
    for (int y = 0; y < 90; ++y) {
      for (int x = 0; x < 160; ++x)
        colours.insert(colourAt(sheet, left + x, top + y));
    }
    EXPECT_GE(colours.size(), 2U) << tiles[i].name;
  }
}

TEST(Sheet, OfLayoutsShowsTheSameCardInAllThatKeepIt) {
  const Clip sheet = drawSheet({"layouts", at("l.png")});
  EXPECT_EQ(sheet.width, 24 + 4 * 252 - 12 + 24);
  // The bars of the first six layouts, which are RGB of eight bits, to the bit.
  for (int tile = 0; tile < 6; ++tile) {
    const int left = 24 + tile % 4 * 252, top = 24 + tile / 4 * 216;
    for (int bar = 0; bar < 8; ++bar) {
      const std::array<int, 3> colour = {(bar & 2) == 0 ? 191 : 0, (bar & 4) == 0 ? 191 : 0,
                                         (bar & 1) == 0 ? 191 : 0};
      EXPECT_EQ(colourAt(sheet, left + bar * 30 + 15, top + 30), colour) << tile << " " << bar;
    }
  }
}

TEST(Sheet, OfDrawingsShowsNoClips) {
  for (const char* const kind : {"glyphs", "shapes", "layouts"})
    expectRefusal({"sheet", kind, at("o.png"), "--a", "x.mov"}, 1, "this sheet shows no clips");
}
