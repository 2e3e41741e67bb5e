// SPDX-License-Identifier: BSD-2-Clause
//
// Bézier curves: halves, cut to whole pixels at each, until they are flat.
#include "shape_log.h"

#include <tests/support/frame.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <utility>
#include <vector>

namespace {

using namespace nkdraw::test;

using Segments = std::vector<Segment>;

std::pair<int, int> penOf(const ShapeLog& log) {
  return {log.pen().x, log.pen().y};
}

TEST(Bezier, WithItsControlPointsOnTheChordIsOneLine) {
  ShapeLog log;
  log.MoveTo(5, 5);
  EXPECT_EQ(log.Bezier(0, 0, 3, 0, 7, 0, 10, 0), 0U);
  EXPECT_EQ(log.lines, (Segments{{0, 0, 10, 0}}));
  EXPECT_EQ(penOf(log), std::pair(0, 0));  // the start of the flat piece
}

TEST(Bezier, OfCoincidingEndsIsRefusedHoweverFarItsControlPointsAre) {
  ShapeLog log;
  log.MoveTo(5, 6);
  EXPECT_EQ(log.Bezier(4, 4, 4, 4, 4, 4, 4, 4), 0xFFFFFFFF);
  EXPECT_EQ(log.Bezier(4, 4, 400, 4, 4, 400, 4, 4), 0xFFFFFFFF);
  EXPECT_EQ(log.Bezier(INT_MIN, INT_MAX, 0, 0, 0, 0, INT_MIN, INT_MAX), 0xFFFFFFFF);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(penOf(log), std::pair(5, 6));
}

TEST(Bezier, IsFlatOnlyWhenBothControlPointsAreLessThanAPixelFromTheChord) {
  ShapeLog log;
  EXPECT_EQ(log.Bezier(0, 0, 30, 0, 70, 1, 100, 0), 0U);  // a whole pixel away
  EXPECT_GT(log.lines.size(), 1U);
  log.lines.clear();
  EXPECT_EQ(log.Bezier(0, 0, 30, 1, 70, 0, 100, 0), 0U);
  EXPECT_GT(log.lines.size(), 1U);
  log.lines.clear();
  EXPECT_EQ(log.Bezier(0, 0, 30, 31, 70, 69, 100, 100), 0U);  // a little less than one
  EXPECT_EQ(log.lines, (Segments{{0, 0, 100, 100}}));
}

TEST(Bezier, ThePenEndsAtTheStartOfItsLastFlatPiece) {
  ShapeLog log;
  EXPECT_EQ(log.Bezier(0, 0, 0, 50, 100, 50, 100, 0), 0U);
  ASSERT_GT(log.lines.size(), 2U);
  EXPECT_EQ(log.lines.front().x1, 0);
  EXPECT_EQ(log.lines.back().x2, 100);
  EXPECT_EQ(log.lines.back().y2, 0);
  EXPECT_EQ(penOf(log), std::pair(log.lines.back().x1, log.lines.back().y1));
}

TEST(Bezier, ItsPiecesJoinAndRunFromEndToEnd) {
  Random random(7001);
  for (int i = 0; i < 500; ++i) {
    std::array<int, 8> p{};
    for (int& value : p)
      value = random.between(-300, 300);
    ShapeLog log;
    log.Bezier(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]);
    if (log.lines.empty())
      continue;
    EXPECT_EQ(std::pair(log.lines.front().x1, log.lines.front().y1), std::pair(p[0], p[1]));
    EXPECT_EQ(std::pair(log.lines.back().x2, log.lines.back().y2), std::pair(p[6], p[7]));
    for (std::size_t k = 1; k < log.lines.size(); ++k) {
      ASSERT_EQ(log.lines[k].x1, log.lines[k - 1].x2);
      ASSERT_EQ(log.lines[k].y1, log.lines[k - 1].y2);
    }
  }
}

TEST(Bezier, ItsPiecesAreThoseOfTheReference) {
  Random random(7003);
  for (int i = 0; i < 6000; ++i) {
    constexpr int kReaches[] = {2, 5, 30, 400, 3000, 60000};  // products wrap with the largest
    const int reach = kReaches[i % 6];
    std::array<int, 8> p{};
    for (int& value : p)
      value = random.between(-reach, reach);
    ShapeLog log;
    log.MoveTo(1, 2);
    ReferenceShapes reference;
    reference.pen = {1, 2};
    ASSERT_EQ(log.Bezier(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]),
              reference.bezier(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]));
    ASSERT_EQ(log.lines, reference.lines)
        << p[0] << "," << p[1] << " " << p[2] << "," << p[3] << " " << p[4] << "," << p[5] << " "
        << p[6] << "," << p[7];
    ASSERT_EQ(penOf(log), std::pair(int{reference.pen.x}, int{reference.pen.y}));
  }
}

TEST(Bezier, EveryCurveInASmallBoxEndsAndIsThatOfTheReference) {
  constexpr int kLow = -2, kHigh = 1;  // both sides of zero, towards which halves are cut
  constexpr int kValues = kHigh - kLow + 1;
  int all = 1;
  for (int i = 0; i < 8; ++i)
    all *= kValues;
  ShapeLog log;
  ReferenceShapes reference;
  for (int number = 0; number < all; ++number) {
    std::array<int, 8> p{};
    int rest = number;
    for (int& value : p) {
      value = kLow + rest % kValues;
      rest /= kValues;
    }
    log.lines.clear();
    reference.lines.clear();
    log.Bezier(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]);
    reference.bezier(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]);
    ASSERT_EQ(log.lines, reference.lines) << number;
  }
}

TEST(Bezier, SmallOnesFarOutEndAlthoughTheirProductsWrap) {
  Random random(7013);
  for (int i = 0; i < 2000; ++i) {
    const int x = random.between(-500000000, 500000000);
    const int y = random.between(-500000000, 500000000);
    std::array<int, 8> p{};
    for (std::size_t k = 0; k < 8; ++k)
      p[k] = (k % 2 == 0 ? x : y) + random.between(-4, 4);
    ReferenceShapes reference;
    ShapeLog log;
    ASSERT_EQ(log.Bezier(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]),
              reference.bezier(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]));
    ASSERT_EQ(log.lines, reference.lines);
  }
}

/// Records the curves that its own halves, or a chain, draw.
class BezierLog final : public CDrawRGB24 {
 public:
  explicit BezierLog(bool goesOn) : NKDraw(ptRGB24), CDrawRGB24(ptRGB24), goesOn_(goesOn) {}
  using NKDraw::Line;
  std::uint32_t Line(int, int, int, int) override { return 55; }
  std::uint32_t Bezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) override {
    curves.push_back({x1, y1, x2, y2, x3, y3, x4, y4});
    return goesOn_ ? NKDraw::Bezier(x1, y1, x2, y2, x3, y3, x4, y4) : 0xFFFFFFFF;
  }
  std::vector<std::array<int, 8>> curves;

 private:
  bool goesOn_;
};

TEST(Bezier, AsksForItsHalvesThroughTheTableAndIgnoresWhatTheyReturn) {
  BezierLog log(false);
  EXPECT_EQ(log.NKDraw::Bezier(0, 0, 0, 51, 101, 51, 101, 0), 0U);
  ASSERT_EQ(log.curves.size(), 2U);
  EXPECT_EQ(log.curves[0], (std::array<int, 8>{0, 0, 0, 25, 25, 38, 50, 38}));
  EXPECT_EQ(log.curves[1], (std::array<int, 8>{50, 38, 75, 38, 101, 25, 101, 0}));
}

TEST(Bezier, HalvesAreCutTowardsZero) {
  BezierLog log(false);
  log.NKDraw::Bezier(0, 0, 0, -51, -101, -51, -101, 0);
  ASSERT_EQ(log.curves.size(), 2U);
  EXPECT_EQ(log.curves[0], (std::array<int, 8>{0, 0, 0, -25, -25, -38, -50, -38}));
}

int wrapped(std::int64_t value) {
  return static_cast<int>(static_cast<std::uint32_t>(value));
}

TEST(Bezier, SumsWrapAt32BitsBeforeTheyAreHalved) {
  Random random(7014);
  for (int i = 0; i < 2000; ++i) {
    std::array<std::int64_t, 8> p{};
    for (std::int64_t& value : p)
      value = static_cast<int>(random.word());
    BezierLog log(false);
    ASSERT_EQ(log.NKDraw::Bezier(wrapped(p[0]), wrapped(p[1]), wrapped(p[2]), wrapped(p[3]),
                                 wrapped(p[4]), wrapped(p[5]), wrapped(p[6]), wrapped(p[7])),
              0U);
    if (log.curves.empty())
      continue;  // flat at once
    ASSERT_EQ(log.curves.size(), 2U);
    for (std::size_t k = 0; k < 2; ++k) {
      const double a = wrapped(p[k] + p[k + 2]), b = wrapped(p[k + 2] + p[k + 4]);
      const double c = wrapped(p[k + 4] + p[k + 6]);
      const double d = a + b, e = b + c;
      ASSERT_EQ(log.curves[0][k], p[k]);
      ASSERT_EQ(log.curves[0][2 + k], static_cast<int>(a * 0.5));
      ASSERT_EQ(log.curves[0][4 + k], static_cast<int>(d * 0.25));
      ASSERT_EQ(log.curves[0][6 + k], static_cast<int>((d + e) * 0.125));
      ASSERT_EQ(log.curves[1][k], static_cast<int>((d + e) * 0.125));
      ASSERT_EQ(log.curves[1][2 + k], static_cast<int>(e * 0.25));
      ASSERT_EQ(log.curves[1][4 + k], static_cast<int>(c * 0.5));
      ASSERT_EQ(log.curves[1][6 + k], p[6 + k]);
    }
  }
}

std::vector<tagPOINT> randomPoints(Random& random, std::size_t count) {
  std::vector<tagPOINT> points(count);
  for (tagPOINT& point : points)
    point = {random.between(-200, 200), random.between(-200, 200)};
  return points;
}

TEST(PolyBezier, TakesSevenTenThirteenPointsAndIsMeantToRefuseFour) {
  Random random(7019);
  for (std::uint32_t count = 0; count < 30; ++count) {
    const std::vector<tagPOINT> points = randomPoints(random, count + 3);
    const bool accepted = count > 4 && count % 3 == 1;
    for (const bool moves : {false, true}) {
      BezierLog log(false);
      log.MoveTo(901, 902);
      const std::uint32_t status =
          moves ? log.PolyBezierTo(points.data(), count) : log.PolyBezier(points.data(), count);
      EXPECT_EQ(status, accepted ? 0U : 0xFFFFFFFFU) << count;
      ASSERT_EQ(log.curves.size(), accepted ? (count - 1) / 3 : 0U) << count;
      for (std::size_t k = 0; k < log.curves.size(); ++k) {
        for (std::size_t i = 0; i < 4; ++i) {
          EXPECT_EQ(log.curves[k][2 * i], points[3 * k + i].x);
          EXPECT_EQ(log.curves[k][2 * i + 1], points[3 * k + i].y);
        }
      }
      // Three more points than the count are there for the pen.
      const bool penMoves = moves && accepted;
      EXPECT_EQ(DrawFields::penXOf(log), penMoves ? points[count + 2].x : 901);
      EXPECT_EQ(DrawFields::penYOf(log), penMoves ? points[count + 2].y : 902);
    }
  }
}

TEST(PolyBezier, OfAWrappedCountIsRefused) {
  const tagPOINT point = {1, 2};
  ShapeLog log;
  for (const std::uint32_t count : {0U, 1U, 4U, 0xFFFFFFFFU, 0xFFFFFFFEU}) {
    if (count > 4 && (count - 4) % 3 == 0)
      continue;
    EXPECT_EQ(log.PolyBezier(&point, count), 0xFFFFFFFF) << count;
    EXPECT_EQ(log.PolyBezierTo(&point, count), 0xFFFFFFFF) << count;
  }
  EXPECT_TRUE(log.lines.empty());
}

TEST(PolyBezier, DrawsItsCurvesOneAfterTheOther) {
  Random random(7027);
  for (int i = 0; i < 200; ++i) {
    const auto count = static_cast<std::uint32_t>(7 + 3 * random.between(0, 4));
    const std::vector<tagPOINT> points = randomPoints(random, count + 3);
    ReferenceShapes reference;
    ShapeLog log;
    if (random.flag()) {
      EXPECT_EQ(log.PolyBezier(points.data(), count), reference.polyBezier(points.data(), count));
    } else {
      EXPECT_EQ(log.PolyBezierTo(points.data(), count),
                reference.polyBezierTo(points.data(), count));
    }
    ASSERT_EQ(log.lines, reference.lines);
    ASSERT_EQ(penOf(log), std::pair(int{reference.pen.x}, int{reference.pen.y}));
  }
}

TEST(PolyBezier, OfCurvesWithoutExtentStillSucceeds) {
  const std::vector<tagPOINT> points(10, tagPOINT{5, 5});
  ShapeLog log;
  EXPECT_EQ(log.PolyBezierTo(points.data(), 7), 0U);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(penOf(log), std::pair(5, 5));
}

}  // namespace
