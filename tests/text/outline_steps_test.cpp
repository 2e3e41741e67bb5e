// SPDX-License-Identifier: BSD-2-Clause
//
// Outline text, step by step: this program has its own platform, which records its calls and
// returns a path with every kind of point.
#include <tests/support/call_log.h>
#include <tests/support/fields.h>

#include <nkdraw/platform/graphics.h>
#include <nkdraw/platform/memory.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

struct nkDeviceContext {
  explicit nkDeviceContext(const char* itsName) : name(itsName) {}
  const char* name;
};
struct nkGraphicsObject {
  explicit nkGraphicsObject(const char* itsName) : name(itsName) {}
  const char* name;
};
struct nkRegion {};

namespace {

using namespace nkdraw::test;

struct PathPoint {
  int x, y;
  std::uint8_t type;
};

/// What the platform does, and what it was asked.
struct Platform {
  std::vector<std::string> asked;
  std::vector<PathPoint> path;
  std::set<std::pair<int, int>> ink;
  tagSIZE extent = {3, 2};
  bool hasFont = true;
  bool losesPath = false;           // gives out the number of its points and then none
  std::optional<int> blocksToGive;  // before memory runs out
  int blocks = 0;
  int contexts = 0, objects = 0, regions = 0;
};
Platform platform;
nkGraphicsObject previousFont("old font");

template <class... Values>
void note(Values... values) {
  std::ostringstream text;
  ((text << values << ' '), ...);
  platform.asked.push_back(text.str().substr(0, text.str().size() - 1));
}

const char* nameOf(const nkGraphicsObject* object) {
  return object == nullptr ? "nothing" : object->name;
}

nkDeviceContext* newContext(const char* name) {
  ++platform.contexts;
  return new nkDeviceContext(name);
}

nkGraphicsObject* newObject(const char* name) {
  ++platform.objects;
  return new nkGraphicsObject(name);
}

}  // namespace

nkDeviceContext* CreateICA(const char* driver) {
  note("CreateICA", driver);
  return newContext("ic");
}
nkDeviceContext* CreateCompatibleDC(nkDeviceContext* c) {
  note("CreateCompatibleDC", c->name);
  return newContext("dc");
}
int DeleteDC(nkDeviceContext* c) {
  --platform.contexts;
  delete c;
  return 1;
}
int GetDeviceCaps(nkDeviceContext* c, int index) {
  note("GetDeviceCaps", c->name, index);
  return 0;
}
nkGraphicsObject* CreateFontA(int height, int width, int escapement, int orientation, int weight,
                              std::uint32_t italic, std::uint32_t underline,
                              std::uint32_t strikeOut, std::uint32_t characterSet,
                              std::uint32_t outputPrecision, std::uint32_t clipPrecision,
                              std::uint32_t quality, std::uint32_t pitch, const char* face) {
  note("CreateFontA", height, width, escapement, orientation, weight, italic, underline, strikeOut,
       characterSet, outputPrecision, clipPrecision, quality, pitch, face);
  return platform.hasFont ? newObject("font") : nullptr;
}
nkGraphicsObject* CreatePen(int style, int width, std::uint32_t colour) {
  note("CreatePen", style, width, colour);
  return newObject("pen");
}
nkGraphicsObject* CreateSolidBrush(std::uint32_t colour) {
  note("CreateSolidBrush", colour);
  return newObject("brush");
}
nkGraphicsObject* CreateCompatibleBitmap(nkDeviceContext* c, int width, int height) {
  note("CreateCompatibleBitmap", c->name, width, height);
  return newObject("bitmap");
}
nkGraphicsObject* SelectObject(nkDeviceContext* c, nkGraphicsObject* object) {
  note("SelectObject", c->name, nameOf(object));
  return &previousFont;
}
int DeleteObject(nkGraphicsObject* object) {
  --platform.objects;
  delete object;
  return 1;
}
std::uint32_t SetTextAlign(nkDeviceContext* c, std::uint32_t alignment) {
  note("SetTextAlign", c->name, alignment);
  return 0;
}
std::uint32_t SetTextColor(nkDeviceContext* c, std::uint32_t colour) {
  note("SetTextColor", c->name, colour);
  return 0;
}
std::uint32_t SetBkColor(nkDeviceContext* c, std::uint32_t colour) {
  note("SetBkColor", c->name, colour);
  return 0;
}
int SetBkMode(nkDeviceContext* c, int mode) {
  note("SetBkMode", c->name, mode);
  return 0;
}
int MoveToEx(nkDeviceContext* c, int x, int y, tagPOINT*) {
  note("MoveToEx", c->name, x, y);
  return 1;
}
int lstrlenA(const char* text) {
  return static_cast<int>(std::strlen(text));
}
int GetTextExtentPoint32A(nkDeviceContext* c, const char* text, int count, tagSIZE* size) {
  note("GetTextExtentPoint32A", c->name, text, count);
  *size = platform.extent;
  return 1;
}
int BeginPath(nkDeviceContext* c) {
  note("BeginPath", c->name);
  return 1;
}
int TextOutA(nkDeviceContext* c, int x, int y, const char* text, int count) {
  note("TextOutA", c->name, x, y, text, count);
  return 1;
}
int CloseFigure(nkDeviceContext* c) {
  note("CloseFigure", c->name);
  return 1;
}
int EndPath(nkDeviceContext* c) {
  note("EndPath", c->name);
  return 1;
}
int GetPath(nkDeviceContext* c, tagPOINT* points, std::uint8_t* types, int size) {
  note("GetPath", c->name, size);
  if (platform.losesPath && size != 0)
    return -1;
  const auto count = static_cast<int>(platform.path.size());
  for (int i = 0; i < std::min(count, size); ++i) {
    const PathPoint& point = platform.path[static_cast<std::size_t>(i)];
    points[i] = {point.x, point.y};
    types[i] = point.type;
  }
  return count;
}
int FlattenPath(nkDeviceContext* c) {
  note("FlattenPath", c->name);
  return 1;
}
int SelectClipPath(nkDeviceContext* c, int mode) {
  note("SelectClipPath", c->name, mode);
  return 1;
}
int FillPath(nkDeviceContext* c) {
  note("FillPath", c->name);
  return 1;
}
int AbortPath(nkDeviceContext* c) {
  note("AbortPath", c->name);
  return 1;
}
nkRegion* PathToRegion(nkDeviceContext* c) {
  note("PathToRegion", c->name);
  ++platform.regions;
  return new nkRegion;
}
void nkDeleteRegion(nkRegion* region) {
  --platform.regions;
  delete region;
}
nkRegion* nkCreateRectRegion(int, int, int, int) {
  return nullptr;
}
int PtInRegion(const nkRegion*, int, int) {
  return 0;
}
std::uint32_t GetPixel(nkDeviceContext* c, int x, int y) {
  note("GetPixel", c->name, x, y);
  return platform.ink.contains({x, y}) ? 0x010101 : 0;
}
/// Blocks that are full of the type of a line's end.
void* NKAlloc(std::uint32_t bytes) {
  note("NKAlloc", bytes);
  if (platform.blocksToGive && (*platform.blocksToGive)-- <= 0)
    return nullptr;
  ++platform.blocks;
  return std::memset(std::malloc(bytes + 1), PT_LINETO, bytes);
}
void NKFree(void* block) {
  platform.blocks -= block != nullptr ? 1 : 0;
  std::free(block);
}
std::uint32_t GetLastError() {
  note("GetLastError");
  return 0;
}

namespace {

class OutlineSteps : public testing::Test {
 protected:
  OutlineSteps() {
    platform = {};
    CleanFontData::chooseKind("ttf");
    nkdraw::fontData.fontPointSize = 40;
    log_.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    log_.calls.clear();
  }
  ~OutlineSteps() override {
    EXPECT_EQ(platform.contexts, 0);
    EXPECT_EQ(platform.objects, 0);
    EXPECT_EQ(platform.regions, 0);
    EXPECT_EQ(platform.blocks, 0);
  }

  tagRECT draw(const char* text = "text", int count = 4, std::uint32_t format = 0) {
    tagRECT rect = {100, 200, 5, 6};
    EXPECT_EQ(log_.DrawText(text, count, &rect, format), 0);
    return rect;
  }

  std::vector<Call> lines() const {
    std::vector<Call> found;
    std::ranges::copy_if(log_.calls, std::back_inserter(found), [](const Call& call) {
      return call.name == "line" || call.name == "curve";
    });
    return found;
  }

  CleanFontData clean_;
  CallLog log_;
};

TEST_F(OutlineSteps, AskThePlatformInTheirOrder) {
  platform.path = {{0, 0, 6}, {1, 1, 2}};
  platform.extent = {2, 1};
  draw();
  const std::vector<std::string> want = {
      "CreateICA DISPLAY",
      "GetDeviceCaps ic 24",
      "CreateFontA -40 0 0 0 100 0 0 0 255 7 0 4 0 Times New Roman",
      "SelectObject ic font",
      "SelectObject ic old font",
      "CreateCompatibleDC ic",
      "SetTextAlign dc 0",
      "SetTextColor dc 16777215",
      "SetBkColor dc 0",
      "SetBkMode dc 1",
      "SelectObject dc font",
      "GetTextExtentPoint32A dc text 4",
      "CreateCompatibleBitmap ic 2 1",
      "SelectObject dc bitmap",
      "CreatePen 0 1 65793",
      "CreateSolidBrush 65793",
      "CreatePen 0 1 0",
      "SelectObject dc pen",
      "SelectObject dc brush",
      "MoveToEx dc 0 0",
      "BeginPath dc",
      "TextOutA dc 0 0 text 4",
      "CloseFigure dc",
      "EndPath dc",
      "GetPath dc 0",
      "NKAlloc 2",
      "NKAlloc 16",
      "FlattenPath dc",
      "SelectClipPath dc 4",
      "FillPath dc",
      "AbortPath dc",
      "BeginPath dc",
      "TextOutA dc 0 0 text 4",
      "CloseFigure dc",
      "EndPath dc",
      "FlattenPath dc",
      "GetPath dc 2",
      "SelectClipPath dc 4",
      "PathToRegion dc",
      "GetLastError",
      "GetPixel dc 0 0",
      "GetPixel dc 1 0",
      "GetPixel dc 1 0",
      "GetPixel dc 2 0"};
  EXPECT_EQ(platform.asked, want);
}

TEST_F(OutlineSteps, MeasureAgainForTheRectangleAndGiveItTheHeightForAWidth) {
  platform.extent = {70, 33};
  const tagRECT rect = draw("text", 4, DT_CALCRECT);
  EXPECT_EQ(rect.left, 100);
  EXPECT_EQ(rect.top, 200);
  EXPECT_EQ(rect.right, 133);
  EXPECT_EQ(rect.bottom, 6);
  EXPECT_EQ(std::ranges::count(platform.asked, "GetTextExtentPoint32A dc text 4"), 2);
}

TEST_F(OutlineSteps, LeaveTheRectangleWithoutThatFormat) {
  const tagRECT rect = draw("text", 4, ~DT_CALCRECT);
  EXPECT_TRUE(rect.left == 100 && rect.top == 200 && rect.right == 5 && rect.bottom == 6);
}

TEST_F(OutlineSteps, EndWithoutAFont) {
  platform.hasFont = false;
  const tagRECT rect = draw("text", 4, DT_CALCRECT);
  EXPECT_EQ(rect.right, 5);
  EXPECT_EQ(platform.asked.size(), 3U);
  EXPECT_TRUE(log_.calls.empty());
}

TEST_F(OutlineSteps, WalkLinesCurvesAndFigures) {
  platform.extent = {0, 0};
  platform.path = {
      {10, 20, 6}, {30, 20, 2}, {30, 40, 3},             // closed by a line
      {1, 2, 6},   {3, 4, 4},   {5, 6, 4},   {7, 8, 4},  // a curve
      {9, 9, 5},   {8, 7, 4},   {6, 5, 5},               // closed at its first point
      {2, 2, 3},                                         // the last figure's start
  };
  draw();
  const std::vector<Call> want = {
      {"line", {110, 220, 130, 220}},
      {"line", {130, 220, 130, 240}},
      {"line", {130, 240, 110, 220}},
      {"curve", {101, 202, 103, 204, 105, 206, 107, 208}},
      {"curve", {107, 208, 109, 209, 108, 207, 106, 205}},
      {"line", {109, 209, 101, 202}},
      {"line", {106, 205, 102, 202}},
      {"line", {102, 202, 101, 202}},
  };
  EXPECT_EQ(lines(), want);
}

TEST_F(OutlineSteps, TakeAFigureWithoutAStartToBeginAtTheCorner) {
  platform.extent = {0, 0};
  platform.path = {{1, 1, 2}, {2, 3, 3}};
  draw();
  const std::vector<Call> want = {{"line", {101, 201, 102, 203}}, {"line", {102, 203, 100, 200}}};
  EXPECT_EQ(lines(), want);
}

TEST_F(OutlineSteps, PassOverPointsOfNoKindAndCurvesThatEndTooSoon) {
  platform.extent = {0, 0};
  platform.path = {{1, 1, 4}, {2, 2, 0}, {3, 3, 1}, {4, 4, 8}, {5, 5, 6}, {6, 6, 4}, {7, 7, 5}};
  draw();
  EXPECT_TRUE(lines().empty());
  platform.path.resize(5);
  platform.path.push_back({6, 6, 5});
  draw();
  EXPECT_TRUE(lines().empty());
}

TEST_F(OutlineSteps, DarkenTheForegroundBeforeTheLinesAndAtEachPixelOfTheFill) {
  platform.path = {{0, 0, 6}, {1, 0, 2}};
  platform.ink = {{1, 0}, {0, 1}, {2, 1}};
  draw();
  const double once = 1.0 / 255.0, twice = once / 255.0;
  const Call pen = {"colour", {once, once, once, 1.0, 1.0}};
  const Call fill = {"colour", {twice, twice, twice, 0.0, 1.0}};
  const Call after = {"colour", {0.0, 0.0, 0.0, 1.0, 1.0}};
  const std::vector<Call> want = {pen,
                                  {"line", {100, 200, 101, 200}},
                                  fill,
                                  {"pixel", {101, 200, 1}},
                                  after,
                                  fill,
                                  {"pixel", {100, 201, 1}},
                                  after,
                                  fill,
                                  {"pixel", {102, 201, 1}},
                                  after};
  EXPECT_EQ(log_.calls, want);
}

TEST_F(OutlineSteps, FillInTheForegroundFromBeforeTheLines) {
  /// Leaves another foreground with each line.
  class Repainting final : public CDrawRGBA32 {
   public:
    Repainting() : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32) {}
    std::uint32_t Line(int, int, int, int) override {
      return SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    }
    std::uint32_t PutPixel(int, int, bool) override {
      inkIsBlack = PixelFields::foreground(*this)[0] == 0;
      return 0;
    }
    bool inkIsBlack = false;
  } surface;
  platform.path = {{0, 0, 6}, {1, 0, 2}};
  platform.ink = {{0, 0}};
  surface.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  tagRECT rect = {};
  surface.DrawText("text", 4, &rect, 0);
  EXPECT_TRUE(surface.inkIsBlack);
}

TEST_F(OutlineSteps, DrawNoOutlineOfAPathThatIsLost) {
  platform.path = {{0, 0, 6}, {1, 0, 2}, {2, 2, 3}};
  platform.ink = {{0, 0}};
  platform.losesPath = true;
  draw();
  EXPECT_TRUE(lines().empty());
  EXPECT_EQ(log_.count("pixel"), 1);
}

TEST_F(OutlineSteps, DrawNoOutlineWithoutMemoryForItsPoints) {
  platform.path = {{0, 0, 6}, {1, 0, 2}, {2, 2, 3}};
  for (const int blocks : {0, 1}) {
    platform.blocksToGive = blocks;
    draw();
    EXPECT_TRUE(lines().empty()) << blocks;
  }
}

TEST_F(OutlineSteps, FillInAColourThatIsBlackUnlessAChannelIsFull) {
  struct Row {
    double r, g, b;
    const char* brush;
  };
  constexpr Row kRows[] = {{1, 1, 1, "CreateSolidBrush 65793"},
                           {1, 0, 0, "CreateSolidBrush 1"},
                           {0, 1, 0, "CreateSolidBrush 256"},
                           {0, 0, 1, "CreateSolidBrush 65536"},
                           {0.99, 0.5, 0, "CreateSolidBrush 0"}};
  for (const Row& row : kRows) {
    log_.SetColorRGBA(row.r, row.g, row.b, 1.0, true);
    platform.asked.clear();
    draw();
    EXPECT_EQ(std::ranges::count(platform.asked, row.brush), 1) << row.brush;
  }
}

TEST_F(OutlineSteps, TakeTheHeightFromTheFontDataWithTheOtherSign) {
  for (const auto& [size, want] : {std::pair{0, "CreateFontA 0 "},
                                   {-7, "CreateFontA 7 "},
                                   {INT_MIN, "CreateFontA -2147483648 "}}) {
    nkdraw::fontData.fontPointSize = size;
    platform.asked.clear();
    draw();
    EXPECT_TRUE(platform.asked[2].starts_with(want)) << platform.asked[2];
  }
}

TEST_F(OutlineSteps, NeverReadBehindTheTextsZero) {
  for (const auto& [count, want] : {std::pair{0, "TextOutA dc 0 0 text 0"},
                                    {3, "TextOutA dc 0 0 text 3"},
                                    {5, "TextOutA dc 0 0 text 4"},
                                    {INT_MAX, "TextOutA dc 0 0 text 4"},
                                    {-1, "TextOutA dc 0 0 text -1"}}) {
    platform.asked.clear();
    draw("text", count);
    EXPECT_EQ(std::ranges::count(platform.asked, want), 2) << want;
  }
}

TEST_F(OutlineSteps, ClearAntialiasingAndTheScratchWord) {
  PixelFields::antialiased(log_) = true;
  nkdraw::fontData.fontScratch = 77;
  draw();
  EXPECT_FALSE(PixelFields::antialiased(log_));
  EXPECT_EQ(nkdraw::fontData.fontScratch, 0U);
}

}  // namespace
