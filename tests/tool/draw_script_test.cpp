// SPDX-License-Identifier: BSD-2-Clause
//
// Drawing scripts: how they are read, and that each verb is its call of the library.
#include <draw/draw_script.h>
#include <media/failure.h>
#include <tests/support/frame.h>
#include <tests/support/surfaces.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

using namespace nkdraw::tool;

namespace {

constexpr int kWidth = 96, kHeight = 64;

/// What reading and drawing say, empty when all is well.
std::string complaint(const std::string& text, const char* layout = "bgra") {
  try {
    DrawCanvas canvas(drawLayoutNamed(layout), kWidth, kHeight);
    DrawScript("s", text).draw(canvas, Outside::kRefused);
    return "";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.code(), ExitCode::kInput);
    return failure.what();
  }
}

std::vector<std::uint8_t> drawn(const DrawLayout& layout, const std::string& text,
                                Outside outside = Outside::kRefused) {
  DrawCanvas canvas(layout, kWidth, kHeight);
  DrawScript("s", text).draw(canvas, outside);
  return {canvas.frame().begin(), canvas.frame().end()};
}

struct Complaint {
  std::string text;
  const char* words;
};

const Complaint kComplaints[] = {
    {"cirle 1 2 3", "no such verb: s:1:1, 'cirle'; the nearest is circle; see"},
    {"\n\n  lin 1 2 3 4", "no such verb: s:3:3, 'lin'; the nearest is line; see"},
    {"line 1 2 3", "no Y2 for line: s:1:11; write line X1 Y1 X2 Y2"},
    {"line 1 2 3 # 4", "no Y2 for line: s:1:12; write line X1 Y1 X2 Y2"},
    {"line 1 2 3 4 5", "too many arguments: s:1:14, '5'; write line X1 Y1 X2 Y2"},
    {"erase now", "too many arguments: s:1:7, 'now'; write erase"},
    {"line 1 2 3 4.5", "not a value of Y2: s:1:12, '4.5'; write a whole number from -16384"},
    {"line 1 2 3 16384", "not a value of Y2: s:1:12, '16384'; write a whole number from"},
    {"line -16385 2 3 4", "not a value of X1: s:1:6, '-16385'"},
    {"line 99999999999999999999 2 3 4", "not a value of X1: s:1:6, '99999999999999999999'"},
    {"circle 9 9 -1", "not a value of RADIUS: s:1:12, '-1'; write a whole number from 0 to 16383"},
    {"color 0 0 1.01", "not a value of B: s:1:11, '1.01'; write a number from 0 to 1"},
    {"color 0 0 nan", "not a value of B: s:1:11, 'nan'"},
    {"color 0 inf 0", "not a value of G: s:1:9, 'inf'"},
    {"color 0 0 0 1 1", "too many arguments: s:1:15, '1'; write color R G B [A]"},
    {"anglearc 9 9 5 0 3601", "not a value of END: s:1:18, '3601'"},
    {"additive maybe", "not a value of STATE: s:1:10, 'maybe'; write off or on"},
    {"mode 602", "not a value of MODE: s:1:6, '602'; write 601 or 601-full or"},
    {"label-scale 0", "not a value of SCALE: s:1:13, '0'; write a whole number from 1 to 100"},
    {"label 1 2", "no TEXT for label: s:1:10; write label X Y TEXT"},
    {"label 1 2   ", "no TEXT for label: s:1:13; write label X Y TEXT"},
    {"label 1 2 a\tb", "a character without a glyph: s:1:12, '?'; write printable ASCII"},
    {"label 1 2 gr\xc3\xbc\xc3\x9f", "a character without a glyph: s:1:13, '?'"},
    {std::string("line 1 2 3 \0", 12), "not a value of Y2: s:1:12, '?'"},
    {std::string("\0\0", 2), "no such verb: s:1:1, '\?\?'"},
    {"polyline 1 2", "no X2 for polyline: s:1:13"},
    {"polyline 1 2 3 4 5", "no Y for polyline: s:1:19; write polyline X1 Y1 X2 Y2 [X Y]..."},
    {"polybezier 1 1 2 2 3 3 4 4", "not drawn: s:1:1, polybezier; there must be 7, 10, 13"},
    {"bezier 1 1 2 2 3 3 1 1", "not drawn: s:1:1, bezier; the two ends must differ"},
    {"roundrect 10 10 20 20 11 5", "not drawn: s:1:1, roundrect; WIDTH and HEIGHT must fit"},
    {"arc 20 10 10 20 1 1 2 2", "not drawn: s:1:1, arc; the second corner"},
    {"arc 10 10 20 20 15 15 2 2", "not drawn: s:1:1, arc; the second corner"},
    {"arcto 10 10 20 30 20 15 2 2", "not drawn: s:1:1, arcto; the second corner"},
    {"pie 10 10 20 10 1 1 2 2", "not drawn: s:1:1, pie; the second corner"},
    {"\nline 0 0 96 0", "outside the canvas: s:2:1, line plots 96,0; keep to 0,0 to 95,63, or"},
    {" circle 10 10 12", "outside the canvas: s:1:2, circle plots "},
    {"point 0 64", "outside the canvas: s:1:1, point plots 0,64"},
    {"fill -1 0 5 5", "outside the canvas: s:1:1, fill plots -1,0"},
    {"fill 0 0 96 65", "outside the canvas: s:1:1, fill plots 95,64"},
    {"fill 1 0 97 64", "outside the canvas: s:1:1, fill plots 96,63"},
    {"horiz 90 0 97", "outside the canvas: s:1:1, horiz plots 96,0"},
    {"wu 0 63 9 63", "outside the canvas: s:1:1, wu plots 0,64"},
    {"label 90 0 A", "outside the canvas: s:1:1, label plots 96"},
    {"text 0 60 20 AA", "outside the canvas: s:1:1, text plots "},
    {"text 0 0 10 " + std::string(3073, 'x'), "too long a text: s:1:13; at most 3072 characters"},
    {"\xef\xbb\xbflane", "no such verb: s:1:1, 'lane'; the nearest is line"},
    {std::string(65537, ' '), "too long a line: s:1:"},
    {"line " + std::string(65000, '9'), "no X2 for line"},
};

class Complaints : public testing::TestWithParam<Complaint> {};
INSTANTIATE_TEST_SUITE_P(Of, Complaints, testing::ValuesIn(kComplaints));

TEST_P(Complaints, NameThePlaceAndWhatToDo) {
  const std::string said = complaint(GetParam().text);
  if (GetParam().text.size() < 60000) {
    EXPECT_TRUE(said.starts_with(GetParam().words)) << said;
  }
  EXPECT_FALSE(said.empty());
  EXPECT_LT(said.size(), 300U);
}

TEST(DrawScript, TakesCommentsBlankLinesAndEveryKindOfLineEnd) {
  const DrawScript script("s",
                          "# all\n\n\t \nline 1 2 3 4 # end\r\n  POINT 5 6\r\nlabel 1 2  a # b \r\n"
                          "point 7 8");
  ASSERT_EQ(script.statements().size(), 4U);
  EXPECT_EQ(script.statements()[0].place.line, 4);
  EXPECT_EQ(script.statements()[0].place.column, 1);
  EXPECT_EQ(script.statements()[0].values.numbers, (std::vector<double>{1, 2, 3, 4}));
  EXPECT_EQ(script.statements()[1].verb->name, "point");
  EXPECT_EQ(script.statements()[1].place.column, 3);
  EXPECT_EQ(script.statements()[2].values.text, "a # b");
  EXPECT_EQ(script.statements()[3].values.numbers, (std::vector<double>{7, 8}));
}

TEST(DrawScript, MayBeginWithAByteOrderMarkAndHaveItNowhereElse) {
  const DrawScript script("s", "\xef\xbb\xbfpoint 5 6");
  ASSERT_EQ(script.statements().size(), 1U);
  EXPECT_EQ(script.statements()[0].place.column, 1);
  EXPECT_NE(complaint("\xef\xbb\xbf\xef\xbb\xbfpoint 5 6"), "");
  EXPECT_NE(complaint("\n\xef\xbb\xbfpoint 5 6"), "");
}

TEST(DrawScript, TakesTextsThatReachAcrossTheWidestCanvas) {
  const std::string text(3072, 'x');
  EXPECT_EQ(DrawScript("s", "label 0 0 " + text).statements()[0].values.text, text);
}

TEST(DrawScript, OfNothingDrawsNothing) {
  for (const char* const text : {"", "\n", "\r\n", "#", "# only\n\n", "\xef\xbb\xbf"}) {
    EXPECT_EQ(complaint(text), "") << text;
    EXPECT_TRUE(DrawScript("s", text).statements().empty());
  }
}

TEST(DrawScript, ExcludesTheLastColumnOnFourByteLayoutsAlone) {
  EXPECT_EQ(complaint("fill 0 0 96 64", "rgba"), "");
  EXPECT_EQ(complaint("horiz 0 0 96", "abgr"), "");
  for (const char* const layout : {"rgb24", "uyvy", "v210", "rgb48", "rgb30dpx", "uv8"}) {
    EXPECT_EQ(complaint("fill 0 0 95 64", layout), "");
    EXPECT_TRUE(complaint("fill 0 0 96 64", layout).find("fill plots 96,63") != std::string::npos);
    EXPECT_TRUE(complaint("horiz 0 0 96", layout).find("horiz plots 96,0") != std::string::npos);
  }
}

TEST(DrawScript, OfRandomBytesIsRefusedOrDrawnInsideTheCanvas) {
  nkdraw::test::Random random(11);
  const std::string letters = "line cirle#0123456789 -.\n\r\t[]xyzw\xff";
  int drawnScripts = 0, refusedScripts = 0;
  for (int i = 0; i < 2000; ++i) {
    std::string text;
    for (int length = random.between(0, 60); length > 0; --length)
      text += random.flag() ? letters[random.word() % letters.size()]
                            : static_cast<char>(random.word() & 0xFF);
    const std::string said = complaint(text);
    ++(said.empty() ? drawnScripts : refusedScripts);
    if (said.empty())
      continue;
    EXPECT_NE(said.find(": s:"), std::string::npos) << said;  // where
    EXPECT_NE(said.find("; "), std::string::npos) << said;    // and what to do
    EXPECT_LT(said.size(), 300U) << said;
    EXPECT_TRUE(std::ranges::all_of(said, [](char c) { return c >= ' ' && c <= '~'; })) << said;
  }
  EXPECT_GT(drawnScripts, 10);
  EXPECT_GT(refusedScripts, 1000);
}

void addArgument(std::ostream& statement, const Parameter& parameter,
                 nkdraw::test::Random& random) {
  const auto least = static_cast<int>(parameter.least), most = static_cast<int>(parameter.most);
  const bool near = random.between(0, 3) != 0;
  switch (parameter.kind) {
    case Parameter::Kind::kWhole:
      statement << (near ? random.between(std::max(least, -100), std::min(most, 200))
                         : random.between(least, most));
      break;
    case Parameter::Kind::kDecimal:
      statement << random.real(parameter.least, parameter.most);
      break;
    case Parameter::Kind::kWord:
      statement << parameter.words[random.word() % parameter.words.size()].name;
      break;
    case Parameter::Kind::kText:
      statement << "Any ~ text";
      break;
  }
}

/// A statement of `verb` whose numbers lie anywhere in the ranges of its parameters, mostly near
/// the canvas.
std::string randomStatement(const Verb& verb, nkdraw::test::Random& random) {
  std::string usage(verb.usage);
  std::erase_if(usage, [](char letter) { return letter == '[' || letter == ']' || letter == '.'; });
  std::istringstream names(usage);
  std::ostringstream statement;
  statement << verb.name;
  for (std::string name; names >> name;) {
    statement << ' ';
    addArgument(statement, parameterNamed(name), random);
  }
  return statement.str();
}

/// Under the address sanitizer this also proves that no memory outside is touched.
TEST(DrawScript, OfAnyNumbersStaysInsideTheCanvasOfEveryLayout) {
  nkdraw::test::Random random(12);
  for (const DrawLayout& layout : drawLayouts()) {
    for (const Verb& verb : verbs()) {
      DrawCanvas canvas(layout, 32, 18);
      for (int i = 0; i < 4; ++i) {
        const std::string statement = randomStatement(verb, random);
        try {
          DrawScript("s", statement).draw(canvas, Outside::kLeftOut);
        } catch (const Failure& failure) {
          EXPECT_NE(std::string(failure.what()).find("not drawn"), std::string::npos)
              << statement << failure.what();
        }
      }
      EXPECT_EQ(canvas.picture()->width, 32);
    }
  }
}

/// Memory and a surface of the library's own, made and bound as the canvas of a script is.
class Direct {
 public:
  explicit Direct(const DrawLayout& layout) : memory_(std::size_t{1} << 17, 1, 4096) {
    memory_.fill(0);
    surface_ = make(layout);
    surface_->SetCanvas(memory_.canvas(), kHeight, kWidth, 0);
    surface_->SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
    surface_->SetColorRGBA(0.0, 0.0, 0.0, 1.0, false);
  }

  NKDraw& operator*() { return *surface_; }
  [[nodiscard]] std::vector<std::uint8_t> frame() {
    return {memory_.data(), memory_.data() + surface_->BufferLength()};
  }

 private:
  static nkdraw::test::Surface make(const DrawLayout& layout) {
    if (layout.name == "ycbcr16")
      return nkdraw::test::Surface(new CDrawYCbCrYCbCr16(ptNone));
    if (layout.name == "ycbcra16")
      return nkdraw::test::Surface(new CDrawYCbCrYCbCrA16(ptNone));
    return nkdraw::test::makeSurface(layout.type, kWidth, kHeight, 0, nullptr);
  }

  nkdraw::test::Frame memory_;
  nkdraw::test::Surface surface_;
};

struct VerbCall {
  const char* statements;
  void (*call)(NKDraw& s);
};

constexpr tagPOINT kSeven[] = {{5, 5},   {20, 60}, {40, 50}, {50, 30}, {60, 10},
                               {80, 20}, {90, 60}, {90, 60}, {90, 60}};

void drawText(NKDraw& s, const char* text, tagRECT rect, std::uint32_t format) {
  s.DrawText(text, static_cast<std::int32_t>(std::char_traits<char>::length(text)), &rect, format);
}

const VerbCall kVerbCalls[] = {
    {"color 0.5 0.25 1\nline 1 2 30 40",
     [](NKDraw& s) {
       s.SetColorRGBA(0.5, 0.25, 1.0, 1.0, true);
       s.Line(1, 2, 30, 40);
     }},
    {"color 0.5 0.25 1 0.5\nline 30 40 1 2",
     [](NKDraw& s) {
       s.SetColorRGBA(0.5, 0.25, 1.0, 0.5, true);
       s.Line(30, 40, 1, 2);
     }},
    {"background 0.5 0.25 1 0.25\npoint-background 7 8\nlineto 20 30",
     [](NKDraw& s) {
       s.SetColorRGBA(0.5, 0.25, 1.0, 0.25, false);
       s.Point(7, 8, false);
       s.LineTo(20, 30);
     }},
    {"color 0.2 0.4 0.6\nrect 2 2 50 50\ntransparency 0.5\nrect 10 10 60 60\npoint-background 4 4\n"
     "transparency 0\nrect 20 20 70 60",
     [](NKDraw& s) {
       s.SetColorRGBA(0.2, 0.4, 0.6, 1.0, true);
       s.Rectangle(2, 2, 50, 50);
       s.SetTransparency(0.5, true);
       s.SetTransparency(0.5, false);
       s.SetTransparency(true);
       s.Rectangle(10, 10, 60, 60);
       s.Point(4, 4, false);
       s.SetTransparency(false);
       s.Rectangle(20, 20, 70, 60);
     }},
    {"color 0.7 0.4 0.6\nadditive on\nrect 2 2 50 50\nrect 2 2 60 60\nadditive off\nrect 5 5 9 9",
     [](NKDraw& s) {
       s.SetColorRGBA(0.7, 0.4, 0.6, 1.0, true);
       s.SetAlphaAdditive(true);
       s.Rectangle(2, 2, 50, 50);
       s.Rectangle(2, 2, 60, 60);
       s.SetAlphaAdditive(false);
       s.Rectangle(5, 5, 9, 9);
     }},
    {"mode 709-full\ncolor 0.7 0.4 0.6\npoint 3 4",
     [](NKDraw& s) {
       s.SetYCbCrMode(NKPixel::mode709Full);
       s.SetColorRGBA(0.7, 0.4, 0.6, 1.0, true);
       s.Point(3, 4, true);
     }},
    {"color 0.2 0.4 0.6\nerase",
     [](NKDraw& s) {
       s.SetColorRGBA(0.2, 0.4, 0.6, 1.0, true);
       s.EraseCanvas(true);
     }},
    {"moveto 30 5\nlineto 60 50\nlineto 2 60",
     [](NKDraw& s) {
       s.MoveTo(30, 5);
       s.LineTo(60, 50);
       s.LineTo(2, 60);
     }},
    {"wu 3 3 80 30\nwuto 60 60",
     [](NKDraw& s) {
       s.LineWu(3, 3, 80, 30);
       s.LineWuTo(60, 60);
     }},
    {"vert 9 2 60\nhoriz 3 7 80",
     [](NKDraw& s) {
       s.LineVert(9, 2, 60);
       s.LineHoriz(3, 7, 80);
     }},
    {"dash 3 60 90 2 5 3", [](NKDraw& s) { s.Dash(3, 60, 90, 2, 5, 3); }},
    {"polyline 5 5 20 60 40 50", [](NKDraw& s) { s.Polyline(kSeven, 3); }},
    {"polylineto 5 5 20 60\nlineto 70 30",
     [](NKDraw& s) {
       constexpr tagPOINT kThree[] = {{5, 5}, {20, 60}, {20, 60}};
       s.PolylineTo(kThree, 2);
       s.LineTo(70, 30);
     }},
    {"fill 5 6 50 40",
     [](NKDraw& s) {
       const tagRECT rect = {5, 6, 50, 40};
       s.FillRect(&rect);
     }},
    {"fill 0 0 95 64",
     [](NKDraw& s) {
       const tagRECT rect = {0, 0, 95, 64};
       s.FillRect(&rect);
     }},
    {"fill 9 9 9 20\nfill 20 9 9 20\nfill 9 20 20 9\nhoriz 9 9 8",
     [](NKDraw& s) {
       // A row of one column where the last belongs to it, and nothing else.
       if (s.PixelType() > ptABGR32)
         s.LineVert(9, 9, 19);
     }},
    {"roundrect 5 5 90 60 30 20\nlineto 1 1",
     [](NKDraw& s) {
       s.RoundRect(5, 5, 90, 60, 30, 20);
       s.LineTo(1, 1);
     }},
    {"circle 40 30 25\nlineto 3 3",
     [](NKDraw& s) {
       s.Circle(40, 30, 25);
       s.LineTo(3, 3);
     }},
    {"ellipse 40 30 35 20\nlineto 3 3",
     [](NKDraw& s) {
       s.Ellipse(40, 30, 35, 20);
       s.LineTo(3, 3);
     }},
    {"arc 5 5 85 60 80 10 3 50\nlineto 3 3",
     [](NKDraw& s) {
       s.Arc(5, 5, 85, 60, 80, 10, 3, 50);
       s.LineTo(3, 3);
     }},
    {"arcto 5 5 85 60 80 10 3 50\nlineto 3 3",
     [](NKDraw& s) {
       s.ArcTo(5, 5, 85, 60, 80, 10, 3, 50);
       s.LineTo(3, 3);
     }},
    {"pie 5 5 85 60 80 10 3 50\nlineto 3 3",
     [](NKDraw& s) {
       s.Pie(5, 5, 85, 60, 80, 10, 3, 50);
       s.LineTo(3, 3);
     }},
    {"anglearc 40 30 25 10.5 100.25\nanglearcto 40 30 35 20 -30 60\nlineto 3 3",
     [](NKDraw& s) {
       s.AngleArc(40, 30, 25, 10.5F, 100.25F);
       s.AngleArcTo(40, 30, 35, 20, -30.0F, 60.0F);
       s.LineTo(3, 3);
     }},
    {"bezier 5 5 20 60 40 50 90 10\nlineto 3 3",
     [](NKDraw& s) {
       s.Bezier(5, 5, 20, 60, 40, 50, 90, 10);
       s.LineTo(3, 3);
     }},
    {"polybezier 5 5 20 60 40 50 50 30 60 10 80 20 90 60\nlineto 3 3",
     [](NKDraw& s) {
       s.PolyBezier(kSeven, 7);
       s.LineTo(3, 3);
     }},
    {"polybezierto 5 5 20 60 40 50 50 30 60 10 80 20 90 60\nlineto 3 3",
     [](NKDraw& s) {
       constexpr tagPOINT kTen[] = {{5, 5},   {20, 60}, {40, 50}, {50, 30}, {60, 10},
                                    {80, 20}, {90, 60}, {90, 60}, {90, 60}, {90, 60}};
       s.PolyBezierTo(kTen, 7);
       s.LineTo(3, 3);
     }},
    {"background 0.2 0.3 0.9\nlabel 3 3 a bc\nlabel-box 3 20 d\nlabel-inverse 40 20 e\n"
     "label-inverse-box 60 20 f\nlabel-scale 2\nlabel 3 40 g",
     [](NKDraw& s) {
       s.SetColorRGBA(0.2, 0.3, 0.9, 1.0, false);
       s.Label(3, 3, "a bc", false, false);
       s.Label(3, 20, "d", false, true);
       s.Label(40, 20, "e", true, false);
       s.Label(60, 20, "f", true, true);
       s.LabelFont(0U, 2);
       s.Label(3, 40, "g", false, false);
     }},
    {"text 2 4 20 ab\ntext-ground on\ntext 40 4 10 cd\ntext-center 4 30 90 50 e\n"
     "text-right 4 50 90 60 fg\ntext-ground off\ntext 2 30 10 h",
     [](NKDraw& s) {
       drawText(s, "ab", {2, 4, 2, 24}, 0);
       s.SetTextTransparent(false);
       drawText(s, "cd", {40, 4, 40, 14}, 0);
       drawText(s, "e", {4, 30, 90, 50}, DT_CENTER);
       drawText(s, "fg", {4, 50, 90, 60}, DT_RIGHT);
       s.SetTextTransparent(true);
       drawText(s, "h", {2, 30, 2, 40}, 0);
     }},
};

}  // namespace

TEST(Verbs, AreTheCallsOfTheLibraryInEveryLayout) {
  for (const DrawLayout& layout : drawLayouts()) {
    for (const VerbCall& entry : kVerbCalls) {
      Direct direct(layout);
      entry.call(*direct);
      EXPECT_EQ(drawn(layout, entry.statements), direct.frame()) << layout.name << "\n"
                                                                 << entry.statements;
    }
  }
}

TEST(Verbs, AreAllComparedWithTheirCalls) {
  std::set<std::string_view> compared;
  for (const VerbCall& entry : kVerbCalls) {
    const DrawScript script("s", entry.statements);
    for (const Statement& statement : script.statements())
      compared.insert(statement.verb->name);
  }
  for (const Verb& verb : verbs())
    EXPECT_TRUE(compared.contains(verb.name)) << verb.name;
}

TEST(Verbs, AreAllShownInAnExample) {
  std::set<std::string_view> shown;
  for (const auto& entry : std::filesystem::directory_iterator(NKDRAW_DRAW_EXAMPLES)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    EXPECT_TRUE(text.starts_with("# ")) << entry.path() << " has no title";
    const DrawScript script(entry.path(), text);
    for (const Statement& statement : script.statements())
      shown.insert(statement.verb->name);
  }
  for (const Verb& verb : verbs())
    EXPECT_TRUE(shown.contains(verb.name)) << verb.name;
}

namespace {

constexpr int kMargin = 48;

/// A statement whose coordinates can be moved.
struct Movable {
  const char *verb, *rest;
  std::vector<int> coordinates;
};

std::string moved(const std::vector<Movable>& statements, int by) {
  std::ostringstream text;
  text << "color 0.9 0.3 0.1\n";
  for (const Movable& statement : statements) {
    text << statement.verb;
    for (const int coordinate : statement.coordinates)
      text << ' ' << coordinate + by;
    text << statement.rest << '\n';
  }
  return text.str();
}

/// Statements that stay inside a canvas with that margin.
std::vector<Movable> randomStatements(nkdraw::test::Random& random) {
  std::vector<Movable> statements;
  for (int i = 0; i < 10; ++i) {
    const auto x = [&](int room) { return random.between(-kMargin, kWidth + kMargin - 1 - room); };
    const auto y = [&](int room) { return random.between(-kMargin, kHeight + kMargin - 1 - room); };
    statements.push_back({"line", "", {x(0), y(0), x(0), y(0)}});
    statements.push_back({"dash", " 4 3", {x(0), y(0), x(0), y(0)}});
    statements.push_back({"rect", "", {x(0), y(0), x(0), y(0)}});
    statements.push_back({"polyline", "", {x(0), y(0), x(0), y(0), x(0), y(0)}});
    statements.push_back({"point", "", {x(0), y(0)}});
    statements.push_back({"vert", "", {x(0), y(0), y(0)}});
    statements.push_back({"label", " x", {x(8), y(10)}});
    statements.push_back({"label-scale 2\nlabel", " y\nlabel-scale 1", {x(18), y(20)}});
    const int left = x(20), top = y(20);
    statements.push_back({"fill", "", {left, top, left + 20, top + 20}});
    statements.push_back({"horiz", "", {left, top, left + 20}});
  }
  return statements;
}

}  // namespace

TEST(Clipping, IsTheCropOfALargerCanvas) {
  nkdraw::test::Random random(5);
  for (const DrawLayout& layout : drawLayouts()) {
    if (layout.name == "ycbcr16" || layout.name == "ycbcra16")
      continue;  // whose rows are not filled where they are plotted
    const std::vector<Movable> statements = randomStatements(random);
    DrawCanvas small(layout, kWidth, kHeight);
    DrawScript("s", moved(statements, 0)).draw(small, Outside::kLeftOut);
    DrawCanvas large(layout, kWidth + 2 * kMargin, kHeight + 2 * kMargin);
    DrawScript("s", moved(statements, kMargin)).draw(large, Outside::kRefused);
    const nkdraw::tool::Frame crop = small.picture(), whole = large.picture();
    // A chroma plane's bytes are read together with the next pixel's, which the crop cuts off.
    const int readable = layout.name == "uv8" ? kWidth - 1 : kWidth;
    for (int y = 0; y < kHeight; ++y) {
      const std::uint8_t* const got = crop->data[0] + crop->linesize[0] * y;
      const std::uint8_t* const expected =
          whole->data[0] + whole->linesize[0] * (y + kMargin) + 3 * kMargin;
      ASSERT_TRUE(std::equal(got, got + 3 * readable, expected)) << layout.name << " " << y;
    }
  }
}

/// For curves about centres outside the canvas: a surface whose memory continues past its sides.
TEST(Clipping, LeavesTheRestOfCurvesAsItIs) {
  const char* const text =
      "circle 0 30 25\nellipse 95 30 20 28\narc -30 5 60 60 60 20 -30 50\npie 60 5 130 60 30 130 "
      "60 30\nbezier -40 5 20 60 90 50 140 30\nroundrect -20 5 60 60 30 20\nwu -30 10 130 55\n"
      "text-ground on\ntext -10 20 20 abc\ntext 80 20 20 abc\nlabel-box -5 45 ab\n";
  const int margin = 64, pitch = (kWidth + 2 * margin) * 4;
  std::vector<std::uint8_t> memory(static_cast<std::size_t>(pitch) * (kHeight + 2));
  auto* const canvas = reinterpret_cast<char*>(memory.data() + pitch + 4 * margin);
  const auto surface = nkdraw::test::makeSurface(ptBGRA32, kWidth, kHeight, pitch, canvas);
  surface->SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  surface->SetColorRGBA(0.0, 0.0, 0.0, 1.0, false);
  const DrawScript script("s", text);
  for (const Statement& statement : script.statements())
    ASSERT_EQ(statement.verb->draw(*surface, statement.values), 0U);
  const std::vector<std::uint8_t> clipped = drawn(drawLayoutNamed("bgra"), text, Outside::kLeftOut);
  for (int y = 0; y < kHeight; ++y)
    ASSERT_TRUE(std::equal(canvas + pitch * y, canvas + pitch * y + kWidth * 4,
                           reinterpret_cast<const char*>(clipped.data()) + kWidth * 4 * y))
        << y;
  EXPECT_NE(complaint(text), "");
}

TEST(Clipping, ChangesNothingInside) {
  for (const DrawLayout& layout : drawLayouts()) {
    const std::string text = "erase\ncolor 1 0 0\ncircle 40 30 25\ntext 3 3 20 ab\nfill 3 3 40 20";
    EXPECT_EQ(drawn(layout, text), drawn(layout, text, Outside::kLeftOut)) << layout.name;
  }
}

TEST(Clipping, DrawsAWholeCanvasRectangleWhereItLies) {
  const std::vector<std::uint8_t> frame =
      drawn(drawLayoutNamed("bgra"), "fill 10 10 106 74", Outside::kLeftOut);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x)
      ASSERT_EQ(frame[static_cast<std::size_t>((y * kWidth + x) * 4)],
                x >= 10 && y >= 10 ? 255 : 0);
  }
}

TEST(Curves, OfAnyControlPointsEnd) {
  nkdraw::test::Random random(3);
  const DrawLayout& layout = drawLayoutNamed("rgb24");
  for (int i = 0; i < 3000; ++i) {
    const int reach = 1 << random.between(0, 14);
    std::ostringstream text;
    text << "bezier";
    for (int k = 0; k < 8; ++k)
      text << ' ' << random.between(-reach, reach - 1);
    DrawCanvas canvas(layout, 2, 2);
    try {
      DrawScript("s", text.str()).draw(canvas, Outside::kLeftOut);
    } catch (const Failure& failure) {
      EXPECT_NE(std::string(failure.what()).find("ends must differ"), std::string::npos);
    }
  }
}
