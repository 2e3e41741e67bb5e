// SPDX-License-Identifier: BSD-2-Clause
//
// Rectangles: fills by rows or by one block, outlines by lines and quarter turns.
#include "shape_log.h"

#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/reference_shapes.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <utility>
#include <vector>

namespace {

using namespace nkdraw::test;

using Segments = std::vector<Segment>;

TEST(FillRect, AsksForItsRowsThroughTheTableFromTopToBottom) {
  ShapeLog log;
  log.MoveTo(7, 8);
  const tagRECT rect = {-3, -2, 9, 2};
  EXPECT_EQ(log.FillRect(&rect), 0U);
  EXPECT_EQ(log.rows, (Segments{{-3, -2, 9, -2}, {-3, -1, 9, -1}, {-3, 0, 9, 0}, {-3, 1, 9, 1}}));
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(std::pair(int{log.pen().x}, int{log.pen().y}), std::pair(7, 8));
}

TEST(FillRect, WithoutHeightDrawsNothing) {
  ShapeLog log;
  for (const tagRECT rect : {tagRECT{0, 5, 9, 5}, tagRECT{0, 5, 9, 4}, tagRECT{0, 0, 9, INT_MIN},
                             tagRECT{0, INT_MAX, 9, INT_MIN}})
    EXPECT_EQ(log.FillRect(&rect), 0U);
  EXPECT_TRUE(log.rows.empty());
  const tagRECT last = {0, INT_MAX - 1, 9, INT_MAX};
  EXPECT_EQ(log.FillRect(&last), 0U);
  EXPECT_EQ(log.rows, (Segments{{0, INT_MAX - 1, 9, INT_MAX - 1}}));
}

TEST(FillRect, IncludesItsRightEdgeOnlyWhereRowsArePlottedPixelByPixel) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    Frame frame(32 * 24 * 8);
    PlotLog* log = nullptr;
    const Surface surface = makeDerived<Recording>(type, 32, 24, 0, frame.canvas(), &log);
    frame.fill(0x55);
    surface->MoveTo(1, 2);
    const tagRECT rect = {10, 10, 20, 20};
    EXPECT_EQ(surface->FillRect(&rect), 0U);
    EXPECT_EQ(DrawFields::penXOf(*surface), 1);
    std::vector<Plot> want;
    if (fillsRows(type)) {
      const std::ptrdiff_t pitch = surface->Pitch();
      std::vector<std::ptrdiff_t> bytes;
      for (std::ptrdiff_t y = 10; y < 20; ++y) {
        for (std::ptrdiff_t byte = 0; byte < 40; ++byte)
          bytes.push_back(y * pitch + 40 + byte);
      }
      EXPECT_EQ(frame.changed(), bytes);
    } else {
      for (int y = 10; y < 20; ++y) {
        for (int x = 10; x <= 20; ++x)
          want.push_back({x, y, true});
      }
    }
    EXPECT_EQ(log->plots, want);
    EXPECT_TRUE(frame.guardsIntact());
  }
}

TEST(FillRect, OfTheSizeOfA32BitCanvasIsMeantToFillItFromItsFirstByteWhereverItLies) {
  for (const pixelType type : {ptRGBA32, ptARGB32, ptBGRA32, ptABGR32}) {
    for (const tagRECT rect : {tagRECT{0, 0, 9, 5}, tagRECT{100, 200, 109, 205},
                               tagRECT{-9, -5, 0, 0}, tagRECT{INT_MAX - 4, 0, INT_MIN + 4, 5}}) {
      Frame frame(44 * 5);
      frame.fill(0x55);
      // Packed: a pitch with room for more leaves the tail of the buffer unfilled.
      const Surface surface = makeSurface(type, 9, 5, 44, frame.canvas());
      surface->SetColorRGBA(0.1, 0.2, 0.3, 0.4, true);
      EXPECT_EQ(surface->FillRect(&rect), 0U);
      for (int i = 0; i < 45; ++i)
        ASSERT_EQ(wordAt(frame.data() + 4 * i), wordAt(PixelFields::foreground(*surface)));
      EXPECT_EQ(frame.changed().size(), 180U);
      EXPECT_EQ(frame.changed().back(), 179);
    }
  }
}

TEST(FillRect, OfOneDimensionLessThanTheCanvasGoesByRows) {
  for (const tagRECT rect : {tagRECT{0, 0, 8, 5}, tagRECT{0, 0, 9, 4}}) {
    Frame frame(44 * 5);
    frame.fill(0x55);
    const Surface surface = makeSurface(ptBGRA32, 9, 5, 44, frame.canvas());
    surface->FillRect(&rect);
    EXPECT_EQ(frame.changed().size(), static_cast<std::size_t>(4 * rect.right * rect.bottom));
    EXPECT_EQ(frame.changed().back(), 44 * (rect.bottom - 1) + 4 * rect.right - 1);
  }
}

TEST(FillRect, OfTheSizeOfAnyOtherCanvasGoesByRows) {
  PlotLog* log = nullptr;
  Frame frame(4096);
  const Surface surface = makeDerived<Recording>(ptRGB24, 9, 5, 44, frame.canvas(), &log);
  const tagRECT rect = {2, 1, 11, 6};
  surface->FillRect(&rect);
  ASSERT_EQ(log->plots.size(), 50U);
  EXPECT_EQ(log->plots.front(), (Plot{2, 1, true}));
  EXPECT_EQ(log->plots.back(), (Plot{11, 5, true}));
}

class EraseLog final : public CDrawRGBA32 {
 public:
  EraseLog() : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32) {}
  std::uint32_t EraseCanvas(bool) override {
    ++erased;
    return 0;
  }
  int erased = 0;
};

TEST(FillRect, OfAWholeCanvasDoesNotAskForAnErase) {
  Frame frame(16);
  frame.fill(0x55);
  EraseLog surface;
  surface.SetCanvas(frame.canvas(), 2, 2, 0);
  const tagRECT whole = {0, 0, 2, 2};
  EXPECT_EQ(surface.FillRect(&whole), 0U);
  EXPECT_EQ(surface.erased, 0);
  EXPECT_EQ(frame.changed().size(), 16U);
}

TEST(FillRect, OfThe32BitLayoutsIsOpaqueAndARectangleIsMixed) {
  Frame frame(20 * 20 * 4);
  frame.fill(100);
  const Surface surface = makeSurface(ptRGBA32, 20, 20, 0, frame.canvas());
  surface->SetColorRGBA(0.2, 0.4, 0.6, 0.8, true);
  surface->SetTransparency(0.5, true);
  surface->SetTransparency(true);
  surface->SetAlphaAdditive(true);
  const std::uint32_t colour = wordAt(PixelFields::foreground(*surface));
  const tagRECT rect = {2, 2, 5, 5}, whole = {0, 0, 20, 20};
  surface->FillRect(&rect);
  EXPECT_EQ(wordAt(frame.data() + (2 * 20 + 2) * 4), colour);
  surface->SetAlphaAdditive(false);
  surface->Rectangle(10, 10, 15, 15);
  const auto mixed = static_cast<std::uint32_t>(0.5 * 0x64646464 + colour * 0.5);
  EXPECT_EQ(wordAt(frame.data() + (10 * 20 + 12) * 4), mixed);
  // A corner is plotted twice.
  EXPECT_EQ(wordAt(frame.data() + (10 * 20 + 10) * 4),
            static_cast<std::uint32_t>(0.5 * mixed + colour * 0.5));
  surface->FillRect(&whole);
  EXPECT_EQ(wordAt(frame.data() + (10 * 20 + 10) * 4), colour);
}

TEST(FillRect, OfThe32BitLayoutsAndAnEraseAreMeantToGoPastAnOverriddenPutPixel) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    Frame frame(16 * 9 * 8);
    PlotLog* log = nullptr;
    const Surface surface = makeDerived<Recording>(type, 16, 8, 0, frame.canvas(), &log);
    const tagRECT whole = {0, 0, 16, 8};
    surface->FillRect(&whole);
    surface->EraseCanvas(true);
    EXPECT_EQ(log->plots.size(), fillsRows(type) ? 0U : 2U * 17 * 8);
  }
}

TEST(EraseCanvas, FillsWithTheForegroundWhateverItsFlagSays) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    Frame frames[] = {Frame(48 * 8 * 9), Frame(48 * 8 * 9)};
    for (const bool flag : {false, true}) {
      const Surface surface = makeSurface(type, 48, 8, 0, frames[flag ? 1 : 0].canvas());
      surface->SetColorRGBA(0.9, 0.6, 0.3, 1.0, true);
      surface->MoveTo(3, 4);
      EXPECT_EQ(surface->EraseCanvas(flag), 0U);
      EXPECT_EQ(DrawFields::penXOf(*surface), 3);
    }
    EXPECT_FALSE(frames[0].untouched());
    EXPECT_TRUE(frames[0].all() == frames[1].all());
    EXPECT_TRUE(frames[0].guardsIntact());
  }
}

TEST(EraseCanvas, Of32BitsIsOneBlockWithoutRegardToThePitch) {
  Frame frame(44 * 5);
  frame.fill(0x55);
  const Surface surface = makeSurface(ptABGR32, 9, 5, 44, frame.canvas());
  surface->SetTransparency(0.5, true);
  surface->SetTransparency(true);
  EXPECT_EQ(surface->EraseCanvas(false), 0U);
  EXPECT_EQ(frame.changed().size(), 180U);
  EXPECT_EQ(frame.changed().back(), 179);
  for (int i = 0; i < 180; ++i)
    ASSERT_EQ(frame[i], 0xFF);
}

TEST(EraseCanvas, OfOtherLayoutsIsMeantToPlotOnePixelPastEachRow) {
  ShapeLog log;
  log.SetCanvas(nullptr, 3, 20, 0);
  EXPECT_EQ(log.EraseCanvas(true), 0U);
  EXPECT_EQ(log.rows, (Segments{{0, 0, 20, 0}, {0, 1, 20, 1}, {0, 2, 20, 2}}));
  // On a tightly packed canvas the last of them lies behind it.
  Frame frame(3 * 4 * 2, 1);
  const Surface surface = makeSurface(ptRGB24, 4, 2, 0, frame.canvas());
  frame[24] = frame[25] = frame[26] = 0;
  frame.remember();
  surface->EraseCanvas(true);
  EXPECT_EQ(frame.changed().back(), 26);
}

TEST(EraseCanvas, OfA422PairWrapsItsExtraPixelToTheFirstOfTheRow) {
  Frame frame(8 * 2);
  frame.fill(0x33);
  CDrawYCbCrYUYV surface(ptUYVY);
  surface.SetCanvas(frame.canvas(), 2, 4, 0);
  surface.SetColorYCbCr8(0x50, 0x60, 0x70, 0, true);
  EXPECT_EQ(surface.EraseCanvas(true), 0U);
  for (int i = 0; i < 16; ++i)
    EXPECT_EQ(frame[i], (std::array{0x60, 0x50, 0x70, 0x50})[static_cast<std::size_t>(i % 4)]);
  EXPECT_TRUE(frame.guardsIntact());
}

TEST(EraseCanvas, OfARawNegativeHeightDrawsNothing) {
  for (const pixelType type : {ptYUYV, ptUYVY, ptYCbCr48, ptYCbCrA64, ptUV8, ptUV16}) {
    SCOPED_TRACE(layoutName(type));
    Frame frame(4096);
    const Surface surface = makeSurface(type, 48, -4, 0, frame.canvas());
    EXPECT_EQ(surface->Height(), static_cast<std::uint32_t>(-4));
    EXPECT_EQ(surface->EraseCanvas(true), 0U);
    EXPECT_TRUE(frame.untouched());
  }
}

TEST(EraseCanvas, OfTwoRawNegativeSidesFillsAsManyBytesAsTheirProductTells) {
  Frame frame(4096);
  frame.fill(0x33);
  CDrawYCbCrYCbCr16 surface(ptYCbCr48);
  surface.SetCanvas(frame.canvas(), -4, -8, 0);
  EXPECT_EQ(surface.EraseCanvas(true), 0U);
  EXPECT_EQ(frame.changed().size(), 4U * 8 * 4);
  EXPECT_EQ(frame.changed().back(), 127);
  frame.fill(0x33);
  const tagRECT turned = {8, 4, 0, 0};  // as large as the canvas
  EXPECT_EQ(surface.FillRect(&turned), 0U);
  EXPECT_EQ(frame.changed().size(), 4U * 8 * 4);
  for (const auto& [height, width] : {std::pair{4, -8}, {-4, 8}}) {
    frame.fill(0x33);
    surface.SetCanvas(frame.canvas(), height, width, 0);
    EXPECT_EQ(surface.EraseCanvas(true), 0U);
    EXPECT_TRUE(frame.untouched());
  }
}

TEST(EraseCanvas, WithoutColumnsIsMeantToPlotTheOnePastEachRow) {
  for (const pixelType type : {ptRGB24, ptRGB48, ptV210, ptUV8, ptBayerRGGB}) {
    SCOPED_TRACE(layoutName(type));
    Frame erased(1024), plotted(1024);
    const Surface surface = makeSurface(type, 0, 3, 256, erased.canvas());
    const Surface plain = makeSurface(type, 0, 3, 256, plotted.canvas());
    EXPECT_EQ(surface->EraseCanvas(true), 0U);
    for (int y = 0; y < 3; ++y)
      plain->PutPixel(0, y, true);
    EXPECT_TRUE(erased.all() == plotted.all());
  }
}

TEST(EraseCanvas, WithoutRowsOrOf32BitsWithoutColumnsDrawsNothing) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    Frame frame(1024);
    for (const int width : {8, 0}) {
      const Surface surface =
          makeSurface(type, width, fillsRows(type) ? 3 * (8 - width) : 0, 256, frame.canvas());
      EXPECT_EQ(surface->EraseCanvas(true), 0U);
      EXPECT_TRUE(frame.untouched());
    }
  }
}

TEST(Rectangle, DrawsFourLinesInOrder) {
  ShapeLog log;
  log.MoveTo(7, 8);
  EXPECT_EQ(log.Rectangle(1, 2, 30, 40), 0U);
  EXPECT_EQ(log.lines, (Segments{{1, 2, 30, 2}, {1, 2, 1, 40}, {1, 40, 30, 40}, {30, 2, 30, 40}}));
  log.lines.clear();
  EXPECT_EQ(log.Rectangle(30, 40, 1, 2), 0U);  // the corners in any order
  EXPECT_EQ(log.lines, (Segments{{30, 40, 1, 40}, {30, 40, 30, 2}, {30, 2, 1, 2}, {1, 40, 1, 2}}));
  EXPECT_EQ(std::pair(int{log.pen().x}, int{log.pen().y}), std::pair(7, 8));
  log.lines.clear();
  EXPECT_EQ(log.Rectangle(INT_MIN, INT_MAX, INT_MAX, INT_MIN), 0U);
  EXPECT_EQ(log.lines.size(), 4U);
}

TEST(Rectangle, OfOnePixelPlotsItFourTimes) {
  Frame frame(20 * 20 * 4);
  PlotLog* log = nullptr;
  const Surface surface = makeDerived<Recording>(ptRGBA32, 20, 20, 0, frame.canvas(), &log);
  EXPECT_EQ(surface->Rectangle(5, 5, 5, 5), 0U);
  EXPECT_EQ(log->plots, std::vector<Plot>(4, Plot{5, 5, true}));
}

TEST(RoundRect, IsRefusedWhenItsCornersDoNotFit) {
  ShapeLog log;
  log.MoveTo(7, 8);
  EXPECT_EQ(log.RoundRect(0, 0, 100, 50, 101, 10), 0xFFFFFFFF);
  EXPECT_EQ(log.RoundRect(0, 0, 100, 50, 10, 51), 0xFFFFFFFF);
  EXPECT_EQ(log.RoundRect(100, 0, 0, 50, 10, 10), 0xFFFFFFFF);
  EXPECT_EQ(log.RoundRect(5, 5, 5, 5, 1, 0), 0xFFFFFFFF);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(std::pair(int{log.pen().x}, int{log.pen().y}), std::pair(7, 8));
}

/// Notes the quarter turns.
class TurnLog final : public CDrawRGB24 {
 public:
  TurnLog() : NKDraw(ptRGB24), CDrawRGB24(ptRGB24) {}
  using NKDraw::Line;
  std::uint32_t Line(int x1, int y1, int x2, int y2) override {
    EXPECT_TRUE(turns.empty());  // the sides come first
    lines.push_back({x1, y1, x2, y2});
    return 1;
  }
  std::uint32_t AngleArcTo(int x, int y, int radiusX, int radiusY, float start,
                           float end) override {
    turns.push_back({x, y, radiusX, radiusY, static_cast<int>(start), static_cast<int>(end)});
    return 2;
  }
  Segments lines;
  std::vector<std::array<int, 6>> turns;
};

TEST(RoundRect, DrawsItsSidesAndThenItsCornersThroughTheTable) {
  TurnLog log;
  EXPECT_EQ(log.RoundRect(10, 20, 110, 80, 31, 21), 0U);
  EXPECT_EQ(log.lines,
            (Segments{{25, 20, 95, 20}, {10, 30, 10, 70}, {25, 80, 95, 80}, {110, 30, 110, 70}}));
  const std::vector<std::array<int, 6>> turns = {{25, 30, 15, 10, 90, 180},
                                                 {25, 70, 15, 10, 180, 270},
                                                 {95, 70, 15, 10, 270, 360},
                                                 {95, 30, 15, 10, 0, 90}};
  EXPECT_EQ(log.turns, turns);
}

TEST(RoundRect, OfCornersAsLargeAsItselfIsAccepted) {
  ShapeLog log;
  EXPECT_EQ(log.RoundRect(0, 0, 100, 50, 100, 50), 0U);
  ASSERT_EQ(log.lines.size(), 4U + 360);
  for (std::size_t i = 0; i < 4; ++i) {  // sides of one pixel
    EXPECT_EQ(log.lines[i].x1, log.lines[i].x2);
    EXPECT_EQ(log.lines[i].y1, log.lines[i].y2);
  }
}

TEST(RoundRect, WithoutRadiiPlotsOnlyItsCornerPointsBesideItsSides) {
  ShapeLog log;
  EXPECT_EQ(log.RoundRect(0, 0, 100, 50, 0, 0), 0U);
  ASSERT_EQ(log.lines.size(), 4U + 360);
  EXPECT_EQ(log.lines[0], (Segment{0, 0, 100, 0}));
  for (std::size_t i = 4; i < log.lines.size(); ++i) {
    const Segment& chord = log.lines[i];
    EXPECT_TRUE(chord.x1 == chord.x2 && chord.y1 == chord.y2);
    EXPECT_TRUE((chord.x1 == 0 || chord.x1 == 100) && (chord.y1 == 0 || chord.y1 == 50));
  }
}

TEST(RoundRect, IsThatOfTheReferenceAndLeavesThePenAtItsLastPoint) {
  Random random(8001);
  for (int i = 0; i < 3000; ++i) {
    const int reach = i % 2 == 0 ? 40 : 3000;
    const int x1 = random.between(-reach, reach), y1 = random.between(-reach, reach);
    const int x2 = x1 + random.between(-3, reach), y2 = y1 + random.between(-3, reach);
    const int width = random.between(-5, reach), height = random.between(-5, reach);
    ReferenceShapes reference;
    reference.pen = {1, 2};
    ShapeLog log;
    log.MoveTo(1, 2);
    ASSERT_EQ(log.RoundRect(x1, y1, x2, y2, width, height),
              reference.roundRect(x1, y1, x2, y2, width, height));
    ASSERT_EQ(log.lines, reference.lines);
    ASSERT_EQ(log.pen().x, reference.pen.x);
    ASSERT_EQ(log.pen().y, reference.pen.y);
  }
}

TEST(RoundRect, OfExtremeCoordinatesIsDefined) {
  constexpr int kEnds[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
  Random random(8003);
  for (int i = 0; i < 2000; ++i) {
    ShapeLog log;
    std::array<int, 6> p{};
    for (int& value : p)
      value = kEnds[random.between(0, 6)];
    const std::uint32_t status = log.RoundRect(p[0], p[1], p[2], p[3], p[4], p[5]);
    EXPECT_EQ(log.lines.size(), status == 0 ? 364U : 0U);
  }
}

}  // namespace
