// SPDX-License-Identifier: BSD-2-Clause
//
// The mark in damaged frames, and joins that ask for little.
#include "clip.h"
#include "harm.h"
#include "program.h"

#include <gtest/gtest.h>

#include <string>

TEST(DamageMark, StandsInDamagedFramesAlone) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "6", "-c:v",
          "prores_ks", at("whole.mov")});
  copyWith(noiseAt(0), at("whole.mov"), at("in.mov"), AVMEDIA_TYPE_VIDEO, 3);
  const Arguments all = {at("in.mov"), "--no-ltc", "--text", "0,0,A",       "--text-size",
                         "1",          "--codec",  "ffv1",   "--on-damage", "continue"};
  Arguments plain = all, marked = all;
  plain.push_back(at("plain.mkv"));
  marked.insert(marked.end(), {at("marked.mkv"), "--mark-damage"});
  ASSERT_EQ(burnin(plain).exitCode, 5);
  ASSERT_EQ(burnin(marked).exitCode, 5);
  const Clip before = decode(at("plain.mkv")), after = decode(at("marked.mkv"));
  ASSERT_EQ(after.frames.size(), 6U);
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_EQ(before.frames[i] == after.frames[i], i != 3) << i;
  const Clip grey = decodeAs(at("marked.mkv"), AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(grey, 3, 132, 84, 1, 7), "DAMAGED");
}

TEST(DamageMark, NeedsARunThatGoesOn) {
  expectRefusal({"burnin", at("in.mov"), at("out.mov"), "--mark-damage"}, 1,
                "--on-damage continue");
}

TEST(WipeIntoAnyKindOfFile, NeedsNoOption) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=0.4", "-f", "lavfi", "-i",
          "anoisesrc=r=48000:seed=7:d=0.4", "-c:v", "prores_ks", "-c:a", "pcm_s16le", at("a.mov")});
  for (const char* out : {"out.mp4", "out.ts", "out.mxf"}) {
    const Outcome outcome =
        nkdrawTool({"wipe", at("a.mov"), at("a.mov"), at(out), "--at", "2f", "--duration", "3f"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("nkdraw: note: the video becomes "), std::string::npos)
        << outcome.err;
    EXPECT_EQ(decode(at(out)).frames.size(), 12U) << out;
    EXPECT_FALSE(packetsOf(at(out), AVMEDIA_TYPE_AUDIO).empty()) << out;
  }
}

TEST(WipeWithoutSound, HasNone) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=0.4", "-f", "lavfi", "-i",
          "anoisesrc=r=48000:seed=7:d=0.4", "-c:v", "prores_ks", "-c:a", "pcm_s16le", at("a.mov")});
  const Arguments all = {"wipe", at("a.mov"),  at("a.mov"), at("out.mkv"), "--at",
                         "2f",   "--duration", "3f",        "--no-audio"};
  ASSERT_EQ(nkdrawTool(all).exitCode, 0);
  EXPECT_TRUE(packetsOf(at("out.mkv"), AVMEDIA_TYPE_AUDIO).empty());
  Arguments both = all;
  both.insert(both.end(), {"--audio", "cut", "--overwrite"});
  expectRefusal(both, 1, "exclude");
}
