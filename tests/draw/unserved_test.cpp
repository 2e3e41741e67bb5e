// SPDX-License-Identifier: BSD-2-Clause
//
// Operations that exist, draw nothing, and return success.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <utility>
#include <vector>

namespace {

using namespace nkdraw::test;

using Operation = std::pair<const char*, std::function<std::uint32_t(NKDraw&)>>;

/// Runs each on each layout, and expects its status and an untouched frame.
void expectNothingDrawn(const std::vector<Operation>& operations, std::uint32_t status) {
  for (const pixelType type : kLayouts) {
    Frame frame(8192);
    const Surface surface = makeSurface(type, 48, 32, 0, frame.canvas());
    surface->MoveTo(3, 4);
    for (const auto& [name, operation] : operations) {
      SCOPED_TRACE(testing::Message() << name << " on " << layoutName(type));
      EXPECT_EQ(operation(*surface), status);
      EXPECT_TRUE(frame.untouched());
      EXPECT_EQ(DrawFields::penXOf(*surface), 3);
      EXPECT_EQ(DrawFields::penYOf(*surface), 4);
    }
  }
}

TEST(EmptyOperations, ReturnZeroWhateverTheyGet) {
  expectNothingDrawn(
      {
          {"SetBrush", [](NKDraw& d) { return d.SetBrush(nullptr, -1, INT_MAX); }},
          {"Fill", [](NKDraw& d) { return d.Fill(1, 1, 0.5); }},
          {"Fill far out", [](NKDraw& d) { return d.Fill(INT_MIN, INT_MAX, -1e300); }},
          {"GradientRect", [](NKDraw& d) { return d.GradientRect(0, 0, 20, 20, 1); }},
          {"SymGradientRect", [](NKDraw& d) { return d.SymGradientRect(0, 0, 20, 20, 1); }},
          {"CornerGradientRect", [](NKDraw& d) { return d.CornerGradientRect(0, 0, 20, 20, 1); }},
          {"CenterGradientRect", [](NKDraw& d) { return d.CenterGradientRect(0, 0, 20, 20); }},
          {"RadialGradientFill", [](NKDraw& d) { return d.RadialGradientFill(0, 0, 9, 9, 1, 2); }},
          {"PatternFill", [](NKDraw& d) { return d.PatternFill(0, 0, 9, 9, 8, 8, nullptr); }},
          {"RoundRectButton", [](NKDraw& d) { return d.RoundRectButton(0, 0, 20, 20, 3, 3); }},
          {"CopyRect", [](NKDraw& d) { return d.CopyRect(nullptr, nullptr, nullptr); }},
          {"Filter",
           [](NKDraw& d) { return d.Filter(static_cast<NKDraw::nkFilterType>(77), 0, 0, 9, 9); }},
          {"Scale",
           [](NKDraw& d) {
             return d.Scale(static_cast<NKDraw::nkScaleType>(77), nullptr, nullptr, nullptr,
                            nullptr);
           }},
          {"EMFDraw", [](NKDraw& d) { return d.EMFDraw(0, 0, 20, 20, true); }},
          {"Arrow", [](NKDraw& d) { return d.Arrow(0, 0, 20, 20, true); }},
          {"LabelFont by name", [](NKDraw& d) { return d.LabelFont("font", 3U); }},
          {"LabelFont by no name",
           [](NKDraw& d) { return d.LabelFont(static_cast<const char*>(nullptr), 0U); }},
          {"SetFont", [](NKDraw& d) { return d.SetFont("font"); }},
          {"DrawTextExA",
           [](NKDraw& d) {
             tagRECT rect = {1, 1, 20, 20};
             return static_cast<std::uint32_t>(d.DrawTextExA("text", 4, &rect, 0, nullptr));
           }},
          {"DrawTextExA of nothing",
           [](NKDraw& d) {
             return static_cast<std::uint32_t>(d.DrawTextExA(nullptr, -1, nullptr, 0, nullptr));
           }},
          {"TextOutA",
           [](NKDraw& d) { return static_cast<std::uint32_t>(d.TextOutA(1, 1, "text", 4)); }},
      },
      0);
}

}  // namespace
