// SPDX-License-Identifier: BSD-2-Clause
//
// Antialiased lines: the weights that they pass to the surface, in order, and the pen colour that
// they leave.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/reference_soft_lines.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <ostream>
#include <utility>
#include <vector>

namespace {

using namespace nkdraw::test;

enum class Call { kGetColour, kSetColour, kRead, kPut };

struct Entry {
  Call call;
  int x = 0, y = 0;
  std::array<double, 4> colour{};
  bool operator==(const Entry&) const = default;
};

[[maybe_unused]] std::ostream& operator<<(std::ostream& out, const Entry& entry) {
  out << static_cast<int>(entry.call) << " " << entry.x << "," << entry.y;
  for (const double channel : entry.colour)
    out << " " << channel;
  return out;
}

/// Keeps its colour as it is set, reads noise, and notes every call.
class SoftLog final : public CDrawRGB24 {
 public:
  SoftLog() : NKDraw(ptRGB24), CDrawRGB24(ptRGB24) {}

  std::uint32_t GetColorRGBA(double& r, double& g, double& b, double& a, bool ink) override {
    EXPECT_TRUE(ink);
    r = colour[0];
    g = colour[1];
    b = colour[2];
    a = colour[3];
    calls.push_back({Call::kGetColour, 0, 0, colour});
    return 4711;
  }
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool ink) override {
    EXPECT_TRUE(ink);
    colour = {r, g, b, a};
    calls.push_back({Call::kSetColour, 0, 0, colour});
    return 4711;
  }
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
    r = noise_.real(0, 1);
    g = noise_.real(0, 1);
    b = noise_.real(0, 1);
    a = noise_.real(0, 1);
    calls.push_back({Call::kRead, x, y, {r, g, b, a}});
    return 4711;
  }
  std::uint32_t PutPixel(int x, int y, bool ink) override {
    EXPECT_TRUE(ink);
    calls.push_back({Call::kPut, x, y, colour});
    return 4711;
  }

  [[nodiscard]] std::pair<int, int> pen() const { return {penX, penY}; }
  /// The plots alone, with the alpha that each was given.
  [[nodiscard]] std::vector<std::tuple<int, int, double>> weights() const {
    std::vector<std::tuple<int, int, double>> plots;
    for (const Entry& entry : calls) {
      if (entry.call == Call::kPut)
        plots.emplace_back(entry.x, entry.y, entry.colour[3]);
    }
    return plots;
  }

  std::array<double, 4> colour = {0.75, 0.5, 0.25, 1.0};
  std::vector<Entry> calls;

 private:
  Random noise_{9001};
};

using Weights = std::vector<std::tuple<int, int, double>>;

TEST(LineWu, OfNoLengthPlotsItsPairTwice) {
  SoftLog log;
  EXPECT_EQ(log.LineWu(3, 3, 3, 3), 0U);
  EXPECT_EQ(log.weights(), (Weights{{3, 3, 0.5}, {3, 4, 0.0}, {3, 3, 0.5}, {3, 4, 0.0}}));
  EXPECT_EQ(log.colour, (std::array<double, 4>{0.75, 0.5, 0.25, 0.0}));
}

TEST(LineWu, AlongARowGivesItsEndsHalfAndItsBodyFullWeight) {
  SoftLog log;
  EXPECT_EQ(log.LineWu(0, 0, 10, 0), 0U);
  Weights want = {{0, 0, 0.5}, {0, 1, 0.0}, {10, 0, 0.5}, {10, 1, 0.0}};
  for (int x = 1; x <= 9; ++x) {
    want.emplace_back(x, 0, 1.0);
    want.emplace_back(x, 1, 0.0);
  }
  EXPECT_EQ(log.weights(), want);
}

TEST(LineWu, AlongAColumnIsTheTransposedOfTheRow) {
  SoftLog row, column;
  row.LineWu(0, 0, 10, 0);
  column.LineWu(0, 0, 0, 10);
  Weights transposed;
  for (const auto& [x, y, weight] : row.weights())
    transposed.emplace_back(y, x, weight);
  EXPECT_EQ(column.weights(), transposed);
}

TEST(LineWu, DoesNotDependOnWhichEndComesFirst) {
  SoftLog there, back;
  there.LineWu(0, 0, 10, 5);
  back.LineWu(10, 5, 0, 0);
  EXPECT_EQ(there.weights(), back.weights());
  EXPECT_EQ(there.weights().size(), 4U + 18);
}

TEST(LineWu, OfADiagonalIsNotSteep) {
  SoftLog log;
  log.LineWu(0, 0, 3, 3);
  EXPECT_EQ(log.weights(), (Weights{{0, 0, 0.5},
                                    {0, 1, 0.0},
                                    {3, 3, 0.5},
                                    {3, 4, 0.0},
                                    {1, 1, 1.0},
                                    {1, 2, 0.0},
                                    {2, 2, 1.0},
                                    {2, 3, 0.0}}));
}

TEST(LineWu, PairsOfItsBodyAddUpToOne) {
  SoftLog log;
  log.LineWu(-3, 40, 117, 7);
  const Weights plots = log.weights();
  for (std::size_t i = 4; i < plots.size(); i += 2)
    EXPECT_DOUBLE_EQ(std::get<2>(plots[i]) + std::get<2>(plots[i + 1]), 1.0);
}

TEST(LineWu, IsThatOfTheReference) {
  Random random(9003);
  for (int i = 0; i < 3000; ++i) {
    constexpr int kReaches[] = {2, 9, 60, 400};
    const int reach = kReaches[i % 4];
    const int away = i % 5 == 0 ? 2000000000 : 0;  // doubles hold it exactly
    const int x1 = away + random.between(-reach, reach), y1 = random.between(-reach, reach) - away;
    const int x2 = away + random.between(-reach, reach), y2 = random.between(-reach, reach) - away;
    SoftLog log, reference;
    log.MoveTo(7, 8);
    ASSERT_EQ(log.LineWu(x1, y1, x2, y2), 0U);
    referenceLineWu(reference, x1, y1, x2, y2);
    ASSERT_EQ(log.calls, reference.calls) << x1 << "," << y1 << " " << x2 << "," << y2;
    ASSERT_EQ(log.pen(), std::pair(7, 8));
  }
}

TEST(LineWu, AtTheEndsOfTheCoordinatesIsDefinedAndEnds) {
  Random random(9007);
  constexpr int kEnds[] = {INT_MIN, INT_MIN + 3, INT_MAX - 3, INT_MAX};
  for (int i = 0; i < 300; ++i) {
    const int x1 = kEnds[random.between(0, 3)], y1 = kEnds[random.between(0, 3)];
    const auto near = [&random](int end) {
      const int step = random.between(0, 3);
      return end < 0 ? end + (end == INT_MIN ? step : -step)
                     : end + (end == INT_MAX ? -step : step);
    };
    const int x2 = near(x1), y2 = near(y1);
    SoftLog log, reference;
    ASSERT_EQ(log.LineWu(x1, y1, x2, y2), 0U);
    referenceLineWu(reference, x1, y1, x2, y2);
    ASSERT_EQ(log.calls, reference.calls) << x1 << "," << y1 << " " << x2 << "," << y2;
  }
}

TEST(LineWu, ThePenColourIsMeantToKeepTheLastWeight) {
  Frame frame(64 * 64 * 4);
  for (const pixelType type : {ptRGBA32, ptARGB32, ptBGRA32, ptABGR32}) {
    const Surface surface = makeSurface(type, 64, 64, 0, frame.canvas());
    surface->SetColorRGBA(0.2, 0.4, 0.6, 0.8, true);
    surface->LineWu(2, 2, 40, 23);
    SoftLog log;
    log.colour = {51 / 255.0, 102 / 255.0, 153 / 255.0, 204 / 255.0};
    referenceLineWu(log, 2, 2, 40, 23);
    double r = 9, g = 9, b = 9, a = 9;
    surface->GetColorRGBA(r, g, b, a, true);
    EXPECT_EQ(r, 51 / 255.0);
    EXPECT_EQ(g, 102 / 255.0);
    EXPECT_EQ(b, 153 / 255.0);
    EXPECT_EQ(a, static_cast<int>(log.colour[3] * 255.0) / 255.0);
  }
}

TEST(LineWu, WeightsTakeEffectInTheAdditiveStepAlone) {
  Frame frame(64 * 4);
  frame.fill(0);
  const Surface surface = makeSurface(ptRGBA32, 16, 4, 0, frame.canvas());
  surface->SetColorRGBA(200 / 255.0, 100 / 255.0, 50 / 255.0, 1.0, true);
  surface->SetAlphaAdditive(true);
  surface->LineWu(0, 0, 10, 0);
  EXPECT_EQ(frame[4], 200);  // in full
  EXPECT_EQ(frame[0], static_cast<std::uint8_t>((127 / 255.0) * 200));
  EXPECT_EQ(frame[64], 0);  // the partner adds nothing
  EXPECT_EQ(frame[64 + 3], 255);
}

TEST(LineWu, IsMeantToDrawInWhiteWhereTheSurfaceKeepsItsColourElsewhere) {
  for (const pixelType type : {ptUYVY, ptV210, ptYCbCr48, ptUV16}) {
    SCOPED_TRACE(layoutName(type));
    Frame got(4096), want(4096);
    const Surface one = makeSurface(type, 48, 8, 0, got.canvas());
    one->SetColorRGBA(0.9, 0.1, 0.1, 1.0, true);
    one->LineWu(0, 0, 12, 0);
    const Surface two = makeSurface(type, 48, 8, 0, want.canvas());
    two->SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    two->LineWu(0, 0, 12, 0);
    EXPECT_TRUE(got.all() == want.all());
  }
}

/// Records the calls of LineWuTo.
class WuLog final : public CDrawRGB24 {
 public:
  WuLog() : NKDraw(ptRGB24), CDrawRGB24(ptRGB24) {}
  std::uint32_t LineWu(int x1, int y1, int x2, int y2) override {
    asked = {x1, y1, x2, y2};
    penSeen = {penX, penY};
    return 77;
  }
  std::array<int, 4> asked{};
  std::pair<int, int> penSeen;
};

TEST(LineWuTo, StartsAtThePenThroughTheTableAndMovesItAfterwards) {
  WuLog log;
  EXPECT_EQ(log.LineWuTo(10, 5), 77U);
  EXPECT_EQ(log.asked, (std::array<int, 4>{0, 0, 10, 5}));
  EXPECT_EQ(log.penSeen, std::pair(0, 0));
  EXPECT_EQ(DrawFields::penXOf(log), 10);
  EXPECT_EQ(DrawFields::penYOf(log), 5);
  EXPECT_EQ(log.LineWuTo(-1, 2), 77U);
  EXPECT_EQ(log.asked, (std::array<int, 4>{10, 5, -1, 2}));
}

TEST(WeightedLine, PlotsItsEndsFirstAndMixesByHand) {
  SoftLog log;
  PixelFields::antialiased(log) = true;
  EXPECT_EQ(log.Line(0, 0, 4, 2), 0U);
  std::vector<std::pair<int, int>> plots;
  for (const auto& [x, y, weight] : log.weights())
    plots.emplace_back(x, y);
  const std::vector<std::pair<int, int>> want = {{0, 0}, {4, 2}, {1, 0}, {1, 1},
                                                 {2, 1}, {2, 2}, {3, 1}, {3, 2}};
  EXPECT_EQ(plots, want);
}

TEST(WeightedLine, IsThatOfTheReference) {
  Random random(9011);
  for (int i = 0; i < 4000; ++i) {
    constexpr int kReaches[] = {3, 9, 60, 400, 40000};
    const int reach = i % 100 == 0 ? kReaches[4] : kReaches[i % 4];
    const int away = i % 5 == 0 ? INT_MAX - reach : i % 5 == 1 ? INT_MIN + reach : 0;
    const int x1 = away + random.between(-reach, reach) % reach;
    const int y1 = away + random.between(-reach, reach) % reach;
    const int x2 = away + random.between(-reach, reach) % reach;
    const int y2 = away + random.between(-reach, reach) % reach;
    if (x1 == x2 || y1 == y2 || std::abs(x2 - x1) == std::abs(y2 - y1))
      continue;
    SoftLog log, reference;
    log.MoveTo(7, 8);
    PixelFields::antialiased(log) = true;
    ASSERT_EQ(log.Line(x1, y1, x2, y2), 0U);
    referenceWeightedLine(reference, x1, y1, x2, y2);
    ASSERT_EQ(log.calls, reference.calls) << x1 << "," << y1 << " " << x2 << "," << y2;
    ASSERT_EQ(log.pen(), std::pair(7, 8));
  }
}

TEST(WeightedLine, WhoseHeightWrapsIsDefinedAndEnds) {
  for (const auto& [x1, x2] : {std::pair(0, 5), std::pair(5, 0), std::pair(INT_MAX - 2, INT_MAX)}) {
    for (const int depth : {0, 1, 2}) {
      SoftLog log;
      PixelFields::antialiased(log) = true;
      EXPECT_EQ(log.Line(x1, INT_MIN, x2, INT_MAX - depth), 0U);
      EXPECT_LE(log.weights().size(), 10U);
    }
  }
}

TEST(WeightedLine, IsTakenOnlyByLinesOffTheAxesAndDiagonals) {
  for (int dx = -6; dx <= 6; ++dx) {
    for (int dy = -6; dy <= 6; ++dy) {
      SoftLog log;
      PixelFields::antialiased(log) = true;
      log.Line(10, 10, 10 + dx, 10 + dy);
      const bool plain = dx == 0 || dy == 0 || std::abs(dx) == std::abs(dy);
      EXPECT_EQ(log.calls.front().call, plain ? Call::kPut : Call::kGetColour) << dx << "," << dy;
    }
  }
}

TEST(WeightedLine, IsNotTakenWithoutTheFlagAndThenLeavesTheColourAlone) {
  SoftLog log;
  log.Line(0, 0, 9, 4);
  for (const Entry& entry : log.calls)
    EXPECT_EQ(entry.call, Call::kPut);
  EXPECT_EQ(log.calls.size(), 10U);
}

TEST(WeightedLine, ThePenColourIsMeantToFadeByThe255thsOfEachStep) {
  SoftLog log;
  PixelFields::antialiased(log) = true;
  log.Line(0, 0, 2, 1);  // one step between its ends
  EXPECT_EQ(log.calls.back().call, Call::kSetColour);
  // Darkened at the start, mixed, and darkened again from what was read last: the partner's mix is
  // not what is kept.
  EXPECT_EQ(log.colour[0], 0.75 / 255.0 / 255.0);
  EXPECT_EQ(log.colour[1], 0.5 / 255.0 / 255.0);
}

TEST(WeightedLine, TheLibraryNeverSetsTheFlagAndItsTextClearsIt) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    Frame frame(16384);
    const Surface surface = makeSurface(type, 48, 20, 0, frame.canvas());
    surface->LineWu(1, 1, 9, 4);
    surface->Circle(20, 10, 5);
    EXPECT_FALSE(PixelFields::antialiased(*surface));
    PixelFields::antialiased(*surface) = true;
    surface->Line(1, 1, 9, 4);
    EXPECT_TRUE(PixelFields::antialiased(*surface));
    tagRECT rect = {0, 0, 20, 10};
    surface->DrawText("a", 1, &rect, 0);
    EXPECT_FALSE(PixelFields::antialiased(*surface));
  }
}

}  // namespace
