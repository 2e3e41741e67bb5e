// SPDX-License-Identifier: BSD-2-Clause
//
// Arcs, pies, circles and ellipses: one chord for each whole degree, on the system's own pi.
#include "shape_log.h"

#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/reference_shapes.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace {

using namespace nkdraw::test;

using Segments = std::vector<Segment>;

std::pair<int, int> penOf(ShapeLog& log) {
  return {log.pen().x, log.pen().y};
}

TEST(Arc, RunsOverTheTopFromTheRightToTheLeft) {
  ShapeLog log;
  EXPECT_EQ(log.Arc(0, 0, 100, 100, 100, 50, 0, 50), 0U);
  ASSERT_EQ(log.lines.size(), 180U);
  EXPECT_EQ(log.lines.front().x1, 100);
  EXPECT_EQ(log.lines.front().y1, 50);
  EXPECT_EQ(log.lines[44].x2, 85);  // at 45 degrees
  EXPECT_EQ(log.lines[44].y2, 14);
  EXPECT_EQ(log.lines[89].x2, 50);
  EXPECT_EQ(log.lines[89].y2, 0);
  EXPECT_EQ(log.lines.back().x2, 0);
  EXPECT_EQ(log.lines.back().y2, 49);
  EXPECT_EQ(arcEnds(), (ArcEnds{100, 50, 0, 49}));
}

TEST(Arc, IsRefusedForAnEmptyBoxAndForARayWithoutADirection) {
  ShapeLog log;
  ASSERT_EQ(log.Arc(0, 0, 40, 20, 40, 10, 0, 10), 0U);
  log.lines.clear();
  const ArcEnds before = arcEnds();
  log.MoveTo(7, 8);
  EXPECT_EQ(log.Arc(10, 0, 10, 100, 1, 2, 3, 4), 0xFFFFFFFF);
  EXPECT_EQ(log.Arc(100, 0, 10, 100, 1, 2, 3, 4), 0xFFFFFFFF);
  EXPECT_EQ(log.Arc(0, 10, 100, 10, 1, 2, 3, 4), 0xFFFFFFFF);
  EXPECT_EQ(log.Arc(0, 100, 100, 10, 1, 2, 3, 4), 0xFFFFFFFF);
  EXPECT_EQ(log.Arc(INT_MAX, 0, INT_MIN, 10, 1, 2, 3, 4), 0xFFFFFFFF);
  EXPECT_EQ(log.Arc(0, 0, 100, 100, 50, 50, 0, 50), 0xFFFFFFFF);
  EXPECT_EQ(log.Arc(0, 0, 100, 100, 0, 50, 50, 50), 0xFFFFFFFF);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(arcEnds(), before);
  EXPECT_EQ(penOf(log), std::pair(7, 8));
  // If the centre lies between pixels, no point meets it.
  EXPECT_EQ(log.Arc(0, 0, 101, 101, 50, 50, 51, 51), 0U);
}

TEST(Arc, APointStraightBelowTheCentreIsMeantToCountAs90Degrees) {
  ShapeLog log;
  log.Arc(0, 0, 100, 100, 50, 90, 0, 50);  // from below
  ASSERT_EQ(log.lines.size(), 90U);
  EXPECT_LT(log.lines.front().y1, 5);  // begins above
  log.lines.clear();
  log.Arc(0, 0, 100, 100, 50, 10, 100, 50);  // from above
  ASSERT_EQ(log.lines.size(), 90U);
  EXPECT_GT(log.lines.front().y1, 95);
}

TEST(Arc, AnglesBelowZeroAndAbove360RunThroughTheTurn) {
  ShapeLog log;
  log.Arc(0, 0, 100, 100, 90, 90, 90, 10);  // about -45 to about 405
  EXPECT_EQ(log.lines.size(), 450U);
  log.lines.clear();
  log.Arc(0, 0, 100, 100, 90, 10, 90, 90);  // 405 to the next -45
  EXPECT_EQ(log.lines.size(), 270U);
}

TEST(Arc, OfOneAngleDrawsNothingAndKeepsItsPointAsBothEnds) {
  ShapeLog log;
  EXPECT_EQ(log.Arc(0, 0, 100, 60, 100, 30, 200, 30), 0U);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(arcEnds(), (ArcEnds{100, 30, 100, 30}));
}

struct Eight {
  std::array<int, 8> v{};
};

/// A box and two points with coordinates up to `reach` from zero; in three cases of four the box is
/// in order.
Eight randomArc(Random& random, int reach) {
  Eight made;
  for (int& value : made.v)
    value = random.between(-reach, reach);
  if (random.between(0, 3) != 0) {
    if (made.v[0] > made.v[2])
      std::swap(made.v[0], made.v[2]);
    if (made.v[1] > made.v[3])
      std::swap(made.v[1], made.v[3]);
  }
  if (random.between(0, 5) == 0)  // on the axes through the centre
    made.v[static_cast<std::size_t>(4 + 2 * random.between(0, 1))] = (made.v[0] + made.v[2]) / 2;
  if (random.between(0, 5) == 0)
    made.v[static_cast<std::size_t>(5 + 2 * random.between(0, 1))] = (made.v[1] + made.v[3]) / 2;
  return made;
}

TEST(Arc, ItsRelativesAndTheirChordsAreThoseOfTheReference) {
  Random random(6001);
  ReferenceShapes reference;
  reference.ends = arcEnds();
  for (int i = 0; i < 6000; ++i) {
    constexpr int kReaches[] = {4, 12, 100, 1000, 100000, 900000000};
    const Eight args = randomArc(random, kReaches[i % 6]);
    const auto& [x1, y1, x2, y2, x3, y3, x4, y4] = args.v;
    SCOPED_TRACE(testing::Message() << x1 << "," << y1 << " " << x2 << "," << y2 << " " << x3 << ","
                                    << y3 << " " << x4 << "," << y4);
    ShapeLog log;
    log.MoveTo(1, 2);
    reference.lines.clear();
    reference.pen = {1, 2};
    switch (random.between(0, 2)) {
      case 0:
        ASSERT_EQ(log.Arc(x1, y1, x2, y2, x3, y3, x4, y4),
                  reference.arc(x1, y1, x2, y2, x3, y3, x4, y4));
        break;
      case 1:
        ASSERT_EQ(log.ArcTo(x1, y1, x2, y2, x3, y3, x4, y4), 0U);
        reference.arcTo(x1, y1, x2, y2, x3, y3, x4, y4);
        break;
      default:
        ASSERT_EQ(log.Pie(x1, y1, x2, y2, x3, y3, x4, y4), 0U);
        reference.pie(x1, y1, x2, y2, x3, y3, x4, y4);
        break;
    }
    ASSERT_EQ(log.lines, reference.lines);
    ASSERT_EQ(penOf(log), std::pair(int{reference.pen.x}, int{reference.pen.y}));
    ASSERT_EQ(log.plots, 0);
    ASSERT_EQ(arcEnds(), reference.ends);
  }
}

TEST(Arc, OfExtremeCoordinatesIsDefinedAndTakesAtMostTwoTurns) {
  Random random(6007);
  static constexpr int kEnds[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
  const auto any = [&random] {
    return random.flag() ? kEnds[random.between(0, 6)] : static_cast<int>(random.word());
  };
  for (int i = 0; i < 3000; ++i) {
    ShapeLog log;
    const int x1 = any(), y1 = any(), x2 = any(), y2 = any();
    const int x3 = any(), y3 = any(), x4 = any(), y4 = any();
    const std::uint32_t status = log.Arc(x1, y1, x2, y2, x3, y3, x4, y4);
    if (x2 <= x1 || y2 <= y1) {
      ASSERT_EQ(status, 0xFFFFFFFF);
    }
    ASSERT_LE(log.lines.size(), 720U);
    ASSERT_EQ(log.Pie(x1, y1, x2, y2, x3, y3, x4, y4), 0U);
    ASSERT_EQ(log.ArcTo(x1, y1, x2, y2, x3, y3, x4, y4), 0U);
    ASSERT_EQ(penOf(log), std::pair(x4, y4));
  }
}

/// Records which curve calls which virtually.
class ArcLog final : public CDrawRGB24 {
 public:
  ArcLog() : NKDraw(ptRGB24), CDrawRGB24(ptRGB24) {}
  using NKDraw::Line;
  std::uint32_t Line(int x1, int y1, int x2, int y2) override {
    lines.push_back({x1, y1, x2, y2});
    return 0;
  }
  std::uint32_t Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) override {
    arcs.push_back({{x1, y1, x2, y2, x3, y3, x4, y4}});
    return answer;
  }
  std::uint32_t AngleArc(int x, int y, std::uint32_t radius, float start, float end) override {
    turns.push_back({static_cast<double>(x), static_cast<double>(y), static_cast<double>(radius),
                     static_cast<double>(radius), start, end});
    return 55;
  }
  std::uint32_t AngleArcTo(int x, int y, int radiusX, int radiusY, float start,
                           float end) override {
    turns.push_back({static_cast<double>(x), static_cast<double>(y), static_cast<double>(radiusX),
                     static_cast<double>(radiusY), start, end});
    return 66;
  }
  std::vector<std::array<int, 8>> arcs;
  std::vector<std::array<double, 6>> turns;
  Segments lines;
  std::uint32_t answer = 0xFFFFFFFF;
};

TEST(ArcTo, IsMeantToTransposeItsStartRayAndMovesThePenEvenIfTheArcFails) {
  ArcLog log;
  EXPECT_EQ(log.ArcTo(1, 2, 3, 4, 5, 6, 7, 8), 0U);
  ASSERT_EQ(log.arcs.size(), 1U);
  EXPECT_EQ(log.arcs[0], (std::array<int, 8>{1, 2, 3, 4, 6, 5, 7, 8}));
  EXPECT_EQ(DrawFields::penXOf(log), 7);
  EXPECT_EQ(DrawFields::penYOf(log), 8);
  EXPECT_TRUE(log.lines.empty());
}

TEST(Pie, IsMeantToTransposeItsStartRayAndDrawsItsRadiiEvenIfTheArcFails) {
  ArcLog log;
  log.MoveTo(77, 78);
  const ArcEnds ends = arcEnds();
  EXPECT_EQ(log.Pie(-1, 2, -2, 5, 5, 6, 7, 8), 0U);
  ASSERT_EQ(log.arcs.size(), 1U);
  EXPECT_EQ(log.arcs[0], (std::array<int, 8>{-1, 2, -2, 5, 6, 5, 7, 8}));
  // The centre is halved towards zero.
  EXPECT_EQ(log.lines,
            (Segments{{ends.startX, ends.startY, -1, 3}, {ends.endX, ends.endY, -1, 3}}));
  EXPECT_EQ(DrawFields::penXOf(log), 77);
}

/// Exits with 0 when a pie whose arc fails has its radii from the origin.
[[noreturn]] void exitWithPieOfTheOrigin() {
  ShapeLog log;
  const std::uint32_t status = log.Pie(50, 0, 10, 60, 1, 2, 3, 4);
  const Segments want = {{0, 0, 30, 30}, {0, 0, 30, 30}};
  std::exit(status == 0 && log.lines == want ? 0 : 1);
}

TEST(PieDeathTest, OnAFreshProcessDrawsItsRadiiFromTheOrigin) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a new process, in which no arc has run
  EXPECT_EXIT(exitWithPieOfTheOrigin(), testing::ExitedWithCode(0), "");
}

TEST(Pie, TheArcStateIsMeantToBeOneForAllSurfacesOfTheProcess) {
  ShapeLog one, two;
  one.Arc(0, 0, 100, 100, 100, 50, 0, 50);
  two.Pie(10, 10, 10, 10, 0, 0, 0, 0);
  EXPECT_EQ(two.lines, (Segments{{100, 50, 10, 10}, {0, 49, 10, 10}}));
}

TEST(AngleArc, RunsThroughZero) {
  ShapeLog log;
  log.MoveTo(3, 4);
  const ArcEnds before = arcEnds();
  EXPECT_EQ(log.AngleArc(100, 100, 50, 350.0F, 10.0F), 0U);
  EXPECT_EQ(log.lines.size(), 20U);
  EXPECT_EQ(penOf(log), std::pair(3, 4));
  EXPECT_EQ(arcEnds(), before);
}

TEST(AngleArc, EndsAtAnAngleAndDoesNotSweep) {
  ShapeLog log;
  log.AngleArc(100, 100, 50, 30.0F, 40.0F);
  EXPECT_EQ(log.lines.size(), 10U);
}

TEST(AngleArc, OfOneDegreeAfterTruncationDrawsNothingButTheOtherFormMovesThePenThere) {
  ShapeLog log;
  log.MoveTo(3, 4);
  EXPECT_EQ(log.AngleArc(100, 100, 50, 30.7F, 30.2F), 0U);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(penOf(log), std::pair(3, 4));
  EXPECT_EQ(log.AngleArcTo(100, 100, 50, 20, 0.9F, -0.9F), 0U);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(penOf(log), std::pair(150, 100));
}

TEST(AngleArc, TakesItsUnsignedRadiusAsASignedOne) {
  ShapeLog log, other;
  log.AngleArc(100, 100, 0xFFFFFFF6, 0.0F, 90.0F);
  other.AngleArcTo(100, 100, -10, -10, 0.0F, 90.0F);
  EXPECT_EQ(log.lines, other.lines);
  EXPECT_EQ(log.lines.front().x1, 90);
}

TEST(AngleArc, ItsChordsAreThoseOfTheReference) {
  Random random(6011);
  for (int i = 0; i < 4000; ++i) {
    constexpr int kReaches[] = {3, 20, 300, 20000, 20000000};  // floats drop bits of the largest
    const int reach = kReaches[i % 5];
    const int x = random.between(-reach, reach), y = random.between(-reach, reach);
    const int rx = random.between(-reach, reach), ry = random.between(-reach, reach);
    const double turn = i % 7 == 0 ? 100000.0 : 400.0;
    const auto start = static_cast<float>(random.real(-turn, turn));
    const auto end = static_cast<float>(i % 7 == 0 ? start + random.real(-100000.0, 400.0)
                                                   : random.real(-400.0, 400.0));
    ReferenceShapes reference;
    ShapeLog log;
    log.MoveTo(5, 6);
    reference.pen = {5, 6};
    if (random.flag()) {
      reference.angleArc(x, y, static_cast<std::uint32_t>(rx), start, end);
      ASSERT_EQ(log.AngleArc(x, y, static_cast<std::uint32_t>(rx), start, end), 0U);
    } else {
      reference.angleArcTo(x, y, rx, ry, start, end);
      ASSERT_EQ(log.AngleArcTo(x, y, rx, ry, start, end), 0U);
    }
    ASSERT_EQ(log.lines, reference.lines)
        << x << "," << y << " " << rx << "," << ry << " from " << start << " to " << end;
    ASSERT_EQ(penOf(log), std::pair(int{reference.pen.x}, int{reference.pen.y}));
  }
}

TEST(AngleArc, OfAnglesAndRadiiWithoutBoundsIsDefinedAndEnds) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const float start : {0.0F, 2147483520.0F, -2147483648.0F, 1e30F, -1e30F, kInfinity, nan}) {
    for (const float end : {2147483520.0F, -2147483648.0F, 1e30F, -kInfinity, nan}) {
      if (end == 2147483520.0F && start != end)
        continue;  // billions of degrees
      for (const int reach : {INT_MIN, INT_MAX}) {
        ShapeLog log;
        EXPECT_EQ(log.AngleArc(reach, reach, static_cast<std::uint32_t>(reach), start, end), 0U);
        EXPECT_LE(log.lines.size(), 360U) << start << " " << end;
        EXPECT_EQ(log.AngleArcTo(reach, reach, reach, reach, start, end), 0U);
      }
    }
  }
}

TEST(Circle, IsAWholeTurnOfTheAngleArcAndKeepsThePen) {
  ArcLog log;
  EXPECT_EQ(log.Circle(3, 4, -5), 0U);
  ASSERT_EQ(log.turns.size(), 1U);
  EXPECT_EQ(log.turns[0], (std::array<double, 6>{3, 4, 4294967291.0, 4294967291.0, 0, 360}));
  ShapeLog drawn;
  drawn.MoveTo(1, 2);
  EXPECT_EQ(drawn.Circle(200, 100, 50), 0U);
  ASSERT_EQ(drawn.lines.size(), 360U);
  EXPECT_EQ(drawn.lines.front().x1, 250);
  EXPECT_EQ(drawn.lines.back().x2, 250);  // the first point again
  EXPECT_EQ(drawn.lines.back().y2, 100);
  EXPECT_EQ(penOf(drawn), std::pair(1, 2));
}

TEST(Circle, OfNoRadiusPlotsOnlyItsCentre) {
  Frame frame(200 * 4 * 120);
  frame.fill(0);
  const Surface surface = makeSurface(ptRGBA32, 200, 120, 0, frame.canvas());
  EXPECT_EQ(surface->Circle(100, 100, 0), 0U);
  ASSERT_EQ(frame.changed().size(), 4U);
  EXPECT_EQ(frame.changed().front(), (100 * 200 + 100) * 4);
}

TEST(Ellipse, IsAWholeTurnOfTheOtherArcAndMovesThePen) {
  ArcLog log;
  EXPECT_EQ(log.Ellipse(3, 4, 5, 6), 0U);
  ASSERT_EQ(log.turns.size(), 1U);
  EXPECT_EQ(log.turns[0], (std::array<double, 6>{3, 4, 5, 6, 0, 360}));
  ShapeLog drawn;
  EXPECT_EQ(drawn.Ellipse(200, 100, 50, 30), 0U);
  EXPECT_EQ(drawn.lines.size(), 360U);
  EXPECT_EQ(penOf(drawn), std::pair(250, 100));
}

TEST(Arc, ItsQuarterTurnsAreMeantToFallShortOfTheTrueOnes) {
  ShapeLog log;
  log.AngleArc(0, 0, 10000, 0.0F, 90.0F);
  EXPECT_EQ(log.lines.back().x2, 7);  // pi is 3.14 here
  EXPECT_EQ(log.lines.back().y2, -9999);
}

TEST(Arc, TheQuotientOfItsRaysIsMeantToBeCutToSinglePrecision) {
  ShapeLog log;
  // In double precision the angle would be 258.99999980.
  EXPECT_EQ(log.Arc(0, 0, 4000, 4000, 2000 - 295, 2000 + 1512, 4000, 2000), 0U);
  EXPECT_EQ(log.lines.size(), 360U - 259);
}

TEST(Shapes, WithAntialiasingTakeTheWeightedPathOfTheirLines) {
  const std::array<void (*)(NKDraw&), 9> shapes = {
      [](NKDraw& d) { d.Arc(10, 10, 190, 150, 190, 90, 100, 10); },
      [](NKDraw& d) { d.ArcTo(10, 10, 190, 150, 90, 190, 100, 10); },
      [](NKDraw& d) { d.Pie(10, 10, 190, 150, 90, 190, 100, 10); },
      [](NKDraw& d) { d.AngleArc(100, 100, 90, 10.0F, 40.0F); },
      [](NKDraw& d) { d.AngleArcTo(100, 100, 90, 70, 10.0F, 40.0F); },
      [](NKDraw& d) { d.Circle(100, 100, 90); },
      [](NKDraw& d) { d.Ellipse(100, 100, 90, 70); },
      [](NKDraw& d) { d.Bezier(3, 3, 50, 190, 90, 10, 190, 150); },
      [](NKDraw& d) { d.RoundRect(3, 5, 195, 195, 190, 186); },
  };
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    SCOPED_TRACE(i);
    Frame plain(200 * 200 * 4), soft(200 * 200 * 4), byHand(200 * 200 * 4);
    const Surface one = makeSurface(ptRGBA32, 200, 200, 0, plain.canvas());
    const Surface two = makeSurface(ptRGBA32, 200, 200, 0, soft.canvas());
    const Surface three = makeSurface(ptRGBA32, 200, 200, 0, byHand.canvas());
    PixelFields::antialiased(*two) = true;
    PixelFields::antialiased(*three) = true;
    ShapeLog log;
    shapes[i](*one);
    shapes[i](*two);
    shapes[i](log);
    for (const Segment& line : log.lines)
      three->Line(line.x1, line.y1, line.x2, line.y2);
    EXPECT_FALSE(plain.all() == soft.all());
    EXPECT_TRUE(byHand.all() == soft.all());
  }
}

}  // namespace
