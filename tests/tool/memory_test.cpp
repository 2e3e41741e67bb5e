// SPDX-License-Identifier: BSD-2-Clause
//
// The command's memory, which does not grow with the clip.
#include "program.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

constexpr long kFrameKilobytes = 640L * 360 * 8 / 3 / 1024;
constexpr int kShort = 12, kLong = 240;
// A frame of a long clip may cost less than a tenth of itself; held frames would cost all of it.
constexpr long kAllowedKilobytes = (kLong - kShort) * kFrameKilobytes / 10;

void makeClip(const std::string& name, int frames, const Arguments& codec) {
  Arguments arguments = {
      "-f", "lavfi", "-i", "testsrc2=size=640x360:rate=25", "-frames:v", std::to_string(frames)};
  arguments.insert(arguments.end(), codec.begin(), codec.end());
  arguments.push_back(at(name));
  ffmpeg(arguments);
}

void expectNoGrowth(const Arguments& codec) {
  makeClip("short.mov", kShort, codec);
  makeClip("long.mov", kLong, codec);
  const Outcome shortRun = burnin({at("short.mov"), at("short_out.mov")});
  const Outcome longRun = burnin({at("long.mov"), at("long_out.mov")});
  ASSERT_EQ(shortRun.exitCode, 0) << shortRun.err;
  ASSERT_EQ(longRun.exitCode, 0) << longRun.err;
  EXPECT_LT(longRun.peakKilobytes, shortRun.peakKilobytes + kAllowedKilobytes);
}

TEST(Memory, DoesNotGrowWithAClipThatIsDrawnOnInPlace) {
  expectNoGrowth({"-c:v", "v210"});
}

TEST(Memory, DoesNotGrowWithAClipThatIsConverted) {
  expectNoGrowth({"-c:v", "mpeg4"});
}

TEST(Memory, DoesNotGrowWithTheClipsThatAreJoined) {
  const auto join = [](const std::string& clip) {
    return nkdrawTool(
        {"wipe", at(clip), at(clip), at("joined_" + clip), "--at", "2f", "--duration", "10f"});
  };
  makeClip("short.mov", kShort, {"-c:v", "v210"});
  makeClip("long.mov", kLong, {"-c:v", "v210"});
  const Outcome shortRun = join("short.mov"), longRun = join("long.mov");
  ASSERT_EQ(shortRun.exitCode, 0) << shortRun.err;
  ASSERT_EQ(longRun.exitCode, 0) << longRun.err;
  EXPECT_LT(longRun.peakKilobytes, shortRun.peakKilobytes + kAllowedKilobytes);
}

}  // namespace
