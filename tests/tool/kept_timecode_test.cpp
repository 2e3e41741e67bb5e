// SPDX-License-Identifier: BSD-2-Clause
//
// Outputs tell the timecode that is burnt in, or one line says that they don't.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr char kStart[] = "10:00:00:05";

/// Uncompressed, with a timecode track.
std::string makeClip(const std::string& rate = "25", const std::string& timecode = kStart) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=" + rate, "-frames:v", "3", "-c:v",
          "rawvideo", "-pix_fmt", "uyvy422", "-timecode", timecode, at("in.mov")});
  return at("in.mov");
}

struct Output {
  std::string name, codec;
};
constexpr char kMPEG2[] = "mpeg2video";

Arguments runTo(const Output& output) {
  Arguments run = {at("in.mov"), at(output.name)};
  if (!output.codec.empty())
    run.insert(run.end(), {"--codec", output.codec});
  return run;
}

/// Without the timecode of a GOP header.
std::string tagOf(const std::string& path) {
  return decode(path).timecode;
}

/// What FFmpeg finds in the first GOP header.
std::string gopTimecodeOf(const std::string& path) {
  const Outcome outcome =
      runProgram("ffprobe", {"-v", "error", "-select_streams", "v", "-show_frames", path});
  const std::string key = "timecode=";
  const std::size_t begin = outcome.out.find(key);
  if (begin == std::string::npos)
    return "none";
  return outcome.out.substr(begin + key.size(), 11);
}

/// The run succeeds with this note on standard error, which `dryRun` says already.
void expectNote(const Arguments& run, const std::string& note, bool dryRun) {
  Arguments dry = run;
  dry.emplace_back("--dry-run");
  const bool foreseen = burnin(dry).out.find("note      " + note + "\n") != std::string::npos;
  EXPECT_EQ(foreseen, dryRun) << burnin(dry).out;
  const Outcome outcome = burnin(run);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("nkdraw: note: " + note + "\n"), std::string::npos) << outcome.err;
}

}  // namespace

class KeepingKind : public testing::TestWithParam<Output> {};

TEST_P(KeepingKind, TellsTheTimecodeThatIsBurntIn) {
  makeClip();
  const Outcome outcome = burnin(runTo(GetParam()));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err.find("timecode"), std::string::npos) << outcome.err;
  EXPECT_EQ(tagOf(at(GetParam().name)), kStart);
}

INSTANTIATE_TEST_SUITE_P(KeptTimecode, KeepingKind,
                         testing::Values(Output{"out.mov", ""}, Output{"out.mp4", "libx264"},
                                         Output{"out.mxf", ""}, Output{"out.mkv", ""},
                                         Output{"out.avi", ""}, Output{"out.nut", ""},
                                         Output{"out.webm", ""}));

class KindWithout : public testing::TestWithParam<Output> {};

TEST_P(KindWithout, SaysSoBeforeAndAfter) {
  makeClip();
  const Output& output = GetParam();
  const std::string suffix = output.name.substr(output.name.find('.'));
  const std::string muxer = suffix == ".ts"    ? "mpegts"
                            : suffix == ".y4m" ? "yuv4mpegpipe"
                            : suffix == ".m4v" ? "ipod"
                                               : suffix.substr(1);
  expectNote(runTo(output), muxer + " files hold no timecode; .mov keeps " + kStart, true);
}

INSTANTIATE_TEST_SUITE_P(KeptTimecode, KindWithout,
                         testing::Values(Output{"out.ts", "libx264"}, Output{"out.y4m", ""},
                                         Output{"out.m4v", ""}, Output{"out.flv", ""},
                                         Output{"out.h264", ""}));

class MPEG2Kind : public testing::TestWithParam<Output> {};

TEST_P(MPEG2Kind, HasTheTimecodeInItsGOPHeaders) {
  makeClip();
  const Outcome outcome = burnin(runTo(GetParam()));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err.find("tells"), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.err.find("no timecode"), std::string::npos) << outcome.err;
  EXPECT_EQ(gopTimecodeOf(at(GetParam().name)), kStart);
}

INSTANTIATE_TEST_SUITE_P(KeptTimecode, MPEG2Kind,
                         testing::Values(Output{"out.mpg", kMPEG2}, Output{"out.ts", kMPEG2},
                                         Output{"out.m2v", kMPEG2}, Output{"out.mxf", kMPEG2},
                                         Output{"out.mpg", "mpeg1video"}));

TEST(KeptTimecode, OfGOPHeadersDropsFrames) {
  for (const char* rate : {"30000/1001", "60000/1001"}) {
    makeClip(rate, "10:00:59;28");
    const Outcome outcome = burnin({at("in.mov"), at("out.mpg"), "--overwrite"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(gopTimecodeOf(at("out.mpg")), "10:00:59;28") << rate;
  }
}

TEST(KeptTimecode, OfGOPHeadersBeginsWithTheFirstWrittenFrame) {
  makeClip();
  ASSERT_EQ(burnin({at("in.mov"), at("out.mpg"), "--frames", "1-2"}).exitCode, 0);
  EXPECT_EQ(gopTimecodeOf(at("out.mpg")), "10:00:00:06");
}

TEST(KeptTimecode, OfGOPHeadersAtARateThatMPEG2CannotCount) {
  ASSERT_EQ(burnin({"--layout", "uyvy", "--pattern-size", "320x180", "--pattern-rate", "15",
                    "--pattern-frames", "3", "--start-timecode", kStart, at("in.mov")})
                .exitCode,
            0);
  expectNote(
      {at("in.mov"), at("out.mpg")},
      at("out.mpg") + " tells the timecode 00:00:00:00 and not 10:00:00:05; .mov keeps " + kStart,
      false);
}

TEST(KeptTimecode, IsTheUsersOwnIfTheEncoderGetsOne) {
  makeClip();
  expectNote(
      {at("in.mov"), at("out.mpg"), "--codec", "mpeg2video:gop_timecode=01\\:00\\:00\\:00"},
      at("out.mpg") + " tells the timecode 01:00:00:00 and not 10:00:00:05; .mov keeps " + kStart,
      false);
  EXPECT_EQ(gopTimecodeOf(at("out.mpg")), "01:00:00:00");
}

TEST(KeptTimecode, IsFoundMissingInKindsThatNoTableKnows) {
  makeClip();
  const std::string codec = "libvpx";
  expectNote({at("in.mov"), at("out.ivf"), "--codec", codec},
             at("out.ivf") + " tells no timecode; .mkv keeps " + kStart, false);
  ASSERT_EQ(burnin({at("in.mov"), at("out.mkv"), "--codec", codec}).exitCode, 0);
  EXPECT_EQ(tagOf(at("out.mkv")), kStart);
}

TEST(KeptTimecode, OfATimecodeTrackStaysWithMPEG2) {
  makeClip();
  Arguments dry = runTo({"out.ts", kMPEG2});
  dry.emplace_back("--dry-run");
  EXPECT_NE(burnin(dry).out.find("kept as the video's timecode"), std::string::npos);
}

TEST(KeptTimecode, IsNotMissedWhereThereWasNone) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "3", "-c:v",
          "rawvideo", "-pix_fmt", "uyvy422", at("in.nut")});
  EXPECT_EQ(
      burnin({at("in.nut"), at("out.y4m"), "--codec", "wrapped_avframe"}).err.find("timecode"),
      std::string::npos);
  EXPECT_EQ(burnin({"--layout", "uyvy", "--pattern-size", "320x180", "--pattern-frames", "2",
                    at("bars.y4m")})
                .err,
            "");
}

TEST(KeptTimecode, OfATestPatternIsNoExceptionIfItWasGiven) {
  expectNote({"--layout", "uyvy", "--pattern-size", "320x180", "--pattern-frames", "2",
              "--start-timecode", kStart, at("bars.ts")},
             std::string("mpegts files hold no timecode; .mov keeps ") + kStart, true);
}

TEST(KeptTimecode, OfAPipeIsToldOnStandardError) {
  makeClip();
  const Outcome outcome = burnin({at("in.mov"), "-", "--format", "y4m"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.err.find("hold no timecode; .mov keeps"), std::string::npos) << outcome.err;
}

TEST(KeptTimecode, OfAWipeIsThatOfTheFirstClip) {
  makeClip();
  const Arguments wipe = {"wipe", at("in.mov"), at("in.mov"), "", "--at", "1f", "--duration", "1f"};
  const auto to = [&](const char* name, const Arguments& more = {}) {
    Arguments run = wipe;
    run[3] = at(name);
    run.insert(run.end(), more.begin(), more.end());
    return nkdrawTool(run);
  };
  const Outcome stream = to("out.ts", {"--codec", "libx264"});
  EXPECT_EQ(stream.err, std::string("nkdraw: note: mpegts files hold no timecode; .mov keeps ") +
                            kStart + "\n");
  EXPECT_EQ(to("out.mov").err, "");
  EXPECT_EQ(to("out.mpg", {"--codec", kMPEG2}).err, "");
  EXPECT_EQ(gopTimecodeOf(at("out.mpg")), kStart);
}
