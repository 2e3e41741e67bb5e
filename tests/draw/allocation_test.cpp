// SPDX-License-Identifier: BSD-2-Clause
//
// Drawing never allocates: with any primitive, on any layout, on the library's own class or a
// derived one, even the first time.
#include <tests/support/allocations.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

namespace {

using namespace nkdraw::test;

const tagPOINT kPoints[] = {{1, 1}, {60, 14}, {9, 9}, {70, 2}, {3, 18},
                            {5, 5}, {77, 1},  {2, 2}, {6, 6},  {8, 8}};

void writeBothWays(NKDraw& surface, const char* text, int left, int height) {
  for (const bool transparent : {false, true}) {
    surface.SetTextTransparent(transparent);
    tagRECT rect = {left, 0, 80, height};
    surface.DrawText(text, 3, &rect, DT_CALCRECT);
  }
}

void labelInEachForm(NKDraw& surface, int scale) {
  surface.LabelFont(0U, scale);
  for (int form = 0; form < 4; ++form)
    surface.Label(1, 0, "ab", form % 2 != 0, form >= 2);
}

struct Primitive {
  const char* name;
  void (*draw)(NKDraw& surface);
};

const Primitive kPrimitives[] = {
    {"Point", [](NKDraw& d) { d.Point(4, 5, false); }},
    {"SetPixel", [](NKDraw& d) { d.SetPixel(4, 5, 0.1, 0.2, 0.3, 0.4, true); }},
    {"Line", [](NKDraw& d) { d.Line(1, 2, 70, 4); }},
    {"steep Line", [](NKDraw& d) { d.Line(1, 2, 14, 29); }},
    {"LineTo", [](NKDraw& d) { d.LineTo(70, 1); }},
    {"LineVert", [](NKDraw& d) { d.LineVert(3, 1, 29); }},
    {"LineHoriz", [](NKDraw& d) { d.LineHoriz(3, 1, 79); }},
    {"Dash", [](NKDraw& d) { d.Dash(0, 0, 70, 7, 3, 2); }},
    {"LineWu", [](NKDraw& d) { d.LineWu(0, 0, 70, 7); }},
    {"LineWuTo", [](NKDraw& d) { d.LineWuTo(20, 17); }},
    {"antialiased Line",
     [](NKDraw& d) {
       PixelFields::antialiased(d) = true;
       d.Line(1, 2, 70, 9);
       d.Circle(30, 15, 9);
       PixelFields::antialiased(d) = false;
     }},
    {"LineA",
     [](NKDraw& d) {
       const tagRECT rect = {0, 0, 80, 30};
       d.LineA(nullptr, &rect, 1, 2, 40, 9);
     }},
    {"PolylineTo", [](NKDraw& d) { d.PolylineTo(kPoints, 9); }},
    {"Rectangle", [](NKDraw& d) { d.Rectangle(1, 2, 78, 19); }},
    {"RoundRect", [](NKDraw& d) { d.RoundRect(1, 2, 71, 20, 17, 15); }},
    {"Arc", [](NKDraw& d) { d.Arc(1, 1, 71, 21, 70, 3, 2, 9); }},
    {"ArcTo", [](NKDraw& d) { d.ArcTo(1, 1, 71, 21, 70, 3, 2, 9); }},
    {"Pie", [](NKDraw& d) { d.Pie(1, 1, 71, 21, 70, 3, 2, 9); }},
    {"AngleArc", [](NKDraw& d) { d.AngleArc(30, 15, 9, 20.0F, -30.0F); }},
    {"AngleArcTo", [](NKDraw& d) { d.AngleArcTo(30, 15, 27, 9, -50.0F, 40.0F); }},
    {"Circle", [](NKDraw& d) { d.Circle(30, 15, 9); }},
    {"Ellipse", [](NKDraw& d) { d.Ellipse(30, 15, 28, 9); }},
    {"Bezier", [](NKDraw& d) { d.Bezier(1, 1, 9, 28, 44, 0, 70, 20); }},
    {"PolyBezierTo", [](NKDraw& d) { d.PolyBezierTo(kPoints, 7); }},
    {"FillRect",
     [](NKDraw& d) {
       for (const tagRECT& rect : {tagRECT{2, 3, 68, 26}, tagRECT{0, 0, 80, 30}})
         d.FillRect(&rect);
     }},
    {"EraseCanvas", [](NKDraw& d) { d.EraseCanvas(true); }},
    {"DrawText", [](NKDraw& d) { writeBothWays(d, "Ab", 1, 10); }},
    {"large DrawText", [](NKDraw& d) { writeBothWays(d, "Ab", 3, 25); }},
    {"long DrawText",
     [](NKDraw& d) {
       writeBothWays(d, "more text than goes into one box at once, or into two", 0, 9);
     }},
    {"Label", [](NKDraw& d) { labelInEachForm(d, 1); }},
    {"large Label", [](NKDraw& d) { labelInEachForm(d, 2); }},
};

class DrawAllocation : public testing::TestWithParam<pixelType> {};

INSTANTIATE_TEST_SUITE_P(AllLayouts, DrawAllocation, testing::ValuesIn(kLayouts),
                         [](const auto& each) { return layoutName(each.param); });

TEST_P(DrawAllocation, IsMadeByNoPrimitive) {
  Frame frame(std::size_t{40} * 1000, 1, 1 << 12);
  const Surface surfaces[] = {makeSurface(GetParam(), 80, 30, 1000, frame.canvas()),
                              makeDerived<Unknown>(GetParam(), 80, 30, 1000, frame.canvas())};
  for (const Surface& surface : surfaces) {
    for (int state = 0; state < 4; ++state) {
      surface->SetTransparency(state == 0 ? 0.0 : 0.5, true);
      surface->SetTransparency(state % 2 != 0);
      surface->SetAlphaAdditive(state >= 2);
      for (const Primitive& primitive : kPrimitives)
        EXPECT_EQ(allocationsOf([&] { primitive.draw(*surface); }), 0) << primitive.name;
    }
  }
  EXPECT_FALSE(frame.changed().empty());
}

}  // namespace
