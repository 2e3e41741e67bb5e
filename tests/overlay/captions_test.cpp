// SPDX-License-Identifier: BSD-2-Clause
//
// Captions in burnt frames: streams that the test encodes, words that it reads back from the
// pixels, glyph by glyph.
#include "exposed_overlay.h"

#include <tests/support/caption_stream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;
using Lines = std::vector<std::string>;
using Colour = CaptionColour;
using Triplets = std::vector<std::uint8_t>;

constexpr int kColumns = 34;
constexpr int kRows = 15;
constexpr char kNothing = '\x7F';  // how a cell that was not drawn is read
constexpr std::uint8_t kValidFirstField = 0xFC;

/// Where the screen stands, and how large its dots are.
struct Place {
  int scale, left, top;
};

constexpr int kWidth = 680;
constexpr int kHeight = 380;
constexpr Place kMiddle = {2, 68, 40};  // of frames of this size

/// An overlay with captions, and the frame it burns into.
class Player {
 public:
  explicit Player(const Stream& stream, std::uint32_t type = 1, std::uint32_t display = 1,
                  int width = kWidth, int height = kHeight)
      : video_(videoOf(stream, width, height)), frame_(7, width, height), clean_(frame_.frame) {
    overlay_.Enabled = 1;
    overlay_.CaptionsEnable = display;
    overlay_.CaptionSource = type;
    const HZWSYSTEM system{};
    overlay_.Create(&video_, &system);
    BITMAPINFO info{};
    std::memcpy(&info, &video_, sizeof info);
    NKDraw* made = nullptr;
    GetDraw(&info, frame_.record.frameBuffer, made);
    reader_.reset(made);
  }
  ~Player() { ccBurnClose(overlay_.captionHandle); }

  /// Burns a clean frame with these caption bytes.
  void burn(const Triplets& triplets) {
    std::ranges::copy(clean_.bytes(), frame_.frame.data());
    frame_.record.captionData = triplets.empty() ? nullptr : triplets.data();
    frame_.record.captionBytes = static_cast<std::uint32_t>(triplets.size());
    overlay_.BurnIn(&frame_.record, nullptr, nullptr, 0);
    ASSERT_TRUE(frame_.frame.guardsIntact());
  }
  /// Burns one frame for each pair; `each`, if given, looks at every one.
  void play(const CaptionStream& stream, const std::function<void()>& each = {}) {
    for (const CaptionPair& pair : stream.pairs()) {
      const auto kind = static_cast<std::uint8_t>(kValidFirstField + stream.field());
      burn({kind, pair[0], pair[1], 0xFA, 0x12, 0x34, 0xFF, 0x02, 0x41});
      if (each)
        each();
    }
  }

  [[nodiscard]] bool untouched() const { return frame_.frame.untouched(); }
  [[nodiscard]] Frame& frame() { return frame_.frame; }
  [[nodiscard]] NKDraw& reader() { return *reader_; }
  [[nodiscard]] Overlay& overlay() { return overlay_; }

  /// The dots of a cell, top line first, the highest bit leftmost.
  [[nodiscard]] std::array<unsigned, 10> dots(const Place& place, int column, int row) {
    std::array<unsigned, 10> lines{};
    for (int dot = 0; dot < 80; ++dot) {
      const int x = place.left + (column * 8 + dot % 8) * place.scale + place.scale / 2;
      const int y = place.top + (row * 10 + dot / 8) * place.scale + place.scale / 2;
      lines[static_cast<std::size_t>(dot / 8)] |= isInk(x, y) ? 0x80U >> dot % 8 : 0U;
    }
    return lines;
  }

  /// The screen's rows that have something in them, without the edge columns.
  [[nodiscard]] Lines read(const Place& place = kMiddle) {
    Lines lines;
    for (int row = 0; row < kRows; ++row) {
      std::string line;
      for (int column = 0; column < kColumns; ++column)
        line += cellAt(place, column, row);
      if (line.find_first_not_of(kNothing) != std::string::npos)
        lines.push_back(trimmed(line));
    }
    return lines;
  }

 private:
  struct Release {
    void operator()(NKDraw* surface) const { ReleaseDraw(surface); }
  };

  /// The brightness of a pixel, 0 to 255, as the layout stores it.
  [[nodiscard]] int brightness(Frame& frame, int x, int y) const {
    const std::uint8_t* const row = frame.data() + y * static_cast<int>(reader_->Pitch());
    switch (reader_->PixelType()) {
      case ptV210: {
        // Four words for six pixels; where the luma of each lies.
        constexpr int kLumaBits[] = {10, 32, 52, 74, 96, 116};
        const int bit = kLumaBits[x % 6];
        return static_cast<int>(wordAt(row + x / 6 * 16 + bit / 32 * 4) >> bit % 32 >> 2 & 0xFF);
      }
      case ptUYVY:
        return row[2 * x + 1];
      case ptYUYV:
      case ptYVYU:
        return row[2 * x];
      case ptBGRA32:
        return (row[4 * x] + row[4 * x + 1] + row[4 * x + 2]) / 3;
      default:
        return (row[3 * x] + row[3 * x + 1] + row[3 * x + 2]) / 3;
    }
  }
  [[nodiscard]] bool isInk(int x, int y) { return brightness(frame_.frame, x, y) > 40; }

  /// The glyph in a cell; kNothing if its pixels are those of the clean frame.
  [[nodiscard]] char cellAt(const Place& place, int column, int row) {
    if (!wasDrawn(place, column, row))
      return kNothing;
    const auto lines = dots(place, column, row);
    for (int code = 0; code < 256; ++code) {
      const std::uint8_t* const glyph = nkdraw::labelGlyphs + (code == 0 ? 32 : code) * 10;
      if (std::equal(lines.rbegin(), lines.rend(), glyph))
        return code == 0 ? ' ' : static_cast<char>(code);
    }
    return '?';
  }
  /// Whether any of its pixels differ in brightness from the clean frame's.
  [[nodiscard]] bool wasDrawn(const Place& place, int column, int row) {
    for (int at = 0; at < 80 * place.scale; ++at) {
      const int x = place.left + column * 8 * place.scale + at % (8 * place.scale);
      const int y = place.top + row * 10 * place.scale + at / (8 * place.scale);
      if (brightness(frame_.frame, x, y) != brightness(clean_, x, y))
        return true;
    }
    return false;
  }
  static std::string trimmed(const std::string& line) {
    const std::string blanks = {' ', kNothing};
    const std::size_t first = line.find_first_not_of(blanks);
    if (first == std::string::npos)
      return {};
    std::string text = line.substr(first, line.find_last_not_of(blanks) - first + 1);
    std::replace(text.begin(), text.end(), kNothing, ' ');
    return text;
  }

  HZWVIDEO video_;
  BurnFrame frame_;
  Frame clean_;
  Overlay overlay_;
  std::unique_ptr<NKDraw, Release> reader_;
};

CaptionStream popOn(std::string_view text, unsigned channel = 1) {
  return CaptionStream(channel).loadPopOn().eraseHidden().row(15).text(text).endOfCaption();
}

class Captions : public testing::TestWithParam<Stream> {};

INSTANTIATE_TEST_SUITE_P(AllStreams, Captions, testing::ValuesIn(kStreams),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(Captions, PopOnAppearsWholeAtItsEnd) {
  Player player(GetParam());
  CaptionStream load;
  load.loadPopOn().eraseHidden().row(14).text("Hello, world!").row(15).text("Second row");
  player.play(load, [&] { EXPECT_TRUE(player.untouched()); });
  player.play(CaptionStream().endOfCaption());
  EXPECT_EQ(player.read(), (Lines{"Hello, world!", "Second row"}));
  player.play(CaptionStream().silence(100));
  EXPECT_EQ(player.read(), (Lines{"Hello, world!", "Second row"}));
}

TEST_P(Captions, ErasingLeavesTheFramesUntouchedAgain) {
  Player player(GetParam());
  player.play(popOn("Gone soon"));
  EXPECT_FALSE(player.untouched());
  player.play(CaptionStream().eraseDisplayed());
  EXPECT_TRUE(player.untouched());
}

TEST_P(Captions, RollUpKeepsAsManyRowsAsItSays) {
  for (unsigned rows = 2; rows <= 4; ++rows) {
    Player player(GetParam());
    CaptionStream stream;
    stream.rollUp(rows);
    for (const char* const text : {"first", "second", "third", "fourth", "fifth"})
      stream.carriageReturn().row(15).text(text);
    player.play(stream.silence());
    Lines wanted = {"first", "second", "third", "fourth", "fifth"};
    wanted.erase(wanted.begin(), wanted.end() - rows);
    EXPECT_EQ(player.read(), wanted) << rows;
  }
}

TEST_P(Captions, PaintOnAppearsAtTheEndOfEachWord) {
  Player player(GetParam());
  player.play(CaptionStream().paintOn().row(3).text("Painted "));
  EXPECT_EQ(player.read(), Lines{"Painted"});
  player.play(CaptionStream().text("words"));
  player.play(CaptionStream().silence());
  EXPECT_EQ(player.read(), Lines{"Painted words"});
}

TEST_P(Captions, AWordIsFinishedByFramesWithoutCaptionBytes) {
  Player player(GetParam());
  player.play(CaptionStream().rollUp(2).carriageReturn().row(15).text("Silence"));
  for (int i = 0; i < 3; ++i)
    player.burn({});
  EXPECT_EQ(player.read(), Lines{"Silence"});
}

TEST_P(Captions, ARedRowIsRed) {
  Player player(GetParam());
  player.play(CaptionStream()
                  .loadPopOn()
                  .eraseHidden()
                  .row(15, Colour::kRed)
                  .text("\x7F\x7F")
                  .endOfCaption());
  double red = 0, green = 0, blue = 0, alpha = 0;
  player.reader().GetPixelRGBA(kMiddle.left + 2 * 16, kMiddle.top + 14 * 20 + 10, red, green, blue,
                               alpha);
  // The matrices of 4:2:2 do not lead all the way back.
  EXPECT_GT(red, 0.8);
  EXPECT_LT(green, 0.1);
  EXPECT_LT(blue, 0.1);
}

TEST_P(Captions, DisplayTwoDrawsNoBoxes) {
  Player boxed(GetParam()), bare(GetParam(), 1, 2);
  boxed.play(popOn("Bare"));
  bare.play(popOn("Bare"));
  const auto boxedBytes = boxed.frame().changed().size(), bareBytes = bare.frame().changed().size();
  EXPECT_GT(bareBytes, 0U);
  EXPECT_LT(bareBytes, boxedBytes / 2);
}

struct Size {
  int width, height;
  Place place;
};

constexpr Size kSizes[] = {
    {352, 240, {1, 40, 44}},       {720, 486, {2, 88, 92}},     {720, 576, {2, 88, 138}},
    {1280, 720, {3, 232, 134}},    {1920, 1080, {5, 280, 164}}, {3840, 2160, {11, 424, 254}},
    {240, 120, {1, 0, 120 - 150}},
};

TEST_P(Captions, StandInTheMiddleOfTheFrameAsLargeAsItsSafeAreaLets) {
  for (const Size& size : kSizes) {
    Player player(GetParam(), 1, 1, size.width, size.height);
    player.play(popOn("Sized"));
    EXPECT_EQ(player.dots(size.place, 1, 14)[1], nkdraw::labelGlyphs['S' * 10 + 8]) << size.width;
    if (size.place.top >= 0) {
      EXPECT_EQ(player.read(size.place), Lines{"Sized"}) << size.width;
    }
  }
}

TEST_P(Captions, ATinyFrameShowsWhatFitsIntoIt) {
  Player player(GetParam(), 1, 1, 16, 16);
  player.play(popOn("I am far too long for this."));
  EXPECT_EQ(player.dots({1, 0, 16 - 150}, 1, 14)[1], nkdraw::labelGlyphs['I' * 10 + 8]);
  Player tiniest(GetParam(), 1, 1, 4, 2);
  tiniest.play(popOn("None"));
  EXPECT_TRUE(tiniest.untouched());
}

TEST_P(Captions, GarbageNeitherCrashesNorLeavesTheFrame) {
  Random random(608);
  for (const std::uint32_t type : {1U, 4U, 5U, 8U}) {
    for (const int width : {16, 320}) {
      Player player(GetParam(), type, 1, width, width == 16 ? 16 : 200);
      for (int i = 0; i < 1500; ++i) {
        Triplets bytes(static_cast<std::size_t>(random.between(0, 30)));
        for (std::size_t at = 0; at < bytes.size(); ++at) {
          const std::uint32_t word = random.word();
          bytes[at] = at % 3 == 0 ? static_cast<std::uint8_t>(0xFC | (word & 1)) : withParity(word);
          // Control codes more often than random data has them, and sometimes arbitrary bytes.
          if (at % 3 == 1 && (word & 0x300) != 0)
            bytes[at] = withParity(word & 0x1F);
          if ((word & 0x1F000) == 0)
            bytes[at] = static_cast<std::uint8_t>(word >> 24);
        }
        player.burn(bytes);
        if (testing::Test::HasFatalFailure())
          return;
      }
    }
  }
}

class CaptionStreams : public testing::Test {
 protected:
  const Stream& stream_ = kStreams[0];
};

TEST_F(CaptionStreams, TypesChooseTheirChannelsAndUnknownOnesTheFirst) {
  const std::map<std::uint32_t, unsigned> channels = {{0, 1}, {1, 1}, {2, 2},  {3, 3},
                                                      {4, 4}, {9, 1}, {~0U, 1}};
  for (const auto& [type, channel] : channels) {
    Player player(stream_, type);
    for (unsigned sent = 1; sent <= 4; ++sent)
      player.play(popOn("Channel " + std::to_string(sent), sent));
    EXPECT_EQ(player.read(), Lines{"Channel " + std::to_string(channel)}) << type;
  }
}

TEST_F(CaptionStreams, ChannelsOfTheTwoFieldsMayBeSentInTurn) {
  for (unsigned channel = 1; channel <= 4; ++channel) {
    Player player(stream_, channel);
    CaptionStream first = popOn("Of the first", 2), second = popOn("Of the other", 3);
    for (std::size_t i = 0; i < first.pairs().size(); ++i)
      player.burn({0xFC, first.pairs()[i][0], first.pairs()[i][1], 0xFD, second.pairs()[i][0],
                   second.pairs()[i][1]});
    const Lines wanted[] = {{}, {"Of the first"}, {"Of the other"}, {}};
    EXPECT_EQ(player.read(), wanted[channel - 1]) << channel;
  }
}

TEST_F(CaptionStreams, TextChannelsShowTheirPageOnceItHasText) {
  for (unsigned channel = 1; channel <= 4; ++channel) {
    Player player(stream_, channel + 4);
    player.burn({});
    EXPECT_TRUE(player.untouched());
    player.play(CaptionStream(channel).restartText().text("Weather ").carriageReturn());
    EXPECT_EQ(player.read().front(), "Weather") << channel;
    EXPECT_EQ(player.read().size(), static_cast<std::size_t>(kRows));
  }
}

TEST_F(CaptionStreams, TheDataServiceBetweenCaptionsIsNotShown) {
  Player player(stream_, 3);
  CaptionStream stream(3);
  stream.paintOn().row(15).text("Before ").raw(0x01, 0x03).raw('N', 'o').raw('n', 'e');
  player.play(stream.command(0x15, 0x29).text("After ").raw(0x02, 0x03).raw('N', 'o'));
  player.play(CaptionStream(3).raw(0x0F, 0x3D).silence());
  EXPECT_EQ(player.read(), Lines{"Before After"});
}

TEST_F(CaptionStreams, AnUnderlineIsALineUnderTheWord) {
  Player player(stream_);
  player.play(CaptionStream().loadPopOn().row(15, Colour::kWhite, true).text("AB").endOfCaption());
  for (const int column : {1, 2})
    EXPECT_EQ(player.dots(kMiddle, column, 14)[9], 0xFFU);
}

TEST_F(CaptionStreams, ItalicsLean) {
  Player player(stream_);
  player.play(CaptionStream().loadPopOn().row(15, Colour::kItalic).text("I").endOfCaption());
  const auto dots = player.dots(kMiddle, 1, 14);
  for (std::size_t line = 0; line < 10; ++line)
    EXPECT_EQ(dots[line], nkdraw::labelGlyphs['I' * 10 + 9 - static_cast<int>(line)] >> (line < 5))
        << line;
}

TEST_F(CaptionStreams, MidRowCodesTakeACellAndChangeWhatFollows) {
  Player player(stream_);
  player.play(CaptionStream()
                  .loadPopOn()
                  .row(15)
                  .text("one")
                  .midRow(Colour::kCyan, true)
                  .text("two")
                  .endOfCaption());
  EXPECT_NE(player.dots(kMiddle, 1, 14)[9], 0xFFU);
  EXPECT_EQ(player.dots(kMiddle, 5, 14)[9], 0xFFU);
  double red = 0, green = 0, blue = 0, alpha = 0;
  player.reader().GetPixelRGBA(kMiddle.left + 5 * 16, kMiddle.top + 14 * 20 + 18, red, green, blue,
                               alpha);
  EXPECT_EQ(red, 0.0);
  EXPECT_EQ(green, 1.0);
  EXPECT_EQ(blue, 1.0);
}

TEST_F(CaptionStreams, IndentsAndBackspacesMoveTheText) {
  Player player(stream_);
  player.play(CaptionStream()
                  .loadPopOn()
                  .indentedRow(2, 8)
                  .text("ab")
                  .backspace()
                  .text("c")
                  .endOfCaption());
  EXPECT_EQ(player.read(), Lines{"ac"});
  EXPECT_EQ(player.dots(kMiddle, 9, 1)[4], nkdraw::labelGlyphs['a' * 10 + 5]);
}

TEST_F(CaptionStreams, CharactersOutsideAsciiHaveTheirGlyphs) {
  struct {
    unsigned first, second;
    int code;
  } constexpr kCharacters[] = {
      {0x2A, 0, 160},    {0x5C, 0, 130},    {0x5E, 0, 161},    {0x5F, 0, 162},    {0x60, 0, 163},
      {0x7B, 0, 135},    {0x7C, 0, 246},    {0x7D, 0, 165},    {0x7E, 0, 164},    {0x7F, 0, 219},
      {0x11, 0x30, '?'}, {0x11, 0x31, 248}, {0x11, 0x32, 171}, {0x11, 0x33, 168}, {0x11, 0x34, '?'},
      {0x11, 0x35, 155}, {0x11, 0x36, 156}, {0x11, 0x37, 14},  {0x11, 0x38, 133}, {0x11, 0x3A, 138},
      {0x11, 0x3B, 131}, {0x11, 0x3C, 136}, {0x11, 0x3D, 140}, {0x11, 0x3E, 147}, {0x11, 0x3F, 150},
  };
  for (const auto& each : kCharacters) {
    Player player(stream_);
    player.play(CaptionStream().loadPopOn().row(15).raw(each.first, each.second).endOfCaption());
    const auto dots = player.dots(kMiddle, 1, 14);
    EXPECT_TRUE(std::equal(dots.rbegin(), dots.rend(), nkdraw::labelGlyphs + each.code * 10))
        << std::hex << each.first << ' ' << each.second;
  }
}

TEST_F(CaptionStreams, OtherTripletsAndBytesBehindTheLastAreNotRead) {
  Player player(stream_);
  player.play(popOn("Right"));
  const CaptionPair wrong = popOn("x").eraseDisplayed().pairs().back();
  player.burn({0xF8, wrong[0], wrong[1], 0xFE, wrong[0], wrong[1], 0xFF, wrong[0], wrong[1], 0xFD,
               wrong[0], wrong[1], 0xFC, wrong[0]});
  EXPECT_EQ(player.read(), Lines{"Right"});
  player.burn({0xFC});
  EXPECT_EQ(player.read(), Lines{"Right"});
  player.burn({0xFC, wrong[0], wrong[1]});
  EXPECT_TRUE(player.untouched());
}

TEST_F(CaptionStreams, DamagedPairsAreLeftOut) {
  Player player(stream_);
  player.play(popOn("Whole"));
  const CaptionPair erase = CaptionStream().eraseDisplayed().pairs()[0];
  for (const unsigned bit : {0x80U, 0x01U, 0x40U}) {
    const auto flipped = static_cast<std::uint8_t>(erase[0] ^ bit);
    player.burn({0xFC, flipped, erase[1]});
    player.burn({0xFC, erase[0], static_cast<std::uint8_t>(erase[1] ^ bit)});
  }
  EXPECT_EQ(player.read(), Lines{"Whole"});
}

TEST_F(CaptionStreams, AFrameMayCarrySeveralPairs) {
  Player player(stream_);
  const CaptionStream stream = popOn("All at once");
  Triplets all;
  for (const CaptionPair& pair : stream.pairs())
    all.insert(all.end(), {0xFC, pair[0], pair[1]});
  player.burn(all);
  EXPECT_EQ(player.read(), Lines{"All at once"});
}

TEST_F(CaptionStreams, TheFrameRateDoesNotMatter) {
  for (const std::uint32_t rate : {1U, 24U, 50U, 60U, 1000U}) {
    Player player(stream_);
    player.overlay().video.frameRate = rate;
    player.overlay().video.frameScale = 1;
    player.play(popOn("At any rate").silence(200));
    EXPECT_EQ(player.read(), Lines{"At any rate"}) << rate;
  }
}

TEST_F(CaptionStreams, ClosedBurnersDoNothing) {
  const HZWVIDEO video = videoOf(stream_);
  nkCaptionBurner* const burner = ccBurnOpen(&video);
  ASSERT_NE(burner, nullptr);
  EXPECT_EQ(ccBurnClose(burner), 0U);
  BurnFrame frame;
  EXPECT_EQ(ccBurnSetCCType(burner, 2), 0U);
  EXPECT_EQ(ccBurnSetCCDisplay(burner, 2), 0U);
  EXPECT_EQ(ccBurnAddCCData(burner, &frame.record), 0U);
  EXPECT_EQ(ccBurnIn(burner, &frame.record), 0U);
  EXPECT_EQ(ccBurnClose(burner), 0U);
  EXPECT_TRUE(frame.frame.untouched());
}

/// The lines of subtitles, without the marks of their format.
Lines linesOf(std::istream& subtitles) {
  Lines lines;
  for (std::string line, text; std::getline(subtitles, line); text.clear()) {
    if (line.find_first_not_of("0123456789\r") == std::string::npos ||
        line.find("-->") != std::string::npos)
      continue;
    bool inMark = false;
    for (const char character : line) {
      const bool opens = character == '<' || character == '{';
      if (opens || character == '>' || character == '}')
        inMark = opens;
      else if (!inMark && (character != ' ' || !text.empty()))
        text += character;
    }
    text.erase(text.find_last_not_of(" \r") + 1);
    if (!text.empty())
      lines.push_back(text);
  }
  return lines;
}

/// What the ffmpeg command reads in a stream.
Lines decodedByFfmpeg(const CaptionStream& stream) {
  const std::string path = testing::TempDir() + "nkdraw-captions.scc";
  {
    std::ofstream file(path);
    file << "Scenarist_SCC V1.0\n";
    int frame = 0;
    for (const CaptionPair& pair : stream.pairs()) {
      char line[64];
      std::snprintf(line, sizeof line, "\n00:00:%02d:%02d\t%02x%02x\n", frame / 30, frame % 30,
                    pair[0], pair[1]);
      file << line;
      ++frame;
    }
  }
  const std::string command = "ffmpeg -v error -i " + path + " -f srt - </dev/null";
  std::string text;
  if (std::FILE* const pipe = popen(command.c_str(), "r")) {
    char buffer[4096];
    for (std::size_t got = 0; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
      text.append(buffer, got);
    EXPECT_EQ(pclose(pipe), 0);
  }
  std::remove(path.c_str());
  std::istringstream subtitles(text);
  return linesOf(subtitles);
}

TEST_F(CaptionStreams, ShowTheLinesThatFfmpegDecodes) {
  CaptionStream stream;
  stream.loadPopOn().eraseHidden().row(13).text("- Where are you going?");
  stream.row(14, Colour::kYellow).text("- Nowhere, today.").endOfCaption().silence(30);
  stream.loadPopOn().eraseHidden().indentedRow(2, 12).text("(door slams)");
  stream.eraseDisplayed().endOfCaption().silence(30).eraseDisplayed();
  stream.rollUp(2).carriageReturn().row(15).text("GOOD EVENING.").silence(9).carriageReturn();
  stream.row(15).text("THE NEWS AT TEN").silence(30).eraseDisplayed().silence(5);

  Player player(stream_);
  std::set<std::string> shown;
  player.play(stream, [&] {
    for (const std::string& line : player.read())
      shown.insert(line);
  });
  const Lines decoded = decodedByFfmpeg(stream);
  ASSERT_GE(decoded.size(), 5U);
  for (const std::string& line : decoded)
    EXPECT_TRUE(shown.contains(line)) << line;
}

}  // namespace
