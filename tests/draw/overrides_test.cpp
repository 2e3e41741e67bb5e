// SPDX-License-Identifier: BSD-2-Clause
//
// What a derived class that overrides one operation is asked for by each of the others: the same
// calls, in the same order, on every layout.
#include <tests/support/call_log.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/reference_draw.h>
#include <tests/support/reference_shapes.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

constexpr int kWidth = 30, kHeight = 12;

/// The operation that a class overrides.
enum class Overridden { kPutPixel, kPoint, kLine, kLineHoriz, kAngleArcTo };

struct WatchLog {
  Overridden overridden = Overridden::kPutPixel;
  std::vector<Call> calls;

  bool notes(Overridden operation, const char* name, std::initializer_list<double> values) {
    if (overridden != operation)
      return false;
    calls.push_back({name, values});
    return true;
  }
};

/// Notes the calls of the one operation instead of doing it; the others are the layout's own.
template <class Base>
class Watching final : public Base, public WatchLog {
 public:
  explicit Watching(pixelType type) : NKDraw(type), Base(type) {}

  using NKDraw::Line;
  std::uint32_t PutPixel(int x, int y, bool foreground) override {
    return notes(Overridden::kPutPixel, "pixel", {1.0 * x, 1.0 * y, foreground ? 1.0 : 0.0})
               ? 0
               : Base::PutPixel(x, y, foreground);
  }
  std::uint32_t Point(int x, int y, bool foreground) override {
    return notes(Overridden::kPoint, "point", {1.0 * x, 1.0 * y, foreground ? 1.0 : 0.0})
               ? 0
               : Base::Point(x, y, foreground);
  }
  std::uint32_t Line(int x1, int y1, int x2, int y2) override {
    return notes(Overridden::kLine, "line", {1.0 * x1, 1.0 * y1, 1.0 * x2, 1.0 * y2})
               ? 0
               : Base::Line(x1, y1, x2, y2);
  }
  std::uint32_t LineHoriz(int x1, int y, int x2) override {
    return notes(Overridden::kLineHoriz, "row", {1.0 * x1, 1.0 * y, 1.0 * x2})
               ? 0
               : Base::LineHoriz(x1, y, x2);
  }
  std::uint32_t AngleArcTo(int x, int y, int radiusX, int radiusY, float start,
                           float end) override {
    return notes(Overridden::kAngleArcTo, "arc",
                 {1.0 * x, 1.0 * y, 1.0 * radiusX, 1.0 * radiusY, double{start}, double{end}})
               ? 0
               : Base::AngleArcTo(x, y, radiusX, radiusY, start, end);
  }
};

std::vector<Call> pixels(const ReferenceDraw& reference) {
  std::vector<Call> calls;
  for (const Step& step : reference.steps) {
    if (step.kind == Step::Kind::kPut)
      calls.push_back({"pixel", {1.0 * step.x, 1.0 * step.y, step.foreground ? 1.0 : 0.0}});
  }
  return calls;
}

std::vector<Call> lines(const std::vector<Segment>& segments) {
  std::vector<Call> calls;
  for (const Segment& s : segments)
    calls.push_back({"line", {1.0 * s.x1, 1.0 * s.y1, 1.0 * s.x2, 1.0 * s.y2}});
  return calls;
}

class Overrides : public testing::TestWithParam<pixelType> {
 protected:
  Overrides() : frame_(std::size_t{kHeight} * 400, 3, 1 << 16) {}

  /// The calls that `draw` makes of the one operation, on a surface that is fresh but for its pen,
  /// which stands at (2, 3).
  template <class Draw>
  std::vector<Call> callsOf(Overridden overridden, Draw draw) {
    WatchLog* log = nullptr;
    const auto made = [&]<class Base>(Base*) {
      auto* const surface = new Watching<Base>(GetParam());
      log = surface;
      return Surface(surface);
    };
    const Surface surface = withClassOf(GetParam(), made);
    surface->SetCanvas(frame_.canvas(), kHeight, kWidth, 400);
    surface->MoveTo(2, 3);
    log->overridden = overridden;
    draw(*surface);
    penX_ = DrawFields::penXOf(*surface);
    penY_ = DrawFields::penYOf(*surface);
    return log->calls;
  }

  template <class Draw>
  std::vector<Call> pixelsOf(Draw draw) {
    return callsOf(Overridden::kPutPixel, draw);
  }
  template <class Draw>
  std::vector<Call> linesOf(Draw draw) {
    return callsOf(Overridden::kLine, draw);
  }

  Frame frame_;
  int penX_ = 0, penY_ = 0;
};

INSTANTIATE_TEST_SUITE_P(AllLayouts, Overrides, testing::ValuesIn(kLayouts),
                         [](const auto& each) { return layoutName(each.param); });

/// A primitive, and which of the five operations it calls virtually.
struct Primitive {
  const char* name;
  void (*draw)(NKDraw& surface);
  std::vector<Call> points, lines, rows, arcs;
};

const tagPOINT kPoints[] = {{1, 1}, {9, 4}, {9, 9}, {20, 2}, {3, 8},
                            {5, 5}, {7, 1}, {2, 2}, {6, 6},  {8, 8}};

std::vector<Call> told(void (*tell)(ReferenceShapes& shapes)) {
  ReferenceShapes shapes;
  tell(shapes);
  return lines(shapes.lines);
}

std::vector<Primitive> primitives(bool fills) {
  const std::vector<Call> wholeRows = fills ? std::vector<Call>{} : [] {
    std::vector<Call> rows;
    for (int y = 0; y < kHeight; ++y)
      rows.push_back({"row", {0, 1.0 * y, kWidth}});
    return rows;
  }();
  return {
      {"Point", [](NKDraw& d) { d.Point(4, 5, false); }, {{"point", {4, 5, 0}}}, {}, {}, {}},
      {"MoveTo", [](NKDraw& d) { d.MoveTo(4, 5); }, {}, {}, {}, {}},
      {"Line", [](NKDraw& d) { d.Line(1, 2, 9, 4); }, {}, {{"line", {1, 2, 9, 4}}}, {}, {}},
      {"Line of points",
       [](NKDraw& d) {
         tagPOINT from = {9, 8}, to = {1, 2};
         d.Line(from, to);
       },
       {},
       {{"line", {9, 8, 1, 2}}},
       {},
       {}},
      {"LineTo", [](NKDraw& d) { d.LineTo(9, 1); }, {}, {{"line", {2, 3, 9, 1}}}, {}, {}},
      {"LineVert", [](NKDraw& d) { d.LineVert(3, 1, 9); }, {}, {}, {}, {}},
      {"LineHoriz", [](NKDraw& d) { d.LineHoriz(3, 1, 9); }, {}, {}, {{"row", {3, 1, 9}}}, {}},
      {"Dash", [](NKDraw& d) { d.Dash(0, 0, 20, 7, 3, 2); }, {}, {}, {}, {}},
      {"LineWu", [](NKDraw& d) { d.LineWu(0, 0, 20, 7); }, {}, {}, {}, {}},
      {"LineWuTo", [](NKDraw& d) { d.LineWuTo(20, 7); }, {}, {}, {}, {}},
      {"Polyline",
       [](NKDraw& d) { d.Polyline(kPoints, 3); },
       {},
       {{"line", {1, 1, 9, 4}}, {"line", {9, 4, 9, 9}}},
       {},
       {}},
      {"PolylineTo",
       [](NKDraw& d) { d.PolylineTo(kPoints, 2); },
       {},
       {{"line", {1, 1, 9, 4}}},
       {},
       {}},
      {"Rectangle",
       [](NKDraw& d) { d.Rectangle(1, 2, 8, 9); },
       {},
       {{"line", {1, 2, 8, 2}},
        {"line", {1, 2, 1, 9}},
        {"line", {1, 9, 8, 9}},
        {"line", {8, 2, 8, 9}}},
       {},
       {}},
      {"RoundRect",
       [](NKDraw& d) { d.RoundRect(1, 2, 21, 10, 7, 5); },
       {},
       told([](ReferenceShapes& s) { s.roundRect(1, 2, 21, 10, 7, 5); }),
       {},
       {{"arc", {4, 4, 3, 2, 90, 180}},
        {"arc", {4, 8, 3, 2, 180, 270}},
        {"arc", {18, 8, 3, 2, 270, 360}},
        {"arc", {18, 4, 3, 2, 0, 90}}}},
      {"Arc",
       [](NKDraw& d) { d.Arc(1, 1, 21, 11, 20, 3, 2, 9); },
       {},
       told([](ReferenceShapes& s) { s.arc(1, 1, 21, 11, 20, 3, 2, 9); }),
       {},
       {}},
      {"ArcTo",
       [](NKDraw& d) { d.ArcTo(1, 1, 21, 11, 20, 3, 2, 9); },
       {},
       told([](ReferenceShapes& s) { s.arcTo(1, 1, 21, 11, 20, 3, 2, 9); }),
       {},
       {}},
      {"Pie",
       [](NKDraw& d) { d.Pie(1, 1, 21, 11, 20, 3, 2, 9); },
       {},
       told([](ReferenceShapes& s) { s.pie(1, 1, 21, 11, 20, 3, 2, 9); }),
       {},
       {}},
      {"AngleArc",
       [](NKDraw& d) { d.AngleArc(9, 6, 5, 20.0F, -30.0F); },
       {},
       told([](ReferenceShapes& s) { s.angleArc(9, 6, 5, 20.0F, -30.0F); }),
       {},
       {}},
      {"AngleArcTo",
       [](NKDraw& d) { d.AngleArcTo(9, 6, 7, 3, -50.0F, 40.0F); },
       {},
       told([](ReferenceShapes& s) { s.angleArcTo(9, 6, 7, 3, -50.0F, 40.0F); }),
       {},
       {{"arc", {9, 6, 7, 3, -50, 40}}}},
      {"Circle",
       [](NKDraw& d) { d.Circle(9, 6, 5); },
       {},
       told([](ReferenceShapes& s) { s.angleArc(9, 6, 5, 0.0F, 360.0F); }),
       {},
       {}},
      {"Ellipse",
       [](NKDraw& d) { d.Ellipse(9, 6, 8, 5); },
       {},
       told([](ReferenceShapes& s) { s.angleArcTo(9, 6, 8, 5, 0.0F, 360.0F); }),
       {},
       {{"arc", {9, 6, 8, 5, 0, 360}}}},
      {"Bezier",
       [](NKDraw& d) { d.Bezier(1, 1, 9, 14, 14, -2, 20, 10); },
       {},
       told([](ReferenceShapes& s) { s.bezier(1, 1, 9, 14, 14, -2, 20, 10); }),
       {},
       {}},
      {"PolyBezier",
       [](NKDraw& d) { d.PolyBezier(kPoints, 7); },
       {},
       told([](ReferenceShapes& s) { s.polyBezier(kPoints, 7); }),
       {},
       {}},
      {"PolyBezierTo",
       [](NKDraw& d) { d.PolyBezierTo(kPoints, 7); },
       {},
       told([](ReferenceShapes& s) { s.polyBezierTo(kPoints, 7); }),
       {},
       {}},
      {"FillRect",
       [](NKDraw& d) {
         const tagRECT rect = {2, 3, 8, 6};
         d.FillRect(&rect);
       },
       {},
       {},
       {{"row", {2, 3, 8}}, {"row", {2, 4, 8}}, {"row", {2, 5, 8}}},
       {}},
      {"FillRect of the canvas",
       [](NKDraw& d) {
         const tagRECT rect = {0, 0, kWidth, kHeight};
         d.FillRect(&rect);
       },
       {},
       {},
       wholeRows,
       {}},
      {"EraseCanvas", [](NKDraw& d) { d.EraseCanvas(true); }, {}, {}, wholeRows, {}},
      {"DrawText",
       [](NKDraw& d) {
         for (const bool transparent : {false, true}) {
           tagRECT rect = {1, 1, 25, 11};
           d.SetTextTransparent(transparent);
           d.DrawText("Ab", 2, &rect, 0);
         }
       },
       {},
       {},
       {},
       {}},
  };
}

TEST_P(Overrides, OfOneOperationSeeWhatEachPrimitiveAsksForAndNothingElse) {
  for (const Primitive& primitive : primitives(fillsRows(GetParam()))) {
    SCOPED_TRACE(primitive.name);
    EXPECT_EQ(callsOf(Overridden::kPoint, primitive.draw), primitive.points);
    EXPECT_EQ(callsOf(Overridden::kLine, primitive.draw), primitive.lines);
    EXPECT_EQ(callsOf(Overridden::kLineHoriz, primitive.draw), primitive.rows);
    EXPECT_EQ(callsOf(Overridden::kAngleArcTo, primitive.draw), primitive.arcs);
  }
}

TEST_P(Overrides, OfThePointOrTheRowSeeEveryStrokeOfALabel) {
  // Cell 1 and a blank one; the walk is told bit by bit.
  const char* const text = "\x01 ";
  for (int scale = 0; scale <= 3; ++scale) {
    for (int form = 0; form < 4; ++form) {
      const bool invert = form % 2 != 0, fill = form >= 2;
      const auto draw = [&](NKDraw& d) {
        d.LabelFont(0U, scale);
        d.Label(3, 1, text, invert, fill);
      };
      std::vector<Call> points, rows;
      const int lastLine = 10 * scale;
      for (int i = 0; i < 2; ++i) {
        for (int line = 0; line < lastLine; ++line) {
          const unsigned bits = nkdraw::labelGlyphs[10 * text[i] + 9 - line / scale];
          for (int column = 0; column < 8; ++column) {
            const bool set = (bits >> (7 - column) & 1) != 0;
            const int x = 3 + 8 * scale * i + column * scale, y = 1 + line;
            const bool ink = set != invert;
            if (!set && !fill)
              continue;
            if (ink && scale != 1) {
              rows.push_back({"row", {1.0 * x, 1.0 * y, 1.0 * x + scale}});
              continue;
            }
            for (int k = 0; k < scale; ++k)
              points.push_back({"point", {1.0 * x + k, 1.0 * y, ink ? 1.0 : 0.0}});
          }
        }
      }
      SCOPED_TRACE(testing::Message() << scale << invert << fill);
      EXPECT_EQ(callsOf(Overridden::kPoint, draw), points);
      EXPECT_EQ(callsOf(Overridden::kLineHoriz, draw), rows);
      EXPECT_TRUE(callsOf(Overridden::kLine, draw).empty());
      EXPECT_TRUE(callsOf(Overridden::kAngleArcTo, draw).empty());
    }
  }
}

TEST_P(Overrides, OfThePixelSeeEachOneFarOutAndOverTheEndOfTheCoordinates) {
  Random random(static_cast<std::uint32_t>(GetParam()) + 17);
  static constexpr int kFar[] = {0, 32767, -32768, 32768, 65536, -40000, 1 << 24, -(1 << 28)};
  const auto far = [&random] { return kFar[random.between(0, 7)] + random.between(-40, 40); };
  static constexpr int kSpans[] = {0, 1, 8, 100, 3000, 32767, 32768, 40000};
  const auto span = [&random] {
    return (random.flag() ? 1 : -1) * (kSpans[random.between(0, 7)] + random.between(0, 3));
  };
  for (int i = 0; i < 12; ++i) {
    const int x1 = far(), y1 = far(), x2 = x1 + span(), y2 = y1 + span();
    SCOPED_TRACE(testing::Message() << x1 << "," << y1 << " " << x2 << "," << y2);
    ReferenceDraw line(GetParam()), column(GetParam()), row(ptRGB24), dash(GetParam());
    line.line(x1, y1, x2, y2);
    ASSERT_TRUE(pixelsOf([&](NKDraw& d) { d.Line(x1, y1, x2, y2); }) == pixels(line));
    column.lineVert(x1, y1, y1 + 20);
    ASSERT_EQ(pixelsOf([&](NKDraw& d) { d.LineVert(x1, y1, y1 + 20); }), pixels(column));
    if (!fillsRows(GetParam())) {
      row.lineHoriz(x1, y1, x1 + 20);
      ASSERT_EQ(pixelsOf([&](NKDraw& d) { d.LineHoriz(x1, y1, x1 + 20); }), pixels(row));
    }
    const int on = random.between(-2, 5) * (random.between(0, 5) == 0 ? 10000000 : 1);
    const int off = random.between(-2, 5) * (random.between(0, 5) == 0 ? 10000000 : 1);
    dash.dash(x1, y1, x2, y2, on, off);
    ASSERT_TRUE(pixelsOf([&](NKDraw& d) { d.Dash(x1, y1, x2, y2, on, off); }) == pixels(dash))
        << on << " " << off;
    EXPECT_EQ(penX_, 2);
    EXPECT_EQ(penY_, 3);
  }
  constexpr int kMost = std::numeric_limits<int>::max(), kLeast = std::numeric_limits<int>::min();
  EXPECT_EQ(pixelsOf([](NKDraw& d) { d.LineVert(kLeast, kMost - 1, kMost); }),
            (std::vector<Call>{{"pixel", {1.0 * kLeast, kMost - 1.0, 1}},
                               {"pixel", {1.0 * kLeast, 1.0 * kMost, 1}}}));
}

}  // namespace
