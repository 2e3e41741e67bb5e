// SPDX-License-Identifier: BSD-2-Clause
//
// Text in a rectangle: magnification, alignment, the cells and what shows around them.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/reference_draw.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

bool operator==(const tagRECT& a, const tagRECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

/// A surface that refuses every pixel, and records it.
using Log = Recording<CDrawRGB24>;

std::vector<Plot> plotsOf(const ReferenceDraw& reference) {
  std::vector<Plot> plots;
  for (const Step& step : reference.steps)
    plots.push_back({step.x, step.y, step.foreground});
  return plots;
}

/// Draws, and compares plots and rectangle with the plain reference.
void expectText(const std::string& text, int count, tagRECT rect, std::uint32_t format,
                bool transparent) {
  SCOPED_TRACE(testing::Message() << "'" << text << "' " << count << " in " << rect.left << ","
                                  << rect.top << " " << rect.right << "," << rect.bottom
                                  << " format " << std::hex << format);
  Log log(ptRGB24);
  log.SetTextTransparent(transparent);
  tagRECT want = rect;
  ReferenceDraw reference(ptRGB24);
  reference.drawText(text.c_str(), count, want, format, transparent);
  tagRECT again = rect;
  ASSERT_EQ(log.DrawText(text.c_str(), count, &rect, format), 0);
  ASSERT_EQ(log.plots, plotsOf(reference));
  ASSERT_TRUE(rect == want);
  log.plots.clear();
  ASSERT_EQ(log.NKDrawText(text.c_str(), count, &again, format), 0);
  ASSERT_EQ(log.plots, plotsOf(reference));
  ASSERT_TRUE(again == want);
}

TEST(DrawText, IsItsStepsForEveryFormatAndMagnification) {
  Random random(107);
  for (const std::uint32_t base : {0x0U, 0x1U, 0x2U, 0x3U, 0x8U, 0x9U, 0xAU, 0xBU}) {
    for (const std::uint32_t extra : {0x0U, 0x400U, 0x100000U, 0xFFEFFBF4U}) {
      for (int lines = 0; lines <= 215; lines += 5) {
        const int left = random.between(-50, 50), top = random.between(-2, 50);
        const tagRECT rect = {left, top, left + random.between(-100, 900), top + lines};
        std::string text;
        for (int i = random.between(0, 3); i > 0; --i)
          text += static_cast<char>(random.between(1, 255));
        expectText(text, random.between(0, 5), rect, base | extra, random.flag());
        if (HasFatalFailure())
          return;
      }
    }
  }
}

/// The side of a pixel when text is drawn into this rectangle.
int magnificationIn(tagRECT rect) {
  Log log(ptRGB24);
  log.SetTextTransparent(false);
  log.DrawText(" ", 1, &rect, DT_BOTTOM);
  int left = INT_MAX, right = INT_MIN;
  for (const Plot& plot : log.plots) {
    left = std::min(left, plot.x);
    right = std::max(right, plot.x);
  }
  return (right - left + 1) / 8;
}

TEST(DrawText, MagnifiesByATenthOfTheHeightFromOneToTwenty) {
  for (int lines = 0; lines <= 400; ++lines) {
    const int want = std::clamp(lines / 10, 1, 20);
    ASSERT_EQ(magnificationIn({0, 5, 0, 5 + lines}), want) << lines;
    ASSERT_EQ(magnificationIn({0, 5 + lines, 0, 5}), want) << lines;  // upside down
  }
  EXPECT_EQ(magnificationIn({0, 0, 0, 30}), 3);
  EXPECT_EQ(magnificationIn({0, 100, 0, 0}), 1);  // a bottom of 0
  EXPECT_EQ(magnificationIn({0, -1, 0, 100}), 1);
  EXPECT_EQ(magnificationIn({0, -100, 0, 0}), 1);
  EXPECT_EQ(magnificationIn({0, 50, 0, -50}), 10);
}

TEST(DrawText, OfNothingDrawsNothingAndStillMeasures) {
  Log log(ptRGB24);
  tagRECT rect = {10, 20, 99, 45};
  EXPECT_EQ(log.DrawText("", 5, &rect, DT_CALCRECT), 0);
  EXPECT_TRUE(log.plots.empty());
  EXPECT_TRUE(rect == (tagRECT{10, 20, 10 + 5 * 2 * 8, 20 + 20}));
}

TEST(DrawText, ResetsTheBottomUnlessTheFormatKeepsIt) {
  struct Row {
    std::uint32_t format;
    tagRECT rect, after;
  };
  const Row kRows[] = {
      {0, {0, 20, 100, 58}, {0, 20, 100, 50}},
      {DT_BOTTOM, {0, 20, 100, 58}, {0, 20, 100, 58}},
      {0, {0, 50, 100, 20}, {0, 50, 100, 80}},  // upside down: the absolute height counts
      {DT_BOTTOM, {0, 50, 100, 20}, {0, 50, 100, 20}},
      {DT_RIGHT, {0, 20, 100, 58}, {100 - 3 * 24, 20, 100, 58}},
      {DT_RIGHT | DT_CALCRECT, {0, 20, 100, 58}, {28, 20, 100, 50}},
      {0, {0, 0, 0, 0}, {0, 0, 0, 10}},
  };
  for (const Row& row : kRows) {
    Log log(ptRGB24);
    tagRECT rect = row.rect;
    log.DrawText("abc", 3, &rect, row.format);
    EXPECT_TRUE(rect == row.after)
        << rect.left << "," << rect.top << " " << rect.right << "," << rect.bottom;
  }
}

TEST(DrawText, CentresByCharactersOfTenPixelsAndLeavesTheFoot) {
  Log log(ptRGB24);
  tagRECT rect = {0, 10, 200, 35};
  log.DrawText("abc", 3, &rect, DT_CENTER);
  // Two-fold: half a string is 3 * 2 * 10 / 2; the top moves by half of 25 - 20.
  EXPECT_TRUE(rect == (tagRECT{100 - 30, 12, 200, 35}));
  for (const Plot& plot : log.plots)
    EXPECT_LE(plot.y, 35);
  EXPECT_EQ(std::count_if(log.plots.begin(), log.plots.end(),
                          [](const Plot& plot) { return plot.y == 35; }),
            0);  // none of these glyphs has ink in its lowest row
  EXPECT_NE(std::count_if(log.plots.begin(), log.plots.end(),
                          [](const Plot& plot) { return plot.y == 34; }),
            0);
  // Too narrow: the left edge stays.
  rect = {0, 10, 60, 35};
  log.DrawText("abc", 3, &rect, DT_CENTER);
  EXPECT_EQ(rect.left, 0);
  rect = {0, 10, 62, 35};
  log.DrawText("abc", 3, &rect, DT_CENTER);
  EXPECT_EQ(rect.left, 1);
  // It wins over right alignment and over keeping the bottom.
  rect = {0, 10, 200, 35};
  log.DrawText("abc", 3, &rect, DT_CENTER | DT_RIGHT | DT_BOTTOM);
  EXPECT_EQ(rect.left, 70);
}

TEST(DrawText, AnUpsideDownRectangleIsATallOneWhenCentring) {
  Log log(ptRGB24);
  tagRECT rect = {0, 50, 200, 30};
  log.DrawText("a", 1, &rect, DT_CENTER);
  // Bottom minus top is 0xFFFFFFEC without a sign; 20 taken off and halved.
  const std::uint32_t moved = (0xFFFFFFECU - 20U) / 2;
  EXPECT_EQ(rect.top, static_cast<int>(50U + moved));
  EXPECT_EQ(rect.bottom, 30);
}

TEST(DrawText, DrawsTheWholeTextWhateverTheCount) {
  Log whole(ptRGB24), none(ptRGB24);
  tagRECT one = {0, 0, 100, 10}, two = one;
  whole.DrawText("abc", 3, &one, DT_CALCRECT);
  none.DrawText("abc", 0, &two, DT_CALCRECT);
  EXPECT_EQ(whole.plots, none.plots);
  EXPECT_EQ(one.right, 24);
  EXPECT_EQ(two.right, 0);
}

TEST(DrawText, AlignsTheCountToTheRightSoThatAShortOneRunsOver) {
  Log log(ptRGB24);
  log.SetTextTransparent(false);
  tagRECT rect = {0, 0, 100, 10};
  log.DrawText("abc", 1, &rect, DT_RIGHT);
  EXPECT_EQ(rect.left, 92);
  int right = 0;
  for (const Plot& plot : log.plots)
    right = std::max(right, plot.x);
  EXPECT_EQ(right, 92 + 23);
}

/// The picture of a text drawn at (0, 0), from the line above its cell down to its foot.
std::vector<std::string> picture(const char* text, int m, bool transparent) {
  Log log(ptRGB24);
  log.SetTextTransparent(transparent);
  tagRECT rect = {0, 0, 0, 10 * m};
  log.DrawText(text, 0, &rect, 0);
  const std::size_t width = std::strlen(text) * 8 * static_cast<std::size_t>(m);
  std::vector<std::string> rows(static_cast<std::size_t>(10 * m + 1), std::string(width, '.'));
  for (const Plot& plot : log.plots) {
    char& pixel = rows.at(static_cast<std::size_t>(plot.y)).at(static_cast<std::size_t>(plot.x));
    EXPECT_EQ(pixel, '.') << "plotted twice";
    pixel = plot.foreground ? '#' : '-';
  }
  return rows;
}

TEST(DrawText, AnAUpright) {
  const std::vector<std::string> want = {
      "........", "...#....", "..###...", ".##.##..", "##...##.", "##...##.",
      "#######.", "##...##.", "##...##.", "##...##.", "........",
  };
  EXPECT_EQ(picture("A", 1, true), want);
}

TEST(DrawText, OpaqueCoversTheCellAndTheLineAbove) {
  const std::vector<std::string> want = {
      "--------", "---#----", "--###---", "-##-##--", "##---##-", "##---##-",
      "#######-", "##---##-", "##---##-", "##---##-", "--------",
  };
  EXPECT_EQ(picture("A", 1, false), want);
}

TEST(DrawText, TheLowestRowOfACellFillsOneLineAndTheOthersFillM) {
  // The underscore: its ink is the lowest row.
  const std::vector<std::string> rows = picture("_", 3, true);
  for (std::size_t line = 0; line <= 30; ++line)
    EXPECT_EQ(rows[line], std::string(24, line == 30 ? '#' : '.')) << line;
}

TEST(DrawText, AStripeOfTheNextCellShowsAboveTheCircumflex) {
  for (int m = 1; m <= 20; ++m) {
    SCOPED_TRACE(m);
    const std::vector<std::string> rows = picture("^", m, true);
    const std::string blank(static_cast<std::size_t>(8 * m), '.');
    const std::string full(static_cast<std::size_t>(8 * m), '#');
    EXPECT_EQ(rows[0], blank);  // the topmost line is always background
    for (int line = 1; line < m; ++line)
      EXPECT_EQ(rows[static_cast<std::size_t>(line)], full) << line;
    EXPECT_NE(rows[static_cast<std::size_t>(m)], full);
  }
}

TEST(DrawText, CodesFrom128OnAreBlankCells) {
  for (int code = 128; code < 256; ++code) {
    for (const int m : {1, 2}) {
      const char text[] = {static_cast<char>(code), 0};
      Log log(ptRGB24);
      tagRECT rect = {0, 0, 0, 10 * m};
      log.DrawText(text, 1, &rect, 0);
      // Only the last one, next to cell 0, has a neighbour, and that is blank too.
      ASSERT_TRUE(log.plots.empty()) << code;
      log.SetTextTransparent(false);
      log.DrawText(text, 1, &rect, 0);
      ASSERT_EQ(log.plots.size(), static_cast<std::size_t>(8 * m * (10 * m + 1)));
    }
  }
}

TEST(DrawText, ClearsAntialiasingAndTheScratchWordForGood) {
  Log log(ptRGB24);
  PixelFields::antialiased(log) = true;
  nkdraw::fontData.fontScratch = 77;
  tagRECT rect = {0, 0, 10, 10};
  log.DrawText("", 0, &rect, 0);
  EXPECT_FALSE(PixelFields::antialiased(log));
  EXPECT_EQ(nkdraw::fontData.fontScratch, 0U);
}

/// Sets the process-wide font kind, and takes it back.
class FontKind {
 public:
  explicit FontKind(std::array<char, 4> kind) {
    std::copy(kind.begin(), kind.end(), nkdraw::fontData.fontKind);
  }
  FontKind(const FontKind&) = delete;
  FontKind& operator=(const FontKind&) = delete;
  ~FontKind() { std::fill_n(nkdraw::fontData.fontKind, 4, '\0'); }
};

TEST(DrawText, AllFourBytesOfTheFontKindAreCompared) {
  for (const std::array<char, 4> kind : {std::array{'t', 't', 'f', ' '},
                                         {'b', 'm', 'p', 'x'},
                                         {'T', 'T', 'F', '\0'},
                                         {'b', 'm', '\0', '\0'}}) {
    const FontKind chosen(kind);
    Log log(ptRGB24);
    tagRECT rect = {0, 0, 0, 10};
    EXPECT_EQ(log.DrawText("A", 1, &rect, 0), 0);
    EXPECT_FALSE(log.plots.empty());
  }
}

TEST(DrawText, LeavesThePenWhereItIs) {
  Log log(ptRGB24);
  log.MoveTo(7, 8);
  tagRECT rect = {0, 0, 100, 20};
  log.DrawText("text", 4, &rect, 0);
  EXPECT_EQ(DrawFields::penXOf(log), 7);
  EXPECT_EQ(DrawFields::penYOf(log), 8);
}

}  // namespace
