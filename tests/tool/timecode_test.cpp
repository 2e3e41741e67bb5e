// SPDX-License-Identifier: BSD-2-Clause
//
// The timecode that a person reads in the picture is the clip's.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

namespace {

struct Case {
  const char* name;
  const char* rate;
  const char* start;
  std::vector<std::string> frames;
};

const Case kCases[] = {
    {"At25", "25", "10:00:59:23", {"10:00:59:23", "10:00:59:24", "10:01:00:00", "10:01:00:01"}},
    {"At24", "24", "23:59:59:22", {"23:59:59:22", "23:59:59:23", "00:00:00:00", "00:00:00:01"}},
    {"At30", "30", "00:00:59:29", {"00:00:59:29", "00:01:00:00"}},
    {"At50", "50", "01:00:59:49", {"01:00:59:49", "01:01:00:00"}},
    {"At2997Drop",
     "30000/1001",
     "00:00:59;28",
     {"00:00:59;28", "00:00:59;29", "00:01:00;02", "00:01:00;03"}},
    {"At2997DropOverTheTenthMinute",
     "30000/1001",
     "00:09:59;28",
     {"00:09:59;28", "00:09:59;29", "00:10:00;00", "00:10:00;01"}},
    {"At2997NonDrop",
     "30000/1001",
     "00:00:59:28",
     {"00:00:59:28", "00:00:59:29", "00:01:00:00", "00:01:00:01"}},
    {"At5994Drop", "60000/1001", "00:00:59;59", {"00:00:59;59", "00:01:00;04"}},
    {"At23976", "24000/1001", "00:00:59:23", {"00:00:59:23", "00:01:00:00"}},
    {"At5", "5", "00:00:59:04", {"00:00:59:04", "00:01:00:00"}},
    {"At12", "12", "00:00:59:11", {"00:00:59:11", "00:01:00:00"}},
    {"At15", "15", "00:00:59:14", {"00:00:59:14", "00:01:00:00"}},
    {"At48", "48", "00:00:59:47", {"00:00:59:47", "00:01:00:00"}},
    {"At4795", "48000/1001", "00:00:59:47", {"00:00:59:47", "00:01:00:00"}},
    {"At72", "72", "00:00:59:71", {"00:00:59:71", "00:01:00:00"}},
    {"At96", "96", "00:00:59:95", {"00:00:59:95", "00:01:00:00"}},
    {"At959", "96000/1001", "00:00:59:95", {"00:00:59:95", "00:01:00:00"}},
    {"At100", "100", "00:00:59:99", {"00:00:59:99", "00:01:00:00"}},
    {"At120", "120", "00:00:59:119", {"00:00:59:119", "00:01:00:000"}},
    {"At11988NonDrop", "120000/1001", "00:00:59:119", {"00:00:59:119", "00:01:00:000"}},
};

/// FFmpeg writes frames below 10 with one digit, if all fit into one.
std::string timecodeOf(const std::string& path) {
  const std::string text = decode(path).timecode;
  return text.size() == 10 ? std::string(text, 0, 9).append("0").append(text, 9) : text;
}

class Timecode : public testing::TestWithParam<Case> {
 protected:
  void makeClip(const std::string& path, bool tagged) {
    Arguments arguments = {
        "-f",        "lavfi",
        "-i",        std::string("testsrc2=size=224x108:rate=") + GetParam().rate,
        "-frames:v", std::to_string(GetParam().frames.size()),
        "-c:v",      "v210"};
    if (tagged)
      arguments.insert(arguments.end(), {"-timecode", GetParam().start});
    arguments.push_back(path);
    ffmpeg(arguments);
  }

  void expectRows(const std::string& path) {
    const Clip grey = decodeAs(path, AV_PIX_FMT_GRAY8);
    ASSERT_EQ(grey.frames.size(), GetParam().frames.size());
    for (std::size_t i = 0; i < grey.frames.size(); ++i) {
      const std::string& row = GetParam().frames[i];
      EXPECT_EQ(readText(grey, i, 8, 20, 2, row.size()), row);
      EXPECT_EQ(readText(grey, i, 8, 40, 2, row.size()), row) << "the VITC row";
    }
  }
};

const Arguments kLook = {"--vitc", "--position", "8,20", "--timecode-size", "2"};

Arguments with(Arguments first, const Arguments& rest) {
  first.insert(first.end(), rest.begin(), rest.end());
  return first;
}

}  // namespace

TEST_P(Timecode, OfTheTimecodeTrackIsBurntIntoEveryFrame) {
  makeClip(at("in.mov"), true);
  const Outcome outcome = burnin(with({at("in.mov"), at("out.mov")}, kLook));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  expectRows(at("out.mov"));
  EXPECT_EQ(timecodeOf(at("out.mov")), GetParam().start);
}

TEST_P(Timecode, OfTheTagIsBurntIntoEveryFrame) {
  makeClip(at("in.mkv"), true);
  ASSERT_EQ(burnin(with({at("in.mkv"), at("out.mkv")}, kLook)).exitCode, 0);
  expectRows(at("out.mkv"));
  EXPECT_EQ(timecodeOf(at("out.mkv")), GetParam().start);
}

TEST_P(Timecode, OfTheOptionIsBurntInAndKeptInTheFile) {
  makeClip(at("in.mov"), false);
  for (const std::string out : {"out.mov", "out.mkv", "out.avi", "out.nut"}) {
    ASSERT_EQ(
        burnin(with({at("in.mov"), at(out), "--start-timecode", GetParam().start}, kLook)).exitCode,
        0);
    expectRows(at(out));
    EXPECT_EQ(timecodeOf(at(out)), GetParam().start) << out;
  }
}

INSTANTIATE_TEST_SUITE_P(Rates, Timecode, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Case>& each) {
                           return std::string(each.param.name);
                         });

TEST(TimecodeStart, IsMidnightForAClipWithout) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25", "-frames:v", "2", "-c:v", "v210",
          at("in.avi")});
  ASSERT_EQ(burnin(with({at("in.avi"), at("out.avi")}, kLook)).exitCode, 0);
  const Clip grey = decodeAs(at("out.avi"), AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(grey, 1, 8, 20, 2, 11), "00:00:00:01");
  EXPECT_EQ(grey.timecode, "") << "none is made up for the file";
}

TEST(TimecodeStart, MayDropFramesAt11988) {
  const Outcome outcome =
      burnin(with({"--layout", "v210", "--pattern-size", "224x108", "--pattern-rate", "119.88",
                   "--pattern-frames", "2", "--start-timecode", "00:00:59;119", at("out.nut")},
                  kLook));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip grey = decodeAs(at("out.nut"), AV_PIX_FMT_GRAY8);
  EXPECT_EQ(readText(grey, 0, 8, 20, 2, 12), "00:00:59;119");
  EXPECT_EQ(readText(grey, 1, 8, 20, 2, 12), "00:01:00;008");
}

TEST(TimecodeAtOtherRates, IsBurntInAndLeftOutOfTheFile) {
  for (const char* rate : {"80", "90"}) {
    ffmpeg({"-f", "lavfi", "-i", std::string("testsrc2=size=192x108:rate=") + rate, "-frames:v",
            "2", "-c:v", "v210", "-timecode", "00:00:01:00", at("in.mov")});
    ASSERT_EQ(decode(at("in.mov")).timecode, "00:00:01:00");
    for (const char* out : {"out.mov", "out.mkv", "out.avi"}) {
      const Arguments arguments = with({at("in.mov"), at(out), "--overwrite"}, kLook);
      const Outcome dry = burnin(with(arguments, {"--dry-run"}));
      EXPECT_NE(dry.out.find("not written to the file"), std::string::npos) << dry.out;
      EXPECT_EQ(dry.out.find("kept as"), std::string::npos) << dry.out;
      ASSERT_EQ(burnin(arguments).exitCode, 0);
      const Clip grey = decodeAs(at(out), AV_PIX_FMT_GRAY8);
      EXPECT_EQ(readText(grey, 1, 8, 20, 2, 11), "00:00:01:01");
      EXPECT_EQ(grey.timecode, "") << rate << " in " << out;
    }
    ASSERT_EQ(burnin({"--layout", "v210", "--pattern-size", "192x108", "--pattern-frames", "1",
                      "--pattern-rate", rate, "--overwrite", at("pattern.mov")})
                  .exitCode,
              0);
    EXPECT_EQ(decode(at("pattern.mov")).timecode, "") << rate;
  }
}

TEST(TimecodeAtOtherRates, DoesNotKeepAClipFromBeingWritten) {
  const Outcome outcome =
      burnin({"--layout", "v210", "--pattern-size", "192x108", "--pattern-frames", "2",
              "--pattern-rate", "1000000", at("out.mov")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("out.mov")).frames.size(), 2U);
}

TEST(TimecodeGaps, AreKeptWhereFramesAreMissing) {
  // Frames 0, 1, 4, 5.
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25", "-vf",
          "select='not(between(n,2,3))'", "-vsync", "passthrough", "-frames:v", "4", "-c:v", "v210",
          at("in.mkv")});
  for (const Arguments& method : {Arguments{}, Arguments{"--codec", "ffv1"}}) {
    ASSERT_EQ(
        burnin(with(with({at("in.mkv"), at("out.mkv"), "--overwrite"}, kLook), method)).exitCode,
        0);
    const Clip grey = decodeAs(at("out.mkv"), AV_PIX_FMT_GRAY8);
    ASSERT_EQ(grey.frames.size(), 4U);
    EXPECT_EQ(readText(grey, 1, 8, 20, 2, 11), "00:00:00:01");
    EXPECT_EQ(readText(grey, 2, 8, 20, 2, 11), "00:00:00:04");
    EXPECT_EQ(readText(grey, 3, 8, 20, 2, 11), "00:00:00:05");
  }
}

TEST(TimecodeRange, ThatEndsFarBehindTheClipIsRefused) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=1", "-c:v", "v210",
          at("in.mov")});
  for (const char* range : {"5-99", "5-999999999999999", "5-9223372036854775807"})
    expectRefusal({"burnin", at("in.mov"), at("out.mov"), "--frames", range}, 2, "ends before");
}

TEST(TimecodeRange, StartsWithTheFirstFrameThatIsWritten) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=2", "-f", "lavfi", "-i",
          "sine=duration=2", "-c:v", "v210", "-c:a", "pcm_s16le", "-timecode", "10:00:00:00",
          at("in.mov")});
  const auto sound = packetsOf(at("in.mov"), AVMEDIA_TYPE_AUDIO);
  for (const Arguments& method : {Arguments{}, Arguments{"--codec", "mpeg4"}}) {
    ASSERT_EQ(
        burnin(with(with({at("in.mov"), at("out.mov"), "--overwrite", "--frames", "30-39"}, kLook),
                    method))
            .exitCode,
        0);
    const Clip grey = decodeAs(at("out.mov"), AV_PIX_FMT_GRAY8);
    ASSERT_EQ(grey.frames.size(), 10U);
    EXPECT_EQ(readText(grey, 0, 8, 20, 2, 11), "10:00:01:05");
    EXPECT_EQ(readText(grey, 9, 8, 20, 2, 11), "10:00:01:14");
    EXPECT_EQ(grey.timecode, "10:00:01:05");

    const auto video = packetsOf(at("out.mov"), AVMEDIA_TYPE_VIDEO);
    EXPECT_NEAR(video.front().time, 0.0, 0.001);
    const auto kept = packetsOf(at("out.mov"), AVMEDIA_TYPE_AUDIO);
    ASSERT_FALSE(kept.empty());
    EXPECT_LT(kept.size(), sound.size());
    std::size_t bytes = 0;
    for (const RawPacket& packet : kept)
      bytes += packet.bytes.size();
    const double seconds = static_cast<double>(bytes) / (44100.0 * 2.0);
    EXPECT_NEAR(seconds, 0.4, 0.05) << "sound comes in whole packets";
  }
}
