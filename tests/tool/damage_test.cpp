// SPDX-License-Identifier: BSD-2-Clause
//
// Damaged frames: named, and on request passed over without loss of any other.
#include "clip.h"
#include "harm.h"
#include "program.h"

#include <gtest/gtest.h>

namespace {

constexpr int kInput = 2, kProcessing = 4, kDamaged = 5;
constexpr std::size_t kFrames = 12;
constexpr std::size_t kBad = 7;  // the packet that is damaged
const char kBadName[] = "frame 7 (00:00:00:07)";

void cutShort(AVPacket& packet) {
  av_shrink_packet(&packet, packet.size / 2);
}

const Arguments kPicture = {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25"};

Arguments joined(Arguments all, const Arguments& more) {
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

/// A sound clip of twelve frames, and its copy with damage.
struct Pair {
  std::string whole, harmed;
};
Pair clips(const std::string& suffix, const Arguments& codec, const Harm& harm) {
  const Pair pair = {at("whole" + suffix), at("harmed" + suffix)};
  ffmpeg(joined(joined(kPicture, {"-frames:v", std::to_string(kFrames)}),
                joined(codec, {pair.whole})));
  copyWith(harm, pair.whole, pair.harmed, AVMEDIA_TYPE_VIDEO, kBad);
  return pair;
}

/// `nkdraw burnin` of the same text into every frame.
Outcome burn(const std::string& in, const std::string& out, const Arguments& more = {}) {
  return burnin(joined({in, at(out), "--no-ltc", "--text", "0,0,A"}, more));
}

void expectNamed(const Outcome& outcome) {
  EXPECT_EQ(outcome.exitCode, kDamaged) << outcome.err;
  EXPECT_NE(outcome.err.find(kBadName), std::string::npos) << outcome.err;
}

/// How a frame comes out.
enum class Fate { kPartial, kRepeated };

struct Damage {
  const char* name;
  std::string suffix;
  Arguments codec;
  double share;
  Fate fate;
  bool alone = true;  // no other frame suffers
};

class DamagedFrames : public testing::TestWithParam<Damage> {};

const Damage kDamage[] = {
    {"ProResSlice", ".mov", {"-c:v", "prores_ks"}, 0.5, Fate::kPartial},
    {"ProResHeader", ".mov", {"-c:v", "prores_ks"}, 0, Fate::kRepeated},
    {"DNxHD", ".mov", {"-c:v", "dnxhd", "-profile:v", "dnxhr_hq"}, 0.5, Fate::kRepeated},
    {"MJPEG", ".avi", {"-c:v", "mjpeg", "-q:v", "3"}, 0.5, Fate::kPartial},
    {"PNG", ".mov", {"-c:v", "png"}, 0.5, Fate::kRepeated},
    {"FFV1",
     ".mkv",
     {"-c:v", "ffv1", "-level", "3", "-slicecrc", "1", "-g", "1"},
     0.9,
     Fate::kPartial},
    {"H264Intra", ".mov", {"-c:v", "libx264", "-g", "1"}, 0.3, Fate::kRepeated},
    {"H264Header", ".mov", {"-c:v", "libx264", "-g", "1"}, 0, Fate::kRepeated},
    {"H264", ".mov", {"-c:v", "libx264", "-bf", "0"}, 0.3, Fate::kPartial, false},
    {"MPEG2", ".ts", {"-c:v", "mpeg2video", "-g", "4"}, 0.4, Fate::kPartial, false},
    {"MPEG2Header", ".mov", {"-c:v", "mpeg2video", "-g", "4"}, 0, Fate::kRepeated, false},
};

}  // namespace

TEST_P(DamagedFrames, StopTheRunByNumberAndTimecode) {
  const Damage& damage = GetParam();
  const Pair pair = clips(damage.suffix, damage.codec, noiseAt(damage.share));
  expectRefusal({"burnin", pair.harmed, at("out.mkv"), "--codec", "ffv1"}, kProcessing, kBadName);
}

TEST_P(DamagedFrames, AreListedAndKeepTheCount) {
  const Damage& damage = GetParam();
  const Pair pair = clips(damage.suffix, damage.codec, noiseAt(damage.share));
  ASSERT_EQ(burn(pair.whole, "good.mkv", {"--codec", "ffv1"}).exitCode, 0);
  expectNamed(burn(pair.harmed, "out.mkv", {"--codec", "ffv1", "--on-damage", "continue"}));
  const Clip good = decode(at("good.mkv")), out = decode(at("out.mkv"));
  ASSERT_EQ(good.frames.size(), kFrames);
  ASSERT_EQ(out.frames.size(), kFrames);
  for (std::size_t i = 0; i < kFrames; ++i) {
    const bool spared = i < kBad || (damage.alone && i > kBad);
    EXPECT_TRUE(!spared || out.frames[i] == good.frames[i]) << i;
  }
  EXPECT_FALSE(out.frames[kBad] == good.frames[kBad]);
  EXPECT_EQ(out.frames[kBad] == out.frames[kBad - 1], damage.fate == Fate::kRepeated);
}

INSTANTIATE_TEST_SUITE_P(Each, DamagedFrames, testing::ValuesIn(kDamage),
                         [](const testing::TestParamInfo<Damage>& each) {
                           return std::string(each.param.name);
                         });

TEST(DamagedFrames, AreNoneInAWholeClipSoTheRunEndsWell) {
  ffmpeg(joined(kPicture, {"-frames:v", "12", "-c:v", "libx264", at("in.mov")}));
  const Outcome outcome = burn(at("in.mov"), "out.mov", {"--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
}

TEST(DamagedFrames, OutsideTheRangeDoNotMatter) {
  const Pair pair = clips(".mov", {"-c:v", "prores_ks"}, noiseAt(0));
  EXPECT_EQ(burn(pair.harmed, "before.mov", {"--frames", "0-6"}).exitCode, 0);
  EXPECT_EQ(burn(pair.harmed, "after.mov", {"--frames", "8-11"}).exitCode, 0);
}

TEST(DamagedFrames, AtTheBeginningRepeatTheOneAfter) {
  ffmpeg(joined(kPicture, {"-frames:v", "12", "-c:v", "prores_ks", at("whole.mov")}));
  copyWith(noiseAt(0), at("whole.mov"), at("in.mov"), AVMEDIA_TYPE_VIDEO, 0);
  const Outcome outcome =
      burn(at("in.mov"), "out.mkv", {"--codec", "ffv1", "--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, kDamaged) << outcome.err;
  const Clip out = decode(at("out.mkv"));
  ASSERT_EQ(out.frames.size(), kFrames);
  EXPECT_TRUE(out.frames[0] == out.frames[1]);
}

TEST(DamagedFrames, AtTheEndRepeatTheOneBefore) {
  ffmpeg(joined(kPicture, {"-frames:v", "12", "-c:v", "prores_ks", at("whole.mov")}));
  copyWith(noiseAt(0), at("whole.mov"), at("in.mov"), AVMEDIA_TYPE_VIDEO, 11);
  const Outcome outcome =
      burn(at("in.mov"), "out.mkv", {"--codec", "ffv1", "--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, kDamaged) << outcome.err;
  const Clip out = decode(at("out.mkv"));
  ASSERT_EQ(out.frames.size(), kFrames);
  EXPECT_TRUE(out.frames[11] == out.frames[10]);
}

TEST(UncompressedFrames, CutShortStopTheRun) {
  const Pair pair = clips(".avi", {"-c:v", "v210"}, cutShort);
  expectRefusal({"burnin", pair.harmed, at("out.avi")}, kInput, kBadName);
}

TEST(UncompressedFrames, CutShortAreCompletedFromTheFrameBefore) {
  const Pair pair = clips(".avi", {"-c:v", "v210"}, cutShort);
  ASSERT_EQ(burn(pair.whole, "good.avi").exitCode, 0);
  expectNamed(burn(pair.harmed, "out.avi", {"--on-damage", "continue"}));
  const Clip good = decode(at("good.avi")), out = decode(at("out.avi"));
  ASSERT_EQ(out.frames.size(), kFrames);
  for (std::size_t i = 0; i < kFrames; ++i)
    EXPECT_EQ(out.frames[i] == good.frames[i], i != kBad) << i;
}

TEST(DamagedPairs, AreNamedByWipeAndCompare) {
  const Pair pair = clips(".mov", {"-c:v", "prores_ks"}, noiseAt(0));
  const Arguments wipe = {"wipe", pair.whole,   pair.harmed, at("out.mkv"), "--at",
                          "6f",   "--duration", "4f",        "--codec",     "ffv1"};
  const Arguments compare = {"compare", pair.whole, pair.harmed, "--report", at("report.csv")};
  for (const Arguments& command : {wipe, compare}) {
    expectRefusal(command, kProcessing, kBadName);
    expectNamed(nkdrawTool(joined(command, {"--on-damage", "continue"})));
  }
  EXPECT_EQ(decode(at("out.mkv")).frames.size(), 6 + kFrames);
  EXPECT_EQ(nkdrawTool({"wipe", pair.harmed, pair.whole, at("early.mkv"), "--at", "1f",
                        "--duration", "4f"})
                .exitCode,
            0);
}

TEST(TheOptionForDamage, TakesStopAndContinueAlone) {
  expectRefusal({"burnin", at("in.mov"), at("out.mov"), "--on-damage", "mark"}, 1, "--on-damage");
  expectRefusal({"burnin", "--layout", "v210", at("out.mov"), "--on-damage", "stop"}, 1,
                "never damaged");
}
