// SPDX-License-Identifier: BSD-2-Clause
//
// The sound of joined clips, sample by sample.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double kLevelA = 0.5, kLevelB = -0.25;
constexpr std::size_t kMoments = 1920;  // of 48 kHz, a frame
constexpr std::size_t kAt = 5, kDuration = 4, kFramesB = 10;
constexpr std::size_t kBegin = kAt * kMoments, kEnd = (kAt + kDuration) * kMoments;

/// A clip with sound of one level in both channels.
std::string makeClip(const std::string& name, int frames, double level,
                     const std::string& rate = "48000", const std::string& codec = "pcm_s16le") {
  const std::string path = at(name);
  const std::string value = std::to_string(level);
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=64x36:rate=25", "-f", "lavfi", "-i",
          "aevalsrc=" + value + "|" + value + ":s=" + rate, "-t", std::to_string(frames / 25.0),
          "-c:v", "rawvideo", "-pix_fmt", "bgra", "-c:a", codec, path});
  return path;
}

std::string makeSilentClip(const std::string& name, int frames) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=64x36:rate=25", "-frames:v", std::to_string(frames),
          "-c:v", "rawvideo", "-pix_fmt", "bgra", at(name)});
  return at(name);
}

Outcome join(const std::string& a, const std::string& b, const Arguments& more,
             const std::string& output = "joined.mov") {
  Arguments arguments = {"wipe", a, b, at(output), "--at", "5f", "--duration", "4f"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return nkdrawTool(arguments);
}

/// The samples of the first channel, in whole numbers of 16 bits, from uncompressed sound.
std::vector<int> soundOf(const std::string& path) {
  std::vector<int> samples;
  for (const RawPacket& packet : packetsOf(path, AVMEDIA_TYPE_AUDIO)) {
    for (std::size_t i = 0; i + 4 <= packet.bytes.size(); i += 4)
      samples.push_back(static_cast<std::int16_t>(packet.bytes[i] | packet.bytes[i + 1] << 8));
  }
  return samples;
}

int code(double level) {
  return static_cast<int>(std::lrint(level * 32768));
}

}  // namespace

TEST(WipeSound, FadesInAStraightLineFromOneClipToTheOther) {
  const Outcome outcome = join(makeClip("a.mov", 12, kLevelA), makeClip("b.mov", 10, kLevelB), {});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const std::vector<int> sound = soundOf(at("joined.mov"));
  ASSERT_EQ(sound.size(), (kAt + kFramesB) * kMoments);
  for (std::size_t i = 0; i < sound.size(); ++i) {
    const double share = i < kBegin  ? 0.0
                         : i >= kEnd ? 1.0
                                     : (static_cast<double>(i - kBegin) + 0.5) / (kEnd - kBegin);
    ASSERT_EQ(sound[i], code(kLevelA * (1.0 - share) + kLevelB * share)) << i;
  }
}

TEST(WipeSound, IsCutInTheMiddleOfTheTransition) {
  const Outcome outcome =
      join(makeClip("a.mov", 12, kLevelA), makeClip("b.mov", 10, kLevelB), {"--audio", "cut"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const std::vector<int> sound = soundOf(at("joined.mov"));
  ASSERT_EQ(sound.size(), (kAt + kFramesB) * kMoments);
  for (std::size_t i = 0; i < sound.size(); ++i)
    ASSERT_EQ(sound[i], code(i < (kBegin + kEnd) / 2 ? kLevelA : kLevelB)) << i;
}

TEST(WipeSound, IsLeftOutOnRequest) {
  const Outcome outcome =
      join(makeClip("a.mov", 12, kLevelA), makeClip("b.mov", 10, kLevelB), {"--audio", "none"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(packetsOf(at("joined.mov"), AVMEDIA_TYPE_AUDIO).empty());
}

TEST(WipeSound, KeepsEverySampleOutsideTheTransition) {
  const std::string a = at("a.mov"), b = at("b.mov");
  for (const std::string& path : {a, b})
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=64x36:rate=25", "-f", "lavfi", "-i",
            "anoisesrc=r=48000:seed=" + std::to_string(path == a ? 1 : 2), "-t", "0.4", "-c:v",
            "rawvideo", "-pix_fmt", "bgra", "-ac", "2", "-c:a", "pcm_s16le", path});
  const Outcome outcome = join(a, b, {});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const std::vector<int> first = soundOf(a), second = soundOf(b), sound = soundOf(at("joined.mov"));
  ASSERT_EQ(sound.size(), kBegin + second.size());
  for (std::size_t i = 0; i < kBegin; ++i)
    ASSERT_EQ(sound[i], first[i]) << i;
  for (std::size_t i = kEnd; i < sound.size(); ++i)
    ASSERT_EQ(sound[i], second[i - kBegin]) << i;
}

TEST(WipeSound, OfAnotherRateFollowsTheFirstClip) {
  const Outcome outcome =
      join(makeClip("a.mov", 12, kLevelA), makeClip("b.mov", 10, kLevelB, "44100"), {});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const std::vector<int> sound = soundOf(at("joined.mov"));
  ASSERT_NEAR(static_cast<double>(sound.size()), (kAt + kFramesB) * kMoments, 48);
  EXPECT_EQ(sound[kBegin - 1], code(kLevelA));
  // The filter of another rate rings by a step or two.
  EXPECT_NEAR(sound[kEnd + 1000], code(kLevelB), 3);
}

TEST(WipeSound, OfOneClipAloneFadesToAndFromSilence) {
  const std::string loud = makeClip("a.mov", 12, kLevelA), silent = makeSilentClip("b.mov", 10);
  ASSERT_EQ(join(loud, silent, {}).exitCode, 0);
  std::vector<int> sound = soundOf(at("joined.mov"));
  ASSERT_EQ(sound.size(), (kAt + kFramesB) * kMoments);
  EXPECT_EQ(sound[kBegin - 1], code(kLevelA));
  EXPECT_EQ(sound[kEnd], 0);
  EXPECT_EQ(sound.back(), 0);

  ASSERT_EQ(
      join(makeSilentClip("c.mov", 12), makeClip("d.mov", 10, kLevelB), {"--overwrite"}).exitCode,
      0);
  sound = soundOf(at("joined.mov"));
  ASSERT_EQ(sound.size(), (kAt + kFramesB) * kMoments);
  EXPECT_EQ(sound[0], 0);
  EXPECT_EQ(sound[kEnd], code(kLevelB));
}

TEST(WipeSound, IsEncodedOnRequest) {
  const Outcome outcome = join(makeClip("a.mov", 12, kLevelA), makeClip("b.mov", 10, kLevelB),
                               {"--audio-codec", "aac:b=128000", "--codec", "mpeg4"}, "joined.mp4");
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Outcome probe = runProgram("ffprobe", {"-v", "error", "-show_entries", "stream=codec_name",
                                               "-of", "csv", at("joined.mp4")});
  EXPECT_NE(probe.out.find("aac"), std::string::npos) << probe.out;
}

TEST(WipeSound, ThatIsLossyBecomesUncompressed) {
  const std::string a = makeClip("a.mov", 12, kLevelA, "48000", "aac");
  const std::string b = makeClip("b.mov", 10, kLevelB, "48000", "aac");
  const Outcome outcome = join(a, b, {});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Outcome probe = runProgram("ffprobe", {"-v", "error", "-show_entries", "stream=codec_name",
                                               "-of", "csv", at("joined.mov")});
  EXPECT_NE(probe.out.find("pcm_s24le"), std::string::npos) << probe.out;
}
