// SPDX-License-Identifier: BSD-2-Clause
//
// Long gaps in sound that is converted: silence fills them, in little memory.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// Two seconds, with a gap of so many seconds in the middle.
std::string clipWithGap(int seconds) {
  const std::string gap = std::to_string(seconds), name = at("gap" + gap + ".mkv");
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=2", "-f", "lavfi", "-i",
          "sine=sample_rate=8000:duration=2", "-vf", "setpts='PTS+gte(T,1)*" + gap + "/TB'", "-af",
          "asetnsamples=800,asetpts='PTS+gte(T,1)*" + gap + "/TB'", "-vsync", "passthrough", "-c:v",
          "mjpeg", "-c:a", "pcm_s16le", name});
  return name;
}

Outcome converted(int seconds) {
  const std::string out = at("out" + std::to_string(seconds) + ".mkv");
  return burnin({clipWithGap(seconds), out, "--audio-codec", "flac"});
}

}  // namespace

TEST(SoundGap, IsFilledInLittleMemory) {
  constexpr int kShort = 20, kLong = 7200;   // seconds
  constexpr long kAllowedKilobytes = 40960;  // all of the silence would take ten times as much
  const Outcome shortRun = converted(kShort), longRun = converted(kLong);
  ASSERT_EQ(shortRun.exitCode, 0) << shortRun.err;
  ASSERT_EQ(longRun.exitCode, 0) << longRun.err;
  EXPECT_LT(longRun.peakKilobytes, shortRun.peakKilobytes + kAllowedKilobytes);
}

TEST(SoundGap, IsFilledToTheSample) {
  constexpr int kGap = 20;
  ASSERT_EQ(converted(kGap).exitCode, 0);
  ffmpeg({"-i", at("out20.mkv"), "-map", "0:a", "-c:a", "pcm_s16le", at("out.wav")});
  ffmpeg({"-i", at("gap20.mkv"), "-map", "0:a", "-af", "aresample=async=1", "-c:a", "pcm_s16le",
          at("in.wav")});
  Bytes all, expected;
  for (const RawPacket& packet : packetsOf(at("out.wav"), AVMEDIA_TYPE_AUDIO))
    all.insert(all.end(), packet.bytes.begin(), packet.bytes.end());
  for (const RawPacket& packet : packetsOf(at("in.wav"), AVMEDIA_TYPE_AUDIO))
    expected.insert(expected.end(), packet.bytes.begin(), packet.bytes.end());
  EXPECT_EQ(all.size(), (kGap + 2) * 8000U * 2U);
  EXPECT_TRUE(all == expected);
}
