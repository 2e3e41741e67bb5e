// SPDX-License-Identifier: BSD-2-Clause
//
// Outline text through the host's own fonts: what can be said of it whatever face is installed.
#include <tests/support/call_log.h>
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <nkdraw/platform/graphics.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace {

using namespace nkdraw::test;

/// The extent of a text in the face that outline text uses.
tagSIZE extentOf(const std::string& text, int em) {
  nkDeviceContext* const context = CreateICA("DISPLAY");
  nkGraphicsObject* const font =
      CreateFontA(-em, 0, 0, 0, 100, 0, 0, 0, 255, 7, 0, 4, 0, "Times New Roman");
  SelectObject(context, font);
  tagSIZE size = {};
  GetTextExtentPoint32A(context, text.data(), static_cast<int>(text.size()), &size);
  DeleteDC(context);
  DeleteObject(font);
  return size;
}

class OutlineText : public testing::Test {
 protected:
  OutlineText() {
    CleanFontData::chooseKind("ttf");
    nkdraw::fontData.fontPointSize = kEm;
  }

  /// Draws in white at (50, 60).
  const std::vector<Call>& draw(const std::string& text, std::uint32_t format = 0) {
    log_.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    log_.calls.clear();
    rect_ = {50, 60, 5, 6};
    EXPECT_EQ(log_.DrawText(text.c_str(), static_cast<int>(text.size()), &rect_, format), 0);
    return log_.calls;
  }

  static constexpr int kEm = 48;
  CleanFontData clean_;
  CallLog log_;
  tagRECT rect_ = {};
};

TEST_F(OutlineText, LiesInsideItsExtent) {
  const tagSIZE extent = extentOf("HOg", kEm);
  ASSERT_GT(extent.cx, kEm);
  draw("HOg");
  ASSERT_GT(log_.count("line"), 30);
  ASSERT_GT(log_.count("pixel"), 300);
  for (const Call& call : log_.calls) {
    if (call.name != "pixel" && call.name != "line")
      continue;
    for (std::size_t i = 0; i < call.values.size() / 2 * 2; i += 2) {
      EXPECT_GE(call.values[i], 50.0);
      EXPECT_LE(call.values[i], 50.0 + extent.cx);
      EXPECT_GE(call.values[i + 1], 60.0);
      EXPECT_LE(call.values[i + 1], 60.0 + extent.cy);
    }
  }
}

TEST_F(OutlineText, ComesFlattenedAndDrawsEveryFigureOfEveryGlyph) {
  // Each figure ends with the line back to its start; O has two figures.
  const auto figures = [this](const std::string& text) {
    draw(text);
    const std::vector<Call> lines = log_.only("line");
    long ends = 0;
    for (std::size_t i = 1; i < lines.size(); ++i)
      ends += lines[i].values[0] != lines[i - 1].values[2] ||
                      lines[i].values[1] != lines[i - 1].values[3]
                  ? 1
                  : 0;
    EXPECT_EQ(log_.count("curve"), 0);
    return lines.empty() ? 0 : ends + 1;
  };
  EXPECT_EQ(figures("O"), 2);
  EXPECT_EQ(figures("OOOOOOOO"), 16);
  EXPECT_EQ(figures(" "), 0);
}

TEST_F(OutlineText, FillsBetweenItsOutlinesAndLeavesTheHoles) {
  const tagSIZE extent = extentOf("O", kEm);
  draw("O");
  std::map<std::pair<int, int>, int> fill;
  for (const Call& call : log_.only("pixel"))
    ++fill[{static_cast<int>(call.values[0]) - 50, static_cast<int>(call.values[1]) - 60}];
  int top = extent.cy, bottom = 0, left = extent.cx, right = 0;
  for (const auto& [at, times] : fill) {
    EXPECT_EQ(times, 1);
    left = std::min(left, at.first), right = std::max(right, at.first);
    top = std::min(top, at.second), bottom = std::max(bottom, at.second);
  }
  EXPECT_FALSE(fill.contains({(left + right) / 2, (top + bottom) / 2}));
  EXPECT_TRUE(fill.contains({left + 2, (top + bottom) / 2}));
  EXPECT_GT(bottom - top, kEm / 2);
}

TEST_F(OutlineText, OfAForegroundWithoutAFullChannelHasNoFill) {
  log_.SetColorRGBA(0.9, 0.9, 0.9, 1.0, true);
  tagRECT rect = {0, 0, 0, 0};
  log_.DrawText("O", 1, &rect, 0);
  EXPECT_EQ(log_.count("pixel"), 0);
  EXPECT_GT(log_.count("line"), 10);
}

TEST_F(OutlineText, LeavesTheForegroundNearlyBlack) {
  draw("O");
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_LE(PixelFields::foreground(log_)[i], 1);
}

TEST_F(OutlineText, GivesTheRectangleItsHeightForAWidth) {
  draw("HOg", DT_CALCRECT);
  EXPECT_EQ(rect_.right, 50 + extentOf("HOg", kEm).cy);
  EXPECT_EQ(rect_.bottom, 6);
}

TEST_F(OutlineText, GrowsWithTheCount) {
  long before = 0;
  for (int count = 1; count <= 5; ++count) {
    log_.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    log_.calls.clear();
    tagRECT rect = {0, 0, 0, 0};
    log_.DrawText("HHHHH", count, &rect, 0);
    EXPECT_EQ(log_.count("pixel") % count, 0);
    EXPECT_GT(log_.count("pixel"), before);
    before = log_.count("pixel");
  }
}

TEST_F(OutlineText, OfNothingDrawsNothing) {
  draw("");
  EXPECT_EQ(log_.count("line") + log_.count("pixel"), 0);
}

TEST_F(OutlineText, OfASizeThatNoFontHasDrawsNothing) {
  nkdraw::fontData.fontPointSize = 1 << 30;
  draw("O");
  EXPECT_EQ(log_.calls.size(), 0U);
}

TEST_F(OutlineText, ReachesTheCanvasOfEveryLayout) {
  nkdraw::fontData.fontPointSize = 20;
  for (const pixelType type : kLayouts) {
    Frame frame(1 << 16);
    const Surface surface = makeSurface(type, 96, 48, 0, frame.canvas());
    tagRECT rect = {4, 4, 0, 0};
    EXPECT_EQ(surface->DrawText("Hi", 2, &rect, 0), 0);
    EXPECT_GT(frame.changed().size(), 50U) << layoutName(type);
    EXPECT_TRUE(frame.guardsIntact()) << layoutName(type);
  }
}

}  // namespace
