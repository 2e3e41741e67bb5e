// SPDX-License-Identifier: BSD-2-Clause
//
// The graphics services: fonts, paths, masks and regions.
#include <nkdraw/nkdraw.h>
#include <nkdraw/platform/graphics.h>
#include <nkdraw/text/font_data.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace {

template <auto release>
struct Release {
  template <class Handle>
  void operator()(Handle* handle) const {
    release(handle);
  }
};
using Context = std::unique_ptr<nkDeviceContext, Release<DeleteDC>>;
using Object = std::unique_ptr<nkGraphicsObject, Release<DeleteObject>>;
using Region = std::unique_ptr<nkRegion, Release<nkDeleteRegion>>;

Object font(int height, const char* face = "Times New Roman", int weight = 400) {
  return Object(CreateFontA(height, 0, 0, 0, weight, 0, 0, 0, 255, 7, 0, 4, 0, face));
}

/// A context with a font, a brush and a bitmap.
class Graphics : public testing::Test {
 protected:
  static constexpr int kEm = 60, kWidth = 200, kHeight = 100;

  void SetUp() override {
    ASSERT_TRUE(font_);
    SelectObject(dc_.get(), font_.get());
    SelectObject(dc_.get(), brush_.get());
    SelectObject(dc_.get(), bitmap_.get());
  }

  tagSIZE extent(std::string_view text) {
    tagSIZE size = {-1, -1};
    EXPECT_EQ(GetTextExtentPoint32A(dc_.get(), text.data(), static_cast<int>(text.size()), &size),
              1);
    return size;
  }

  void record(std::string_view text, int x = 0, int y = 0) {
    EXPECT_EQ(BeginPath(dc_.get()), 1);
    EXPECT_EQ(TextOutA(dc_.get(), x, y, text.data(), static_cast<int>(text.size())), 1);
    EXPECT_EQ(CloseFigure(dc_.get()), 1);
    EXPECT_EQ(EndPath(dc_.get()), 1);
  }

  struct Points {
    std::vector<tagPOINT> places;
    std::vector<std::uint8_t> types;
  };
  Points points() {
    const int count = GetPath(dc_.get(), nullptr, nullptr, 0);
    EXPECT_GE(count, 0);
    const auto room = static_cast<std::size_t>(std::max(count, 0));
    Points path{std::vector<tagPOINT>(room), std::vector<std::uint8_t>(room)};
    EXPECT_EQ(GetPath(dc_.get(), path.places.data(), path.types.data(), count), count);
    return path;
  }

  Context ic_{CreateICA("DISPLAY")};
  Object font_ = font(-kEm);
  Object brush_{CreateSolidBrush(0x563412)};
  Object bitmap_{CreateCompatibleBitmap(ic_.get(), kWidth, kHeight)};
  Context dc_{CreateCompatibleDC(ic_.get())};
};

TEST_F(Graphics, ExtentsAreSumsOfCharactersAndOneLineHigh) {
  const tagSIZE h = extent("H"), i = extent("i");
  EXPECT_GT(h.cx, i.cx);
  EXPECT_EQ(extent("Hi").cx, h.cx + i.cx);
  EXPECT_EQ(extent("HiH").cx, 2 * h.cx + i.cx);
  EXPECT_EQ(extent("Hi").cy, h.cy);
  EXPECT_EQ(extent("").cx, 0);
  EXPECT_EQ(extent("").cy, h.cy);
  EXPECT_GE(h.cy, kEm);
  EXPECT_LE(h.cy, 2 * kEm);
}

TEST_F(Graphics, ANegativeHeightIsOfTheEmAndAPositiveOneOfTheLine) {
  for (const int height : {20, 41, 100}) {
    const Object em = font(-height), line = font(height);
    SelectObject(dc_.get(), em.get());
    const tagSIZE ofEm = extent("MMMMMMMMMM");
    SelectObject(dc_.get(), line.get());
    const tagSIZE ofLine = extent("MMMMMMMMMM");
    EXPECT_GE(ofEm.cy, height);
    EXPECT_NEAR(ofLine.cy, height, 2);  // ascent and descent are rounded up
    EXPECT_LT(ofLine.cx, ofEm.cx);
    SelectObject(dc_.get(), font_.get());
  }
}

TEST_F(Graphics, AHeightOfZeroIsAnEmOf16Pixels) {
  const Object none = font(0), sixteen = font(-16);
  SelectObject(dc_.get(), none.get());
  const tagSIZE one = extent("Text");
  SelectObject(dc_.get(), sixteen.get());
  const tagSIZE two = extent("Text");
  EXPECT_EQ(one.cx, two.cx);
  EXPECT_EQ(one.cy, two.cy);
  SelectObject(dc_.get(), font_.get());
}

TEST_F(Graphics, AnUnknownFaceIsReplacedByTheNearestOne) {
  EXPECT_TRUE(font(-20, "No such face as this"));
  EXPECT_TRUE(font(-20, ""));
}

TEST_F(Graphics, SizesThatNoFontHasAreRefused) {
  for (const int height : {INT_MIN, INT_MAX, -70000, 70000})
    EXPECT_FALSE(font(height)) << height;
  EXPECT_FALSE(font(-20, nullptr));
}

TEST_F(Graphics, CharactersAreOfCodePage1252) {
  // The euro sign, a dash that is as wide as the em, and a letter with an accent.
  EXPECT_EQ(extent("\x97").cx, kEm);
  EXPECT_NE(extent("\x80").cx, extent("\x81").cx);
  EXPECT_EQ(extent("\xC4").cx, extent("A").cx);
  record("\xC4");
  const std::size_t accented = points().types.size();
  record("A");
  EXPECT_GT(accented, points().types.size());
}

TEST_F(Graphics, PathsAreFiguresThatMoveGoOnAndClose) {
  record("Og");
  const Points path = points();
  ASSERT_GT(path.types.size(), 20U);
  int figures = 0;
  std::size_t inCurve = 0;
  for (std::size_t i = 0; i < path.types.size(); ++i) {
    const int kind = path.types[i] & ~1;
    const bool last = i + 1 == path.types.size() || path.types[i + 1] == PT_MOVETO;
    EXPECT_TRUE(kind == PT_MOVETO || kind == PT_LINETO || kind == PT_BEZIERTO) << i;
    EXPECT_EQ((path.types[i] & PT_CLOSEFIGURE) != 0, last) << i;
    const std::size_t before = inCurve;
    inCurve = kind == PT_BEZIERTO ? inCurve + 1 : 0;
    EXPECT_TRUE(inCurve % 3 == 0 || !last) << i;
    EXPECT_TRUE(inCurve != 0 || before % 3 == 0) << i;
    figures += kind == PT_MOVETO ? 1 : 0;
  }
  EXPECT_EQ(path.types[0], PT_MOVETO);
  EXPECT_GE(figures, 4);  // two in O, two or more in g
}

TEST_F(Graphics, PathsMoveWithTheirOrigin) {
  record("g");
  const Points here = points();
  record("g", 30, -7);
  const Points there = points();
  ASSERT_EQ(here.types, there.types);
  for (std::size_t i = 0; i < here.places.size(); ++i) {
    // Halves are rounded away from zero, on both sides of it.
    EXPECT_NEAR(there.places[i].x, here.places[i].x + 30, 1);
    EXPECT_NEAR(there.places[i].y, here.places[i].y - 7, 1);
  }
}

TEST_F(Graphics, FlatteningKeepsTheNumberOfPointsAndTheEndsOfCurves) {
  record("Og");
  const Points curved = points();
  EXPECT_EQ(FlattenPath(dc_.get()), 1);
  const Points flat = points();
  ASSERT_EQ(flat.types.size(), curved.types.size());
  for (std::size_t i = 0; i < flat.types.size(); ++i) {
    const int kind = curved.types[i] & ~1;
    EXPECT_EQ(flat.types[i] & ~1, kind == PT_BEZIERTO ? PT_LINETO : kind);
    EXPECT_EQ(flat.types[i] & 1, curved.types[i] & 1);
    if (kind != PT_BEZIERTO) {
      EXPECT_EQ(flat.places[i].x, curved.places[i].x);
      EXPECT_EQ(flat.places[i].y, curved.places[i].y);
    }
  }
  EXPECT_NE(curved.types, flat.types);
}

TEST_F(Graphics, AClosedFigureHasItsMarkOnTheLastPointOnce) {
  BeginPath(dc_.get());
  EXPECT_EQ(CloseFigure(dc_.get()), 1);  // of nothing
  EXPECT_EQ(EndPath(dc_.get()), 1);
  EXPECT_EQ(GetPath(dc_.get(), nullptr, nullptr, 0), 0);
}

TEST_F(Graphics, APathIsGivenWholeOrNotAtAll) {
  record("O");
  const int count = GetPath(dc_.get(), nullptr, nullptr, 0);
  std::vector<tagPOINT> places(static_cast<std::size_t>(count) + 1, tagPOINT{-77, -77});
  std::vector<std::uint8_t> types(places.size(), 99);
  EXPECT_EQ(GetPath(dc_.get(), places.data(), types.data(), count - 1), -1);
  EXPECT_EQ(GetPath(dc_.get(), places.data(), types.data(), -1), -1);
  EXPECT_EQ(types[0], 99);
  EXPECT_EQ(GetPath(dc_.get(), places.data(), types.data(), count + 1), count);
  EXPECT_EQ(types[0], PT_MOVETO);
  EXPECT_EQ(types.back(), 99);
}

TEST_F(Graphics, CallsOutOfTurnAreRefused) {
  EXPECT_EQ(TextOutA(dc_.get(), 0, 0, "O", 1), 0);
  EXPECT_EQ(CloseFigure(dc_.get()), 0);
  EXPECT_EQ(EndPath(dc_.get()), 0);
  EXPECT_EQ(FlattenPath(dc_.get()), 0);
  EXPECT_EQ(FillPath(dc_.get()), 0);
  EXPECT_EQ(PathToRegion(dc_.get()), nullptr);
  EXPECT_EQ(GetPath(dc_.get(), nullptr, nullptr, 0), -1);
  BeginPath(dc_.get());
  EXPECT_EQ(GetPath(dc_.get(), nullptr, nullptr, 0), -1);
  EXPECT_EQ(FillPath(dc_.get()), 0);
  EXPECT_EQ(AbortPath(dc_.get()), 1);
  EXPECT_EQ(EndPath(dc_.get()), 0);
}

TEST_F(Graphics, WithoutAFontNothingIsMeasuredOrRecorded) {
  const Context bare(CreateCompatibleDC(ic_.get()));
  tagSIZE size = {3, 4};
  EXPECT_EQ(GetTextExtentPoint32A(bare.get(), "O", 1, &size), 0);
  EXPECT_EQ(size.cx, 3);
  BeginPath(bare.get());
  EXPECT_EQ(TextOutA(bare.get(), 0, 0, "O", 1), 0);
  EXPECT_EQ(TextOutA(dc_.get(), 0, 0, "O", -1), 0);
  EXPECT_EQ(TextOutA(dc_.get(), 0, 0, nullptr, 1), 0);
}

TEST_F(Graphics, FillingPaintsInTheBrushsColourAndDropsThePath) {
  record("O", 10, 5);
  EXPECT_EQ(SelectClipPath(dc_.get(), 4), 1);
  EXPECT_EQ(FillPath(dc_.get()), 1);
  EXPECT_EQ(GetPath(dc_.get(), nullptr, nullptr, 0), -1);
  int painted = 0;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const std::uint32_t pixel = GetPixel(dc_.get(), x, y);
      EXPECT_TRUE(pixel == 0 || pixel == 0x563412);
      painted += pixel != 0 ? 1 : 0;
    }
  }
  EXPECT_GT(painted, kEm * kEm / 8);
}

TEST_F(Graphics, ARegionOfAPathIsWhatItsFillPaints) {
  record("Bg%", 3, 2);
  const Region region(PathToRegion(dc_.get()));
  record("Bg%", 3, 2);
  FillPath(dc_.get());
  int inside = 0;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      ASSERT_EQ(PtInRegion(region.get(), x, y) != 0, GetPixel(dc_.get(), x, y) != 0);
      inside += PtInRegion(region.get(), x, y);
    }
  }
  EXPECT_GT(inside, 1000);
}

TEST_F(Graphics, AFillLeavesOutWhatTheBitmapHasNot) {
  for (const auto& [x, y] : {std::pair{-20, -20},
                             {kWidth - 20, kHeight - 40},
                             {5000, 0},
                             {0, -5000},
                             {INT_MAX, INT_MAX},
                             {INT_MIN, INT_MIN}}) {
    record("Og", x, y);
    FillPath(dc_.get());
  }
  EXPECT_EQ(GetPixel(dc_.get(), -1, 0), 0U);
  EXPECT_EQ(GetPixel(dc_.get(), 0, -1), 0U);
  EXPECT_EQ(GetPixel(dc_.get(), kWidth, 0), 0U);
  EXPECT_EQ(GetPixel(dc_.get(), 0, kHeight), 0U);
}

/// The coverage of one glyph, 0 to 255, by FreeType's own smooth rasteriser, line 0 at the top of
/// the text.
class Coverage {
 public:
  Coverage(const char* family, int em, char character, int width, int height, tagPOINT origin)
      : width_(width), pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
    FcConfig* const fonts = FcInitLoadConfigAndFonts();
    FcPattern* const wanted = FcPatternCreate();
    FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    FcPatternAddInteger(wanted, FC_WEIGHT, FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted, FC_SLANT, FC_SLANT_ROMAN);
    FcPatternAddBool(wanted, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(fonts, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    FcPattern* const found = FcFontMatch(fonts, wanted, &result);
    FcChar8* file = nullptr;
    FcPatternGetString(found, FC_FILE, 0, &file);
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_Init_FreeType(&library);
    EXPECT_EQ(FT_New_Face(library, reinterpret_cast<const char*>(file), 0, &face), 0);
    FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(em));
    FT_Load_Char(face, static_cast<FT_ULong>(character), FT_LOAD_NO_HINTING);
    FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL);
    const FT_Bitmap& bitmap = face->glyph->bitmap;
    for (unsigned y = 0; y < bitmap.rows; ++y) {
      for (unsigned x = 0; x < bitmap.width; ++x) {
        const int at = (origin.y - face->glyph->bitmap_top + static_cast<int>(y)) * width_ +
                       origin.x + face->glyph->bitmap_left + static_cast<int>(x);
        pixels_.at(static_cast<std::size_t>(at)) =
            bitmap.buffer[static_cast<int>(y) * bitmap.pitch + static_cast<int>(x)];
      }
    }
    FT_Done_Face(face);
    FT_Done_FreeType(library);
    FcPatternDestroy(found);
    FcPatternDestroy(wanted);
    FcConfigDestroy(fonts);
  }

  [[nodiscard]] int at(int x, int y) const {
    return pixels_[static_cast<std::size_t>(y * width_ + x)];
  }

 private:
  int width_;
  std::vector<std::uint8_t> pixels_;
};

TEST_F(Graphics, AFillIsTheGlyphAsFreeTypeRastersItButForItsRim) {
  // The baseline: the lowest point of a letter that stands on it.
  record("H");
  int ascent = 0;
  for (const tagPOINT& place : points().places)
    ascent = std::max(ascent, place.y);
  for (const char character : std::string_view("HOBS&8ijW")) {
    const Object clean(CreateCompatibleBitmap(ic_.get(), kWidth, kHeight));
    SelectObject(dc_.get(), clean.get());
    constexpr int kLeft = 10;  // some letters begin in front of their place
    record(std::string_view(&character, 1), kLeft);
    FillPath(dc_.get());
    const Coverage coverage("Times New Roman", kEm, character, kWidth, kHeight, {kLeft, ascent});
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x) {
        const bool ink = GetPixel(dc_.get(), x, y) != 0;
        // A pixel is painted for its centre, of a path whose curves are three lines each: what is
        // covered by more than nine tenths, or by less than one, can't be otherwise.
        EXPECT_TRUE(ink || coverage.at(x, y) <= 230) << character << " " << x << "," << y;
        EXPECT_TRUE(!ink || coverage.at(x, y) >= 25) << character << " " << x << "," << y;
      }
    }
    SelectObject(dc_.get(), bitmap_.get());
  }
}

TEST_F(Graphics, SelectingGivesBackWhatWasThereOfTheKind) {
  const Object other = font(-10), pen(CreatePen(0, 1, 0));
  EXPECT_EQ(SelectObject(dc_.get(), other.get()), font_.get());
  nkGraphicsObject* const own = SelectObject(dc_.get(), pen.get());
  EXPECT_NE(own, nullptr);
  EXPECT_EQ(SelectObject(dc_.get(), own), pen.get());
  EXPECT_EQ(SelectObject(dc_.get(), font_.get()), other.get());
  EXPECT_EQ(DeleteObject(own), 0);
  EXPECT_EQ(SelectObject(dc_.get(), nullptr), nullptr);
  EXPECT_EQ(SelectObject(nullptr, pen.get()), nullptr);
}

TEST_F(Graphics, AContextsOwnObjectsDrawNothing) {
  const Context bare(CreateCompatibleDC(ic_.get()));
  BeginPath(bare.get());
  EndPath(bare.get());
  EXPECT_EQ(FillPath(bare.get()), 0);
  EXPECT_EQ(GetPixel(bare.get(), 0, 0), 0U);
}

TEST_F(Graphics, StateIsGivenBackWhenItIsSet) {
  EXPECT_EQ(SetTextAlign(dc_.get(), 6), 0U);
  EXPECT_EQ(SetTextAlign(dc_.get(), 0), 6U);
  EXPECT_EQ(SetTextColor(dc_.get(), 0xFFFFFF), 0U);
  EXPECT_EQ(SetTextColor(dc_.get(), 1), 0xFFFFFFU);
  EXPECT_EQ(SetBkColor(dc_.get(), 0), 0xFFFFFFU);
  EXPECT_EQ(SetBkColor(dc_.get(), 0), 0U);
  EXPECT_EQ(SetBkMode(dc_.get(), 1), 2);
  EXPECT_EQ(SetBkMode(dc_.get(), 1), 1);
  tagPOINT before = {-1, -1};
  EXPECT_EQ(MoveToEx(dc_.get(), 3, 4, &before), 1);
  EXPECT_TRUE(before.x == 0 && before.y == 0);
  EXPECT_EQ(MoveToEx(dc_.get(), 5, 6, nullptr), 1);
  EXPECT_EQ(MoveToEx(dc_.get(), 0, 0, &before), 1);
  EXPECT_TRUE(before.x == 5 && before.y == 6);
  EXPECT_EQ(GetDeviceCaps(dc_.get(), 24), -1);
  EXPECT_EQ(GetLastError(), 0U);
}

TEST_F(Graphics, NothingHappensWithoutAContext) {
  tagSIZE size = {};
  EXPECT_EQ(CreateCompatibleDC(nullptr), nullptr);
  EXPECT_EQ(CreateCompatibleBitmap(nullptr, 1, 1), nullptr);
  EXPECT_EQ(DeleteDC(nullptr), 0);
  EXPECT_EQ(DeleteObject(nullptr), 0);
  EXPECT_EQ(GetDeviceCaps(nullptr, 24), 0);
  EXPECT_EQ(SetTextAlign(nullptr, 1), 0U);
  EXPECT_EQ(SetBkMode(nullptr, 1), 0);
  EXPECT_EQ(MoveToEx(nullptr, 1, 1, nullptr), 0);
  EXPECT_EQ(GetTextExtentPoint32A(nullptr, "O", 1, &size), 0);
  EXPECT_EQ(BeginPath(nullptr), 0);
  EXPECT_EQ(TextOutA(nullptr, 0, 0, "O", 1), 0);
  EXPECT_EQ(CloseFigure(nullptr), 0);
  EXPECT_EQ(EndPath(nullptr), 0);
  EXPECT_EQ(GetPath(nullptr, nullptr, nullptr, 0), -1);
  EXPECT_EQ(FlattenPath(nullptr), 0);
  EXPECT_EQ(SelectClipPath(nullptr, 4), 0);
  EXPECT_EQ(FillPath(nullptr), 0);
  EXPECT_EQ(AbortPath(nullptr), 0);
  EXPECT_EQ(PathToRegion(nullptr), nullptr);
  EXPECT_EQ(GetPixel(nullptr, 0, 0), 0U);
}

TEST_F(Graphics, BitmapsWithoutPixelsOrWithTooManyAreNone) {
  for (const auto& [width, height] :
       {std::pair{0, 5}, {5, 0}, {-1, 5}, {5, -1}, {INT_MAX, INT_MAX}})
    EXPECT_EQ(CreateCompatibleBitmap(ic_.get(), width, height), nullptr);
}

TEST(WithoutInstalledFonts, NoFontIsMadeAndOutlineTextDrawsNothing) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // the fonts are looked up once in a process
  const std::string configuration = testing::TempDir() + "nkdraw_no_fonts.conf";
  std::ofstream(configuration) << "<fontconfig></fontconfig>\n";
  const auto draw = [&configuration] {
    setenv("FONTCONFIG_FILE", configuration.c_str(), 1);
    std::uint32_t frame[64 * 64] = {};
    NKDraw* surface = nullptr;
    GetDraw(ptRGBA32, 64, 64, 0, reinterpret_cast<char*>(frame), surface);
    std::copy_n("ttf", 4, nkdraw::fontData.fontKind);
    tagRECT rect = {1, 2, 3, 4};
    const bool quiet = !font(-20) && surface->DrawText("text", 4, &rect, DT_CALCRECT) == 0 &&
                       rect.right == 3 &&
                       std::ranges::all_of(frame, [](std::uint32_t pixel) { return pixel == 0; });
    ReleaseDraw(surface);
    std::exit(quiet ? 0 : 1);
  };
  EXPECT_EXIT(draw(), testing::ExitedWithCode(0), "");
}

TEST(TextLength, IsThatOfTheCharactersBeforeTheZero) {
  EXPECT_EQ(lstrlenA(""), 0);
  EXPECT_EQ(lstrlenA("four"), 4);
  EXPECT_EQ(lstrlenA(nullptr), 0);
}

TEST(Regions, HaveTheirNearEdgesAndNotTheirFarOnes) {
  const Region region(nkCreateRectRegion(-3, 2, 4, 5));
  for (int y = -6; y < 9; ++y) {
    for (int x = -6; x < 9; ++x)
      EXPECT_EQ(PtInRegion(region.get(), x, y), x >= -3 && x < 4 && y >= 2 && y < 5 ? 1 : 0);
  }
}

TEST(Regions, ReachTheFarthestCoordinates) {
  const Region all(nkCreateRectRegion(INT_MIN, INT_MIN, INT_MAX, INT_MAX));
  EXPECT_EQ(PtInRegion(all.get(), INT_MIN, INT_MIN), 1);
  EXPECT_EQ(PtInRegion(all.get(), INT_MAX - 1, INT_MAX - 1), 1);
  EXPECT_EQ(PtInRegion(all.get(), INT_MAX, 0), 0);
}

TEST(Regions, ThatAreEmptyOrNullHaveNothing) {
  for (const auto& box : {std::array{0, 0, 0, 0}, {0, 0, 5, 0}, {0, 0, 0, 5}, {5, 5, 0, 0}}) {
    const Region region(nkCreateRectRegion(box[0], box[1], box[2], box[3]));
    ASSERT_TRUE(region);
    for (int at = -1; at < 7; ++at)
      EXPECT_EQ(PtInRegion(region.get(), at, at), 0);
  }
  EXPECT_EQ(PtInRegion(nullptr, 0, 0), 0);
  nkDeleteRegion(nullptr);
}

}  // namespace
