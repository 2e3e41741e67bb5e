// SPDX-License-Identifier: BSD-2-Clause
//
// Frame 0 is the first frame that can be shown, whatever times the file gives it.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

constexpr std::size_t kFrames = 16;

const Arguments kPicture = {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=0.64"};
const Arguments kNumbers = {"--start-timecode",
                            "10:00:00:00",
                            "--frame-number",
                            "--position",
                            "8,20",
                            "--timecode-size",
                            "2"};

Arguments joined(Arguments all, const Arguments& more) {
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

/// Burns timecode and frame numbers, without loss.
Clip burnt(const std::string& in, const std::string& out, const Arguments& more = {}) {
  const Outcome outcome = burnin(joined(joined({in, at(out), "--codec", "ffv1"}, kNumbers), more));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return decode(at(out));
}

std::string timecodeIn(const std::string& file, std::size_t frame) {
  return readText(decodeAs(at(file), AV_PIX_FMT_GRAY8), frame, 8, 20, 2, 11);
}
std::string numberIn(const std::string& file, std::size_t frame) {
  return readText(decodeAs(at(file), AV_PIX_FMT_GRAY8), frame, 8, 40, 2, 12);
}

double startOf(const std::string& file, AVMediaType kind) {
  return packetsOf(at(file), kind).at(0).time;
}

struct Order {
  const char* name;
  const char* file;
  Arguments codec;
};

/// Files that give a frame the time at which its packet is decoded, or begin with that.
class ReorderedFrames : public testing::TestWithParam<Order> {};

const Order kOrders[] = {
    {"MPEG2InAVI", "in.avi", {"-c:v", "mpeg2video", "-bf", "2", "-g", "12", "-b:v", "3M"}},
    {"MPEG4InAVI", "in.avi", {"-c:v", "mpeg4", "-bf", "2", "-q:v", "3"}},
    {"MPEG4InNUT", "in.nut", {"-c:v", "mpeg4", "-bf", "2", "-q:v", "3"}},
    {"H264InAVI", "in.avi", {"-c:v", "libx264", "-bf", "3", "-pix_fmt", "yuv420p"}},
    {"H264InMatroska", "in.mkv", {"-c:v", "libx264", "-bf", "3", "-pix_fmt", "yuv420p"}},
};

/// The second half of a transport stream, which does not begin with a key frame.
std::string lateHalf() {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=2", "-f", "lavfi", "-i",
          "sine=duration=2", "-c:v", "libx264", "-pix_fmt", "yuv420p", "-x264-params",
          "keyint=12:scenecut=0", "-c:a", "aac", at("whole.ts")});
  std::ifstream whole(at("whole.ts"), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(whole), {}};
  std::ofstream(at("late.ts"), std::ios::binary) << bytes.substr(40001);
  return at("late.ts");
}

}  // namespace

TEST_P(ReorderedFrames, AreNumberedFromTheFirstShown) {
  const std::string in = at(GetParam().file);
  ffmpeg(joined(joined(kPicture, GetParam().codec), {in}));
  const Clip whole = burnt(in, "out.mkv");
  ASSERT_EQ(whole.frames.size(), kFrames);
  EXPECT_EQ(timecodeIn("out.mkv", 0), "10:00:00:00");
  EXPECT_EQ(numberIn("out.mkv", 0), "FRAME 000000");
  EXPECT_EQ(numberIn("out.mkv", kFrames - 1), "FRAME 000015");
  EXPECT_EQ(startOf("out.mkv", AVMEDIA_TYPE_VIDEO), 0.0);
  const Clip part = burnt(in, "part.mkv", {"--frames", "5-7"});
  ASSERT_EQ(part.frames.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_TRUE(part.frames[i] == whole.frames[5 + i]) << i;
  EXPECT_EQ(burnin({"--still", "0", in, at("first.png")}).exitCode, 0);
  EXPECT_EQ(burnin({"--still", "15", in, at("last.png")}).exitCode, 0);
}

INSTANTIATE_TEST_SUITE_P(Each, ReorderedFrames, testing::ValuesIn(kOrders),
                         [](const testing::TestParamInfo<Order>& each) {
                           return std::string(each.param.name);
                         });

TEST(ReorderedFramesOfAPair, AreComparedAndWipedFromTheFirstShown) {
  ffmpeg(joined(joined(kPicture, kOrders[1].codec), {at("in.avi")}));
  const Outcome compared =
      nkdrawTool({"compare", at("in.avi"), at("in.avi"), "--report", at("report.csv")});
  EXPECT_NE(compared.out.find("16 frames compared"), std::string::npos) << compared.out;
  const Outcome wiped = nkdrawTool({"wipe", at("in.avi"), at("in.avi"), at("out.mkv"), "--at", "6f",
                                    "--duration", "4f", "--codec", "ffv1"});
  ASSERT_EQ(wiped.exitCode, 0) << wiped.err;
  EXPECT_EQ(decode(at("out.mkv")).frames.size(), 6 + kFrames);
}

TEST(ReorderedFramesWithSound, StayInSyncWithIt) {
  ffmpeg(joined(joined(kPicture, {"-f", "lavfi", "-i", "sine=duration=0.64", "-c:a", "pcm_s16le"}),
                joined(kOrders[3].codec, {at("in.avi")})));
  ASSERT_EQ(burnin({at("in.avi"), at("out.mkv")}).exitCode, 0);
  EXPECT_EQ(startOf("out.mkv", AVMEDIA_TYPE_VIDEO), startOf("out.mkv", AVMEDIA_TYPE_AUDIO));
  EXPECT_EQ(startOf("out.mkv", AVMEDIA_TYPE_AUDIO), 0.0);
}

TEST(ReorderedFramesFromAPipe, AreNumberedFromTheFirstShown) {
  ffmpeg(joined(joined(kPicture, kOrders[1].codec), {at("in.avi")}));
  const Outcome outcome =
      runProgram("/bin/sh", {"-c", "cat '" + at("in.avi") + "' | '" NKDRAW_TOOL "' burnin - '" +
                                       at("out.mkv") +
                                       "' --codec ffv1 --frame-number --start-timecode 10:00:00:00"
                                       " --position 8,20 --timecode-size 2"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(timecodeIn("out.mkv", 0), "10:00:00:00");
  EXPECT_EQ(startOf("out.mkv", AVMEDIA_TYPE_VIDEO), 0.0);
}

TEST(ARecordingThatBeginsBetweenKeyFrames, IsNumberedFromTheFirstFrameThatCanBeDecoded) {
  const std::string in = lateHalf();
  const Outcome outcome = burnin(joined({in, at("out.mov"), "--codec", "prores_ks"}, kNumbers));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("can't be decoded without what came before"), std::string::npos)
      << outcome.err;
  EXPECT_EQ(decode(at("out.mov")).timecode, "10:00:00:00");
  EXPECT_EQ(startOf("out.mov", AVMEDIA_TYPE_VIDEO), 0.0) << "where the timecode track begins";
  EXPECT_GE(startOf("out.mov", AVMEDIA_TYPE_AUDIO), 0.0);

  const Clip whole = burnt(in, "out.mkv"), part = burnt(in, "part.mkv", {"--frames", "0-2"});
  EXPECT_EQ(timecodeIn("out.mkv", 0), "10:00:00:00");
  EXPECT_EQ(numberIn("out.mkv", 0), "FRAME 000000");
  ASSERT_EQ(part.frames.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_TRUE(part.frames[i] == whole.frames[i]) << i;
  EXPECT_EQ(burnin({"--still", "0", in, at("first.png")}).exitCode, 0);
}
