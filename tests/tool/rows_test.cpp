// SPDX-License-Identifier: BSD-2-Clause
//
// The rows and sizes that the command has beyond the overlay's own.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

namespace {

std::string blackClip(const std::string& size, const std::string& rate = "25") {
  const std::string path = at("rows_in.mov");
  ffmpeg({"-f", "lavfi", "-i", "color=black:size=" + size + ":rate=" + rate, "-frames:v", "3",
          "-c:v", "v210", "-timecode", "01:00:00:00", path});
  return path;
}

/// The clip burnt with these options, as grey frames.
Clip burnt(const std::string& in, const Arguments& options) {
  Arguments arguments = {in, at("rows_out.mov"), "--overwrite"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  const Outcome outcome = burnin(arguments);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return decodeAs(at("rows_out.mov"), AV_PIX_FMT_GRAY8);
}

}  // namespace

TEST(RecordTimecode, TakesTheVITCRowAndBothRowsAreLabelled) {
  const Clip grey = burnt(blackClip("320x180"), {"--record-timecode", "10:00:00:24", "--position",
                                                 "8,20", "--timecode-size", "2"});
  EXPECT_EQ(readText(grey, 0, 8, 20, 2, 15), "SRC 01:00:00:00");
  EXPECT_EQ(readText(grey, 0, 8, 40, 2, 15), "REC 10:00:00:24");
  EXPECT_EQ(readText(grey, 1, 8, 20, 2, 15), "SRC 01:00:00:01");
  EXPECT_EQ(readText(grey, 1, 8, 40, 2, 15), "REC 10:00:01:00");
  EXPECT_EQ(grey.timecode, "01:00:00:00") << "the file's stays the source's";
}

TEST(RecordTimecode, StandsAloneWithoutALabel) {
  const Clip grey = burnt(blackClip("320x180"), {"--no-ltc", "--record-timecode", "10:00:00:00",
                                                 "--position", "8,20", "--timecode-size", "2"});
  EXPECT_EQ(readText(grey, 2, 8, 20, 2, 11), "10:00:00:02");
}

TEST(RecordTimecode, MayDropFramesWhereTheSourceDoesNot) {
  const Clip grey = burnt(blackClip("320x180", "30000/1001"),
                          {"--record-timecode", "00:00:59;28", "--position", "8,20",
                           "--timecode-size", "2", "--clock", "--frame-number"});
  EXPECT_EQ(readText(grey, 2, 8, 20, 2, 15), "SRC 01:00:00:02");
  EXPECT_EQ(readText(grey, 2, 8, 40, 2, 15), "REC 00:01:00;02");
  EXPECT_EQ(readText(grey, 2, 8, 60, 2, 9)[2], ':') << "the clock is between";
  EXPECT_EQ(readText(grey, 2, 8, 80, 2, 12), "FRAME 000002");
}

TEST(FrameNumber, IsCountedFromTheClipsFirstFrame) {
  const Clip grey = burnt(blackClip("320x180"), {"--no-ltc", "--frame-number", "--position", "8,20",
                                                 "--timecode-size", "2", "--frames", "1-2"});
  EXPECT_EQ(readText(grey, 0, 8, 20, 2, 12), "FRAME 000001");
  EXPECT_EQ(readText(grey, 1, 8, 20, 2, 12), "FRAME 000002");
}

TEST(TextSize, GrowsWithTheHeightOfTheFrame) {
  struct Case {
    const char* frame;
    const char* size;
  };
  for (const Case& each : {Case{"640x360", "magnified 1"},
                           {"1280x720", "magnified 2"},
                           {"1920x1080", "magnified 3"},
                           {"3840x2160", "magnified 6"}}) {
    const Outcome dry = burnin({"--layout", "v210", "--pattern-size", each.frame, "--no-ltc",
                                "--format-line", "--text", "0,100,A", "--dry-run", at("none.mov")});
    const std::size_t first = dry.out.find(each.size);
    EXPECT_NE(first, std::string::npos) << each.frame << dry.out << dry.err;
    EXPECT_NE(dry.out.find(each.size, first + 1), std::string::npos) << dry.out;
  }
}

TEST(TextSize, OfTheOptionIsDrawn) {
  for (const int size : {1, 2, 3, 4}) {
    const Clip grey =
        burnt(blackClip("320x180"), {"--text-size", std::to_string(size), "--text", "9,21,Reel 7"});
    EXPECT_EQ(readText(grey, 1, 9, 21, size, 6), "Reel 7") << size;
  }
}

TEST(TimecodeSize, IsStillReadUnderItsOldName) {
  const Clip grey = burnt(blackClip("320x180"), {"--size", "3", "--position", "8,20"});
  EXPECT_EQ(readText(grey, 1, 8, 20, 3, 11), "01:00:00:01");
  EXPECT_EQ(burnin({"--help"}).out.find(" --size"), std::string::npos);
}
