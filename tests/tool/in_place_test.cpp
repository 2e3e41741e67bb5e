// SPDX-License-Identifier: BSD-2-Clause
//
// Uncompressed clips: the burnt overlay is what the library draws, and everything else stays bit
// for bit.
#include "clip.h"
#include "program.h"
#include "reference_overlay.h"

#include <media/layouts.h>
#include <media/v210_rows.h>

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <functional>
#include <iterator>

using namespace nkdraw::media;

namespace {

constexpr char kPicture[] = "testsrc2=size=352x160:rate=25";

/// A clip of three frames in this layout, cropped to the width.
void makeClip(const std::string& path, const Layout& layout, int width = 320, int height = 144) {
  const std::string crop =
      "crop=" + std::to_string(width) + ":" + std::to_string(height) + ":0:0:exact=1";
  Arguments arguments = {"-f", "lavfi", "-i", std::string(kPicture) + ",format=gbrp," + crop};
  arguments.insert(arguments.end(), {"-frames:v", "3", "-timecode", "00:00:10:00"});
  if (layout.codec == AV_CODEC_ID_V210)
    arguments.insert(arguments.end(), {"-c:v", "v210"});
  else
    arguments.insert(arguments.end(),
                     {"-c:v", "rawvideo", "-pix_fmt", av_get_pix_fmt_name(layout.pixelFormat)});
  if (path.ends_with(".mkv"))
    arguments.insert(arguments.end(), {"-allow_raw_vfw", "1"});
  arguments.push_back(path);
  ffmpeg(arguments);
}

/// A frame as a packed canvas of another layout, and back.
struct Canvas {
  pixelType type;
  std::function<Bytes(const Bytes& frame, int width, int height)> from;
  std::function<Bytes(const Bytes& canvas, int width, int height)> to;
};

Bytes same(const Bytes& frame, int, int) {
  return frame;
}

Bytes widened(const Bytes& frame, int, int) {
  Bytes canvas;
  for (std::size_t i = 0; i < frame.size(); i += 3)
    canvas.insert(canvas.end(), {frame[i], frame[i + 1], frame[i + 2], 0});
  return canvas;
}
Bytes narrowed(const Bytes& canvas, int, int) {
  Bytes frame;
  for (std::size_t i = 0; i < canvas.size(); i += 4)
    frame.insert(frame.end(), {canvas[i], canvas[i + 1], canvas[i + 2]});
  return frame;
}

/// Takes byte order[i] of every four to place i.
auto reordered(std::array<std::size_t, 4> order) {
  return [order](const Bytes& from, int, int) {
    Bytes to;
    for (std::size_t i = 0; i < from.size(); i += 4) {
      for (const std::size_t byte : order)
        to.push_back(from[i + byte]);
    }
    return to;
  };
}

const std::uint16_t* words(const std::uint8_t* bytes) {
  return reinterpret_cast<const std::uint16_t*>(bytes);
}
std::uint16_t* words(std::uint8_t* bytes) {
  return reinterpret_cast<std::uint16_t*>(bytes);
}

/// FFmpeg's three planes as v210.
Bytes planesToV210(const Bytes& frame, int width, int height) {
  const std::size_t pitch = packedPitch(ptV210, width), w = static_cast<std::size_t>(width);
  const std::size_t rows = static_cast<std::size_t>(height);
  Bytes canvas(pitch * rows);
  for (std::size_t y = 0; y < rows; ++y)
    packV210Row(words(frame.data() + 2 * w * y), words(frame.data() + 2 * w * rows + w * y),
                words(frame.data() + 3 * w * rows + w * y), canvas.data() + pitch * y, width);
  return canvas;
}
Bytes v210ToPlanes(const Bytes& canvas, int width, int height) {
  const std::size_t pitch = packedPitch(ptV210, width), w = static_cast<std::size_t>(width);
  const std::size_t rows = static_cast<std::size_t>(height);
  Bytes frame(4 * w * rows);
  for (std::size_t y = 0; y < rows; ++y)
    unpackV210Row(canvas.data() + pitch * y, words(frame.data() + 2 * w * y),
                  words(frame.data() + 2 * w * rows + w * y),
                  words(frame.data() + 3 * w * rows + w * y), width);
  return frame;
}

/// The layout in which all of the overlay shows. If every stroke is on even columns, the layouts
/// that swap the lumas of a pair also show it.
Canvas canvasFor(const Layout& layout, bool pairsWhole) {
  switch (layout.type) {
    case ptV210:
      return {ptV210, planesToV210, v210ToPlanes};
    case ptRGB24:
      return {ptRGBA32, widened, narrowed};
    case ptBGR24:
      return {ptBGRA32, widened, narrowed};
    case ptYUYV:
      if (!pairsWhole)
        return {ptUYVY, reordered({1, 0, 3, 2}), reordered({1, 0, 3, 2})};
      break;
    case ptYVYU:
      if (!pairsWhole)
        return {ptUYVY, reordered({3, 0, 1, 2}), reordered({1, 2, 3, 0})};
      break;
    default:
      break;
  }
  return {layout.type, same, same};
}

/// The columns of the canvas; pairs are whole.
int canvasWidth(const Layout& layout, int width) {
  return isYCbCr(layout.type) && layout.type != ptV210 ? width + width % 2 : width;
}

struct Box {
  int left, top, right, bottom;  // right and bottom lie outside
};

/// Compares all that lies outside the box, byte by byte, in packed layouts.
void expectSameOutside(const Clip& a, const Clip& b, const Box& box) {
  const std::size_t row = a.rowBytes();
  const std::size_t perPixel = row / static_cast<std::size_t>(a.width);
  for (std::size_t frame = 0; frame < a.frames.size(); ++frame) {
    for (int y = 0; y < a.height; ++y) {
      for (std::size_t byte = 0; byte < row; ++byte) {
        const auto x = static_cast<int>(byte / perPixel);
        if (y >= box.top && y < box.bottom && x >= box.left && x < box.right)
          continue;
        const std::size_t place = static_cast<std::size_t>(y) * row + byte;
        ASSERT_EQ(a.frames[frame][place], b.frames[frame][place])
            << "frame " << frame << " at " << x << "," << y;
      }
    }
  }
}

struct Case {
  const Layout* layout;
  std::string suffix;
};

std::vector<Case> allCases() {
  std::vector<Case> cases;
  for (const Layout& layout : layouts()) {
    for (const auto& [container, suffix] : {std::pair{kMOV, "mov"}, std::pair{kAVI, "avi"},
                                            std::pair{kMKV, "mkv"}, std::pair{kNUT, "nut"}}) {
      if ((layout.containers & container) != 0)
        cases.push_back({&layout, suffix});
    }
  }
  return cases;
}

class InPlace : public testing::TestWithParam<Case> {
 protected:
  /// Burns timecode at (x, y) and compares every frame with the library's own drawing.
  void expectBurnt(int width, int height, int x, int y, int size, bool fill,
                   const std::string& outputSuffix) {
    const Layout& layout = *GetParam().layout;
    const std::string in = at("in." + GetParam().suffix), out = at("out." + outputSuffix);
    makeClip(in, layout, width, height);
    const Outcome outcome =
        burnin({in, out, "--overwrite", "--start-timecode", "00:00:10:00", "--position",
                std::to_string(x) + "," + std::to_string(y), "--timecode-size",
                std::to_string(size), fill ? "--fill" : "--no-fill", "--keep-alpha"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out + outcome.err, "");

    const Clip source = decode(in), burnt = decode(out);
    ASSERT_EQ(burnt.format, source.format);
    ASSERT_EQ(burnt.frames.size(), source.frames.size());
    const Canvas canvas = canvasFor(layout, x % 2 == 0 && size % 2 == 0);
    ReferenceOverlay overlay(canvas.type, canvasWidth(layout, width), height, 25);
    overlay.place(x, y, static_cast<std::uint32_t>(size)).fill(fill);
    for (std::size_t i = 0; i < source.frames.size(); ++i) {
      Bytes expected = canvas.from(source.frames[i], width, height);
      overlay.burn(expected.data(), static_cast<std::uint32_t>(10 * 25 + i));
      expected = canvas.to(expected, width, height);
      ASSERT_EQ(expected.size(), burnt.frames[i].size());
      EXPECT_TRUE(expected == burnt.frames[i]) << "frame " << i;
      EXPECT_FALSE(expected == source.frames[i]);
    }
    if (layout.type != ptV210 && x % 2 == 0)
      expectSameOutside(source, burnt, {x, y, x + 8 * 11 * size, y + 10 * size + 1});
  }
};

}  // namespace

TEST_P(InPlace, BurnsWhatTheLibraryDrawsAndKeepsTheRest) {
  expectBurnt(320, 144, 20, 100, 2, true, GetParam().suffix);
}

TEST_P(InPlace, BurnsOddMagnificationsAtOddPlacesWithoutABox) {
  expectBurnt(320, 144, 7, 11, 3, false, GetParam().suffix);
}

TEST_P(InPlace, BurnsIntoFramesOfOddSizes) {
  // FFmpeg makes no v210 of odd width; there the last group of six is not full.
  const int odd = GetParam().layout->type == ptV210 ? 1 : 0;
  expectBurnt(321 + odd, 143, 12, 9, 2, true, GetParam().suffix);
  expectBurnt(323 + odd, 141, 1, 9, 1, true, GetParam().suffix);
}

TEST_P(InPlace, FillsTheFrameUpToItsLastPixel) {
  expectBurnt(176, 21, 0, 0, 2, true, GetParam().suffix);
}

TEST_P(InPlace, KeepsThePixelsInAnotherKindOfFile) {
  // Every layout of the table may go to NUT, and from there to its own kind.
  expectBurnt(322, 144, 20, 100, 2, true, "nut");
}

INSTANTIATE_TEST_SUITE_P(EveryLayoutAndFile, InPlace, testing::ValuesIn(allCases()),
                         [](const testing::TestParamInfo<Case>& each) {
                           return "as_" + std::string(each.param.layout->name) + "_in_" +
                                  each.param.suffix;
                         });

namespace {

/// Clips that go from one kind of file to another.
void expectKeptAcross(const char* layoutName, const std::string& from, const std::string& to) {
  const Layout& layout = *layoutNamed(layoutName);
  const std::string in = at("in." + from), out = at("out." + to);
  makeClip(in, layout, 321 + (layout.type == ptV210 ? 1 : 0), 143);
  const Outcome outcome = burnin({in, out, "--position", "0,0", "--timecode-size", "1"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip source = decode(in), burnt = decode(out);
  EXPECT_EQ(burnt.format, source.format);
  ASSERT_EQ(burnt.frames.size(), 3U);
  if (layout.type != ptV210)
    expectSameOutside(source, burnt, {0, 0, 88, 11});
}

}  // namespace

TEST(InPlaceAcrossFiles, TurnsBottomUpRowsRound) {
  expectKeptAcross("bgr24", "avi", "mov");
}
TEST(InPlaceAcrossFiles, PadsRowsAsAVIWantsThem) {
  expectKeptAcross("bgr24", "nut", "avi");
}
TEST(InPlaceAcrossFiles, TakesThePaddingOfQuickTimeAway) {
  expectKeptAcross("rgb24", "mov", "nut");
}
TEST(InPlaceAcrossFiles, KeepsV210) {
  expectKeptAcross("v210", "avi", "mov");
}
TEST(InPlaceAcrossFiles, GivesUYVYTheNameThatQuickTimeHasForIt) {
  expectKeptAcross("uyvy", "avi", "mov");
}

TEST(InPlaceOddities, DrawsOnSignedChromaAsOnAnyOther) {
  const std::string in = at("in.mov"), out = at("out.mov");
  makeClip(in, *layoutNamed("yuy2"));
  std::ifstream file(in, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  const std::size_t tag = bytes.find("yuvs");
  ASSERT_NE(tag, std::string::npos);
  bytes.replace(tag, 4, "yuv2");
  std::ofstream(in, std::ios::binary) << bytes;

  const Outcome outcome = burnin({in, out, "--position", "6,4", "--timecode-size", "1"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip source = decode(in), burnt = decode(out);
  ASSERT_EQ(source.format, AV_PIX_FMT_YUYV422);
  expectSameOutside(source, burnt, {6, 4, 94, 15});
  ReferenceOverlay overlay(ptUYVY, 320, 144, 25);
  overlay.place(6, 4, 1);
  const auto swapped = reordered({1, 0, 3, 2});
  for (std::size_t i = 0; i < 3; ++i) {
    Bytes expected = swapped(source.frames[i], 320, 144);
    overlay.burn(expected.data(), static_cast<std::uint32_t>(250 + i));
    EXPECT_TRUE(swapped(expected, 320, 144) == burnt.frames[i]) << "frame " << i;
  }
}

TEST(InPlaceOddities, MakesAllThatIsDrawnOpaque) {
  for (const char* const name : {"rgba", "bgra", "argb", "abgr"}) {
    const std::string in = at(std::string(name) + ".nut");
    ffmpeg({"-f", "lavfi", "-i", std::string(kPicture) + ",format=rgba,colorchannelmixer=aa=0.3",
            "-frames:v", "1", "-c:v", "rawvideo", "-pix_fmt", name, in});
    const Arguments run = {
        in, at("out.nut"), "--overwrite", "--position", "17,13", "--timecode-size", "1"};
    ASSERT_EQ(burnin(run).exitCode, 0);
    const Clip opaque = decodeAs(at("out.nut"), AV_PIX_FMT_RGBA);
    Arguments kept = run;
    kept.emplace_back("--keep-alpha");
    ASSERT_EQ(burnin(kept).exitCode, 0);
    const Clip library = decodeAs(at("out.nut"), AV_PIX_FMT_RGBA);
    for (std::size_t i = 0; i < opaque.frames[0].size(); ++i) {
      const int x = static_cast<int>(i) / 4 % opaque.width;
      const int y = static_cast<int>(i) / 4 / opaque.width;
      const bool drawn = x >= 17 && x < 105 && y >= 13 && y < 24;
      const int expected = drawn && i % 4 == 3 ? 255 : library.frames[0][i];
      ASSERT_EQ(opaque.frames[0][i], expected) << name << " at " << x << "," << y;
    }
  }
}

TEST(InPlaceOddities, KeepsTheAlphaOfPixelsOutsideTheTexts) {
  const std::string in = at("in.nut"), out = at("out.nut");
  ffmpeg({"-f", "lavfi", "-i", std::string(kPicture) + ",format=rgba,colorchannelmixer=aa=0.3",
          "-frames:v", "2", "-c:v", "rawvideo", "-pix_fmt", "rgba", in});
  ASSERT_EQ(burnin({in, out, "--position", "40,40", "--timecode-size", "1"}).exitCode, 0);
  const Clip source = decode(in), burnt = decode(out);
  expectSameOutside(source, burnt, {40, 40, 128, 51});
  EXPECT_EQ(burnt.frames[0][3], source.frames[0][3]);
}

TEST(InPlaceStreams, CopiesSoundBitForBit) {
  const std::string in = at("in.mov"), out = at("out.mov");
  ffmpeg({"-f",        "lavfi",       "-i",     std::string(kPicture) + ":duration=1",
          "-f",        "lavfi",       "-i",     "sine=frequency=440:duration=1",
          "-f",        "lavfi",       "-i",     "sine=duration=1",
          "-map",      "0",           "-map",   "1",
          "-map",      "2",           "-c:v",   "v210",
          "-c:a:0",    "pcm_s24le",   "-c:a:1", "aac",
          "-timecode", "10:00:00:00", in});
  const Outcome outcome = burnin({in, out});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  for (const char* stream : {"0:a:0", "0:a:1"}) {
    for (const std::string& path : {in, out})
      ffmpeg({"-i", path, "-map", stream, "-c", "copy", path + ".nut"});
    const auto before = packetsOf(in + ".nut", AVMEDIA_TYPE_AUDIO);
    const auto after = packetsOf(out + ".nut", AVMEDIA_TYPE_AUDIO);
    ASSERT_EQ(before.size(), after.size());
    ASSERT_FALSE(before.empty());
    for (std::size_t i = 0; i < before.size(); ++i)
      EXPECT_TRUE(before[i].bytes == after[i].bytes) << stream << " packet " << i;
  }
  EXPECT_EQ(decode(out).timecode, "10:00:00:00");
}

TEST(InPlaceStreams, KeepsTheTimesOfFramesAndSound) {
  const std::string in = at("in.mkv"), out = at("out.mkv");
  ffmpeg({"-f", "lavfi", "-i", std::string(kPicture) + ":duration=1", "-f", "lavfi", "-i",
          "sine=duration=1", "-c:v", "v210", "-c:a", "pcm_s16le", in});
  ASSERT_EQ(burnin({in, out}).exitCode, 0);
  for (const AVMediaType kind : {AVMEDIA_TYPE_VIDEO, AVMEDIA_TYPE_AUDIO}) {
    const auto before = packetsOf(in, kind), after = packetsOf(out, kind);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i)
      EXPECT_NEAR(before[i].time, after[i].time, 0.0005);
  }
}

TEST(InPlaceStreams, KeepThePixelsShape) {
  for (const char* from : {"mov", "mkv", "avi", "nut"}) {
    for (const char* to : {"mov", "mkv", "nut"}) {
      const std::string in = at(std::string("in.") + from), out = at(std::string("out.") + to);
      Arguments arguments = {"-f",   "lavfi", "-i", "testsrc2=size=720x576:rate=25,setsar=16/15",
                             "-map", "0"};
      const bool two = std::string(to) != "mkv";  // which takes v210 from the overlay alone
      if (two)
        arguments.insert(arguments.end(), {"-map", "0"});
      arguments.insert(arguments.end(), {"-frames:v", "1", "-c:v", "v210", in});
      ffmpeg(arguments);
      const auto before = pixelShapesOf(in);
      const Outcome outcome = burnin({in, out, "--overwrite"});
      ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
      const auto after = pixelShapesOf(out);
      ASSERT_EQ(after.size(), two ? 2U : 1U);
      EXPECT_EQ(av_cmp_q(before[0], {16, 15}), 0) << from;
      for (std::size_t i = 0; i < after.size(); ++i)
        EXPECT_EQ(av_cmp_q(after[i], before[i]), 0) << from << " to " << to << ", " << i;
    }
  }
}

TEST(InPlaceStreams, GetExactTimesWhereTheInputHasRoundedOnes) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=352x160:rate=30000/1001:duration=1", "-c:v", "v210",
          at("in.mkv")});
  for (const int first : {0, 7}) {
    for (const char* out : {"out.mov", "out.nut"}) {
      const Outcome outcome =
          burnin({at("in.mkv"), at(out), "--overwrite", "--frames", std::to_string(first) + "-29"});
      ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
      const auto packets = packetsOf(at(out), AVMEDIA_TYPE_VIDEO);
      ASSERT_EQ(packets.size(), 30U - static_cast<std::size_t>(first));
      for (std::size_t i = 0; i < packets.size(); ++i)
        EXPECT_NEAR(packets[i].time, static_cast<double>(i) * 1001 / 30000, 1e-5) << out;
    }
  }
}

TEST(InPlaceStreams, KeepUnevenTimes) {
  // Frames 0, 1, 4, 5, and then one between two numbers.
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=352x160:rate=25", "-vf",
          "select='not(between(n,2,3))',setpts='if(eq(N,4),0.31/TB,PTS)'", "-vsync", "passthrough",
          "-frames:v", "5", "-enc_time_base", "0.01", "-c:v", "v210", at("in.mkv")});
  ASSERT_EQ(burnin({at("in.mkv"), at("out.nut")}).exitCode, 0);
  const auto before = packetsOf(at("in.mkv"), AVMEDIA_TYPE_VIDEO);
  const auto after = packetsOf(at("out.nut"), AVMEDIA_TYPE_VIDEO);
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t i = 0; i < after.size(); ++i)
    EXPECT_NEAR(after[i].time, before[i].time, 0.0011) << i;
}

TEST(InPlaceTexts, DrawsAllTenTextsTheClockAndBothRows) {
  const std::string in = at("in.nut"), out = at("out.nut");
  ffmpeg({"-f", "lavfi", "-i", "color=black:size=640x480:rate=25", "-frames:v", "1", "-c:v", "v210",
          in});
  Arguments arguments = {
      in,  out,           "--vitc", "--clock", "--position", "0,0", "--timecode-size",
      "2", "--text-size", "3"};
  for (int i = 0; i < 10; ++i)
    arguments.insert(arguments.end(),
                     {"--text", "8," + std::to_string(100 + 35 * i) + ",A,b@" + std::to_string(i)});
  const Outcome outcome = burnin(arguments);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(grey, 0, 0, 0, 2, 11), "00:00:00:00");
  EXPECT_EQ(readText(grey, 0, 0, 20, 2, 11), "00:00:00:00");
  const std::string clock = readText(grey, 0, 0, 40, 2, 9);
  EXPECT_EQ(std::string({clock[2], clock[5], clock[8]}), "::.") << clock;
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(readText(grey, 0, 8, 100 + 35 * i, 3, 5), "A,b@" + std::to_string(i));
}

TEST(InPlaceTexts, NamesTheSourceFormat) {
  const std::string in = at("in.mov"), out = at("out.mov");
  ffmpeg({"-f", "lavfi", "-i", "color=black:size=1280x720:rate=30000/1001", "-frames:v", "1",
          "-c:v", "v210", in});
  const std::string line = "29.97 MOV v210 1280x720 p";
  const Outcome dry = burnin({in, out, "--format-line", "--dry-run"});
  EXPECT_NE(dry.out.find("format line \"" + line + "\": 64,36 to 463,56"), std::string::npos)
      << dry.out;
  ASSERT_EQ(burnin({in, out, "--format-line"}).exitCode, 0);
  const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(grey, 0, 64, 36, 2, line.size()), line);
}

TEST(InPlaceTexts, TakesNumbersForDecimalOnes) {
  const std::string in = at("in.nut"), out = at("out.nut");
  ffmpeg({"-f", "lavfi", "-i", "color=black:size=1280x720:rate=25", "-frames:v", "1", "-c:v",
          "v210", in});
  const Outcome dry = burnin({in, out, "--timecode-size", "010", "--dry-run"});
  EXPECT_NE(dry.out.find("magnified 10"), std::string::npos) << dry.out << dry.err;
}

TEST(InPlaceInterlaced, StartsEveryTextOnAnEvenLine) {
  const std::string in = at("in.mov"), out = at("out.mov");
  ffmpeg({"-f", "lavfi", "-i", "color=black:size=720x576:rate=25", "-frames:v", "1", "-vf",
          "setfield=tff", "-field_order", "tt", "-flags", "+ilme", "-c:v", "v210", in});
  const Outcome dry = burnin({in, out, "--dry-run"});
  ASSERT_NE(dry.out.find("interlaced"), std::string::npos) << dry.out;
  ASSERT_EQ(burnin({in, out, "--position", "10,31", "--timecode-size", "5", "--clock", "--text",
                    "16,201,EVEN"})
                .exitCode,
            0);
  const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(grey, 0, 10, 30, 4, 11), "00:00:00:00");
  EXPECT_EQ(readText(grey, 0, 16, 200, 2, 4), "EVEN");
}

TEST(InPlaceLarge, BurnsFullHDAtThePlaceWherePeopleLook) {
  const std::string in = at("in.mov"), out = at("out.mov");
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=1920x1080:rate=25", "-frames:v", "4", "-c:v", "v210",
          "-timecode", "09:59:59:23", in});
  ASSERT_EQ(burnin({in, out}).exitCode, 0);
  const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
  ASSERT_EQ(grey.frames.size(), 4U);
  const char* const expected[] = {"09:59:59:23", "09:59:59:24", "10:00:00:00", "10:00:00:01"};
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_EQ(readText(grey, i, 96, 984, 4, 11), expected[i]);
  const Clip source = decode(in), burnt = decode(out);
  ReferenceOverlay overlay(ptV210, 1920, 1080, 25);
  overlay.place(96, 984, 4);
  Bytes canvas = planesToV210(source.frames[2], 1920, 1080);
  overlay.burn(canvas.data(), 36000 * 25);
  EXPECT_TRUE(v210ToPlanes(canvas, 1920, 1080) == burnt.frames[2]);
}
