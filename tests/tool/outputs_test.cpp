// SPDX-License-Identifier: BSD-2-Clause
//
// Outputs appear when they are complete; dry runs, stills and interrupted runs.
#include "clip.h"
#include "program.h"
#include "reference_overlay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

void makeClip(const std::string& path) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "5", "-c:v",
          "rawvideo", "-pix_fmt", "uyvy422", "-timecode", "10:00:00:00", path});
}

}  // namespace

TEST(Overwrite, ReplacesAnExistingFile) {
  makeClip(at("in.mov"));
  std::ofstream(at("out.mov")) << "old";
  const Outcome outcome = burnin({at("in.mov"), at("out.mov"), "--overwrite"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("out.mov")).frames.size(), 5U);
}

TEST(Overwrite, ReplacesWhatALinkPointsTo) {
  makeClip(at("in.mov"));
  fs::create_directory(at("there"));
  std::ofstream(at("there/old.mov")) << "old";
  fs::create_symlink(at("there/old.mov"), at("out.mov"));
  ASSERT_EQ(burnin({at("in.mov"), at("out.mov"), "--overwrite"}).exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(at("out.mov")));
  EXPECT_EQ(decode(at("there/old.mov")).frames.size(), 5U);
}

TEST(Overwrite, LeavesTheOldFileWhenTheRunFails) {
  std::ofstream(at("out.mov")) << "precious";
  makeClip(at("in.avi"));
  fs::resize_file(at("in.avi"), fs::file_size(at("in.avi")) * 7 / 10);
  ASSERT_EQ(burnin({at("in.avi"), at("out.mov"), "--overwrite"}).exitCode, 2);
  EXPECT_EQ(fs::file_size(at("out.mov")), 8U);
  EXPECT_EQ(filesAtWork().size(), 2U);
}

TEST(Outputs, MayHaveAnyName) {
  for (const char* name : {"with blank.mov", "10:00.mov", "-dash.mov", "%d.mov", ".hidden.mov",
                           "\xC3\xA4.mov", "two.dots.mov"}) {
    const std::string folder = workFolder();
    makeClip(folder + "/" + name);
    const Outcome outcome = burnin({folder + "/" + name, folder + "/out " + name});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_TRUE(exists(folder + "/out " + name));
  }
}

TEST(Outputs, MayHaveTheLongestName) {
  makeClip(at("in.mov"));
  const std::string out = at(std::string(251, 'x') + ".mov");
  EXPECT_EQ(burnin({at("in.mov"), out}).exitCode, 0);
  EXPECT_TRUE(exists(out));
}

TEST(Outputs, GetTheRightsThatNewFilesHave) {
  makeClip(at("in.mov"));
  std::ofstream(at("plain")) << "x";
  ASSERT_EQ(burnin({at("in.mov"), at("out.mov")}).exitCode, 0);
  EXPECT_EQ(fs::status(at("out.mov")).permissions(), fs::status(at("plain")).permissions());
}

TEST(Outputs, KeepTheRightsOfTheFileThatTheyReplace) {
  makeClip(at("in.mov"));
  for (const char* out : {"out.mov", "out.png"}) {
    for (const auto rights : {fs::perms::owner_read | fs::perms::owner_write,
                              fs::perms::owner_read | fs::perms::group_read, fs::perms::all}) {
      std::ofstream(at(out)) << "old";
      fs::permissions(at(out), rights);
      Arguments arguments = {at("in.mov"), at(out), "--overwrite"};
      if (at(out).ends_with(".png"))
        arguments.insert(arguments.end(), {"--still", "0"});
      ASSERT_EQ(burnin(arguments).exitCode, 0);
      EXPECT_EQ(fs::status(at(out)).permissions(), rights) << out;
      fs::remove(at(out));
    }
  }
}

TEST(Outputs, MayBeALinkToAFileThatDoesNotExist) {
  makeClip(at("in.mov"));
  fs::create_directory(at("there"));
  fs::create_symlink("there/new.mov", at("out.mov"));
  const Outcome refused = burnin({at("in.mov"), at("out.mov"), "--dry-run"});
  EXPECT_EQ(refused.exitCode, 3);
  EXPECT_NE(refused.err.find("the output exists"), std::string::npos) << refused.err;
  const Outcome outcome = burnin({at("in.mov"), at("out.mov"), "--overwrite"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(fs::is_symlink(at("out.mov")));
  EXPECT_EQ(decode(at("there/new.mov")).frames.size(), 5U);
}

class Interrupt : public testing::TestWithParam<int> {};

/// A clip for a pipe.
std::string clipBytes() {
  makeClip(at("in.nut"));
  std::ifstream file(at("in.nut"), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST_P(Interrupt, LeavesNothingBehind) {
  const Outcome outcome = burninUntil(
      {"--layout", "v210", "--pattern-frames", "100000", at("out.mov")}, ".nkdraw-", GetParam());
  EXPECT_EQ(outcome.exitCode, 128 + GetParam());
  EXPECT_TRUE(outcome.err.starts_with("nkdraw: interrupted")) << outcome.err;
  EXPECT_TRUE(filesAtWork().empty());
}

TEST_P(Interrupt, LeavesTheOldFileAsItWas) {
  std::ofstream(at("out.mkv")) << "precious";
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=1280x720:rate=25", "-frames:v", "250", "-c:v",
          "mpeg4", at("in.mp4")});
  const Outcome outcome = burninUntil({at("in.mp4"), at("out.mkv"), "--overwrite", "--lossless"},
                                      ".nkdraw-", GetParam());
  EXPECT_EQ(outcome.exitCode, 128 + GetParam());
  EXPECT_EQ(fs::file_size(at("out.mkv")), 8U);
  EXPECT_EQ(filesAtWork().size(), 2U);
}

TEST_P(Interrupt, EndsAWaitForTheInput) {
  const std::string clip = clipBytes();
  const auto [outcome, stopped] =
      toolFed({"", at("pipe.nut"), clip.substr(0, clip.size() / 2), "", GetParam()},
              {"burnin", at("pipe.nut"), at("out.nut")});
  EXPECT_TRUE(stopped);
  EXPECT_EQ(outcome.exitCode, 128 + GetParam());
  EXPECT_TRUE(outcome.err.starts_with("nkdraw: interrupted")) << outcome.err;
}

TEST_P(Interrupt, ThatTheProcessIgnoresIsIgnored) {
  const std::string clip = clipBytes();
  const std::string shell = "trap '' " + std::to_string(GetParam()) + "; ";
  const auto [outcome, stopped] = toolFed({shell, at("pipe.nut"), clip.substr(0, clip.size() / 2),
                                           clip.substr(clip.size() / 2), GetParam()},
                                          {"burnin", at("pipe.nut"), at("out.nut")});
  EXPECT_FALSE(stopped);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("out.nut")).frames.size(), 5U);
}

TEST_P(Interrupt, EndsAWaitForAScript) {
  struct Row {
    const char *script, *shell;
  };
  const std::string pipe = at("pipe.nkd");
  const std::string shell = "exec <'" + pipe + "'; ";
  for (const auto& [script, before] : {Row{pipe.c_str(), ""}, Row{"-", shell.c_str()}}) {
    const auto [outcome, stopped] =
        toolFed({before, pipe, "erase\n", "", GetParam()},
                {"draw", script, at("out.png"), "--layout", "bgra", "--size", "8x8"});
    EXPECT_TRUE(stopped) << script;
    EXPECT_EQ(outcome.exitCode, 128 + GetParam()) << script;
    EXPECT_TRUE(outcome.err.starts_with("nkdraw: interrupted")) << outcome.err;
    EXPECT_EQ(filesAtWork(), std::vector<std::string>{"pipe.nkd"});
  }
}

INSTANTIATE_TEST_SUITE_P(Signals, Interrupt, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(DryRun, SaysWhatWouldBeDoneAndWritesNothing) {
  makeClip(at("in.mov"));
  const Outcome outcome = burnin({at("in.mov"), at("out.mov"), "--dry-run", "--clock", "--text",
                                  "20,20,Reel 7", "--frames", "1-3"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  for (const char* words :
       {"in place", "rawvideo, 5 frames", "uyvy", "320x180", "25 frames/s", "progressive",
        "10:00:00:00, the video's tag", "LTC row \"10:00:00:00\": 16,150 to 103,160, magnified 1",
        "text 1 \"Reel 7\": 20,20 to 67,30, magnified 1", "frames 1 to 3", "unchanged",
        "out.mov: mov"})
    EXPECT_NE(outcome.out.find(words), std::string::npos) << words << "\n" << outcome.out;
  EXPECT_EQ(filesAtWork().size(), 1U);
}

TEST(DryRun, NamesTheCodecOfTheConvertingRoad) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "2", "-c:v", "mpeg4",
          at("in.mp4")});
  const Outcome outcome = burnin({at("in.mp4"), at("out.mkv"), "--lossless", "--dry-run"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("transcode"), std::string::npos);
  EXPECT_NE(outcome.out.find("ffv1, yuv420p"), std::string::npos) << outcome.out;
}

TEST(DryRun, TellsMP4BySuffixesInCapitalLetters) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=1280x720:rate=25", "-frames:v", "1", "-c:v", "mpeg4",
          at("IN.MP4")});
  const Outcome outcome = burnin({at("IN.MP4"), at("out.mkv"), "--dry-run", "--format-line"});
  EXPECT_NE(outcome.out.find("25.00 MP4"), std::string::npos) << outcome.out;
}

TEST(Still, IsTheFrameWithItsOverlay) {
  makeClip(at("in.mov"));
  const Arguments look = {"--position", "10,10", "--timecode-size", "2"};
  Arguments still = {at("in.mov"), at("out.png"), "--still", "3"},
            clip = {at("in.mov"), at("out.mov")};
  still.insert(still.end(), look.begin(), look.end());
  clip.insert(clip.end(), look.begin(), look.end());
  ASSERT_EQ(burnin(still).exitCode, 0);
  ASSERT_EQ(burnin(clip).exitCode, 0);
  const Clip picture = decodeAs(at("out.png"), AV_PIX_FMT_GRAY8);
  ASSERT_EQ(picture.frames.size(), 1U);
  EXPECT_EQ(picture.width, 320);
  EXPECT_EQ(picture.height, 180);
  EXPECT_EQ(readText(picture, 0, 10, 10, 2, 11), "10:00:00:03");
}

TEST(Still, OfRGBHasTheExactPixels) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "3", "-c:v",
          "rawvideo", "-pix_fmt", "bgr24", at("in.avi")});
  ASSERT_EQ(burnin({at("in.avi"), at("out.avi")}).exitCode, 0);
  ASSERT_EQ(burnin({at("in.avi"), at("out.png"), "--still", "2"}).exitCode, 0);
  const Clip clip = decodeAs(at("out.avi"), AV_PIX_FMT_RGB24);
  const Clip picture = decode(at("out.png"));
  ASSERT_EQ(picture.format, AV_PIX_FMT_RGB24);
  EXPECT_TRUE(picture.frames[0] == clip.frames[2]);
}

TEST(Still, ComesFromCompressedClipsToo) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "20", "-c:v", "mpeg4",
          at("in.mp4")});
  ASSERT_EQ(burnin({at("in.mp4"), at("out.png"), "--still", "17", "--position", "0,0",
                    "--timecode-size", "2"})
                .exitCode,
            0);
  EXPECT_EQ(readText(decodeAs(at("out.png"), AV_PIX_FMT_GRAY8), 0, 0, 0, 2, 11), "00:00:00:17");
}

TEST(Still, MayHaveItsSuffixInCapitalLetters) {
  makeClip(at("in.mov"));
  EXPECT_EQ(burnin({at("in.mov"), at("OUT.PNG"), "--still", "0"}).exitCode, 0);
  EXPECT_EQ(decode(at("OUT.PNG")).width, 320);
  EXPECT_EQ(burnin({at("in.mov"), at("NO.PNG")}).exitCode, 1);
}

TEST(Still, OverwritesOnlyWhenAsked) {
  makeClip(at("in.mov"));
  std::ofstream(at("out.png")) << "precious";
  EXPECT_EQ(burnin({at("in.mov"), at("out.png"), "--still", "0"}).exitCode, 3);
  EXPECT_EQ(fs::file_size(at("out.png")), 8U);
  EXPECT_EQ(burnin({at("in.mov"), at("out.png"), "--still", "0", "--overwrite"}).exitCode, 0);
}

TEST(Help, ExplainsTheCommand) {
  const Outcome outcome = burnin({"--help"});
  EXPECT_EQ(outcome.exitCode, 0);
  for (const char* option : {"--ltc",          "--vitc",          "--clock",
                             "--format-line",  "--text",          "--start-timecode",
                             "--position",     "--timecode-size", "--fill",
                             "--frames",       "--still",         "--codec",
                             "--lossless",     "--viewing-copy",  "--container-option",
                             "--overwrite",    "--dry-run",       "--layout",
                             "--pattern-size", "--pattern-rate",  "--pattern-frames",
                             "--list-layouts", "--verbose",       "Examples:",
                             "Exit status:"})
    EXPECT_NE(outcome.out.find(option), std::string::npos) << option;
}

TEST(Help, ListsTheLayouts) {
  const Outcome outcome = burnin({"--list-layouts"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.out.find("v210"), std::string::npos);
  EXPECT_NE(outcome.out.find(".mov, .avi, .mkv or .nut"), std::string::npos);
}

TEST(Help, ThatCannotBePrintedIsAFailure) {
  makeClip(at("in.mov"));
  const std::string dry = "burnin " + at("in.mov") + " " + at("out.mov") + " --dry-run";
  for (const std::string& arguments :
       {std::string("--help"), std::string("--version"), std::string("burnin --help"),
        std::string("burnin --list-layouts"), dry}) {
    const Outcome outcome = runProgram(
        "bash", {"-c", std::string("'") + NKDRAW_TOOL + "' " + arguments + " > /dev/full"});
    EXPECT_EQ(outcome.exitCode, 3) << arguments;
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  }
}

TEST(Help, NamesAnUnknownCommand) {
  const Outcome outcome = runProgram(NKDRAW_TOOL, {"paint"});
  EXPECT_NE(outcome.err.find("no such command: paint"), std::string::npos) << outcome.err;
}

TEST(Help, TellsOfAMissingOrUnknownCommandInOneLine) {
  for (const Arguments& arguments : {Arguments{}, Arguments{"paint"}}) {
    const Outcome outcome = runProgram(NKDRAW_TOOL, arguments);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  }
}
