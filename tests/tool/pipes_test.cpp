// SPDX-License-Identifier: BSD-2-Clause
//
// The standard streams and FIFOs as inputs and outputs.
#include "clip.h"
#include "program.h"

#include <media/layouts.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

using namespace nkdraw::media;

namespace {

constexpr int kUsage = 1, kInput = 2, kOutput = 3, kReaderGone = 141;

/// Runs a line of shell in the work folder, with $N as the command.
Outcome shell(const std::string& line) {
  return runProgram("bash", {"-c", "set -o pipefail; cd \"$1\"; N=$2; " + line, "bash",
                             workFolder(), NKDRAW_TOOL});
}

void expectShell(const std::string& line) {
  const Outcome outcome = shell(line);
  EXPECT_EQ(outcome.exitCode, 0) << line << "\n" << outcome.err;
}

void makeClip(const std::string& name, const Arguments& codec) {
  Arguments all = {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "6"};
  all.insert(all.end(), codec.begin(), codec.end());
  all.push_back(at(name));
  ffmpeg(all);
}

Arguments codecOf(const Layout& layout) {
  if (layout.codec == AV_CODEC_ID_V210)
    return {"-c:v", "v210"};
  return {"-c:v", "rawvideo", "-pix_fmt", av_get_pix_fmt_name(layout.pixelFormat)};
}

void expectSameFrames(const std::string& a, const std::string& b) {
  const Clip first = decode(at(a)), second = decode(at(b));
  EXPECT_EQ(first.frames.size(), 6U);
  EXPECT_EQ(first.format, second.format);
  EXPECT_TRUE(first.frames == second.frames) << a << " " << b;
}

}  // namespace

TEST(Pipes, GiveWhatFilesGiveInEveryLayout) {
  for (const Layout& layout : layouts()) {
    SCOPED_TRACE(std::string(layout.name));
    makeClip("in.nut", codecOf(layout));
    expectShell("$N burnin --overwrite in.nut file.nut");
    expectShell(
        "ffmpeg -v error -i in.nut -c copy -f nut - | $N burnin - - | "
        "ffmpeg -v error -y -i - -c copy piped.nut");
    expectSameFrames("file.nut", "piped.nut");
  }
}

TEST(Pipes, GiveWhatFilesGiveForVideoThatIsDecoded) {
  makeClip("in.mkv", {"-c:v", "ffv1", "-pix_fmt", "yuv422p10"});
  expectShell("$N burnin in.mkv file.nut");
  expectShell("cat in.mkv | $N burnin - - | ffmpeg -v error -i - -c copy piped.nut");
  expectSameFrames("file.nut", "piped.nut");
}

TEST(Pipes, CarryRawVideo) {
  for (const std::string name : {"v210", "yvyu", "rgb24", "0bgr"}) {
    SCOPED_TRACE(name);
    makeClip("in.nut", codecOf(*layoutNamed(name)));
    expectShell("$N burnin --overwrite in.nut file.nut");
    const std::string shape = " --input-size 320x180 --input-layout " + name + " --input-rate 25 ";
    expectShell(
        "ffmpeg -v error -i in.nut -c copy -f rawvideo - | $N burnin - - --format rawvideo" +
        shape + " | $N burnin --overwrite --no-ltc --no-fill --text 0,0,' ' - raw.nut" + shape);
    expectSameFrames("file.nut", "raw.nut");
  }
}

TEST(Pipes, CarryY4M) {
  makeClip("in.mkv", {"-c:v", "ffv1", "-pix_fmt", "yuv422p"});
  expectShell("$N burnin in.mkv file.mkv --codec ffv1:pix_fmt=yuv422p");
  expectShell(
      "ffmpeg -v error -i in.mkv -f yuv4mpegpipe - | $N burnin - - --format y4m | "
      "ffmpeg -v error -i - -c:v ffv1 piped.mkv");
  expectSameFrames("file.mkv", "piped.mkv");
}

TEST(Pipes, HoldMatroskaAndQuickTimeToo) {
  makeClip("in.mov", {"-c:v", "v210"});
  expectShell("$N burnin in.mov file.mov");
  for (const std::string format : {"matroska", "mov", "nut", "avi"}) {
    expectShell("$N burnin in.mov - --format " + format +
                " | ffmpeg -v error -y -i - -c copy piped.mov");
    expectSameFrames("file.mov", "piped.mov");
  }
}

TEST(Pipes, MayBeFIFOs) {
  makeClip("in.nut", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422"});
  expectShell("$N burnin in.nut file.nut");
  expectShell(
      "mkfifo from to; cat in.nut > from & cat to > piped.nut & $N burnin from to; s=$?; "
      "wait; exit $s");
  expectSameFrames("file.nut", "piped.nut");
  EXPECT_EQ(filesAtWork().size(), 5U);
}

TEST(Pipes, TakeAFileThatTheShellReads) {
  makeClip("in.mov", {"-c:v", "v210"});
  expectShell("$N burnin in.mov file.nut && $N burnin - piped.nut < in.mov");
  expectSameFrames("file.nut", "piped.nut");
}

TEST(Pipes, FeedWipesAndComparisons) {
  makeClip("in.nut", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422"});
  expectShell("$N wipe --at 2f --duration 2f in.nut in.nut file.nut");
  expectShell("cat in.nut | $N wipe --at 2f --duration 2f - in.nut - > piped.nut");
  EXPECT_TRUE(decode(at("file.nut")).frames == decode(at("piped.nut")).frames);
  expectShell("$N compare in.nut in.nut shown.nut");
  const Outcome outcome = shell("cat in.nut | $N compare in.nut - - --report r.csv > piped2.nut");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "6 frames compared, no pixel differs\n");
  expectSameFrames("shown.nut", "piped2.nut");
}

TEST(Pipes, TakeDrawingsAndStills) {
  expectShell(
      "echo 'circle 20 20 10' > s.nkd; $N draw s.nkd a.raw --layout v210 --size 64x48; "
      "$N draw s.nkd - --format rawvideo --layout v210 --size 64x48 | cmp - a.raw");
  expectShell(
      "$N draw s.nkd a.png --layout bgra --size 64x48; "
      "$N draw s.nkd - --layout bgra --size 64x48 | cmp - a.png");
  makeClip("in.mov", {"-c:v", "v210"});
  expectShell("$N burnin --still 3 in.mov b.png; $N burnin --still 3 in.mov - | cmp - b.png");
}

TEST(Pipes, EndQuietlyWhenTheirReaderDoes) {
  makeClip("in.mov", {"-c:v", "v210"});
  for (const std::string line :
       {"$N burnin in.mov - | head -c 1000 > /dev/null", "$N burnin in.mov - | true",
        "$N compare in.mov in.mov - | head -c 1000 > /dev/null"}) {
    const Outcome outcome = shell(line);
    EXPECT_EQ(outcome.exitCode, kReaderGone) << line;
    EXPECT_EQ(outcome.err, "");
  }
}

TEST(Pipes, ThatBreakOffAreAnError) {
  makeClip("in.nut", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422"});
  const Outcome outcome = shell("head -c 400000 in.nut | $N burnin - - > /dev/null");
  EXPECT_EQ(outcome.exitCode, kInput);
  EXPECT_NE(outcome.err.find("may be incomplete"), std::string::npos) << outcome.err;
  const Outcome raw = shell(
      "head -c 400000 in.nut | $N burnin - - --input-size 320x180 "
      "--input-layout uyvy > /dev/null");
  EXPECT_EQ(raw.exitCode, kInput) << raw.err;
}

TEST(Pipes, AreNeverATerminal) {
  makeClip("in.mov", {"-c:v", "v210"});
  const Outcome outcome = shell("script -qec \"$N burnin in.mov -\" /dev/null");
  EXPECT_EQ(outcome.exitCode, kOutput);
  EXPECT_NE(outcome.out.find("a terminal shows no video"), std::string::npos) << outcome.out;
}

TEST(Pipes, RefuseWhatTheyCantDo) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x352:rate=25", "-f", "lavfi", "-i", "sine", "-t",
          "0.2", "-c:v", "rawvideo", "-pix_fmt", "uyvy422", "-c:a", "pcm_s16le", at("in.nut")});
  struct Refusal {
    std::string line;
    int code;
    std::string words;
  };
  const Refusal refusals[] = {
      {"$N burnin --meters - out.nut", kUsage, "meters can't be fed from a pipe"},
      {"$N wipe --at 1f --duration 2f - in.nut out.nut", kUsage, "--audio none"},
      {"$N wipe --at 1f --duration 2f - - out.nut", kUsage, "both clips are the same pipe"},
      {"$N burnin - out.nut --format nosuch", kUsage, "no such kind of video file"},
      {"$N burnin - out.nut --input-format nosuch", kUsage, "no such kind of input"},
      {"$N burnin - out.nut --input-format rawvideo", kUsage, "--input-size"},
      {"$N burnin - out.nut --input-size 0x3", kUsage, "--input-size"},
      {"$N burnin - out.nut --input-layout nosuch --input-size 8x8", kUsage, "no such layout"},
      {"$N burnin - out.nut --input-rate 25", kUsage, "tells that itself"},
  };
  for (const Refusal& refusal : refusals) {
    const Outcome outcome = shell("cat in.nut | " + refusal.line);
    EXPECT_EQ(outcome.exitCode, refusal.code) << refusal.line;
    EXPECT_NE(outcome.err.find(refusal.words), std::string::npos) << outcome.err;
    EXPECT_FALSE(exists(at("out.nut")));
  }
}

TEST(Pipes, NeedNoMoreMemoryForMoreFrames) {
  const auto peakOf = [](int frames) {
    // Of the largest program in the line.
    return shell("ffmpeg -v error -f lavfi -i color=size=640x360:rate=25 -frames:v " +
                 std::to_string(frames) + " -c:v v210 -f nut - | $N burnin - - > /dev/null")
        .peakKilobytes;
  };
  constexpr long kFrameKilobytes = 640L * 360 * 8 / 3 / 1024;
  EXPECT_LT(peakOf(240), peakOf(12) + (240 - 12) * kFrameKilobytes / 10);
}
