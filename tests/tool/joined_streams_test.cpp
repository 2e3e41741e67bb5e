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

/// The same recording, twice.
std::string twice() {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=1.2", "-f", "lavfi", "-i",
          "sine=duration=1.2", "-c:v", "libx264", "-bf", "2", "-g", "12", "-pix_fmt", "yuv420p",
          "-c:a", "mp2", at("once.ts")});
  std::ifstream once(at("once.ts"), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(once), {}};
  std::ofstream(at("twice.ts"), std::ios::binary) << bytes << bytes;
  return at("twice.ts");
}

}  // namespace

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
