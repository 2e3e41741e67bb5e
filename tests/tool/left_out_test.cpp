// SPDX-License-Identifier: BSD-2-Clause
//
// A wipe names what its inputs lose.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

/// With a timecode track, in QuickTime files.
std::string makeClip(const std::string& name, const Arguments& more = {}) {
  Arguments run = {"-f", "lavfi", "-i", "testsrc2=size=64x36:rate=25:duration=0.4"};
  run.insert(run.end(), more.begin(), more.end());
  run.insert(run.end(),
             {"-c:v", "rawvideo", "-pix_fmt", "uyvy422", "-timecode", "10:00:00:00", at(name)});
  ffmpeg(run);
  return at(name);
}

/// With stereo sound, a subtitle and a chapter.
std::string makeFullClip(const std::string& name) {
  std::ofstream(at("text.srt")) << "1\n00:00:00,000 --> 00:00:00,300\nHello\n";
  std::ofstream(at("chapters")) << ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/10\nSTART=0\nEND=3\n";
  return makeClip(name, {"-f",
                         "lavfi",
                         "-i",
                         "sine=duration=0.4",
                         "-i",
                         at("text.srt"),
                         "-i",
                         at("chapters"),
                         "-map",
                         "0",
                         "-map",
                         "1",
                         "-map",
                         "2",
                         "-map_chapters",
                         "3",
                         "-c:a",
                         "pcm_s16le",
                         "-c:s",
                         "srt"});
}

Outcome join(const std::string& a, const std::string& b, const Arguments& more = {}) {
  Arguments run = {"wipe", a, b, at("out.mov"), "--at", "2f", "--duration", "3f", "--overwrite"};
  run.insert(run.end(), more.begin(), more.end());
  return nkdrawTool(run);
}

}  // namespace

TEST(WipeLeavesOut, SubtitlesAndChaptersWithALineForEachInput) {
  const std::string a = makeFullClip("a.mkv"), b = makeFullClip("b.mkv");
  const std::string lost = ": stream 2 (subtitle, subrip); chapters\n";
  const Outcome outcome = join(a, b);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err,
            "nkdraw: note: left out of " + a + lost + "nkdraw: note: left out of " + b + lost);
  EXPECT_EQ(packetsOf(at("out.mov"), AVMEDIA_TYPE_SUBTITLE).size(), 0U);
}

TEST(WipeLeavesOut, OnlyWhatOneInputHas) {
  const std::string a = makeClip("a.mov"), b = makeFullClip("b.mkv");
  const Outcome outcome = join(a, b, {"--no-audio"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err,
            "nkdraw: note: left out of " + b + ": stream 2 (subtitle, subrip); chapters\n");
}

TEST(WipeLeavesOut, NothingOfClipsWithTimecodeTracks) {
  const Outcome outcome = join(makeClip("a.mov"), makeClip("b.mov"));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(decode(at("out.mov")).timecode, "10:00:00:00");
}
