// SPDX-License-Identifier: BSD-2-Clause
//
// The line through a region against a plain implementation: the calls to a surface, and the result
// on the library's own.
#include <tests/support/call_log.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <nkdraw/platform/graphics.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <memory>
#include <utility>

namespace {

using namespace nkdraw::test;

struct DeleteRegion {
  void operator()(nkRegion* region) const { nkDeleteRegion(region); }
};
using Region = std::unique_ptr<nkRegion, DeleteRegion>;

struct Colour {
  double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
};

Colour pen(NKDraw& d) {
  Colour c;
  d.GetColorRGBA(c.r, c.g, c.b, c.a, true);
  return c;
}

Colour pixelAt(NKDraw& d, int x, int y) {
  Colour c;
  d.GetPixelRGBA(x, y, c.r, c.g, c.b, c.a);
  return c;
}

void setOver255(NKDraw& d, const Colour& c) {
  d.SetColorRGBA(c.r / 255, c.g / 255, c.b / 255, c.a / 255, true);
}

Colour sum(double v, const Colour& p, double w, const Colour& q) {
  return {v * p.r + w * q.r, v * p.g + w * q.g, v * p.b + w * q.b, v * p.a + w * q.a};
}

/// The steps of LineA, one after the other, for coordinates that don't overflow.
void lineAPlainly(NKDraw& d, const nkRegion* region, const tagRECT& rect, int x1, int y1, int x2,
                  int y2) {
  if (y1 > y2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const int dx = x2 - x1, dy = y2 - y1, ax = std::abs(dx), sx = dx < 0 ? -1 : 1;
  const auto inside = [&](int x, int y) {
    return PtInRegion(region, x - rect.left, y - rect.top) != 0;
  };
  if (PixelFields::antialiased(d) && ax != 0 && dy != 0 && ax != dy) {
    Colour last = pen(d);
    setOver255(d, last);
    d.PutPixel(x1, y1, true);
    d.PutPixel(x2, y2, true);
    const bool steep = ax < dy;
    const unsigned major = static_cast<unsigned>(steep ? dy : ax);
    const unsigned slope = (static_cast<unsigned>(steep ? ax : dy) << 16) / major;
    unsigned acc = 0;
    for (unsigned i = 1; i < major; ++i) {
      acc += slope;
      const int along = static_cast<int>(i), across = static_cast<int>(acc >> 16);
      const int x = steep ? x1 + sx * across : x1 + sx * along;
      const int y = steep ? y1 + along : y1 + across;
      const double w = ((acc >> 8) & 255) / 255.0, v = 1.0 - w;
      const Colour canvas = pixelAt(d, x, y);
      last = pen(d);
      setOver255(d, sum(w, canvas, v, last));
      if (inside(x, y))
        d.PutPixel(x, y, true);
      setOver255(d, sum(v, canvas, w, last));
      const int x3 = steep ? x + sx : x, y3 = steep ? y : y + 1;
      if (inside(x3, y3))
        d.PutPixel(x3, y3, true);
      setOver255(d, last);
    }
    setOver255(d, last);
    return;
  }
  const auto plot = [&](int x, int y, int sourceX) {
    const Colour canvas = pixelAt(d, sourceX, y2), own = pen(d);
    setOver255(d, sum(0.0, own, 1.0, canvas));
    if (inside(x, y))
      d.PutPixel(x, y, true);
    setOver255(d, own);
  };
  if (dy > ax) {
    const int step = dx * 65536 / dy;
    int fx = x1 * 65536 + 0x8000;
    for (int y = y1; y <= y2; ++y, fx += step)
      plot(fx >> 16, y, x1);
    return;
  }
  const int step = dx == 0 ? 0 : dy * 65536 / dx;
  int fy = y1 * 65536 + 0x8000;
  if (dx > 0) {
    for (int x = x1; x <= x2; ++x, fy += step)
      plot(x, fy >> 16, x);
  } else {
    for (int x = x1; x >= x2; --x, fy -= step)
      plot(x, fy >> 16, x);
  }
}

class RegionLine : public testing::TestWithParam<bool> {
 protected:
  /// Compares the calls to two surfaces.
  static void expectCalls(const nkRegion* region, const tagRECT& rect, int x1, int y1, int x2,
                          int y2) {
    CallLog drawn, told;
    for (CallLog* log : {&drawn, &told}) {
      log->SetColorRGBA(1.0, 0.6, 0.2, 0.9, true);
      PixelFields::antialiased(*log) = GetParam();
    }
    drawn.LineA(region, &rect, x1, y1, x2, y2);
    lineAPlainly(told, region, rect, x1, y1, x2, y2);
    ASSERT_EQ(drawn.calls, told.calls) << x1 << "," << y1 << " " << x2 << "," << y2;
  }
};

INSTANTIATE_TEST_SUITE_P(Forms, RegionLine, testing::Bool(), [](const auto& each) {
  return each.param ? std::string("Smooth") : std::string("Plain");
});

TEST_P(RegionLine, IsItsStepsForAllShortLinesAndAnyOrigin) {
  const Region region(nkCreateRectRegion(-3, -2, 4, 5));
  for (const tagRECT& rect : {tagRECT{0, 0, 9, 9}, tagRECT{2, -1, 0, 0}}) {
    for (int x = -9; x <= 9; ++x) {
      for (int y = -9; y <= 9; ++y) {
        ASSERT_NO_FATAL_FAILURE(expectCalls(region.get(), rect, 1, -1, x, y));
        ASSERT_NO_FATAL_FAILURE(expectCalls(region.get(), rect, x, y, 1, -1));
      }
    }
  }
}

TEST_P(RegionLine, IsItsStepsForRandomLines) {
  Random random(31);
  for (int i = 0; i < 300; ++i) {
    const auto any = [&random] { return random.between(-400, 400); };
    const int left = any(), top = any();
    const Region region(
        nkCreateRectRegion(left, top, left + random.between(0, 300), top + random.between(0, 300)));
    const tagRECT rect = {any(), any(), any(), any()};
    ASSERT_NO_FATAL_FAILURE(expectCalls(region.get(), rect, any(), any(), any(), any()));
  }
}

TEST_P(RegionLine, IsTheSameOnEverySurface) {
  Random random(5);
  for (const pixelType type : kLayouts) {
    for (int i = 0; i < 30; ++i) {
      constexpr int kWidth = 48, kHeight = 32;
      Frame frames[2] = {Frame(32768, random.word()), Frame(32768)};
      frames[1] = frames[0];
      const Region region(nkCreateRectRegion(random.between(-5, 20), random.between(-5, 12),
                                             random.between(20, 50), random.between(12, 40)));
      const tagRECT rect = {random.between(-4, 4), random.between(-4, 4), 0, 0};
      // The smooth form plots beside the line, too.
      const int x1 = random.between(2, kWidth - 3), y1 = random.between(2, kHeight - 3);
      const int x2 = random.between(2, kWidth - 3), y2 = random.between(2, kHeight - 3);
      const Surface drawn = makeSurface(type, kWidth, kHeight, 0, frames[0].canvas());
      const Surface told = makeSurface(type, kWidth, kHeight, 0, frames[1].canvas());
      for (NKDraw* surface : {drawn.get(), told.get()}) {
        surface->SetColorRGBA(0.9, 0.8, 1.0, 0.7, true);
        PixelFields::antialiased(*surface) = GetParam();
      }
      drawn->LineA(region.get(), &rect, x1, y1, x2, y2);
      lineAPlainly(*told, region.get(), rect, x1, y1, x2, y2);
      ASSERT_TRUE(frames[0].all() == frames[1].all()) << layoutName(type) << " line " << i;
      ASSERT_TRUE(frames[0].guardsIntact());
    }
  }
}

TEST_P(RegionLine, OfEqualEndsPlotsOnePixelThatTheRegionHas) {
  const Region region(nkCreateRectRegion(0, 0, 4, 4));
  const tagRECT rect = {10, 20, 0, 0};
  for (const auto& [x, y, plots] :
       {std::array{10, 20, 1}, {13, 23, 1}, {9, 20, 0}, {14, 20, 0}, {10, 24, 0}, {3, 3, 0}}) {
    CallLog log;
    PixelFields::antialiased(log) = GetParam();
    log.LineA(region.get(), &rect, x, y, x, y);
    EXPECT_EQ(log.count("pixel"), plots) << x << "," << y;
    EXPECT_EQ(log.count("colour"), 2);
  }
}

TEST_P(RegionLine, ThroughNoRegionPlotsNothingButTheEndsOfTheSmoothForm) {
  const Region empty(nkCreateRectRegion(5, 5, 5, 9));
  const tagRECT rect = {0, 0, 0, 0};
  for (const nkRegion* const region :
       {static_cast<const nkRegion*>(nullptr), const_cast<const nkRegion*>(empty.get())}) {
    CallLog log;
    PixelFields::antialiased(log) = GetParam();
    log.LineA(region, &rect, 0, 0, 20, 7);
    const std::vector<Call> ends = {{"pixel", {0, 0, 1}}, {"pixel", {20, 7, 1}}};
    EXPECT_EQ(log.only("pixel"), GetParam() ? ends : std::vector<Call>());
  }
}

TEST_P(RegionLine, LeavesTheForegroundAt255thOfWhatItWas) {
  const tagRECT rect = {0, 0, 0, 0};
  CallLog log;
  PixelFields::antialiased(log) = GetParam();
  log.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  log.LineA(nullptr, &rect, 0, 0, 1, 2);  // one step between the ends
  const Call& last = log.calls.back();
  EXPECT_EQ(last.name, "colour");
  // Bytes of 255, 1 and 0: each further pixel dims what is left.
  EXPECT_LE(last.values[0], 1.0 / 255.0);
}

TEST(PlainRegionLine, TakesTheColourOfItsFarRowAndNoneOfItsPen) {
  Frame frame(16 * 16 * 4);
  frame.fill(0);
  const Surface surface = makeSurface(ptRGBA32, 16, 16, 0, frame.canvas());
  surface->SetColorRGBA(1.0, 0.0, 0.0, 1.0, true);
  surface->PutPixel(2, 9, true);  // upper end's column, lower end's row
  const Region all(nkCreateRectRegion(0, 0, 16, 16));
  const tagRECT rect = {0, 0, 0, 0};
  surface->SetColorRGBA(0.0, 1.0, 1.0, 1.0, true);
  surface->LineA(all.get(), &rect, 2, 1, 4, 9);
  const std::uint8_t* const upper = &frame[(1 * 16 + 2) * 4];
  EXPECT_EQ(upper[0], 1);  // 255 over 255
  EXPECT_EQ(upper[1], 0);
  EXPECT_EQ(upper[2], 0);
}

TEST(SmoothRegionLine, AppliesTheRegionToAllButItsEnds) {
  const Region region(nkCreateRectRegion(0, 0, 5, 50));
  const tagRECT rect = {0, 0, 0, 0};
  CallLog log;
  PixelFields::antialiased(log) = true;
  log.LineA(region.get(), &rect, 0, 0, 20, 7);
  for (const Call& call : log.only("pixel"))
    EXPECT_TRUE(call.values[0] < 5 || call.values[0] == 20) << call;
}

TEST(SmoothRegionLine, IsTakenOnlyBetweenTheAxesAndTheDiagonal) {
  const Region region(nkCreateRectRegion(-50, -50, 50, 50));
  const tagRECT rect = {0, 0, 0, 0};
  for (const auto& [x, y] : {std::pair{9, 0}, {0, 9}, {9, 9}, {-9, 9}, {0, 0}}) {
    CallLog smooth, plain;
    PixelFields::antialiased(smooth) = true;
    smooth.LineA(region.get(), &rect, 0, 0, x, y);
    plain.LineA(region.get(), &rect, 0, 0, x, y);
    EXPECT_EQ(smooth.calls, plain.calls);
  }
}

TEST(RegionLineOverflow, OfTheFarthestCoordinatesIsDefined) {
  const tagRECT rect = {INT_MAX, INT_MIN, 0, 0};
  CallLog log;
  log.LineA(nullptr, &rect, INT_MAX, INT_MIN, INT_MAX - 3, INT_MIN + 5);
  log.LineA(nullptr, &rect, INT_MIN, INT_MAX, INT_MIN + 3, INT_MAX - 5);
  EXPECT_EQ(log.count("pixel"), 0);
}

}  // namespace
