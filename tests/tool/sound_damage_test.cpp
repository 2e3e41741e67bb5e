// SPDX-License-Identifier: BSD-2-Clause
//
// Damaged sound is named as the input's own fault, with its stream and its time.
#include "clip.h"
#include "harm.h"
#include "program.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace {

constexpr int kProcessing = 4, kDamaged = 5;
constexpr std::size_t kBad = 20;  // the packet that is damaged

struct Sound {
  const char *name, *file, *codec, *words, *out;
};

class DamagedSound : public testing::TestWithParam<Sound> {};

const Sound kSounds[] = {
    {"AAC", ".mov", "aac", "stream 1 (audio, aac), 0.405 s", "out.mov"},
    {"AACIntoTransportStreams", ".mov", "aac", "stream 1 (audio, aac), 0.405 s", "out.ts"},
    {"AC3", ".mkv", "ac3", "stream 1 (audio, ac3), 0.608 s", "out.mkv"},
    {"MP2", ".mkv", "mp2", "stream 1 (audio, mp2), 0.480 s", "out.mkv"},
    {"Converted", ".mkv", "ac3", "stream 1 (audio, ac3), 0.608 s", "out.nut"},
};

/// A clip of one second, and its copy with damage.
void makeClips(const Sound& sound) {
  const std::string whole = at(std::string("whole") + sound.file);
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=1", "-f", "lavfi", "-i",
          "anoisesrc=r=48000:seed=7:d=1", "-c:v", "mpeg2video", "-c:a", sound.codec, whole});
  copyWith(noiseAt(0), whole, at(std::string("in") + sound.file), AVMEDIA_TYPE_AUDIO, kBad);
}

Arguments argumentsFor(const Sound& sound, const std::string& clip) {
  Arguments all = {at(clip + sound.file), at(sound.out), "--overwrite"};
  if (std::string(sound.name) == "Converted")
    all.insert(all.end(), {"--audio-codec", "pcm_s16le"});
  return all;
}

}  // namespace

TEST_P(DamagedSound, StopsTheRunByStreamAndTime) {
  makeClips(GetParam());
  Arguments all = argumentsFor(GetParam(), "in");
  all.insert(all.begin(), "burnin");
  expectRefusal(all, kProcessing, GetParam().words);
}

TEST_P(DamagedSound, IsListedAndAllElseIsWritten) {
  makeClips(GetParam());
  Arguments all = argumentsFor(GetParam(), "in");
  all.insert(all.end(), {"--on-damage", "continue"});
  const Outcome outcome = burnin(all);
  EXPECT_EQ(outcome.exitCode, kDamaged) << outcome.err;
  EXPECT_NE(outcome.err.find(GetParam().words), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("0 frames, 1 packet of other streams"), std::string::npos)
      << outcome.err;
  EXPECT_EQ(decode(at(GetParam().out)).frames.size(), 25U);
  const std::size_t sound = packetsOf(at(GetParam().out), AVMEDIA_TYPE_AUDIO).size();
  EXPECT_GE(sound + 1,
            packetsOf(at(std::string("in") + GetParam().file), AVMEDIA_TYPE_AUDIO).size());
}

TEST_P(DamagedSound, OutsideTheRangeDoesNotMatter) {
  makeClips(GetParam());
  Arguments all = argumentsFor(GetParam(), "in");
  all.insert(all.end(), {"--frames", "18-22"});
  const Outcome outcome = burnin(all);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(Of, DamagedSound, testing::ValuesIn(kSounds),
                         [](const testing::TestParamInfo<Sound>& each) {
                           return std::string(each.param.name);
                         });

TEST(SoundOfAWholeClip, IsNotTakenForDamaged) {
  for (const char* codec : {"aac", "ac3", "mp2", "libmp3lame", "flac", "libopus", "eac3"}) {
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=1", "-f", "lavfi", "-i",
            "anoisesrc=r=48000:seed=7:d=1", "-c:v", "mpeg2video", "-c:a", codec, at("in.mkv")});
    for (const char* frames : {"0-24", "9-20"}) {
      const Outcome outcome =
          burnin({at("in.mkv"), at("out.mkv"), "--overwrite", "--frames", frames});
      EXPECT_EQ(outcome.exitCode, 0) << codec << frames << outcome.err;
    }
  }
}

TEST(LostPackets, OfATransportStreamsSoundAreNamed) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=1", "-f", "lavfi", "-i",
          "anoisesrc=r=48000:seed=7:d=1", "-c:v", "mpeg2video", "-c:a", "mp2", at("whole.ts")});
  std::ifstream file(at("whole.ts"), std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  constexpr std::size_t kCell = 188;
  constexpr int kSound = 0x101, kLost = 30;
  int seen = 0;
  for (std::size_t i = 0; i + kCell <= bytes.size(); i += kCell) {
    const int stream = (static_cast<unsigned char>(bytes[i + 1]) & 0x1F) << 8 |
                       static_cast<unsigned char>(bytes[i + 2]);
    if (stream == kSound && ++seen == kLost) {
      bytes.erase(i, kCell);
      break;
    }
  }
  std::ofstream(at("in.ts"), std::ios::binary) << bytes;
  expectRefusal({"burnin", at("in.ts"), at("out.ts")}, kProcessing, "stream 1 (audio, mp2), ");
  EXPECT_EQ(burnin({at("in.ts"), at("out.ts"), "--on-damage", "continue"}).exitCode, kDamaged);
}
