// SPDX-License-Identifier: BSD-2-Clause
//
// Contact sheets.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

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
