// SPDX-License-Identifier: BSD-2-Clause
//
// Two clips compared: every mode is the library's on the frames that FFmpeg decodes, and the report
// counts what differs.
#include "clip.h"
#include "program.h"

#include <compare/mux_modes.h>

#include <nkdraw/nkdraw_c.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

using namespace nkdraw::tool;

namespace {

constexpr int kWidth = 63, kHeight = 35;  // odd, so that nothing halves evenly
constexpr std::size_t kFrames = 3;
constexpr std::size_t kPitch = std::size_t{kWidth} * 4;

std::string makeClip(const std::string& name, const std::string& source, const Arguments& encode,
                     std::size_t frames = kFrames) {
  Arguments arguments = {
      "-f",        "lavfi",
      "-i",        source + "=size=64x36:rate=25,format=gbrp,crop=63:35:0:0:exact=1",
      "-frames:v", std::to_string(frames)};
  arguments.insert(arguments.end(), encode.begin(), encode.end());
  arguments.push_back(at(name));
  ffmpeg(arguments);
  return at(name);
}

const Arguments kBGRA = {"-c:v", "rawvideo", "-pix_fmt", "bgra"};

std::string clipA() {
  return makeClip("a.mov", "testsrc2", kBGRA);
}
std::string clipB() {
  return makeClip("b.mov", "rgbtestsrc", kBGRA);
}

/// The same clip with one pixel changed in frame 1.
std::string changedCopy(const std::string& from, const std::string& name, const std::string& filter,
                        const Arguments& encode) {
  Arguments arguments = {"-i", from, "-vf", filter};
  arguments.insert(arguments.end(), encode.begin(), encode.end());
  arguments.push_back(at(name));
  ffmpeg(arguments);
  return at(name);
}

/// The clip with the lowest bit of one byte of frame 1 changed.
std::string withChangedByte(Clip clip, const std::string& name, std::size_t byte,
                            const Arguments& encode) {
  clip.frames[1][byte] ^= 1;
  std::ofstream raw(at("raw"), std::ios::binary);
  for (const Bytes& frame : clip.frames)
    raw.write(reinterpret_cast<const char*>(frame.data()),
              static_cast<std::streamsize>(frame.size()));
  raw.close();
  Arguments arguments = {"-f",
                         "rawvideo",
                         "-pixel_format",
                         av_get_pix_fmt_name(clip.format),
                         "-video_size",
                         std::to_string(clip.width) + "x" + std::to_string(clip.height),
                         "-framerate",
                         "25",
                         "-i",
                         at("raw")};
  arguments.insert(arguments.end(), encode.begin(), encode.end());
  arguments.push_back(at(name));
  ffmpeg(arguments);
  return at(name);
}

using Row = std::vector<std::string>;

/// The report's cells, head included.
std::vector<Row> readReport(const std::string& path) {
  std::vector<Row> rows;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream cells(line);
    rows.emplace_back();
    for (std::string cell; std::getline(cells, cell, ',');)
      rows.back().push_back(cell);
  }
  return rows;
}

struct Call {
  std::uint32_t mode = 1, wipe = 1, amount = 0, threshold = 0, splitX = 0, splitY = 0, gridType = 0,
                gridX = 0, gridY = 0;
};

/// What the library shows for two frames in BGRA.
Bytes shown(const Bytes& first, const Bytes& second, const Call& call) {
  const std::size_t room = kPitch * (kHeight + 1) + 4, size = kPitch * kHeight;
  Bytes a(room), b(room), out(room);
  std::copy(first.begin(), first.end(), a.begin());
  std::copy(second.begin(), second.end(), b.begin());
  const NKMux mux = {a.data(),    size,          b.data(),    size,           out.data(),
                     call.mode,   call.wipe,     call.amount, call.threshold, call.splitX,
                     call.splitY, call.gridType, call.gridX,  call.gridY,     kWidth,
                     kHeight,     kPitch};
  NKDraw_CompleteMux(&mux);
  out.resize(size);
  return out;
}

/// Compares blue, green and red; what is written has no alpha.
void expectShown(const std::string& output, const std::string& a, const std::string& b,
                 const Call& call) {
  const Clip first = decodeAs(a, AV_PIX_FMT_BGRA), second = decodeAs(b, AV_PIX_FMT_BGRA);
  const Clip both = decode(output);
  ASSERT_EQ(both.format, AV_PIX_FMT_BGR24);
  ASSERT_EQ(both.frames.size(), kFrames);
  for (std::size_t frame = 0; frame < kFrames; ++frame) {
    const Bytes expected = shown(first.frames[frame], second.frames[frame], call);
    for (std::size_t pixel = 0; pixel < std::size_t{kWidth} * kHeight; ++pixel) {
      for (std::size_t byte = 0; byte < 3; ++byte)
        ASSERT_EQ(both.frames[frame][pixel * 3 + byte], expected[pixel * 4 + byte])
            << "frame " << frame << " pixel " << pixel << " byte " << byte;
    }
  }
}

struct ModeRun {
  const char* name;
  Arguments arguments;
  Call call;
};

constexpr std::uint32_t kOtherWay = 1U << 28, kSwap = 1U << 31;

const ModeRun kRuns[] = {
    {"Difference", {}, {.mode = 256}},
    {"Plain", {"--mode", "plain"}, {.mode = 1}},
    {"Second", {"--mode", "second"}, {.mode = 2}},
    {"RedBlue", {"--mode", "red-blue"}, {.mode = 4}},
    {"RedCyan", {"--mode", "red-cyan"}, {.mode = 8}},
    {"YellowBlue", {"--mode", "yellow-blue"}, {.mode = 16}},
    {"GreenMagenta", {"--mode", "green-magenta"}, {.mode = 32}},
    {"InterleavedRows", {"--mode", "interleave"}, {.mode = 64}},
    {"InterleavedColumns", {"--mode", "interleave", "--horizontal"}, {.mode = 64 | kOtherWay}},
    {"Average", {"--mode", "average"}, {.mode = 128}},
    {"DifferenceWithGain", {"--mode", "difference", "--gain", "8"}, {.mode = 256, .threshold = 8}},
    {"OverUnder", {"--mode", "over-under"}, {.mode = 512}},
    {"SideBySide", {"--mode", "side-by-side"}, {.mode = 1024}},
    {"Split", {"--mode", "split"}, {.mode = 2048, .splitX = 31, .splitY = 17}},
    {"SplitAtColumn", {"--mode", "split", "--split-x", "63"}, {.mode = 2048, .splitX = 63}},
    {"SplitAtRow",
     {"--mode", "split", "--vertical", "--split-y", "9", "--mark-split"},
     {.mode = 2048 | kOtherWay | 1U << 27, .splitY = 9}},
    {"SplitMarkedAtTheLastColumn",
     {"--mode", "split", "--split-x", "62", "--mark-split"},
     {.mode = 2048 | 1U << 27, .splitX = 62}},
    {"Mirror", {"--mode", "mirror"}, {.mode = 4096}},
    {"MirrorDown", {"--mode", "mirror", "--vertical"}, {.mode = 4096 | kOtherWay}},
    {"Compare", {"--mode", "compare", "--threshold", "40"}, {.mode = 16384, .threshold = 40}},
    {"CompareInWhite", {"--mode", "compare", "--swap"}, {.mode = 16384 | kSwap}},
    {"Fade", {"--mode", "fade", "--amount", "0.25"}, {.mode = 32768, .amount = 16384}},
    {"FadeHalf", {"--mode", "fade"}, {.mode = 32768, .amount = 32768}},
    {"Wipe",
     {"--mode", "wipe", "--wipe", "iris", "--amount", "75%"},
     {.mode = 65536, .wipe = 41, .amount = 49152}},
    {"Slide",
     {"--mode", "wipe", "--wipe", "501", "--amount", "1"},
     {.mode = 65536, .wipe = 501, .amount = 65536}},
    {"Checker", {"--mode", "checker"}, {.mode = 262144}},
    {"Blocks", {"--mode", "blocks", "--block", "7"}, {.mode = 524288, .amount = 7 << 8}},
    {"Quarter", {"--mode", "quarter"}, {.mode = 1048576}},
    {"Crop", {"--mode", "crop"}, {.mode = 2097152, .splitX = 16, .splitY = 9}},
    {"CropDown",
     {"--mode", "crop", "--vertical", "--split-y", "17"},
     {.mode = 2097152 | kOtherWay, .splitY = 17}},
    {"Grey", {"--mode", "grey"}, {.mode = 8388608}},
    {"GreyOfRed", {"--mode", "grey", "--channel", "red"}, {.mode = 8388608, .threshold = 0xFF0000}},
    {"GreyOfAlpha",
     {"--mode", "grey", "--channel", "alpha"},
     {.mode = 8388608, .threshold = 0xFF000000}},
    {"Swapped", {"--mode", "plain", "--swap"}, {.mode = 1 | kSwap}},
    {"Flipped",
     {"--mode", "split", "--flip-first", "hv", "--flip-second", "h"},
     {.mode = 2048 | 1U << 29 | 1U << 30 | 1U << 25, .splitX = 31}},
    {"FlippedDown", {"--mode", "second", "--flip-second", "v"}, {.mode = 2 | 1U << 26}},
    {"GridInPercent", {"--mode", "plain", "--grid", "10"}, {.mode = 1, .gridType = 1, .gridX = 10}},
    {"GridInPixels",
     {"--mode", "plain", "--grid-pixels", "9,4"},
     {.mode = 1, .gridType = 2, .gridX = 9, .gridY = 4}},
};

class EachMode : public testing::TestWithParam<ModeRun> {};

}  // namespace

TEST_P(EachMode, IsWhatTheLibraryShows) {
  const std::string a = clipA(), b = clipB();
  Arguments arguments = {"compare", a, b, at("both.mov")};
  arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
  const Outcome outcome = nkdrawTool(arguments);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out + outcome.err, "");
  expectShown(at("both.mov"), a, b, GetParam().call);
}

INSTANTIATE_TEST_SUITE_P(All, EachMode, testing::ValuesIn(kRuns),
                         [](const testing::TestParamInfo<ModeRun>& each) {
                           return std::string(each.param.name);
                         });

TEST(Modes, AreAllRunByName) {
  for (const MuxMode& mode : muxModes()) {
    const bool isRun = std::ranges::any_of(
        kRuns, [&](const ModeRun& run) { return (run.call.mode & 0xFFFFFF) == mode.value; });
    EXPECT_TRUE(isRun) << mode.name;
  }
  const Outcome list = nkdrawTool({"compare", "--list"});
  EXPECT_EQ(list.exitCode, 0);
  for (const MuxMode& mode : muxModes())
    EXPECT_NE(list.out.find(mode.name), std::string::npos) << mode.name;
}

TEST(Compare, OfDecodedVideoShowsRGBWithoutLoss) {
  const Arguments encode = {"-c:v", "ffv1", "-pix_fmt", "gbrp"};
  const std::string a = makeClip("a.mkv", "testsrc2", encode),
                    b = makeClip("b.mkv", "rgbtestsrc", encode);
  ASSERT_EQ(nkdrawTool({"compare", a, b, at("both.mov"), "--mode", "split"}).exitCode, 0);
  expectShown(at("both.mov"), a, b, {.mode = 2048, .splitX = 31});
}

TEST(Report, OfAClipWithItselfIsAllZeros) {
  for (const char* format :
       {"bgra", "uyvy422", "rgb24", "yuv420p", "yuv444p16le", "gray", "pal8"}) {
    SCOPED_TRACE(format);
    const std::string codec = format == std::string("pal8") ? "png" : "rawvideo";
    const std::string clip = makeClip("a.nut", "testsrc2", {"-c:v", codec, "-pix_fmt", format});
    const Outcome outcome =
        nkdrawTool({"compare", clip, clip, "--report", at("r.csv"), "--overwrite"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "3 frames compared, no pixel differs\n");
    const std::vector<Row> report = readReport(at("r.csv"));
    ASSERT_EQ(report.size(), kFrames + 1);
    for (std::size_t i = 1; i < report.size(); ++i) {
      ASSERT_EQ(report[i].size(), report[0].size());
      EXPECT_EQ(report[i][0], std::to_string(i - 1));
      for (std::size_t cell = 3; cell < report[i].size(); ++cell)
        EXPECT_EQ(report[i][cell], "0") << report[0][cell];
    }
  }
}

TEST(Report, GoesToStandardOutputForADash) {
  const std::string a = clipA();
  const std::string b = changedCopy(a, "b.mov", "negate", kBGRA);
  const Outcome file = nkdrawTool({"compare", a, b, "--report", at("r.csv"), "--overwrite"});
  ASSERT_EQ(file.exitCode, 0) << file.err;
  const Outcome piped = nkdrawTool({"compare", a, b, "--report", "-"});
  EXPECT_EQ(piped.exitCode, 0) << piped.err;
  EXPECT_EQ(piped.err, file.out) << "the summary";
  std::ifstream written(at("r.csv"));
  EXPECT_EQ(piped.out, std::string(std::istreambuf_iterator<char>(written), {}));
  EXPECT_EQ(nkdrawTool({"compare", a, b, "--report", "-"}).out.substr(0, 6), "frame,");
}

TEST(Report, CountsTheOnePixelThatDiffers) {
  const std::string a = clipA();
  const std::string b = changedCopy(
      a, "b.mov", "drawbox=x=17:y=9:w=1:h=1:color=0x10203F:t=fill:enable='eq(n,1)'", kBGRA);
  const Outcome outcome = nkdrawTool({"compare", a, b, "--report", at("r.csv")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(outcome.out.starts_with("3 frames compared, differences in 1 frame: 1 pixel in all"))
      << outcome.out;
  const std::vector<Row> report = readReport(at("r.csv"));
  ASSERT_EQ(report.size(), kFrames + 1);
  EXPECT_EQ(report[0], (Row{"frame", "timecode", "seconds", "pixels", "largest", "largest_r",
                            "largest_g", "largest_b", "largest_a"}));
  for (std::size_t frame = 0; frame < kFrames; ++frame)
    EXPECT_EQ(report[frame + 1][3], frame == 1 ? "1" : "0") << frame;
  const Clip first = decode(a), second = decode(b);
  const std::size_t pixel = (9 * kWidth + 17) * 4;  // blue, green, red, alpha
  const auto by = [&](std::size_t byte) {
    return std::abs(first.frames[1][pixel + byte] - second.frames[1][pixel + byte]);
  };
  EXPECT_EQ(report[2], (Row{"1", "00:00:00:01", "0.040000", "1",
                            std::to_string(std::max({by(0), by(1), by(2)})), std::to_string(by(2)),
                            std::to_string(by(1)), std::to_string(by(0)), "0"}));
}

TEST(Report, CountsPairsThatShareAChromaSample) {
  const Arguments encode = {"-c:v", "ffv1", "-pix_fmt", "yuv422p10le"};
  const std::string a = makeClip("a.mkv", "testsrc2", encode);
  const Clip clip = decode(a);
  constexpr std::size_t kLumaBytes = std::size_t{kWidth} * kHeight * 2;
  constexpr std::size_t kPairs = (kWidth + 1) / 2;
  // Sample 8 of row 9 in the plane of Cb, and the last one of luma.
  const std::string chroma =
      withChangedByte(clip, "chroma.mkv", kLumaBytes + (9 * kPairs + 8) * 2, encode);
  const std::string luma = withChangedByte(clip, "luma.mkv", kLumaBytes - 2, encode);

  ASSERT_EQ(nkdrawTool({"compare", a, chroma, "--report", at("c.csv")}).exitCode, 0);
  EXPECT_EQ(readReport(at("c.csv"))[2],
            (Row{"1", "00:00:00:01", "0.040000", "2", "1", "0", "1", "0"}));
  ASSERT_EQ(nkdrawTool({"compare", a, luma, "--report", at("l.csv")}).exitCode, 0);
  EXPECT_EQ(readReport(at("l.csv"))[2],
            (Row{"1", "00:00:00:01", "0.040000", "1", "1", "1", "0", "0"}));
}

TEST(Report, ComesWithAPictureOnRequest) {
  const std::string a = clipA(), b = clipB();
  const Outcome outcome = nkdrawTool({"compare", a, b, at("both.mov"), "--report", at("r.csv")});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(readReport(at("r.csv")).size(), kFrames + 1);
  EXPECT_EQ(decode(at("both.mov")).frames.size(), kFrames);
}

TEST(Compare, EndsWithTheShorterClipAndSaysSo) {
  const std::string a = clipA(), longer = makeClip("b.mov", "rgbtestsrc", kBGRA, kFrames + 2);
  const Outcome outcome = nkdrawTool({"compare", a, longer, at("both.mov")});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.err.find("b.mov is longer: the first 3 frames were compared"),
            std::string::npos)
      << outcome.err;
  EXPECT_EQ(decode(at("both.mov")).frames.size(), kFrames);
}

TEST(CompareDryRun, TellsAndWritesNothing) {
  const std::string a = clipA(), b = clipB();
  const auto before = filesAtWork();
  const Outcome outcome = nkdrawTool(
      {"compare", a, b, at("both.mov"), "--report", at("r.csv"), "--mode", "fade", "--dry-run"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  for (const char* words : {"fade", "63x35", "compared as bgra", "both.mov"})
    EXPECT_NE(outcome.out.find(words), std::string::npos) << words << " in " << outcome.out;
  EXPECT_EQ(filesAtWork(), before);
}

namespace {

struct LossyKind {
  const char* suffix;
  const char* codec;
};
class LossyKinds : public testing::TestWithParam<LossyKind> {};

}  // namespace

TEST_P(LossyKinds, GetTheirUsualCodecAndANote) {
  const auto& [suffix, codec] = GetParam();
  for (const std::string name : {"a.mov", "b.mov"})
    ffmpeg({"-f", "lavfi", "-i",
            std::string(name == "a.mov" ? "testsrc2" : "rgbtestsrc") + "=size=64x36:rate=25",
            "-frames:v", "3", "-c:v", "rawvideo", "-pix_fmt", "bgra", at(name)});
  const std::string lossy = at(std::string("out.") + suffix);
  ASSERT_EQ(
      nkdrawTool({"compare", at("a.mov"), at("b.mov"), at("out.nut"), "--mode", "average"}).err,
      "");
  const Outcome outcome =
      nkdrawTool({"compare", at("a.mov"), at("b.mov"), lossy, "--mode", "average"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find(std::string("nkdraw: note: the video becomes ") + codec + ": "),
            std::string::npos)
      << outcome.err;
  EXPECT_EQ(codecOf(lossy), codec);
  const Clip exact = decodeAs(at("out.nut"), AV_PIX_FMT_GRAY8);
  const Clip near = decodeAs(lossy, AV_PIX_FMT_GRAY8);
  ASSERT_EQ(near.frames.size(), 3U);
  for (std::size_t frame = 0; frame < near.frames.size(); ++frame) {
    int difference = 0;
    for (std::size_t i = 0; i < exact.frames[frame].size(); ++i)
      difference += std::abs(exact.frames[frame][i] - near.frames[frame][i]);
    EXPECT_LT(difference, 8 * 64 * 36) << "frame " << frame;
  }
}

INSTANTIATE_TEST_SUITE_P(Compare, LossyKinds,
                         testing::Values(LossyKind{"mp4", "h264"}, LossyKind{"ts", "h264"},
                                         LossyKind{"mxf", "mpeg2video"}, LossyKind{"webm", "vp9"}),
                         [](const auto& kind) { return kind.param.suffix; });

TEST(Compare, OfWhatCannotBeReadBackLeavesNothing) {
  const std::string a = clipA(), b = clipB();
  expectRefusal({"compare", a, b, at("out.crc"), "--format", "framecrc", "--codec", "libx264rgb"},
                3, "can't be read back");
}
