// SPDX-License-Identifier: BSD-2-Clause
//
// Chapters: kept where files hold them, and named where they are lost.
#include "program.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

/// A clip of 20 frames with two chapters.
std::string clipWithChapters() {
  std::ofstream(at("chapters.txt"))
      << ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=400\ntitle=One\n"
         "[CHAPTER]\nTIMEBASE=1/1000\nSTART=400\nEND=800\ntitle=Two\n";
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=0.8", "-i",
          at("chapters.txt"), "-map_metadata", "1", "-c:v", "mpeg2video", at("in.mov")});
  return at("in.mov");
}

Outcome burn(const std::string& out, const Arguments& more = {}) {
  Arguments all = {clipWithChapters(), at(out), "--overwrite"};
  all.insert(all.end(), more.begin(), more.end());
  return burnin(all);
}

std::string chaptersOf(const std::string& name) {
  return runProgram("ffprobe",
                    {"-v", "error", "-show_entries",
                     "chapter=start_time,end_time:chapter_tags=title", "-of", "csv=p=0", at(name)})
      .out;
}

constexpr char kBoth[] = "0.000000,0.400000,One\n0.400000,0.800000,Two\n";

}  // namespace

TEST(Chapters, AreKeptWhereFilesHoldThem) {
  for (const char* out : {"out.mov", "out.mp4", "out.mkv", "out.nut"}) {
    const Outcome outcome = burn(out);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err.find("chapter"), std::string::npos) << outcome.err;
    EXPECT_EQ(chaptersOf(out), kBoth) << out;
  }
}

TEST(Chapters, OfARangeAreCutToIt) {
  ASSERT_EQ(burn("out.mkv", {"--frames", "5-14"}).exitCode, 0);
  EXPECT_EQ(chaptersOf("out.mkv"), "0.000000,0.200000,One\n0.200000,0.400000,Two\n");
}

TEST(Chapters, ThatAFileDoesNotHoldAreNamedInOneLine) {
  for (const std::string out : {"out.ts", "out.avi", "out.mxf", "out.mpg"}) {
    const Outcome outcome = burn(out);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::size_t found = outcome.err.find("nkdraw: note: 2 chapters are left out: ");
    ASSERT_NE(found, std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.err.find("chapter", outcome.err.find('\n', found)), std::string::npos)
        << outcome.err;
    EXPECT_EQ(chaptersOf(out), "");
  }
}

TEST(Chapters, OutsideTheRangeAreNotMissed) {
  const Outcome outcome = burn("out.ts", {"--frames", "12-15"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("1 chapter is left out: mpegts files hold none\n"), std::string::npos)
      << outcome.err;
}
