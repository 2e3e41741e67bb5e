// SPDX-License-Identifier: BSD-2-Clause
//
// Transport streams from which whole frames are missing.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace {

constexpr int kProcessing = 4, kDamaged = 5;
constexpr std::size_t kFrames = 30;

Arguments joined(Arguments all, const Arguments& more) {
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

/// A clip without B-frames, so that pictures are shown in the order of their packets.
std::string clip(const std::string& name, const Arguments& more = {}) {
  ffmpeg(joined(joined({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=1.2"}, more),
                {"-c:v", "mpeg2video", "-bf", "0", "-g", "4", "-q:v", "4", at(name)}));
  return at(name);
}

/// Removes all packets of these pictures of the video.
std::string without(const std::set<int>& pictures, const std::string& from,
                    const std::string& name) {
  constexpr std::size_t kPacket = 188;
  constexpr unsigned kVideo = 0x100;
  std::ifstream whole(from, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(whole), {}};
  std::ofstream cut(at(name), std::ios::binary);
  int picture = -1;
  for (std::size_t i = 0; i + kPacket <= bytes.size(); i += kPacket) {
    const auto high = static_cast<std::uint8_t>(bytes[i + 1]);
    const auto low = static_cast<std::uint8_t>(bytes[i + 2]);
    const bool isVideo = ((high & 0x1FU) << 8 | low) == kVideo;
    if (isVideo && (high & 0x40U) != 0)
      ++picture;
    if (!isVideo || !pictures.contains(picture))
      cut << bytes.substr(i, kPacket);
  }
  return at(name);
}

}  // namespace

TEST(LostPictures, StopTheRunByNumberAndTimecode) {
  const std::string in = without({9, 10, 21}, clip("whole.ts"), "in.ts");
  expectRefusal({"burnin", in, at("out.mkv"), "--codec", "ffv1"}, kProcessing,
                "frame 9 (00:00:00:09): lost");
}

TEST(LostPictures, AreListedAndKeepTheCount) {
  const std::string whole = clip("whole.ts"), in = without({9, 10, 21}, whole, "in.ts");
  const Outcome outcome = burnin({in, at("out.mkv"), "--codec", "ffv1", "--no-ltc", "--text",
                                  "0,0,A", "--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, kDamaged) << outcome.err;
  for (const char* const name : {"frame 9 ", "frame 10 ", "frame 21 "})
    EXPECT_NE(outcome.err.find(name), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("(3 frames)"), std::string::npos) << outcome.err;
  const Clip out = decode(at("out.mkv"));
  ASSERT_EQ(out.frames.size(), kFrames);
  EXPECT_TRUE(out.frames[9] == out.frames[8]);
  EXPECT_TRUE(out.frames[10] == out.frames[8]);
  EXPECT_TRUE(out.frames[21] == out.frames[20]);
  ASSERT_EQ(
      burnin({whole, at("good.mkv"), "--codec", "ffv1", "--no-ltc", "--text", "0,0,A"}).exitCode,
      0);
  const Clip good = decode(at("good.mkv"));
  for (const std::size_t frame : {0U, 8U, 12U, 20U, 24U, 29U})
    EXPECT_TRUE(out.frames[frame] == good.frames[frame]) << frame;
}

TEST(LostPictures, OutsideTheRangeDoNotMatter) {
  const std::string in = without({9, 10}, clip("whole.ts"), "in.ts");
  EXPECT_EQ(burnin({in, at("before.mkv"), "--frames", "0-8"}).exitCode, 0);
  EXPECT_EQ(burnin({in, at("after.mkv"), "--frames", "11-29"}).exitCode, 0);
}

TEST(Gaps, OfAClipWithoutLostPacketsAreNoDamage) {
  const std::string in =
      clip("in.ts", {"-vf", "select=not(between(n\\,9\\,12))", "-vsync", "passthrough"});
  const Outcome outcome = burnin({in, at("out.mkv"), "--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("out.mkv")).frames.size(), kFrames - 4);
}

TEST(Gaps, OfAVaryingRateAreNoDamageBesideLostPackets) {
  const std::string whole =
      clip("whole.ts", {"-vf", "select=not(eq(mod(n\\,5)\\,2))", "-vsync", "passthrough"});
  const Outcome outcome =
      burnin({without({15}, whole, "in.ts"), at("out.mkv"), "--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("out.mkv")).frames.size(), kFrames - 6 - 1);
}
