// SPDX-License-Identifier: BSD-2-Clause
//
// Transport streams joined byte by byte: their frames and their sound run on.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

constexpr std::size_t kOnce = 30;  // frames

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The same recording, twice.
std::string twice() {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=1.2", "-f", "lavfi", "-i",
          "sine=duration=1.2", "-c:v", "libx264", "-bf", "2", "-g", "12", "-pix_fmt", "yuv420p",
          "-c:a", "mp2", at("once.ts")});
  const std::string bytes = bytesOf(at("once.ts"));
  std::ofstream(at("twice.ts"), std::ios::binary) << bytes << bytes;
  return at("twice.ts");
}

/// Two seconds of a recording whose clock begins there, in seconds.
std::string recordedAt(const std::string& clock) {
  const std::string name = at("at" + clock + ".ts");
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=2", "-f", "lavfi", "-i",
          "sine=duration=2", "-c:v", "mpeg2video", "-g", "12", "-c:a", "mp2", "-output_ts_offset",
          clock, name});
  return name;
}

/// Two recordings, the second with its clock that much later.
std::string later(const std::string& clock) {
  const std::string bytes = bytesOf(recordedAt("0")) + bytesOf(recordedAt(clock));
  std::ofstream(at("later.ts"), std::ios::binary) << bytes;
  return at("later.ts");
}

constexpr double kLength = 4.0, kSlack = 0.2;  // seconds of both recordings

/// When the last packet begins after the first.
double lengthOf(const std::string& path, AVMediaType kind) {
  const auto packets = packetsOf(path, kind);
  return packets.empty() ? 0.0 : packets.back().time - packets.front().time;
}

}  // namespace

TEST(JoinedStreams, RunOnWhereTheClockLeapsAheadInAllOfThem) {
  const std::string in = later("3600");
  for (const char* const name : {"out.mp4", "out.mkv", "out.mxf", "out.ts"}) {
    const Outcome outcome = burnin({in, at(name)});
    ASSERT_EQ(outcome.exitCode, 0) << name << ": " << outcome.err;
    EXPECT_EQ(packetsOf(at(name), AVMEDIA_TYPE_VIDEO).size(), 100U) << name;
    EXPECT_NEAR(lengthOf(at(name), AVMEDIA_TYPE_VIDEO), kLength, kSlack) << name;
    EXPECT_NEAR(lengthOf(at(name), AVMEDIA_TYPE_AUDIO), kLength, kSlack) << name;
  }
  const Outcome still = burnin({"--still", "60", in, at("60.png")});
  EXPECT_EQ(still.exitCode, 0) << still.err;
  expectRefusal({"burnin", "--still", "100", in, at("none.png")}, 2, "the video ends before");
}

TEST(JoinedStreams, KeepALossOfAFewSecondsAsAGap) {
  const std::string in = later("7");
  // Packets are missing there, so it is damage.
  ASSERT_EQ(burnin({in, at("out.mkv"), "--on-damage", "continue"}).exitCode, 5);
  EXPECT_NEAR(lengthOf(at("out.mkv"), AVMEDIA_TYPE_VIDEO), 9.0, kSlack);
  EXPECT_NEAR(lengthOf(at("out.mkv"), AVMEDIA_TYPE_AUDIO), 9.0, kSlack);
}

TEST(JoinedStreams, KeepThePauseOfOneThatOthersDoNotShare) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=5:duration=20", "-f", "lavfi", "-i",
          "sine=duration=20", "-vf", "select='lt(t,2)+gt(t,17)'", "-vsync", "vfr", "-c:v",
          "mpeg2video", "-r", "25", "-c:a", "mp2", at("pause.ts")});
  ASSERT_EQ(burnin({at("pause.ts"), at("out.mkv")}).exitCode, 0);
  ASSERT_EQ(burnin({at("pause.ts"), at("mute.mkv"), "--no-audio"}).exitCode, 0);
  for (const char* const name : {"pause.ts", "out.mkv", "mute.mkv"})
    EXPECT_NEAR(lengthOf(at(name), AVMEDIA_TYPE_VIDEO), 19.8, kSlack) << name;
}

TEST(JoinedStreams, AreNumberedThroughWithAllTheirSound) {
  const std::string in = twice();
  const Outcome outcome = burnin({in, at("out.mkv"), "--codec", "ffv1", "--no-ltc",
                                  "--frame-number", "--position", "8,20", "--timecode-size", "1"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip grey = decodeAs(at("out.mkv"), AV_PIX_FMT_GRAY8);
  ASSERT_EQ(grey.frames.size(), 2 * kOnce);
  for (const std::size_t frame : {std::size_t{0}, kOnce - 1, kOnce, 2 * kOnce - 1}) {
    const std::string number = std::to_string(frame);
    EXPECT_EQ(readText(grey, frame, 8, 20, 1, 12),
              "FRAME " + std::string(6 - number.size(), '0') + number);
  }
  const auto sound = packetsOf(at("out.mkv"), AVMEDIA_TYPE_AUDIO);
  EXPECT_EQ(sound.size(), packetsOf(in, AVMEDIA_TYPE_AUDIO).size());
  for (std::size_t i = 1; i < sound.size(); ++i)
    EXPECT_GT(sound[i].time, sound[i - 1].time) << i;
}

TEST(JoinedStreams, GiveRangesAndStillsBehindTheJoin) {
  const std::string in = twice();
  ASSERT_EQ(burnin({in, at("out.mkv"), "--codec", "ffv1"}).exitCode, 0);
  const Clip whole = decode(at("out.mkv"));
  ASSERT_EQ(whole.frames.size(), 2 * kOnce);
  for (const std::size_t first : {kOnce - 1, kOnce, 2 * kOnce - 2}) {
    const std::string range = std::to_string(first) + "-" + std::to_string(first + 1);
    const Outcome outcome =
        burnin({in, at("part.mkv"), "--overwrite", "--codec", "ffv1", "--frames", range});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const Clip part = decode(at("part.mkv"));
    ASSERT_EQ(part.frames.size(), 2U);
    EXPECT_TRUE(part.frames[0] == whole.frames[first]) << range;
    EXPECT_TRUE(part.frames[1] == whole.frames[first + 1]) << range;
    EXPECT_FALSE(packetsOf(at("part.mkv"), AVMEDIA_TYPE_AUDIO).empty()) << range;
  }
  EXPECT_EQ(burnin({"--still", "59", in, at("last.png")}).exitCode, 0);
  expectRefusal({"burnin", "--still", "60", in, at("none.png")}, 2, "the video ends before");
}
