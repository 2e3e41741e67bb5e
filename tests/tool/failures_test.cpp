// SPDX-License-Identifier: BSD-2-Clause
//
// What can't be done ends with its exit code, one line, and no file.
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

constexpr int kUsage = 1, kInput = 2, kOutput = 3, kProcessing = 4;

std::string clip() {
  const std::string path = at("in.mov");
  if (!exists(path))
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-f", "lavfi", "-i", "sine",
            "-frames:v", "5", "-shortest", "-c:v", "v210", "-c:a", "pcm_s16le", path});
  return path;
}

void write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void cut(const std::string& path, double share) {
  const auto size = static_cast<double>(fs::file_size(path));
  fs::resize_file(path, static_cast<std::uintmax_t>(size * share));
}

void expectFailure(const Arguments& arguments, int exitCode, const std::string& words) {
  Arguments all = {"burnin"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  expectRefusal(all, exitCode, words);
}

struct BadValue {
  const char* name;
  Arguments arguments;
  const char* words;
};

class BadValues : public testing::TestWithParam<BadValue> {};

const BadValue kBadValues[] = {
    {"TextSizeZero", {"--text-size", "0"}, "--text-size"},
    {"RecordTimecodeEmpty", {"--record-timecode", ""}, "--record-timecode"},
    {"RecordTimecodeNone", {"--record-timecode", "ten"}, "not a timecode"},
    {"SizeZero", {"--timecode-size", "0"}, "--timecode-size"},
    {"SizeTooLarge", {"--timecode-size", "21"}, "--timecode-size"},
    {"SizeWithMoreBehind", {"--timecode-size", "2x"}, "--timecode-size"},
    {"SizeNoNumber", {"--timecode-size", "big"}, "--timecode-size"},
    {"PositionOneNumber", {"--position", "10"}, "--position"},
    {"PositionThreeNumbers", {"--position", "1,2,3"}, "--position"},
    {"PositionHuge", {"--position", "99999999999,2"}, "--position"},
    {"TextWithoutPlace", {"--text", "Reel 7"}, "--text"},
    {"TextEmpty", {"--text", "10,10,"}, "--text"},
    {"TextNotAscii", {"--text", "10,10,caf\xC3\xA9"}, "ASCII"},
    {"TextWithControlCode", {"--text", "10,10,a\tb"}, "ASCII"},
    {"RowOnAndOff", {"--ltc", "--no-ltc"}, "exclude"},
    {"BoxOnAndOff", {"--fill", "--no-fill"}, "exclude"},
    {"NothingToBurn", {"--no-ltc"}, "nothing to burn in"},
    {"TimecodeNoTimecode", {"--start-timecode", "noon"}, "timecode"},
    {"TimecodeFrameTooLarge", {"--start-timecode", "01:00:00:25"}, "timecode"},
    {"TimecodeDropAt25", {"--start-timecode", "01:00:00;00"}, "drop-frame"},
    {"FramesBackwards", {"--frames", "5-2"}, "--frames"},
    {"FramesNoRange", {"--frames", "all"}, "--frames"},
    {"StillIntoVideo", {"--still", "1"}, ".png"},
    {"StillNegative", {"--still", "-1"}, "not a value of --still: -1"},
    {"StillNoNumber", {"--still", "abc"}, "not a value of --still: abc"},
    {"StillHuge", {"--still", "99999999999999999999"}, "not a value of --still: 9999"},
    {"EmptyPosition", {"--position", ""}, "--position: (empty)"},
    {"EmptySize", {"--timecode-size", ""}, "--timecode-size: (empty)"},
    {"EmptyTimecode", {"--start-timecode", ""}, "--start-timecode: (empty)"},
    {"EmptyFrames", {"--frames", ""}, "--frames: (empty)"},
    {"EmptyStill", {"--still", ""}, "--still: (empty)"},
    {"EmptyCodec", {"--codec", ""}, "--codec: (empty)"},
    {"EmptyLayout", {"--layout", ""}, "test pattern"},
    {"CodecUnknown", {"--codec", "nosuch"}, "no such video encoder"},
    {"CodecOfSound", {"--codec", "aac"}, "no such video encoder"},
    {"CodecOptionUnknown", {"--codec", "mpeg4:nosuch=1"}, "nosuch"},
    {"CodecOptionNoNumber", {"--codec", "libx264:crf=abc"}, "'abc'"},
    {"CodecOptionTooLarge", {"--codec", "prores_ks:profile=99"}, "out of range"},
    {"CodecNotInThisFile", {"--codec", "theora"}, "theora"},
    {"LayoutWithInput", {"--layout", "v210"}, "test pattern"},
    {"UnknownOption", {"--colour", "red"}, "--colour"},
    {"LeavesAtTheLeft", {"--position", "-1,10"}, "left"},
    {"LeavesAtTheTop", {"--position", "10,-1"}, "upper"},
    {"LeavesAtTheRight", {"--position", "233,10", "--timecode-size", "1"}, "right"},
    {"LeavesAtTheBottom", {"--position", "10,170", "--timecode-size", "1"}, "lower"},
    {"TextLeavesAtTheRight",
     {"--text-size", "3", "--text", "297,10,A"},
     "text 1 leaves the frame at the right"},
    {"TextLeavesAtTheBottom",
     {"--text-size", "3", "--text", "10,150,A"},
     "text 1 leaves the frame at the lower"},
    {"SecondTextLeaves", {"--text", "0,0,A", "--text", "0,-1,B"}, "text 2 leaves"},
    {"FarBeyondTheRight",
     {"--position", "2147483647,2147483647"},
     "LTC row leaves the frame at the right"},
    {"FarBelow", {"--vitc", "--position", "0,2147483640"}, "LTC row leaves the frame at the lower"},
    {"FarAbove",
     {"--vitc", "--position", "0,-2147483648"},
     "LTC row leaves the frame at the upper"},
    {"TextFarBeyondTheRight",
     {"--text", "2147483647,2147483647,Hi"},
     "text 1 leaves the frame at the right"},
    {"TextFarBelow", {"--text", "0,2147483640,Hi"}, "text 1 leaves the frame at the lower"},
    {"FormatLineTooWide", {"--format-line", "--text-size", "3"}, "format line leaves the frame"},
    {"SizeTooLargeForTheFrame", {"--timecode-size", "4"}, "LTC row leaves"},
};

}  // namespace

TEST_P(BadValues, AreRefused) {
  Arguments arguments = {clip(), at("out.mov")};
  arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
  expectFailure(arguments, kUsage, GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(Each, BadValues, testing::ValuesIn(kBadValues),
                         [](const testing::TestParamInfo<BadValue>& each) {
                           return std::string(each.param.name);
                         });

TEST(TextsThatFit, MayTouchEveryEdge) {
  for (const char* place : {"0,0", "232,0", "0,169", "232,169"}) {
    const Outcome outcome =
        burnin({clip(), at("out.mov"), "--overwrite", "--position", place, "--timecode-size", "1"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  }
  for (const char* text : {"296,0,A", "0,149,A", "296,149,A"}) {
    const Outcome outcome =
        burnin({clip(), at("out.mov"), "--overwrite", "--text-size", "3", "--text", text});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  }
}

TEST(BadTexts, MoreThanTenAreRefused) {
  Arguments arguments = {clip(), at("out.mov")};
  for (int i = 0; i < 11; ++i)
    arguments.insert(arguments.end(), {"--text", "0,0,A"});
  expectFailure(arguments, kUsage, "too many texts");
}

TEST(BadFiles, NoFilesNamed) {
  expectFailure({}, kUsage, "no files named");
}
TEST(BadFiles, OneFileIsNoTestPatternByItself) {
  expectFailure({clip(), "--overwrite"}, kUsage, "only one file named");
}
TEST(BadFiles, ThreeFiles) {
  expectFailure({clip(), at("a.mov"), at("b.mov")}, kUsage, "b.mov");
}
TEST(BadFiles, MissingInput) {
  expectFailure({at("none.mov"), at("out.mov")}, kInput, "No such file");
}
TEST(BadFiles, FolderAsInput) {
  expectFailure({workFolder(), at("out.mov")}, kInput, "folder");
}
TEST(BadFiles, EmptyInput) {
  write(at("empty.mov"), "");
  expectFailure({at("empty.mov"), at("out.mov")}, kInput, "empty.mov");
}
TEST(BadFiles, InputThatIsNoMedia) {
  write(at("text.mov"), std::string(5000, 'x'));
  expectFailure({at("text.mov"), at("out.mov")}, kInput, "text.mov");
}
TEST(BadFiles, InputWithoutVideo) {
  ffmpeg({"-f", "lavfi", "-i", "sine=duration=0.2", at("sound.wav")});
  expectFailure({at("sound.wav"), at("out.mov")}, kInput, "no video");
}
TEST(BadFiles, InputWhoseOnlyPictureIsACover) {
  ffmpeg({"-f", "lavfi", "-i", "sine=duration=0.2", "-f", "lavfi", "-i", "color=red:size=320x180",
          "-frames:v", "1", "-c:v", "png", "-disposition:v", "attached_pic", at("sound.m4a")});
  expectFailure({at("sound.m4a"), at("out.mov")}, kInput, "no video");
}
TEST(BadFiles, InputWithoutFrames) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "0", "-c:v", "v210",
          at("none.avi")});
  expectFailure({at("none.avi"), at("out.avi")}, kInput, "none.avi");
}
TEST(BadFiles, RangeBehindTheEnd) {
  expectFailure({clip(), at("out.mov"), "--frames", "5-9"}, kInput, "ends before");
  expectFailure({clip(), at("out.png"), "--still", "5"}, kInput, "ends before");
}
TEST(BadFiles, RangeInAGapOfTheVideo) {
  // Frames 0, 1, 4, 5.
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-vf",
          "select='not(between(n,2,3))'", "-vsync", "passthrough", "-frames:v", "4", "-c:v", "v210",
          at("gap.mkv")});
  expectFailure({at("gap.mkv"), at("out.png"), "--still", "2"}, kInput,
                "no frame has the number 2:");
  expectFailure({at("gap.mkv"), at("out.mkv"), "--frames", "2-3", "--codec", "ffv1"}, kInput,
                "no frame has the number 2 to 3:");
  expectFailure({at("gap.mkv"), at("out.mkv"), "--frames", "6-9"}, kInput, "ends before");
}
TEST(BadFiles, OutputIsTheInput) {
  const std::string before = read(clip());
  expectFailure({clip(), clip(), "--overwrite"}, kUsage, "the output is the input");
  EXPECT_TRUE(read(clip()) == before);
}
TEST(BadFiles, OutputIsALinkToTheInput) {
  fs::create_symlink(clip(), at("link.mov"));
  expectFailure({clip(), at("link.mov"), "--overwrite"}, kUsage, "the output is the input");
}
TEST(BadFiles, OutputIsWhatTheOverlayReads) {
  const std::string other = at("other.mov");
  std::filesystem::copy_file(clip(), other);
  const Arguments overwrite = {"burnin", clip(), other, "--overwrite"};
  const auto refuse = [&](const Arguments& more, const char* words) {
    Arguments arguments = overwrite;
    arguments.insert(arguments.end(), more.begin(), more.end());
    expectRefusal(arguments, kUsage, words);
  };
  refuse({"--watermark", other, "--watermark-at", "0,0"}, "the output is the watermark");
  refuse({"--captions-file", other}, "the output is the captions' file");
}

TEST(BadFiles, OptionThatNobodyKnows) {
  expectRefusal({"burnin", "--fram", "1-2", at("in.mov"), at("out.mov")}, kUsage,
                "no such option: --fram;");
  expectRefusal({"burnin", "-dash.mov", at("out.mov")}, 1, "./-dash.mov");
}

TEST(BadFiles, SizeOfAFileThatTellsItsOwn) {
  expectRefusal({"burnin", "--input-size", "640x480", clip(), at("out.mov")}, kUsage,
                "--input-size");
}

TEST(BadFiles, OutputExists) {
  write(at("out.mov"), "precious");
  expectFailure({clip(), at("out.mov")}, kOutput, "--overwrite");
  EXPECT_EQ(read(at("out.mov")), "precious");
}
TEST(BadFiles, ADryRunSaysThatTheOutputExists) {
  write(at("out.mov"), "precious");
  expectFailure({clip(), at("out.mov"), "--dry-run"}, kOutput, "--overwrite");
}
TEST(BadFiles, OutputIsAFolder) {
  fs::create_directory(at("out.mov"));
  expectFailure({clip(), at("out.mov"), "--overwrite"}, kOutput, "folder");
}
TEST(BadFiles, OutputIsADevice) {
  fs::create_symlink("/dev/null", at("null.mov"));
  expectFailure({clip(), at("null.mov"), "--overwrite"}, kOutput, "no ordinary file");
}
TEST(BadFiles, OutputIsALinkThatLeadsNowhere) {
  fs::create_symlink("round.mov", at("round.mov"));
  expectFailure({clip(), at("round.mov"), "--overwrite"}, kOutput, "cannot write the output");
  fs::create_symlink("none/out.mov", at("link.mov"));
  expectFailure({clip(), at("link.mov"), "--overwrite", "--dry-run"}, kOutput, "No such file");
}
TEST(BadFiles, OutputFolderIsMissing) {
  expectFailure({clip(), at("none/out.mov")}, kOutput, "No such file");
}
TEST(BadFiles, OutputFolderIsAFile) {
  expectFailure({clip(), clip() + "/out.mov"}, kOutput, "Not a directory");
}
TEST(BadFiles, OutputFolderTakesNoFiles) {
  expectFailure({clip(), "/proc/out.mov"}, kOutput, "cannot write the output");
}
TEST(BadFiles, OutputThatFindsNoRoom) {
  clip();
  // The shell lets no file grow beyond 100 KiB, as a full disk would.
  const Outcome outcome = runProgram("bash", {"-c", "ulimit -f 100; exec \"$@\"", "bash",
                                              NKDRAW_TOOL, "burnin", clip(), at("out.mov")});
  EXPECT_EQ(outcome.exitCode, kOutput) << outcome.err;
  EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  EXPECT_EQ(filesAtWork().size(), 1U);
}
TEST(BadFiles, CodecThatRefusesTheVideo) {
  expectFailure({clip(), at("out.mov"), "--codec", "dvvideo"}, kProcessing, "Found no DV profile");
}
TEST(BadFiles, SuffixThatNamesNoVideoFile) {
  expectFailure({clip(), at("out")}, kUsage, "suffix");
  expectFailure({clip(), at("out.txt")}, kUsage, "suffix");
  expectFailure({clip(), at("out.wav")}, kUsage, "suffix");
  expectFailure({clip(), at("out.m3u8")}, kUsage, "suffix");
}
TEST(BadFiles, PictureWithoutAFrame) {
  expectFailure({clip(), at("out.png")}, kUsage, "--still");
  expectFailure({clip(), at("out.jpg")}, kUsage, "frame%04d.png");
}
TEST(BadFiles, FileThatDoesNotHoldTheSound) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-f", "lavfi", "-i", "sine",
          "-frames:v", "5", "-shortest", "-c:v", "v210", "-c:a", "libopus", at("opus.mkv")});
  expectFailure(
      {at("opus.mkv"), at("out.avi"), "--audio-codec", "copy"}, kUsage,
      "opus); write .mkv or .nut or .ts, or choose another --audio-codec, or leave it out "
      "with --no-audio");
}
TEST(BadFiles, FileThatDoesNotHoldUncompressedSound) {
  expectFailure(
      {clip(), at("out.mp4"), "--codec", "libx264", "--audio-codec", "copy"}, kUsage,
      "pcm_s16le); write .mov or .mkv or .nut or .avi, or choose another --audio-codec, or "
      "leave it out with --no-audio");
}
TEST(BadFiles, HeadThatTheWriterRefuses) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "2", "-c:v", "mpeg4",
          at("in.mkv")});
  expectFailure({at("in.mkv"), at("out.mxf"), "--codec", "mpeg4"}, kOutput, "head");
}

TEST(CutFiles, QuickTimeWithoutItsIndex) {
  const std::string in = clip();
  cut(in, 0.5);
  expectFailure({in, at("out.mov")}, kInput, "in.mov");
}

TEST(CutFiles, QuickTimeWithTheIndexInFront) {
  const std::string in = at("front.mov");
  ffmpeg({"-i", clip(), "-c", "copy", "-movflags", "+faststart", in});
  cut(in, 0.7);
  expectFailure({in, at("out.mov")}, kInput, "may be incomplete");
}

namespace {

/// A compressed clip with sound, its index in front where it has one.
std::string compressedClip(const std::string& name) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=1", "-f", "lavfi", "-i",
          "sine=duration=1", "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac", "-movflags",
          "+faststart", at(name)});
  return at(name);
}

}  // namespace

TEST(CutFiles, QuickTimeThatLostTheEndOfItsSound) {
  const std::string in = at("front.mov");
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=2", "-f", "lavfi", "-i",
          "sine=duration=2", "-c:v", "v210", "-c:a", "pcm_s16le", "-movflags", "+faststart", in});
  fs::resize_file(in, fs::file_size(in) - 1000);
  expectFailure({in, at("out.mov")}, kInput, "may be incomplete");
}

TEST(CutFiles, MP4WithTheIndexInFront) {
  for (const double share : {0.6, 0.99}) {
    const std::string in = compressedClip("front.mp4");
    cut(in, share);
    expectFailure({in, at("out.mov")}, kInput, "may be incomplete");
  }
}

TEST(CutFiles, OfWhichOnlyTheHeadIsLeft) {
  for (const char* name : {"head.mp4", "head.mkv", "head.ts"}) {
    const std::string in = compressedClip(name);
    fs::resize_file(in, 6000);
    expectFailure({in, at("out.mov")}, kInput, "may be incomplete");
  }
}

TEST(CutFiles, ARangeBeforeTheCutIsWritten) {
  const std::string in = compressedClip("front.mp4");
  cut(in, 0.99);
  EXPECT_EQ(burnin({in, at("out.mov"), "--frames", "0-3"}).exitCode, 0);
}

TEST(CutFiles, UncompressedInAVI) {
  const std::string in = at("cut.avi");
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "5", "-c:v",
          "rawvideo", "-pix_fmt", "uyvy422", in});
  cut(in, 0.7);
  expectFailure({in, at("out.avi")}, kInput, "may be incomplete");
}

TEST(CutFiles, UncompressedInNUT) {
  const std::string in = at("cut.nut");
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "5", "-c:v",
          "rawvideo", "-pix_fmt", "bgra", in});
  cut(in, 0.7);
  expectFailure({in, at("out.nut")}, kInput, "may be incomplete");
}

TEST(CutFiles, V210InMatroska) {
  const std::string in = at("cut.mkv");
  ffmpeg(
      {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "5", "-c:v", "v210", in});
  cut(in, 0.7);
  expectFailure({in, at("out.mkv")}, kInput, "may be incomplete");
}
