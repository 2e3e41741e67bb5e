// SPDX-License-Identifier: BSD-2-Clause
//
// Straight lines: which pixels, in which order, and what bypasses PutPixel.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/reference_draw.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace nkdraw::test;

using Points = std::vector<std::pair<int, int>>;

/// A 24-bit surface without a canvas: it refuses every pixel, and records it.
class LineLog {
 public:
  LineLog() : surface_(ptRGB24) {}
  NKDraw& operator*() { return surface_; }
  NKDraw* operator->() { return &surface_; }

  /// The plots since the last call. All are in the foreground.
  Points take() {
    Points points;
    for (const Plot& plot : surface_.plots) {
      EXPECT_TRUE(plot.foreground);
      points.emplace_back(plot.x, plot.y);
    }
    surface_.plots.clear();
    return points;
  }

 private:
  Recording<CDrawRGB24> surface_;
};

Points pointsOf(const ReferenceDraw& reference) {
  Points points;
  for (const Step& step : reference.steps)
    points.emplace_back(step.x, step.y);
  return points;
}

TEST(Line, RoundsHalfUpAndDoesNotDependOnWhichEndComesFirst) {
  LineLog log;
  EXPECT_EQ(log->Line(0, 0, 4, 2), 0U);
  EXPECT_EQ(log.take(), (Points{{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}}));
  EXPECT_EQ(log->Line(4, 2, 0, 0), 0U);
  EXPECT_EQ(log.take(), (Points{{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}}));
  EXPECT_EQ(log->Line(0, 0, -4, 2), 0U);
  EXPECT_EQ(log.take(), (Points{{0, 0}, {-1, 1}, {-2, 1}, {-3, 2}, {-4, 2}}));
}

TEST(Line, OfNoLengthPlotsItsPoint) {
  LineLog log;
  EXPECT_EQ(log->Line(3, 3, 3, 3), 0U);
  EXPECT_EQ(log.take(), (Points{{3, 3}}));
}

TEST(Line, AlongARowRunsFromTheFirstEndToTheSecond) {
  LineLog log;
  log->Line(2, 7, 5, 7);
  EXPECT_EQ(log.take(), (Points{{2, 7}, {3, 7}, {4, 7}, {5, 7}}));
  log->Line(5, 7, 2, 7);
  EXPECT_EQ(log.take(), (Points{{5, 7}, {4, 7}, {3, 7}, {2, 7}}));
}

TEST(Line, IsTheStepperForEveryDirection) {
  LineLog log;
  for (int dx = -13; dx <= 13; ++dx) {
    for (int dy = -13; dy <= 13; ++dy) {
      for (const auto& [x, y] : Points{{0, 0}, {100, 50}, {-30, -7}}) {
        ReferenceDraw reference(ptRGB24);
        reference.line(x, y, x + dx, y + dy);
        EXPECT_EQ(log->Line(x, y, x + dx, y + dy), 0U);
        const Points got = log.take();
        ASSERT_EQ(got, pointsOf(reference)) << x << "," << y << " by " << dx << "," << dy;
        const int longer = std::max(std::abs(dx), std::abs(dy));
        ASSERT_EQ(got.size(), static_cast<std::size_t>(longer) + 1);
        const std::pair<int, int> from(x, y), to(x + dx, y + dy);
        ASSERT_TRUE((got.front() == from && got.back() == to) ||
                    (got.front() == to && got.back() == from));
      }
    }
  }
}

TEST(Line, LetsItsShiftAndItsAccumulatorWrap) {
  LineLog log;
  Random random(101);
  const auto expectSame = [&log](int x1, int y1, int x2, int y2) {
    ReferenceDraw reference(ptRGB24);
    reference.line(x1, y1, x2, y2);
    log->Line(x1, y1, x2, y2);
    ASSERT_EQ(log.take(), pointsOf(reference)) << x1 << "," << y1 << " " << x2 << "," << y2;
  };
  expectSame(0, 0, 40000, 32768);
  expectSame(0, 0, 33000, 70000);
  expectSame(32000, 0, 33000, 5000);   // leaves the 16 bits on its way
  expectSame(-40000, 10, -39990, 12);  // starts outside of them
  for (int i = 0; i < 20; ++i) {
    expectSame(random.between(-50000, 50000), random.between(-50000, 50000),
               random.between(-50000, 50000), random.between(-50000, 50000));
  }
}

TEST(Line, FarOutWritesTheSamePixelsOnTheLibrarysClassAndOnAnUnknownOne) {
  // One pixel wide and four bytes a row: far coordinates stay inside a small buffer.
  constexpr std::size_t kSlack = 1 << 19;
  Random random(103);
  for (int i = 0; i < 12; ++i) {
    Frame known(4, 1, kSlack), unknown(4, 1, kSlack);
    const Surface one = makeSurface(ptBGRA32, 1, 1, 0, known.canvas());
    const Surface two = makeDerived<Unknown>(ptBGRA32, 1, 1, 0, unknown.canvas());
    const int x1 = random.between(-20000, 40000), y1 = random.between(0, 40000);
    const int x2 = random.between(-20000, 40000), y2 = random.between(0, 40000);
    for (NKDraw* const surface : {one.get(), two.get()}) {
      surface->SetTransparency(0.5, true);
      surface->SetTransparency(i % 2 == 0);
      surface->Line(x1, y1, x2, y2);
    }
    ASSERT_TRUE(known.all() == unknown.all()) << x1 << "," << y1 << " " << x2 << "," << y2;
    EXPECT_FALSE(known.changed().empty());
  }
}

TEST(Line, OfAColumnBlendsOnA32BitSurface) {
  Frame frame(4 * 6);
  frame.fill(100);
  const Surface surface = makeSurface(ptRGBA32, 1, 6, 0, frame.canvas());
  surface->SetTransparency(0.5, true);
  surface->SetTransparency(true);
  EXPECT_EQ(surface->Line(0, 0, 0, 5), 0U);
  const auto mixed = static_cast<std::uint32_t>(0.5 * 0x64646464 + 4294967295.0 * 0.5);
  for (int y = 0; y < 6; ++y)
    EXPECT_EQ(wordAt(frame.data() + 4 * y), mixed);
  EXPECT_TRUE(frame.guardsIntact());
}

TEST(LineVert, RunsDownAndDrawsNothingUpward) {
  LineLog log;
  EXPECT_EQ(log->LineVert(4, -1, 3), 0U);
  EXPECT_EQ(log.take(), (Points{{4, -1}, {4, 0}, {4, 1}, {4, 2}, {4, 3}}));
  EXPECT_EQ(log->LineVert(4, 3, 3), 0U);
  EXPECT_EQ(log.take(), (Points{{4, 3}}));
  EXPECT_EQ(log->LineVert(0, 5, 2), 0U);
  EXPECT_EQ(log.take(), Points{});
}

TEST(LineHoriz, IncludesItsEndOnlyWhereItPlotsPixelByPixel) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    Frame frame(4096);
    PlotLog* log = nullptr;
    const Surface surface = makeDerived<Recording>(type, 48, 4, 0, frame.canvas(), &log);
    frame.remember();
    EXPECT_EQ(surface->LineHoriz(2, 0, 5), 0U);
    if (fillsRows(type)) {
      EXPECT_TRUE(log->plots.empty());
      for (int x = 2; x < 5; ++x)
        EXPECT_EQ(wordAt(frame.data() + 4 * x), 0xFFFFFFFF);
      EXPECT_EQ(frame.changed().front() / 4, 2);
      EXPECT_EQ(frame.changed().back() / 4, 4);
      EXPECT_EQ(surface->LineHoriz(7, 0, 7), 0U);  // an empty row
      EXPECT_EQ(frame.changed().back() / 4, 4);
    } else {
      const std::vector<Plot> want = {{2, 0, true}, {3, 0, true}, {4, 0, true}, {5, 0, true}};
      EXPECT_EQ(log->plots, want);
      log->plots.clear();
      EXPECT_EQ(surface->LineHoriz(7, 0, 7), 0U);
      EXPECT_EQ(log->plots.size(), 1U);
      EXPECT_EQ(surface->LineHoriz(5, 0, 2), 0U);
      EXPECT_EQ(log->plots.size(), 1U);
    }
  }
}

TEST(LineHoriz, OfThe32BitLayoutsIsOpaqueWhateverTheSwitchesSay) {
  Frame frame(4 * 8);
  frame.fill(100);
  const Surface surface = makeSurface(ptABGR32, 8, 1, 0, frame.canvas());
  surface->SetColorRGBA(0.2, 0.4, 0.6, 0.8, true);
  surface->SetTransparency(0.5, true);
  surface->SetTransparency(true);
  surface->SetAlphaAdditive(true);
  surface->LineHoriz(1, 0, 7);
  for (int x = 1; x < 7; ++x)
    EXPECT_EQ(wordAt(frame.data() + 4 * x), wordAt(PixelFields::foreground(*surface)));
  EXPECT_EQ(frame.changed().front(), 4);
  EXPECT_EQ(frame.changed().back(), 27);
}

TEST(LineHoriz, OfThe32BitLayoutsSlipsWithThePitchAndTakesNegativeX) {
  Frame frame(256);
  const Surface surface = makeSurface(ptBGRA32, 8, 3, 42, frame.canvas());
  surface->SetColorRGBA(0.0, 0.0, 0.0, 0.0, true);
  for (std::ptrdiff_t i = 0; i < 200; ++i)
    frame[i] = 1;
  frame.remember();
  surface->LineHoriz(-2, 1, 3);  // row 1 starts at 40
  EXPECT_EQ(frame.changed().front(), 40 - 8);
  EXPECT_EQ(frame.changed().back(), 40 + 11);
  EXPECT_EQ(frame.changed().size(), 20U);
}

TEST(LineHoriz, OfThe32BitLayoutsWritesNothingAboveTheCanvasWithoutOneOrBackward) {
  Frame frame(64 * 16);
  CDrawRGBA32 surface(ptRGBA32);
  EXPECT_EQ(surface.LineHoriz(0, 0, 4), 0U);
  surface.SetCanvas(frame.canvas(), 16, 16, 0);
  EXPECT_EQ(surface.LineHoriz(0, -1, 4), 0U);
  EXPECT_EQ(surface.LineHoriz(5, 0, 2), 0U);
  EXPECT_EQ(surface.LineHoriz(5, 0, 5), 0U);
  EXPECT_TRUE(frame.untouched());
}

TEST(LineHoriz, CountsItsPixelsHoweverFarItsEndsLieApart) {
  Frame far(128 * 2), near(128 * 2);
  for (const auto& [frame, first] : {std::pair(&far, INT_MIN), std::pair(&near, 0)}) {
    CDrawYCbCr10 surface(ptV210);  // refuses what lies left of the canvas
    surface.SetCanvas(frame->canvas(), 2, 48, 0);
    EXPECT_EQ(surface.LineHoriz(first, 1, 20), 0U);
  }
  EXPECT_FALSE(far.untouched());
  EXPECT_EQ(far.all(), near.all());
}

TEST(Line, WhoseHeightWrapsIsNoSteepOne) {
  LineLog log;
  EXPECT_EQ(log->Line(5, INT_MIN, 5, 100), 0U);
  EXPECT_EQ(log.take(), (Points{{5, 0}}));
}

TEST(Dash, PlotsAndSkipsInTurnFromItsFirstEnd) {
  LineLog log;
  EXPECT_EQ(log->Dash(0, 0, 9, 0, 3, 2), 0U);
  EXPECT_EQ(log.take(), (Points{{0, 0}, {1, 0}, {2, 0}, {5, 0}, {6, 0}, {7, 0}}));
  EXPECT_EQ(log->Dash(9, 0, 0, 0, 3, 2), 0U);
  EXPECT_EQ(log.take(), (Points{{9, 0}, {8, 0}, {7, 0}, {4, 0}, {3, 0}, {2, 0}}));
}

TEST(Dash, WithoutGapsIsSolidWithoutDashesEmptyAndWithNegativeGapsEndsAfterTheFirstDash) {
  LineLog log;
  log->Dash(0, 0, 5, 0, 2, 0);
  EXPECT_EQ(log.take().size(), 6U);
  log->Dash(0, 0, 5, 0, 0, 2);
  EXPECT_EQ(log.take().size(), 0U);
  log->Dash(0, 0, 5, 0, -1, 2);
  EXPECT_EQ(log.take().size(), 0U);
  log->Dash(0, 0, 5, 0, 2, -1);
  EXPECT_EQ(log.take().size(), 2U);
}

TEST(Dash, IsTheStepperWithItsCountersForEveryDirection) {
  LineLog log;
  for (int dx = -9; dx <= 9; ++dx) {
    for (int dy = -9; dy <= 9; ++dy) {
      for (int on = -1; on <= 4; ++on) {
        for (int off = -1; off <= 4; ++off) {
          ReferenceDraw reference(ptRGB24);
          reference.dash(5, -3, 5 + dx, -3 + dy, on, off);
          EXPECT_EQ(log->Dash(5, -3, 5 + dx, -3 + dy, on, off), 0U);
          ASSERT_EQ(log.take(), pointsOf(reference))
              << dx << "," << dy << " on " << on << " off " << off;
        }
      }
    }
  }
}

TEST(Dash, NeverTakesTheWeightedPath) {
  LineLog log;
  PixelFields::antialiased(*log) = true;
  EXPECT_EQ(log->Dash(0, 0, 4, 2, 9, 0), 0U);
  EXPECT_EQ(log.take(), (Points{{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}}));
}

TEST(Line, WithAntialiasingStillPlainAlongAxesAndDiagonals) {
  LineLog log;
  PixelFields::antialiased(*log) = true;
  for (const auto& [x, y] : Points{{5, 0}, {0, 5}, {5, 5}, {-5, 5}, {5, -5}, {0, 0}}) {
    EXPECT_EQ(log->Line(0, 0, x, y), 0U);
    EXPECT_EQ(log.take().size(), x == 0 && y == 0 ? 1U : 6U);
  }
}

TEST(Polyline, DrawsALineForEachPairOfNeighbours) {
  LineLog log;
  const std::vector<tagPOINT> points = {{0, 0}, {3, 1}, {3, 1}, {-2, 8}, {0, 0}};
  ReferenceDraw reference(ptRGB24);
  reference.polyline(points);
  EXPECT_EQ(log->Polyline(points.data(), 5), 0U);
  EXPECT_EQ(log.take(), pointsOf(reference));
}

TEST(Polyline, OfFewerThanTwoPointsIsRefused) {
  LineLog log;
  const tagPOINT point = {1, 2};
  log->MoveTo(7, 8);
  for (const std::uint32_t count : {0U, 1U}) {
    EXPECT_EQ(log->Polyline(&point, count), 0xFFFFFFFF);
    EXPECT_EQ(log->PolylineTo(&point, count), 0xFFFFFFFF);
  }
  EXPECT_EQ(log.take(), Points{});
  EXPECT_EQ(DrawFields::penXOf(*log), 7);
  EXPECT_EQ(DrawFields::penYOf(*log), 8);
}

TEST(Polyline, OfMoreThan31BitsDrawsNothing) {
  LineLog log;
  const tagPOINT point = {1, 2};
  EXPECT_EQ(log->Polyline(&point, 0x80000001), 0U);
  EXPECT_EQ(log->Polyline(&point, 0xFFFFFFFF), 0U);
  EXPECT_EQ(log.take(), Points{});
}

TEST(Polyline, ToTakesThePenFromBehindItsLastPoint) {
  LineLog log;
  const tagPOINT points[] = {{0, 0}, {2, 0}, {77, 78}};
  log->MoveTo(5, 5);
  EXPECT_EQ(log->Polyline(points, 2), 0U);
  EXPECT_EQ(DrawFields::penXOf(*log), 5);
  EXPECT_EQ(log->PolylineTo(points, 2), 0U);
  EXPECT_EQ(DrawFields::penXOf(*log), 77);
  EXPECT_EQ(DrawFields::penYOf(*log), 78);
  EXPECT_EQ(log.take().size(), 6U);
}

TEST(Pen, LineToStartsThereAndEndsAtItsPoint) {
  LineLog log;
  EXPECT_EQ(log->LineTo(10, 0), 0U);
  EXPECT_EQ(log.take().size(), 11U);
  EXPECT_EQ(DrawFields::penXOf(*log), 10);
  EXPECT_EQ(DrawFields::penYOf(*log), 0);
  EXPECT_EQ(log->LineTo(10, 4), 0U);
  EXPECT_EQ(log.take(), (Points{{10, 0}, {10, 1}, {10, 2}, {10, 3}, {10, 4}}));
}

TEST(Pen, StaysWhereItIsUnderTheOtherLines) {
  LineLog log;
  log->MoveTo(3, 4);
  const tagPOINT points[] = {{0, 0}, {9, 9}};
  log->Line(0, 0, 9, 2);
  log->LineVert(1, 0, 9);
  log->LineHoriz(1, 0, 9);
  log->Dash(0, 0, 9, 3, 1, 1);
  log->Polyline(points, 2);
  EXPECT_EQ(DrawFields::penXOf(*log), 3);
  EXPECT_EQ(DrawFields::penYOf(*log), 4);
}

/// Records which of its operations are called virtually.
class TableLog final : public CDrawRGB24 {
 public:
  TableLog() : NKDraw(ptRGB24), CDrawRGB24(ptRGB24) {}
  using NKDraw::Line;
  std::uint32_t Line(int x1, int y1, int x2, int y2) override {
    log += "line " + std::to_string(x1) + " " + std::to_string(y1) + " " + std::to_string(x2) +
           " " + std::to_string(y2) + "; ";
    return 99;
  }
  std::uint32_t Polyline(const tagPOINT*, std::uint32_t count) override {
    log += "polyline " + std::to_string(count) + "; ";
    return answer;
  }
  std::string log;
  std::uint32_t answer = 0;
};

TEST(Table, LinesReachEachOtherThroughIt) {
  TableLog surface;
  surface.MoveTo(1, 2);
  EXPECT_EQ(surface.LineTo(3, 4), 99U);
  EXPECT_EQ(DrawFields::penXOf(surface), 3);
  EXPECT_EQ(surface.log, "line 1 2 3 4; ");
  surface.log.clear();
  tagPOINT from = {5, 6}, to = {7, 8};
  EXPECT_EQ(surface.Line(from, to), 99U);
  EXPECT_EQ(surface.log, "line 5 6 7 8; ");
  surface.log.clear();
  const tagPOINT points[] = {{1, 1}, {2, 2}, {3, 3}, {4, 4}};
  EXPECT_EQ(surface.NKDraw::Polyline(points, 3), 0U);  // a line's status is not passed on
  EXPECT_EQ(surface.log, "line 1 1 2 2; line 2 2 3 3; ");
  surface.log.clear();
  EXPECT_EQ(surface.PolylineTo(points, 3), 0U);
  EXPECT_EQ(surface.log, "polyline 3; ");
  EXPECT_EQ(DrawFields::penXOf(surface), 4);
  surface.answer = 5;
  surface.MoveTo(0, 0);
  EXPECT_EQ(surface.PolylineTo(points, 3), 5U);
  EXPECT_EQ(DrawFields::penXOf(surface), 0);
}

}  // namespace
