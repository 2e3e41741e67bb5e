// SPDX-License-Identifier: BSD-2-Clause
//
// Labels: the glyphs stamped through Point and LineHoriz.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/reference_draw.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

/// A 24-bit surface without a canvas, which notes what it is asked to plot.
using Log = Recording<CDrawRGB24>;

std::vector<Plot> plotsOf(const ReferenceDraw& reference) {
  std::vector<Plot> plots;
  for (const Step& step : reference.steps)
    plots.push_back({step.x, step.y, step.foreground});
  return plots;
}

TEST(Label, StampsEveryGlyphAtEveryScaleInEachOfItsFourForms) {
  Log log(ptRGB24);
  for (int scale = 0; scale <= 5; ++scale) {
    log.LabelFont(0U, scale);
    for (int code = 1; code < 128; ++code) {
      for (const bool invert : {false, true}) {
        for (const bool fill : {false, true}) {
          const char text[] = {static_cast<char>(code), 'g', 0};
          ReferenceDraw reference(ptRGB24);
          reference.label(-3, 5, text, invert, fill, scale);
          log.plots.clear();
          ASSERT_EQ(log.Label(-3, 5, text, invert, fill), 0U);
          ASSERT_EQ(log.plots, plotsOf(reference))
              << "code " << code << " scale " << scale << " invert " << invert << " fill " << fill;
        }
      }
    }
  }
}

TEST(Label, OfAnAAtScaleOneIsItsPicture) {
  Frame frame(10 * 10 * 4);
  frame.fill(0);
  const Surface surface = makeSurface(ptRGBA32, 10, 10, 0, frame.canvas());
  EXPECT_EQ(surface->Label(1, 0, "A", false, false), 0U);
  constexpr const char* kPicture[] = {
      "....#.....", "...###....", "..##.##...", ".##...##..", ".##...##..",
      ".#######..", ".##...##..", ".##...##..", ".##...##..", "..........",
  };
  for (int y = 0; y < 10; ++y) {
    std::string row;
    for (int x = 0; x < 10; ++x)
      row += wordAt(frame.data() + 40 * y + 4 * x) == 0xFFFFFFFF ? '#' : '.';
    EXPECT_EQ(row, kPicture[y]) << y;
  }
  EXPECT_TRUE(frame.guardsIntact());
}

TEST(Label, OfNothingDrawsNothing) {
  Log log(ptRGB24);
  EXPECT_EQ(log.Label(0, 0, "", false, true), 0U);
  EXPECT_TRUE(log.plots.empty());
}

TEST(Label, AtScaleZeroDrawsNothing) {
  Log log(ptRGB24);
  log.LabelFont(0U, 0);
  EXPECT_EQ(log.Label(0, 0, "text", false, true), 0U);
  EXPECT_TRUE(log.plots.empty());
}

TEST(Label, OfABlankFilledAtScaleThreeIsABlockOfBackground) {
  Log log(ptRGB24);
  log.LabelFont(0U, 3);
  log.Label(0, 0, " ", false, true);
  std::set<std::pair<int, int>> points;
  for (const Plot& plot : log.plots) {
    EXPECT_FALSE(plot.foreground);
    points.emplace(plot.x, plot.y);
  }
  EXPECT_EQ(log.plots.size(), 24U * 30U);
  EXPECT_EQ(points.size(), 24U * 30U);
  EXPECT_EQ(*points.begin(), std::pair(0, 0));
  EXPECT_EQ(*points.rbegin(), std::pair(23, 29));
}

TEST(Label, HasNoControlCodes) {
  Log log(ptRGB24);
  log.Label(0, 0, "\n", false, false);
  std::set<std::pair<int, int>> ink;
  for (const Plot& plot : log.plots)
    ink.emplace(plot.x, plot.y);
  std::set<std::pair<int, int>> want;
  for (int row = 0; row < 10; ++row) {
    for (int column = 0; column < 8; ++column) {
      if ((nkdraw::labelGlyphs[10 * 10 + 9 - row] & (0x80 >> column)) != 0)
        want.emplace(column, row);
    }
  }
  EXPECT_EQ(ink, want);
}

TEST(Label, DrawsNothingForCodesAbove127ButKeepsTheirRoom) {
  Log with(ptRGB24), without(ptRGB24);
  for (int code = 128; code < 256; ++code) {
    with.plots.clear();
    const char text[] = {static_cast<char>(code), 'A', 0};
    with.Label(10, 0, text, false, true);
    without.plots.clear();
    without.Label(18, 0, "A", false, true);
    ASSERT_EQ(with.plots, without.plots) << code;
  }
}

TEST(Label, AboveTheCanvasWalksDownIntoIt) {
  Frame frame(16 * 16 * 3);
  const Surface surface = makeSurface(ptRGB24, 16, 16, 0, frame.canvas());
  surface->SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  frame.fill(0);
  EXPECT_EQ(surface->Label(0, -5, "\xDB\x08", false, false), 0U);
  // Cell 8's lower five rows are on the canvas, in lines 0 to 4.
  for (int y = 0; y < 16; ++y) {
    for (int column = 0; column < 8; ++column) {
      const bool ink = y < 5 && (nkdraw::labelGlyphs[8 * 10 + 4 - y] & (0x80 >> column)) != 0;
      ASSERT_EQ(frame[48 * y + 3 * (8 + column)], ink ? 255 : 0) << column << "," << y;
    }
  }
  EXPECT_TRUE(frame.guardsIntact());
}

TEST(Label, OfATextInTheCanvasEndsWhereItsOwnPixelsCutTheText) {
  constexpr int kWidth = 200, kHeight = 24;
  Frame frame(4 * kWidth * kHeight);
  const Surface surface = makeSurface(ptRGBA32, kWidth, kHeight, 0, frame.canvas());
  surface->SetColorRGBA(0.0, 0.0, 0.0, 0.0, false);
  surface->LabelFont(0U, 2);
  char* const text = frame.canvas() + 4 * (3 * kWidth + 2);  // under the first character
  std::memcpy(text, "ABCDEF", 7);
  surface->Label(0, 0, text, false, true);
  EXPECT_FALSE(frame.changed().empty());
  for (const std::ptrdiff_t at : frame.changed())
    ASSERT_LT(at / 4 % kWidth, 16);
}

/// Notes what a label is made of; its own Point and LineHoriz plot nothing.
class Strokes final : public CDrawRGB24 {
 public:
  Strokes() : NKDraw(ptRGB24), CDrawRGB24(ptRGB24) {}
  std::uint32_t Point(int, int, bool ink) override {
    (ink ? inkPoints : paperPoints) += 1;
    if (cut != nullptr)
      *cut = 0;
    return 9;
  }
  std::uint32_t LineHoriz(int x1, int, int x2) override {
    rows += 1;
    EXPECT_EQ(x2 - x1, static_cast<int>(labelFontScale));
    return 9;
  }
  int inkPoints = 0, paperPoints = 0, rows = 0;
  char* cut = nullptr;
};

TEST(Label, MagnifiedAboveTheCanvasOfA32BitLayoutWritesItsLinesInsideAlone) {
  Frame frame(64 * 4 * 12), low(64 * 4 * 12);
  CDrawRGBA32 surface(ptRGBA32), lower(ptRGBA32);
  surface.SetCanvas(frame.canvas(), 12, 64, 0);
  lower.SetCanvas(low.canvas() + 64 * 4 * 10, 2, 64, 0);
  for (NKDraw* each : {static_cast<NKDraw*>(&surface), static_cast<NKDraw*>(&lower)})
    each->LabelFont(0U, 2);
  EXPECT_EQ(surface.Label(0, -10, "A", false, false), 0U);
  EXPECT_TRUE(frame.guardsIntact());
  EXPECT_FALSE(frame.untouched());
  EXPECT_EQ(lower.Label(0, -30, "A", false, false), 0U);
  EXPECT_TRUE(low.untouched());
}

TEST(Label, IsMadeOfPointsAndRowsThroughTheTable) {
  const int ink = 44, blank = 80 - 44;  // of cell 48
  struct Row {
    int scale;
    bool invert, fill;
    int inkPoints, paperPoints, rows;
  };
  const Row kRows[] = {
      {1, false, false, ink, 0, 0},
      {1, true, false, 0, ink, 0},
      {1, false, true, ink, blank, 0},
      {1, true, true, blank, ink, 0},
      {3, false, false, 0, 0, ink * 3},
      {3, true, false, 0, ink * 9, 0},
      {3, false, true, 0, blank * 9, ink * 3},
      {3, true, true, 0, ink * 9, blank * 3},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.scale << row.invert << row.fill);
    Strokes surface;
    surface.LabelFont(0U, row.scale);
    EXPECT_EQ(surface.Label(0, 0, "0", row.invert, row.fill), 0U);
    EXPECT_EQ(surface.inkPoints, row.inkPoints);
    EXPECT_EQ(surface.paperPoints, row.paperPoints);
    EXPECT_EQ(surface.rows, row.rows);
  }
}

TEST(Label, MeasuresItsTextAfreshAfterEveryCharacter) {
  char text[] = "00000";
  Strokes surface;
  surface.cut = text + 2;
  surface.Label(0, 0, text, false, false);
  EXPECT_EQ(surface.inkPoints, 2 * 44);
}

TEST(Label, LeavesThePenAtItsLastPoint) {
  Log log(ptRGB24);
  log.MoveTo(7, 8);
  log.Label(100, 50, " ", false, false);
  EXPECT_EQ(DrawFields::penXOf(log), 7);  // no point was plotted
  log.Label(100, 50, " ", false, true);
  EXPECT_EQ(DrawFields::penXOf(log), 107);
  EXPECT_EQ(DrawFields::penYOf(log), 59);
  log.MoveTo(7, 8);
  log.LabelFont(0U, 2);
  log.Label(100, 50, "A", false, false);  // rows only
  EXPECT_EQ(DrawFields::penXOf(log), 7);
  EXPECT_EQ(DrawFields::penYOf(log), 8);
}

TEST(Label, RunsOnePixelWiderWhereRowsIncludeTheirEnd) {
  // The right edge of a full block, at scale 2.
  for (const pixelType type : {ptRGBA32, ptRGB24}) {
    Frame frame(40 * 40 * 4);
    frame.fill(0);
    const Surface surface = makeSurface(type, 40, 40, 0, frame.canvas());
    surface->LabelFont(0U, 2);
    surface->Label(0, 0, "\x08", false, false);
    const std::ptrdiff_t bytes = type == ptRGBA32 ? 4 : 3;
    EXPECT_EQ(frame[15 * bytes], 255);
    EXPECT_EQ(frame[16 * bytes], type == ptRGBA32 ? 0 : 255);
    EXPECT_EQ(frame[17 * bytes], 0);
  }
}

}  // namespace
