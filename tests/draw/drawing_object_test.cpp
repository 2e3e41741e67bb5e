// SPDX-License-Identifier: BSD-2-Clause
//
// The drawing object: its fields, its pen, its second colours, its copies.
#include <tests/support/fields.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using namespace nkdraw::test;

TEST(DrawingObject, ANewOneHasItsDocumentedFields) {
  for (const pixelType type : kLayouts) {
    SCOPED_TRACE(layoutName(type));
    const Surface surface = makeDerived<Unknown>(type, 4, 4, 0, nullptr);
    EXPECT_EQ(DrawFields::file(*surface), 0);
    EXPECT_EQ(DrawFields::penXOf(*surface), 0);
    EXPECT_EQ(DrawFields::penYOf(*surface), 0);
    EXPECT_EQ(DrawFields::spareAOf(*surface), 0);
    EXPECT_EQ(DrawFields::spareBOf(*surface), 0);
    EXPECT_EQ(DrawFields::spareCOf(*surface), 0);
    EXPECT_EQ(DrawFields::spareDOf(*surface), 0);
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(DrawFields::textColor(*surface)[i], 1.0);
      EXPECT_EQ(DrawFields::savedTextColor(*surface)[i], 1.0);
      for (const double channel :
           {DrawFields::bkColor(*surface)[i], DrawFields::savedBkColor(*surface)[i]}) {
        std::uint64_t bits;
        std::memcpy(&bits, &channel, sizeof bits);
        EXPECT_EQ(bits, 0x3FE3333333333333U);
      }
    }
    EXPECT_TRUE(DrawFields::transparentText(*surface));
    EXPECT_EQ(DrawFields::font(*surface), nkdraw::labelGlyphs);
    EXPECT_EQ(DrawFields::fontWidth(*surface), 8U);
    EXPECT_EQ(DrawFields::fontHeight(*surface), 10U);
    EXPECT_EQ(DrawFields::fontScale(*surface), 1U);
    EXPECT_FALSE(DrawFields::wantsDefaultFont(*surface));
    EXPECT_FALSE(PixelFields::antialiased(*surface));
    EXPECT_FALSE(PixelFields::spare(*surface));
  }
}

TEST(DrawingObject, ItsConstructorDoesNotLookAtTheType) {
  NKDraw surface(ptV210);
  EXPECT_EQ(surface.PixelType(), ptRGBA32);
}

TEST(Pen, MoveToStoresItAndGivesTheOldOneBackWhenAsked) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  EXPECT_EQ(surface->MoveTo(5, 6, nullptr), 0U);
  EXPECT_EQ(DrawFields::penXOf(*surface), 5);
  EXPECT_EQ(DrawFields::penYOf(*surface), 6);
  tagPOINT previous{};
  EXPECT_EQ(surface->MoveTo(-7, 8, &previous), 0U);
  EXPECT_EQ(previous.x, 5);
  EXPECT_EQ(previous.y, 6);
  EXPECT_EQ(surface->MoveTo(9, -10), 0U);
  EXPECT_EQ(DrawFields::penXOf(*surface), 9);
  EXPECT_EQ(DrawFields::penYOf(*surface), -10);
}

class PutAnswers final : public CDrawRGBA32 {
 public:
  PutAnswers() : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32) {}
  std::uint32_t PutPixel(int x, int y, bool ink) override {
    penSeenX = penX;
    last = {x, y, ink};
    return 4711;
  }
  Plot last{};
  int penSeenX = 0;
};

TEST(Pen, PointMovesItFirstAndHandsOnTheColourAndTheResult) {
  PutAnswers surface;
  for (const bool ink : {true, false}) {
    EXPECT_EQ(surface.Point(3, 4, ink), 4711U);
    EXPECT_EQ(surface.last, (Plot{3, 4, ink}));
    EXPECT_EQ(surface.penSeenX, 3);
    EXPECT_EQ(DrawFields::penXOf(surface), 3);
    EXPECT_EQ(DrawFields::penYOf(surface), 4);
  }
}

TEST(Pen, PointInTheBackgroundPlotsAndMovesAndARefusalStillMoves) {
  Frame frame(64);
  frame.fill(9);
  const Surface surface = makeSurface(ptBGRA32, 4, 4, 0, frame.canvas());
  EXPECT_EQ(surface->Point(1, 1, false), 0U);
  EXPECT_EQ(wordAt(frame.data() + 20), 0U);
  EXPECT_EQ(surface->Point(2, -1, true), 0xFFFFFFFF);
  EXPECT_EQ(DrawFields::penYOf(*surface), -1);
}

TEST(SecondColours, AreKeptAsGivenOneDeep) {
  const Surface surface = makeSurface(ptRGBA32, 4, 4, 0, nullptr);
  const auto expectColours = [&surface](double text, double paper) {
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(DrawFields::textColor(*surface)[i], text + i);
      EXPECT_EQ(DrawFields::bkColor(*surface)[i], paper + i);
    }
  };
  EXPECT_EQ(surface->SetSDLTextColor(-10, -9, -8, -7), 0U);  // without a clamp
  EXPECT_EQ(surface->SetSDLBkColor(20, 21, 22, 23), 0U);
  expectColours(-10, 20);
  EXPECT_EQ(surface->RememberSDLColors(), 0U);
  surface->SetSDLTextColor(1, 2, 3, 4);
  surface->SetSDLBkColor(5, 6, 7, 8);
  EXPECT_EQ(surface->RememberSDLColors(), 0U);  // the first ones are forgotten
  surface->SetSDLTextColor(0, 0, 0, 0);
  surface->SetSDLBkColor(0, 0, 0, 0);
  EXPECT_EQ(surface->ResetSDLColors(), 0U);
  expectColours(1, 5);
  surface->SetSDLTextColor(0, 0, 0, 0);
  EXPECT_EQ(surface->ResetSDLColors(), 0U);  // again and again
  expectColours(1, 5);
}

TEST(SecondColours, AreNotWhatIsDrawnWith) {
  Frame one(4096, 1), two(4096, 1);
  for (Frame* const frame : {&one, &two}) {
    const Surface surface = makeSurface(ptBGRA32, 32, 32, 0, frame->canvas());
    if (frame == &two) {
      surface->SetSDLTextColor(0.1, 0.2, 0.3, 0.4);
      surface->SetSDLBkColor(0.5, 0.6, 0.7, 0.8);
    }
    surface->SetTextTransparent(false);
    tagRECT rect = {1, 1, 30, 11};
    surface->DrawText("ab", 2, &rect, 0);
    surface->Label(1, 20, "c", false, true);
  }
  EXPECT_TRUE(one.all() == two.all());
}

TEST(DrawingObject, ACopyHasEveryFieldOfItsSource) {
  char byte = 0;
  CDrawRGBA32 source(ptBGRA32);
  source.SetCanvas(&byte, 5, 6, 0);
  source.MoveTo(11, 12);
  source.SetSDLTextColor(0.1, 0.2, 0.3, 0.4);
  source.SetSDLBkColor(0.5, 0.6, 0.7, 0.8);
  source.RememberSDLColors();
  source.SetSDLTextColor(1.1, 1.2, 1.3, 1.4);
  source.SetSDLBkColor(1.5, 1.6, 1.7, 1.8);
  source.SetTextTransparent(false);
  source.LabelFont(0U, 7);
  const std::uint8_t font[10] = {};
  DrawFields::font(source) = font;
  DrawFields::fontWidth(source) = 9;
  DrawFields::fontHeight(source) = 11;
  DrawFields::spareAOf(source) = 1;
  DrawFields::spareBOf(source) = 2;
  DrawFields::spareCOf(source) = 3;
  DrawFields::spareDOf(source) = 4;
  DrawFields::wantsDefaultFont(source) = true;
  CDrawRGBA32 copy(source);
  EXPECT_EQ(copy.GetCanvas(), &byte);
  EXPECT_EQ(copy.PixelType(), ptBGRA32);
  EXPECT_EQ(DrawFields::penXOf(copy), 11);
  EXPECT_EQ(DrawFields::penYOf(copy), 12);
  EXPECT_EQ(DrawFields::textColor(copy)[0], 1.1);
  EXPECT_EQ(DrawFields::bkColor(copy)[3], 1.8);
  EXPECT_EQ(DrawFields::savedTextColor(copy)[1], 0.2);
  EXPECT_EQ(DrawFields::savedBkColor(copy)[2], 0.7);
  EXPECT_FALSE(DrawFields::transparentText(copy));
  EXPECT_EQ(DrawFields::font(copy), font);
  EXPECT_EQ(DrawFields::fontWidth(copy), 9U);
  EXPECT_EQ(DrawFields::fontHeight(copy), 11U);
  EXPECT_EQ(DrawFields::fontScale(copy), 7U);
  EXPECT_EQ(DrawFields::spareAOf(copy), 1);
  EXPECT_EQ(DrawFields::spareBOf(copy), 2);
  EXPECT_EQ(DrawFields::spareCOf(copy), 3);
  EXPECT_EQ(DrawFields::spareDOf(copy), 4);
  EXPECT_TRUE(DrawFields::wantsDefaultFont(copy));
}

/// What the assignment calls, in order.
class AssignmentLog final : public CDrawRGBA32 {
 public:
  AssignmentLog(std::string name, std::string* log)
      : NKDraw(ptRGBA32), CDrawRGBA32(ptRGBA32), name_(std::move(name)), log_(log) {}
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
    note("read " + std::to_string(x) + "," + std::to_string(y));
    return CDrawRGBA32::GetPixelRGBA(x, y, r, g, b, a);
  }
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool ink) override {
    note(ink ? "ink" : "paper");
    return CDrawRGBA32::SetColorRGBA(r, g, b, a, ink);
  }
  std::uint32_t PutPixel(int x, int y, bool ink) override {
    note((ink ? "put " : "clear ") + std::to_string(x) + "," + std::to_string(y));
    return CDrawRGBA32::PutPixel(x, y, ink);
  }

 private:
  void note(const std::string& what) { *log_ += name_ + " " + what + "; "; }
  std::string name_;
  std::string* log_;
};

TEST(PictureAssignment, ReadsTheLeftAndPlotsTheRightInItsOwnColour) {
  Frame one(64, 1), two(64, 2);
  std::string log;
  AssignmentLog left("left", &log), right("right", &log);
  left.SetCanvas(one.canvas(), 3, 2, 0);
  right.SetCanvas(two.canvas(), 2, 4, 0);
  right.SetColorRGBA(1.0, 0.0, 1.0, 0.0, true);
  right.SetColorRGBA(0.0, 1.0, 0.0, 1.0, false);
  right.SetTransparency(0.5, false);
  right.SetAlphaAdditive(false);
  left.SetAlphaAdditive(true);
  left.SetYCbCrMode(NKPixel::mode709Full);
  log.clear();
  NKDraw& result = static_cast<NKDraw&>(left).operator=(static_cast<NKDraw&>(right));
  EXPECT_EQ(&result, static_cast<NKDraw*>(&right));
  EXPECT_EQ(log,
            "left read 0,0; left ink; right put 0,0; left read 1,0; left ink; right put 1,0; "
            "left read 0,1; left ink; right put 0,1; left read 1,1; left ink; right put 1,1; ");
  EXPECT_TRUE(one.untouched());
  for (const int offset : {0, 4, 16, 20})
    EXPECT_EQ(wordAt(two.data() + offset), 0x00FF00FFU) << offset;
  // The left one has taken colours and transparency, and nothing else.
  EXPECT_EQ(wordAt(PixelFields::foreground(left)), 0x00FF00FFU);
  EXPECT_EQ(wordAt(PixelFields::background(left)), 0xFF00FF00U);
  EXPECT_EQ(PixelFields::alpha(left, false), 0.5);
  EXPECT_FALSE(left.GetTransparency());
  EXPECT_TRUE(left.GetAlphaAdditive());
  EXPECT_EQ(PixelFields::mode(left), 4);
  EXPECT_EQ(left.Width(), 2U);
}

TEST(PictureAssignment, OfTheClassesReturnsTheLeftSide) {
  Frame one(64, 1), two(64, 2);
  CDrawRGB24 left(ptRGB24), right(ptBGR24);
  left.SetCanvas(one.canvas(), 2, 2, 0);
  right.SetCanvas(two.canvas(), 2, 2, 0);
  CDrawRGB24& result = (left = right);
  EXPECT_EQ(&result, &left);
  EXPECT_EQ(left.PixelType(), ptRGB24);
  CDrawRGBA32 four(ptBGRA32), other(ptARGB32);
  CDrawRGBA32& same = (four = other);
  EXPECT_EQ(&same, &four);
  EXPECT_EQ(four.PixelType(), ptBGRA32);
}

TEST(PictureAssignment, OnItselfRunsItsSteps) {
  Frame frame(16, 3);
  const std::vector<std::uint8_t> before(frame.bytes().begin(), frame.bytes().end());
  CDrawRGBA32 surface(ptBGRA32);
  surface.SetCanvas(frame.canvas(), 2, 2, 0);
  NKDraw& same = surface;
  static_cast<NKDraw&>(surface).operator=(same);
  // Each pixel is read, becomes the colour, and is plotted again where it was.
  EXPECT_TRUE(std::equal(before.begin(), before.end(), frame.data()));
  EXPECT_EQ(wordAt(PixelFields::foreground(surface)), wordAt(frame.data() + 12));
}

}  // namespace
