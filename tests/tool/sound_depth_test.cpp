// SPDX-License-Identifier: BSD-2-Clause
//
// Sound that is converted keeps its bits, rate and channels as far as the encoder has them.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

/// A clip of 20 frames with noise, in as many channels.
std::string clipWith(const std::string& name, const std::string& codec, int channels = 2,
                     const std::string& rate = "48000") {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=0.8", "-f", "lavfi", "-i",
          "anoisesrc=r=" + rate + ":seed=7:d=0.8", "-ac", std::to_string(channels), "-c:v",
          "mpeg2video", "-c:a", codec, at(name)});
  return at(name);
}

Outcome burn(const std::string& in, const std::string& out, const std::string& encoder) {
  return burnin({in, at(out), "--audio-codec", encoder, "--codec", "mpeg2video"});
}

/// The first track's samples in 32 bits.
std::string soundOf(const std::string& path) {
  ffmpeg({"-i", path, "-map", "0:a:0", "-c:a", "pcm_s32le", "-f", "s32le", at("sound.raw")});
  std::ifstream file(at("sound.raw"), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string factsOf(const std::string& path, const std::string& facts) {
  return runProgram("ffprobe", {"-v", "error", "-select_streams", "a", "-show_entries",
                                "stream=" + facts, "-of", "csv=p=0", path})
      .out;
}

struct Depth {
  const char *name, *in, *source, *encoder, *facts;
};

class SoundDepth : public testing::TestWithParam<Depth> {};

const Depth kDepths[] = {
    {"Sixteen", "pcm_s16le", "in.mov", "flac", "s16,16\n"},
    {"TwentyFour", "pcm_s24le", "in.mov", "flac", "s32,24\n"},
    {"TwentyFourInWavPack", "pcm_s24le", "in.mov", "wavpack", "s32p,24\n"},
    {"TwentyFourInALAC", "pcm_s24le", "in.mov", "alac", "s32p,24\n"},
    {"SixteenInALAC", "pcm_s16le", "in.mov", "alac", "s16p,16\n"},
    {"ThirtyTwoInWavPack", "pcm_s32le", "in.mov", "wavpack", "s32p,32\n"},
    {"FloatInWavPack", "pcm_f32le", "in.mov", "wavpack", "fltp,32\n"},
};

}  // namespace

TEST_P(SoundDepth, StaysInALosslessCodec) {
  const Depth& depth = GetParam();
  const std::string in = clipWith(depth.source, depth.in);
  const Outcome outcome = burn(in, "out.mkv", depth.encoder);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err.find("bits"), std::string::npos) << outcome.err;
  EXPECT_EQ(factsOf(at("out.mkv"), "sample_fmt,bits_per_raw_sample"), depth.facts);
  EXPECT_TRUE(soundOf(in) == soundOf(at("out.mkv")));
}

INSTANTIATE_TEST_SUITE_P(Of, SoundDepth, testing::ValuesIn(kDepths),
                         [](const testing::TestParamInfo<Depth>& each) {
                           return std::string(each.param.name);
                         });

TEST(SoundDepthThatIsLost, IsTold) {
  const Outcome outcome = burn(clipWith("in.mov", "pcm_s32le"), "out.mkv", "flac");
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("converted to flac: --audio-codec, which leaves 24 bits\n"),
            std::string::npos)
      << outcome.err;
}

TEST(SoundRates, ThatAnEncoderDoesNotHaveBecomeTheNextHigher) {
  const Outcome outcome = burn(clipWith("in.mov", "pcm_s16le", 2, "32000"), "out.mkv", "libopus");
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(factsOf(at("out.mkv"), "sample_rate"), "48000\n");
  // A stereo moment takes eight bytes.
  EXPECT_NEAR(static_cast<double>(soundOf(at("out.mkv")).size() / 8), 0.8 * 48000, 960);
}

TEST(SoundChannels, ThatAnEncoderDoesNotTakeAreRefusedBeforeWork) {
  const std::string in = clipWith("in.mov", "pcm_s16le", 6);
  for (const char* more : {"--overwrite", "--dry-run"})
    expectRefusal({"burnin", in, at("out.mkv"), "--audio-codec", "libmp3lame", more}, 1,
                  "the encoder does not take these channels: libmp3lame, 5.1");
}

TEST(ViewingCopies, KeepAACAndConvertAllElse) {
  const std::string aac = clipWith("aac.mov", "aac"), pcm = clipWith("pcm.mov", "pcm_s16le");
  const Outcome kept = burnin({aac, at("kept.mp4"), "--viewing-copy", "--timecode-size", "1"});
  ASSERT_EQ(kept.exitCode, 0) << kept.err;
  EXPECT_EQ(kept.err.find("converted"), std::string::npos) << kept.err;
  const auto before = packetsOf(aac, AVMEDIA_TYPE_AUDIO);
  const auto after = packetsOf(at("kept.mp4"), AVMEDIA_TYPE_AUDIO);
  ASSERT_EQ(before.size(), after.size());
  for (std::size_t i = 0; i < before.size(); ++i)
    EXPECT_TRUE(before[i].bytes == after[i].bytes) << i;
  const Outcome made = burnin({pcm, at("made.mp4"), "--viewing-copy", "--timecode-size", "1"});
  EXPECT_NE(made.err.find("converted to aac"), std::string::npos) << made.err;
}
