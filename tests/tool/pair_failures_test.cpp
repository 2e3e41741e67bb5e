// SPDX-License-Identifier: BSD-2-Clause
//
// What can't be done with two clips ends with its exit code, one line, and no file.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

constexpr int kUsage = 1, kInput = 2, kOutput = 3;

std::string makeClip(const std::string& name, const std::string& size = "64x36",
                     const std::string& rate = "25", const std::string& frames = "5") {
  if (!exists(at(name)))
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=" + size + ":rate=" + rate, "-f", "lavfi", "-i",
            "sine", "-frames:v", frames, "-shortest", "-c:v", "rawvideo", "-pix_fmt", "bgra",
            "-c:a", "pcm_s16le", at(name)});
  return at(name);
}

struct Refusal {
  const char* name;
  Arguments arguments;  // behind the names of files
  int exitCode;
  const char* words;
};

Arguments withTimes(const Arguments& more) {
  Arguments all = {"--at", "2f", "--duration", "2f"};
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

const Refusal kWipeRefusals[] = {
    {"WithoutTimes", {}, kUsage, "--at"},
    {"WithoutDuration", {"--at", "2f"}, kUsage, "--duration"},
    {"AtIsNoTime", {"--at", "soon", "--duration", "2f"}, kUsage, "not a value of --at: soon"},
    {"AtIsNegative", {"--at=-1", "--duration", "2f"}, kUsage, "--at"},
    {"AtHasNoFrames", {"--at", "f", "--duration", "2f"}, kUsage, "--at"},
    {"AtIsNotANumber", {"--at", "nan", "--duration", "2f"}, kUsage, "--at"},
    {"AtHasTooManyMinutes", {"--at", "00:61:00", "--duration", "2f"}, kUsage, "--at"},
    {"AtHasTooManyFrames", {"--at", "00:00:00:25", "--duration", "2f"}, kUsage, "timecode"},
    {"AtBeyondTheEnd",
     {"--at", "5f", "--duration", "1f"},
     kUsage,
     "--at lies beyond the end of the first clip: frame 5"},
    {"AtFarBeyondTheEnd", {"--at", "900000", "--duration", "1f"}, kUsage, "--at lies beyond"},
    {"DurationZero", {"--at", "2f", "--duration", "0"}, kUsage, "the transition is empty"},
    {"DurationBelowHalfAFrame",
     {"--at", "2f", "--duration", "0.01"},
     kUsage,
     "the transition is empty"},
    {"DurationHuge", {"--at", "0", "--duration", "4000000000f"}, kUsage, "too long"},
    {"FirstClipTooShort",
     {"--at", "3f", "--duration", "3f"},
     kUsage,
     "a.mov, which needs 6 frames"},
    {"SecondClipTooShort",
     {"--at", "0", "--duration", "5f"},
     kUsage,
     "b.mov, which needs 5 frames"},
    {"WipeUnknown", withTimes({"--wipe", "swirl"}), kUsage, "nkdraw wipe --list"},
    {"WipeNegative", withTimes({"--wipe=-1"}), kUsage, "--wipe"},
    {"WipeTooLarge", withTimes({"--wipe", "2147483648"}), kUsage, "--wipe"},
    {"WipeThatDrawsNothing", withTimes({"--wipe", "508"}), kUsage, "draw nothing"},
    {"SlideSwapped", withTimes({"--wipe", "slide-up", "--swap"}), kUsage, "one way only"},
    {"SlideReversed", withTimes({"--wipe", "504", "--reverse"}), kUsage, "one way only"},
    {"AudioUnknown", withTimes({"--audio", "loud"}), kUsage, "crossfade, cut or none"},
    {"AudioCodecUnknown", withTimes({"--audio-codec", "nosuch"}), kUsage, "no such audio encoder"},
    {"AudioCodecOfPictures", withTimes({"--audio-codec", "mpeg4"}), kUsage,
     "no such audio encoder"},
    {"AudioCodecOptionUnknown", withTimes({"--audio-codec", "aac:nosuch=1"}), kUsage, "nosuch"},
    {"CodecUnknown", withTimes({"--codec", "nosuch"}), kUsage, "no such video encoder"},
};

const Refusal kCompareRefusals[] = {
    {"ModeUnknown", {"--mode", "xray"}, kUsage, "nkdraw compare --list"},
    {"SplitOutside",
     {"--mode", "split", "--split-x", "65"},
     kUsage,
     "outside the frame: --split-x 65; give 0 to 64"},
    {"SplitNegative", {"--mode", "split", "--split-x=-1"}, kUsage, "outside the frame"},
    {"SplitRowOutside",
     {"--mode", "split", "--vertical", "--split-y", "37"},
     kUsage,
     "give 0 to 36"},
    {"MarkOutside", {"--mode", "split", "--split-x", "64", "--mark-split"}, kUsage, "give 0 to 63"},
    {"SplitOfTheOtherWay", {"--mode", "split", "--split-y", "3"}, kUsage, "the other way"},
    {"CropOutside", {"--mode", "crop", "--split-x", "33"}, kUsage, "give 0 to 32"},
    {"GridZero", {"--grid", "0"}, kUsage, "give 1 to 100"},
    {"GridAbove100", {"--grid", "101"}, kUsage, "give 1 to 100"},
    {"GridTooFine", {"--grid", "1"}, kUsage, "more cells than the frame has pixels"},
    {"GridPixelsZero", {"--grid-pixels", "0,4"}, kUsage, "a pixel or more"},
    {"GridPixelsRowsZero", {"--grid-pixels", "4,0"}, kUsage, "a pixel or more"},
    {"GridPixelsOneNumber", {"--grid-pixels", "4"}, kUsage, "X,Y"},
    {"TwoGrids", {"--grid", "10", "--grid-pixels", "4,4"}, kUsage, "exclude"},
    {"BothWays", {"--mode", "split", "--vertical", "--horizontal"}, kUsage, "exclude"},
    {"WayOfAModeWithoutOne", {"--mode", "fade", "--vertical"}, kUsage, "fade, --vertical"},
    {"ThresholdTooLarge", {"--mode", "compare", "--threshold", "256"}, kUsage, "--threshold"},
    {"ThresholdOfAnotherMode", {"--mode", "fade", "--threshold", "2"}, kUsage, "fade, --threshold"},
    {"GainZero", {"--gain", "0"}, kUsage, "--gain"},
    {"GainOfAnotherMode", {"--mode", "split", "--gain", "2"}, kUsage, "split, --gain"},
    {"AmountAboveAll", {"--mode", "fade", "--amount", "1.5"}, kUsage, "--amount"},
    {"AmountAbove100Percent", {"--mode", "fade", "--amount", "101%"}, kUsage, "--amount"},
    {"AmountNegative", {"--mode", "fade", "--amount=-0.5"}, kUsage, "--amount"},
    {"AmountNotANumber", {"--mode", "fade", "--amount", "nan"}, kUsage, "--amount"},
    {"BlockTooLarge", {"--mode", "blocks", "--block", "101"}, kUsage, "--block"},
    {"ChannelUnknown", {"--mode", "grey", "--channel", "luma"}, kUsage, "--channel"},
    {"FlipUnknown", {"--flip-first", "d"}, kUsage, "--flip-first"},
    {"WipeThatDrawsNothing", {"--mode", "wipe", "--wipe", "510"}, kUsage, "draw nothing"},
    {"CodecUnknown", {"--codec", "nosuch"}, kUsage, "no such video encoder"},
};

void run(const char* command, const Refusal& refusal) {
  Arguments arguments = {command, makeClip("a.mov"), makeClip("b.mov", "64x36", "25", "4"),
                         at("out.mov")};
  arguments.insert(arguments.end(), refusal.arguments.begin(), refusal.arguments.end());
  expectRefusal(arguments, refusal.exitCode, refusal.words);
}

class WipeRefusals : public testing::TestWithParam<Refusal> {};
class CompareRefusals : public testing::TestWithParam<Refusal> {};

std::string nameOf(const testing::TestParamInfo<Refusal>& each) {
  return each.param.name;
}

/// Both sub-commands with everything that they need.
Arguments command(const std::string& name, const std::string& a, const std::string& b,
                  const std::string& output, const Arguments& more = {}) {
  Arguments arguments = {name, a, b, output};
  if (name == "wipe")
    arguments.insert(arguments.end(), {"--at", "2f", "--duration", "2f"});
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

class BothCommands : public testing::TestWithParam<const char*> {};

void write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST_P(WipeRefusals, SayWhatIsWrong) {
  run("wipe", GetParam());
}
INSTANTIATE_TEST_SUITE_P(Each, WipeRefusals, testing::ValuesIn(kWipeRefusals), nameOf);

TEST_P(CompareRefusals, SayWhatIsWrong) {
  run("compare", GetParam());
}
INSTANTIATE_TEST_SUITE_P(Each, CompareRefusals, testing::ValuesIn(kCompareRefusals), nameOf);

TEST_P(BothCommands, RefuseClipsOfTwoSizesAndNameBoth) {
  const std::string a = makeClip("a.mov"), b = makeClip("b.mov", "66x36");
  expectRefusal(command(GetParam(), a, b, at("out.mov")), kInput, "64x36");
  expectRefusal(command(GetParam(), a, b, at("out.mov")), kInput, "66x36");
}

TEST_P(BothCommands, RefuseClipsOfTwoRatesAndNameBoth) {
  const std::string a = makeClip("a.mov", "64x36", "30"),
                    b = makeClip("b.mov", "64x36", "30000/1001");
  expectRefusal(command(GetParam(), a, b, at("out.mov")), kInput, "30 frames/s");
  expectRefusal(command(GetParam(), a, b, at("out.mov")), kInput, "29.97 frames/s");
}

TEST_P(BothCommands, RefuseMissingFiles) {
  const std::string a = makeClip("a.mov");
  expectRefusal(command(GetParam(), a, at("none.mov"), at("out.mov")), kInput, "none.mov");
  expectRefusal(command(GetParam(), at("none.mov"), a, at("out.mov")), kInput, "none.mov");
  expectRefusal({GetParam()}, kUsage, "missing");
  expectRefusal({GetParam(), a}, kUsage, "missing");
}

TEST_P(BothCommands, RefuseAnInputAsTheOutput) {
  const std::string a = makeClip("a.mov"), b = makeClip("b.mov");
  expectRefusal(command(GetParam(), a, b, b, {"--overwrite"}), kUsage, "the output is an input");
  expectRefusal(command(GetParam(), a, b, a, {"--overwrite"}), kUsage, "the output is an input");
}

TEST_P(BothCommands, LeaveAnExistingFileAlone) {
  const std::string a = makeClip("a.mov"), b = makeClip("b.mov"), out = at("out.mov");
  write(out, "mine");
  expectRefusal(command(GetParam(), a, b, out), kOutput, "exists");
  EXPECT_EQ(read(out), "mine");
  EXPECT_EQ(nkdrawTool(command(GetParam(), a, b, out, {"--overwrite"})).exitCode, 0);
  EXPECT_GT(decode(out).frames.size(), 0U);
}

TEST_P(BothCommands, LeaveNothingBehindWhenAnInputBreaksOff) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=64x36:rate=25", "-frames:v", "50", "-c:v", "ffv1",
          at("b.mkv")});
  std::filesystem::resize_file(at("b.mkv"), std::filesystem::file_size(at("b.mkv")) * 9 / 10);
  const std::string a = makeClip("a.avi", "64x36", "25", "50");
  expectRefusal(command(GetParam(), a, at("b.mkv"), at("out.mov")), kInput, "breaks off");
}

TEST_P(BothCommands, RefuseASuffixThatNamesNoVideo) {
  expectRefusal(command(GetParam(), makeClip("a.mov"), makeClip("b.mov"), at("out.txt")), kUsage,
                "suffix");
}

INSTANTIATE_TEST_SUITE_P(Each, BothCommands, testing::Values("wipe", "compare"),
                         [](const testing::TestParamInfo<const char*>& each) {
                           return std::string(each.param);
                         });

TEST(WipeRefusal, OfAKindOfFileThatDoesNotKeepTheLayoutNamesOthers) {
  expectRefusal(command("wipe", makeClip("a.mov"), makeClip("b.mov"), at("out.mp4")), kUsage,
                ".nut");
}

TEST(WipeRefusal, OfSoundThatTheFileDoesNotHold) {
  expectRefusal(command("wipe", makeClip("a.mov"), makeClip("b.mov"), at("out.mp4"),
                        {"--codec", "mpeg4", "--audio-codec", "flac"}),
                kUsage, "does not hold this codec: mp4, flac");
}

TEST(WipeRefusal, OfAClipWhoseLengthShowsOnlyWhileItIsRead) {
  for (const char* name : {"a.nut", "b.nut"})
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=64x36:rate=25", "-frames:v", "5", "-c:v",
            "rawvideo", "-pix_fmt", "bgra", at(name)});
  expectRefusal({"wipe", at("a.nut"), at("b.nut"), at("out.nut"), "--at", "2f", "--duration", "4f"},
                kUsage, "a.nut, which needs 6 frames");
}

TEST(CompareRefusal, OfNothingToWrite) {
  expectRefusal({"compare", makeClip("a.mov"), makeClip("b.mov")}, kUsage, "--report");
}

TEST(CompareRefusal, OfAReportThatExistsOrIsAnInputOrTheOutput) {
  const std::string a = makeClip("a.mov"), b = makeClip("b.mov"), report = at("r.csv");
  write(report, "mine");
  expectRefusal({"compare", a, b, "--report", report}, kOutput, "exists");
  EXPECT_EQ(read(report), "mine");
  expectRefusal({"compare", a, b, "--report", a, "--overwrite"}, kUsage, "the report is an input");
  expectRefusal({"compare", a, b, at("out.mov"), "--report", at("out.mov")}, kUsage,
                "the report is the output");
}

TEST(SheetRefusal, SaysWhatIsWrong) {
  expectRefusal({"sheet"}, kUsage, "wipes, modes, glyphs, shapes or layouts");
  expectRefusal({"sheet", "doors", at("s.png")}, kUsage, "doors");
  expectRefusal({"sheet", "wipes", at("s.mov")}, kUsage, ".png");
  expectRefusal({"sheet", "wipes"}, kUsage, ".png");
  expectRefusal({"sheet", "wipes", at("s.png"), "--a", at("none.mov")}, kInput, "none.mov");
  write(at("s.png"), "mine");
  expectRefusal({"sheet", "modes", at("s.png")}, kOutput, "exists");
  EXPECT_EQ(read(at("s.png")), "mine");
}
