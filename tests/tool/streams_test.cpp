// SPDX-License-Identifier: BSD-2-Clause
//
// The streams beside the video: copied, converted or left out, and never lost in silence.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>

namespace {

const Arguments kVideo = {"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=25:duration=0.8"};
const Arguments kNoise = {"-f", "lavfi", "-i", "anoisesrc=r=48000:seed=7:d=0.8"};

Arguments joined(std::initializer_list<Arguments> parts) {
  Arguments all;
  for (const Arguments& part : parts)
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

/// A clip of 20 frames with noise in two channels.
std::string clipWith(const std::string& name, const std::string& codec,
                     const Arguments& more = {}) {
  ffmpeg(joined({kVideo,
                 kNoise,
                 {"-ac", "2", "-c:v", "mpeg2video", "-c:a", codec, "-strict", "-2"},
                 more,
                 {at(name)}}));
  return at(name);
}

Outcome burn(const std::string& in, const std::string& out, const Arguments& more = {}) {
  return burnin(joined({{in, out, "--overwrite", "--codec", "mpeg2video"}, more}));
}

/// All bytes of a file.
std::string read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

constexpr std::size_t kBytes = 8;  // of two channels in 32 bits

/// The first track's samples as they decode, in 32 bits.
std::string soundOf(const std::string& path) {
  ffmpeg({"-i", path, "-map", "0:a:0", "-ac", "2", "-c:a", "pcm_s32le", "-f", "s32le",
          at("sound.raw")});
  return read(at("sound.raw"));
}

/// "h264,aac," for example.
std::string codecsOf(const std::string& path, const std::string& kind) {
  return runProgram("ffprobe", {"-v", "error", "-select_streams", kind, "-show_entries",
                                "stream=codec_name", "-of", "default=nk=1:nw=1", path})
      .out;
}

std::string textsOf(const std::string& path) {
  ffmpeg({"-i", path, "-map", "0:s:0", "-f", "srt", at("texts.srt")});
  return read(at("texts.srt"));
}

constexpr char kTexts[] =
    "1\n00:00:00,100 --> 00:00:00,300\nHello <i>there</i>\n\n"
    "2\n00:00:00,400 --> 00:00:00,700\nTwo\nlines\n\n";

std::string textsFile() {
  std::ofstream(at("texts-in.srt")) << kTexts;
  return at("texts-in.srt");
}

struct Track {
  const char *in, *codec, *out;
};

std::string nameOf(const testing::TestParamInfo<Track>& each) {
  std::string name = std::string(each.param.codec) + "_" + each.param.in + "_" + each.param.out;
  std::ranges::replace(name, '.', '_');
  return name;
}

class CopiedSound : public testing::TestWithParam<Track> {};
class ConvertedSound : public testing::TestWithParam<Track> {};
class CutSound : public testing::TestWithParam<Track> {};

}  // namespace

TEST_P(CopiedSound, DecodesToTheSameSamples) {
  const std::string in = clipWith(GetParam().in, GetParam().codec);
  const Outcome outcome = burn(in, at(GetParam().out));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(codecsOf(at(GetParam().out), "a").substr(0, 3), codecsOf(in, "a").substr(0, 3));
  EXPECT_TRUE(soundOf(in) == soundOf(at(GetParam().out)));
}

INSTANTIATE_TEST_SUITE_P(Each, CopiedSound,
                         testing::Values(Track{"in.nut", "pcm_s24be", "out.mov"},
                                         Track{"in.mkv", "pcm_f32le", "out.avi"},
                                         Track{"in.mov", "pcm_s16le", "out.mkv"},
                                         Track{"in.mov", "pcm_s24le", "out.mxf"},
                                         Track{"in.mxf", "pcm_s16le", "out.mxf"},
                                         Track{"in.avi", "pcm_s32le", "out.nut"},
                                         Track{"in.ts", "mp2", "out.mkv"},
                                         Track{"in.mkv", "ac3", "out.ts"},
                                         Track{"in.mkv", "flac", "out.nut"},
                                         Track{"in.ts", "s302m", "out.ts"}),
                         nameOf);

TEST_P(ConvertedSound, IsToldAndKeepsItsSamples) {
  const std::string in = clipWith(GetParam().in, GetParam().codec);
  const Outcome outcome = burn(in, at(GetParam().out));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("is converted to pcm_"), std::string::npos) << outcome.err;
  EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  EXPECT_TRUE(soundOf(in) == soundOf(at(GetParam().out)));
}

INSTANTIATE_TEST_SUITE_P(Lossless, ConvertedSound,
                         testing::Values(Track{"in.mkv", "flac", "out.mov"},
                                         Track{"in.mov", "pcm_s24be", "out.avi"},
                                         Track{"in.nut", "pcm_f32be", "out.mkv"},
                                         Track{"in.nut", "pcm_s16be", "out.mxf"},
                                         Track{"in.ts", "s302m", "out.nut"},
                                         Track{"in.mov", "pcm_u8", "out.mxf"}),
                         nameOf);

TEST(StreamsSound, BecomesAACWhereAFileHoldsNoUncompressed) {
  const std::string in = clipWith("in.mov", "pcm_s16le");
  for (const char* out : {"out.mp4", "out.ts"}) {
    const Outcome outcome = burn(in, at(out));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("stream 1 (audio, pcm_s16le) is converted to aac: "),
              std::string::npos)
        << outcome.err;
    EXPECT_EQ(codecsOf(at(out), "a").substr(0, 3), "aac");
  }
}

TEST(StreamsSound, IsEncodedAsAskedFor) {
  const std::string in = clipWith("in.mov", "pcm_s16le");
  const Outcome outcome = burn(in, at("out.mkv"), {"--audio-codec", "flac:compression_level=3"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err,
            "nkdraw: note: stream 1 (audio, pcm_s16le) is converted to flac: --audio-codec\n");
  EXPECT_EQ(codecsOf(at("out.mkv"), "a"), "flac\n");
  EXPECT_TRUE(soundOf(in) == soundOf(at("out.mkv")));
}

TEST(StreamsSound, OfAnotherRateFollowsTheFileFormat) {
  const std::string in = clipWith("in.mov", "pcm_s16le", {"-ar", "44100"});
  const Outcome outcome = burn(in, at("out.mxf"));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NEAR(static_cast<double>(soundOf(at("out.mxf")).size() / kBytes), 0.8 * 48000, 48);
}

TEST_P(CutSound, HasTheSamplesOfTheFramesAndNoOthers) {
  const std::string in = clipWith(GetParam().in, GetParam().codec);
  const Outcome outcome = burn(in, at(GetParam().out), {"--frames", "3-12"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  constexpr std::size_t kFrame = 1920 * kBytes;
  EXPECT_TRUE(soundOf(at(GetParam().out)) == soundOf(in).substr(3 * kFrame, 10 * kFrame));
  if (std::string(GetParam().out) != "out.avi") {  // whose packets have no times
    const auto earliest = [](AVMediaType kind) {
      return std::ranges::min(packetsOf(at(GetParam().out), kind), {}, &RawPacket::time).time;
    };
    EXPECT_NEAR(earliest(AVMEDIA_TYPE_AUDIO), earliest(AVMEDIA_TYPE_VIDEO), 0.0005);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, CutSound,
                         testing::Values(Track{"in.mov", "pcm_s16le", "out.mov"},
                                         Track{"in.mov", "pcm_s24le", "out.avi"},
                                         Track{"in.mkv", "pcm_s16le", "out.mkv"},
                                         Track{"in.avi", "pcm_s16le", "out.nut"},
                                         Track{"in.mxf", "pcm_s24le", "out.mxf"},
                                         Track{"in.mkv", "flac", "out.mov"}),
                         nameOf);

TEST(CutSound, OfRatesThatDoNotDivideTilesWithoutASampleTooMany) {
  ffmpeg(joined({{"-f", "lavfi", "-i", "testsrc2=size=192x108:rate=30000/1001:duration=0.8"},
                 kNoise,
                 {"-ac", "2", "-c:v", "mpeg2video", "-c:a", "pcm_s16le", at("in.mov")}}));
  std::string parts;
  for (const char* range : {"0-6", "7-7", "8-20"}) {
    const Outcome outcome = burn(at("in.mov"), at("out.mov"), {"--frames", range});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    parts += soundOf(at("out.mov"));
  }
  const std::size_t end = (21 * 48048 + 15) / 30;  // 1601.6 samples a frame
  EXPECT_TRUE(parts == soundOf(at("in.mov")).substr(0, end * kBytes));
}

TEST(StreamsSound, ThatBeginsLateStaysInStepWhereFilesCountSamples) {
  ffmpeg(joined({kVideo,
                 {"-itsoffset", "0.2"},
                 kNoise,
                 {"-ac", "2", "-c:v", "mpeg2video", "-c:a", "pcm_s16le", at("in.mov")}}));
  constexpr std::size_t kLate = 9600 * kBytes, kFrame = 1920 * kBytes;
  const std::string in = soundOf(at("in.mov")), silence(kLate, '\0');
  for (const char* out : {"out.mxf", "out.avi"}) {
    const Outcome outcome = burn(at("in.mov"), at(out));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    // MXF ends with its last picture.
    const std::string sound = soundOf(at(out)).substr(0, 20 * kFrame);
    EXPECT_TRUE(sound == (silence + in).substr(0, 20 * kFrame)) << out;
  }
  ASSERT_EQ(burn(at("in.mov"), at("cut.mxf"), {"--frames", "4-9"}).exitCode, 0);
  EXPECT_TRUE(soundOf(at("cut.mxf")) == (silence + in).substr(4 * kFrame, 6 * kFrame));
}

TEST(StreamsRange, PastTheEndIsRefusedAndNotCutShort) {
  for (const char* in : {"in.mov", "in.mkv", "in.ts"}) {
    clipWith(in, "mp2");
    for (const char* range : {"5-20", "5-99"})
      expectRefusal({"burnin", at(in), at("out.mov"), "--frames", range}, 2, "ends before");
    EXPECT_EQ(burn(at(in), at("out.mov"), {"--frames", "5-19"}).exitCode, 0) << in;
    std::remove(at("out.mov").c_str());
  }
}

TEST(StreamsSubtitles, OfTextFollowTheKindOfFile) {
  const std::string texts = textsFile();
  ffmpeg(joined({kVideo,
                 {"-i", texts, "-map", "0", "-map", "1", "-c:v", "mpeg2video", "-c:s", "srt",
                  at("in.mkv")}}));
  const Outcome there = burn(at("in.mkv"), at("out.mov"));
  ASSERT_EQ(there.exitCode, 0) << there.err;
  EXPECT_NE(there.err.find("stream 1 (subtitle, subrip) is converted to mov_text: "),
            std::string::npos)
      << there.err;
  EXPECT_EQ(codecsOf(at("out.mov"), "s"), "mov_text\n");
  EXPECT_EQ(textsOf(at("out.mov")), textsOf(at("in.mkv")));
  const std::pair<const char*, const char*> kBack[] = {{"out.mkv", "subrip\n"},
                                                       {"out.mp4", "mov_text\n"}};
  for (const auto& [out, codec] : kBack) {
    ASSERT_EQ(burn(at("out.mov"), at(out)).exitCode, 0);
    EXPECT_EQ(codecsOf(at(out), "s"), codec);
    EXPECT_EQ(textsOf(at(out)), textsOf(at("in.mkv"))) << out;
  }
}

TEST(StreamsSubtitles, ThatAFileCanNotHoldAreLeftOutOnRequestOnly) {
  ffmpeg(joined({kVideo,
                 {"-i", textsFile(), "-map", "0", "-map", "1", "-c:v", "mpeg2video", "-c:s", "ass",
                  at("in.mkv")}}));
  for (const char* out : {"out.ts", "out.avi", "out.mxf", "out.nut"}) {
    expectRefusal({"burnin", at("in.mkv"), at(out), "--codec", "mpeg2video"}, 1,
                  "leave it out with --no-subtitles");
    const Outcome outcome = burn(at("in.mkv"), at(out), {"--no-subtitles"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "nkdraw: note: stream 1 (subtitle, ass) is left out: --no-subtitles\n");
    std::remove(at(out).c_str());
  }
}

TEST(StreamsData, IsLeftOutOnRequestOnly) {
  ffmpeg(joined({kVideo,
                 {"-c:v", "mpeg2video", "-attach", textsFile(), "-metadata:s:t",
                  "mimetype=text/plain", at("in.mkv")}}));
  EXPECT_EQ(burn(at("in.mkv"), at("out.mkv")).err, "");
  EXPECT_EQ(runProgram("ffprobe", {"-v", "error", "-show_entries", "stream=codec_type", "-of",
                                   "default=nk=1:nw=1", at("out.mkv")})
                .out,
            "video\nattachment\n");
  expectRefusal({"burnin", at("in.mkv"), at("out.mov")}, 1, "leave it out with --no-data");
  const Outcome outcome = burn(at("in.mkv"), at("out.mov"), {"--no-data"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.err.find("is left out: --no-data"), std::string::npos) << outcome.err;
}

TEST(StreamsSound, IsLeftOutOnRequest) {
  const std::string in = clipWith("in.mov", "pcm_s16le");
  const Outcome outcome = burn(in, at("out.mp4"), {"--no-audio"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "nkdraw: note: stream 1 (audio, pcm_s16le) is left out: --no-audio\n");
  EXPECT_EQ(codecsOf(at("out.mp4"), "a"), "");
}

TEST(StreamsOptions, ThatHaveNoUseAreRefused) {
  const std::string in = clipWith("in.mov", "pcm_s16le");
  const std::string out = at("out.mov");
  expectRefusal({"burnin", in, out, "--no-audio", "--audio-codec", "aac"}, 1, "exclude");
  expectRefusal({"burnin", in, out, "--audio-codec", ""}, 1, "--audio-codec: (empty)");
  expectRefusal({"burnin", in, out, "--audio-codec", "nosuch"}, 1, "no such audio encoder");
  expectRefusal({"burnin", in, out, "--audio-codec", "libopus"}, 1, "does not hold this codec");
  expectRefusal({"burnin", in, at("out.png"), "--still", "0", "--no-audio"}, 1, "--no-audio");
  expectRefusal({"burnin", "--layout", "v210", out, "--no-data"}, 1, "--no-data");
}

TEST(StreamsDryRun, ListsWhatBecomesOfEach) {
  const std::string in = clipWith("in.mov", "pcm_s16le", {"-timecode", "10:00:00:00"});
  const Outcome outcome = burn(in, at("out.ts"), {"--dry-run"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  for (const char* words :
       {"audio, pcm_s16le: converted to aac: mpegts files do not keep pcm_s16le",
        "data, none: kept as the video's timecode"})
    EXPECT_NE(outcome.out.find(words), std::string::npos) << outcome.out;
}

TEST(StreamsTags, OfAUsersOwnAreKept) {
  const std::string in = clipWith("in.mov", "pcm_s16le",
                                  {"-metadata", "com.example.take=7", "-metadata", "title=Reel",
                                   "-movflags", "use_metadata_tags"});
  for (const char* out : {"out.mov", "out.mp4", "out.mkv"}) {
    ASSERT_EQ(burn(in, at(out), {"--audio-codec", "aac"}).exitCode, 0);
    std::string tags = runProgram("ffprobe", {"-v", "error", "-show_entries", "format_tags", "-of",
                                              "default=nw=1", at(out)})
                           .out;
    std::ranges::transform(tags, tags.begin(),
                           [](unsigned char letter) { return std::tolower(letter); });
    EXPECT_NE(tags.find("tag:com.example.take=7\n"), std::string::npos) << tags;
    EXPECT_NE(tags.find("tag:title=reel\n"), std::string::npos) << tags;
  }
}
