// SPDX-License-Identifier: BSD-2-Clause
//
// Compressed clips: decoded, drawn on, and encoded without loss or with a codec that is asked for.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {

struct Case {
  const char* name;
  Arguments encoder;
  const char* input;
  const char* output;
  const char* codec;     // that the output should have
  AVPixelFormat format;  // and what it decodes to
  const char* note = "";
};

const Case kCases[] = {
    {"H264",
     {"-c:v", "libx264", "-pix_fmt", "yuv420p"},
     "in.mp4",
     "out.mov",
     "ffv1",
     AV_PIX_FMT_YUV420P},
    {"H264WithBFramesIntoMatroska",
     {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-bf", "3"},
     "in.mkv",
     "out.mkv",
     "ffv1",
     AV_PIX_FMT_YUV420P},
    {"MPEG4", {"-c:v", "mpeg4"}, "in.avi", "out.avi", "ffv1", AV_PIX_FMT_YUV420P},
    {"MPEG2InATransportStream",
     {"-c:v", "mpeg2video"},
     "in.ts",
     "out.mov",
     "ffv1",
     AV_PIX_FMT_YUV420P},
    {"ProRes", {"-c:v", "prores_ks"}, "in.mov", "out.mov", "v210", AV_PIX_FMT_YUV422P10},
    {"FFV1Deep",
     {"-c:v", "ffv1", "-pix_fmt", "yuv422p10"},
     "in.mkv",
     "out.mkv",
     "v210",
     AV_PIX_FMT_YUV422P10},
    {"FFV1DeepIntoNUT",
     {"-c:v", "ffv1", "-pix_fmt", "yuv444p12"},
     "in.nut",
     "out.nut",
     "ffv1",
     AV_PIX_FMT_YUV444P12},
    {"FFV1",
     {"-c:v", "ffv1", "-pix_fmt", "yuv422p"},
     "in.mkv",
     "out.mkv",
     "ffv1",
     AV_PIX_FMT_YUV422P},
    {"PNG",
     {"-c:v", "png", "-pix_fmt", "rgb24"},
     "in.mov",
     "out.mov",
     "rawvideo",
     AV_PIX_FMT_RGB24},
    {"PNGWithAlpha",
     {"-c:v", "png", "-pix_fmt", "rgba"},
     "in.mov",
     "out.mkv",
     "ffv1",
     AV_PIX_FMT_BGRA},
    {"QuickTimeAnimation",
     {"-c:v", "qtrle", "-pix_fmt", "rgb24"},
     "in.mov",
     "out.avi",
     "rawvideo",
     AV_PIX_FMT_BGR24},
    {"UncompressedPlanes",
     {"-c:v", "rawvideo", "-pix_fmt", "yuv422p"},
     "in.nut",
     "out.nut",
     "ffv1",
     AV_PIX_FMT_YUV422P},
    {"Grey", {"-c:v", "ffv1", "-pix_fmt", "gray"}, "in.mkv", "out.mkv", "ffv1", AV_PIX_FMT_GRAY8},
    {"Palette",
     {"-c:v", "png", "-pix_fmt", "pal8"},
     "in.mov",
     "out.nut",
     "rawvideo",
     AV_PIX_FMT_BGRA,
     "nkdraw: note: frames in pal8 are drawn on in bgra\n"},
};

class Transcode : public testing::TestWithParam<Case> {};

void makeClip(const Case& each, const std::string& path, const char* start) {
  Arguments arguments = {"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25"};
  if (std::string(each.name) == "Palette")
    arguments = {"-f", "lavfi", "-i",
                 "testsrc2=size=320x180:rate=25,palettegen=stats_mode=single"
                 ",scale=320:180:flags=neighbor"};
  arguments.insert(arguments.end(), {"-frames:v", "6"});
  arguments.insert(arguments.end(), each.encoder.begin(), each.encoder.end());
  arguments.insert(arguments.end(), {"-timecode", start, path});
  ffmpeg(arguments);
}

/// The largest difference of two pictures of bytes outside the rows of the texts.
int largestDifference(const Clip& a, const Clip& b, std::size_t frame, int textTop, int textEnd) {
  int largest = 0;
  const std::size_t row = a.rowBytes();
  for (int y = 0; y < a.height; ++y) {
    if (y >= textTop && y < textEnd)
      continue;
    for (std::size_t i = 0; i < row; ++i) {
      const std::size_t place = static_cast<std::size_t>(y) * row + i;
      largest = std::max(largest, std::abs(a.frames[frame][place] - b.frames[frame][place]));
    }
  }
  return largest;
}

}  // namespace

TEST_P(Transcode, BurnsIntoEveryFrameAndKeepsThePicture) {
  const Case& each = GetParam();
  const std::string in = at(each.input), out = at(each.output[0] == 'o' ? each.output : "");
  makeClip(each, in, "10:00:59:22");
  const Outcome outcome = burnin({in, out, "--lossless", "--start-timecode", "10:00:59:22",
                                  "--position", "16,40", "--timecode-size", "2"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out + outcome.err, each.note);
  EXPECT_EQ(codecOf(out), each.codec);

  const Clip burnt = decode(out);
  EXPECT_EQ(burnt.format, each.format);
  ASSERT_EQ(burnt.frames.size(), 6U);
  const Clip grey = decodeAs(out, AV_PIX_FMT_GRAY8);
  const char* const expected[] = {"10:00:59:22", "10:00:59:23", "10:00:59:24",
                                  "10:01:00:00", "10:01:00:01", "10:01:00:02"};
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_EQ(readText(grey, i, 16, 40, 2, 11), expected[i]);

  const Clip source = decodeAs(in, each.format);
  ASSERT_EQ(source.frames.size(), 6U);
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_EQ(largestDifference(source, burnt, i, 40, 61), 0) << "frame " << i;
}

INSTANTIATE_TEST_SUITE_P(Codecs, Transcode, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Case>& each) {
                           return std::string(each.param.name);
                         });

TEST(TranscodeStreams, CopiesSoundAndKeepsItInStep) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=1", "-f", "lavfi", "-i",
          "sine=duration=1", "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac",
          at("in.mkv")});
  for (const Arguments& arguments :
       {Arguments{at("in.mkv"), at("out.mkv")},
        Arguments{at("in.mkv"), at("out.mkv"), "--overwrite", "--codec", "libx264:crf=20"}}) {
    const Outcome outcome = burnin(arguments);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    for (const AVMediaType kind : {AVMEDIA_TYPE_AUDIO, AVMEDIA_TYPE_VIDEO}) {
      const auto before = packetsOf(at("in.mkv"), kind), after = packetsOf(at("out.mkv"), kind);
      ASSERT_EQ(before.size(), after.size());
      const auto earliest = [](const std::vector<RawPacket>& packets) {
        return std::ranges::min(packets, {}, &RawPacket::time).time;
      };
      EXPECT_NEAR(earliest(before), earliest(after), 0.0015);
      for (std::size_t i = 0; kind == AVMEDIA_TYPE_AUDIO && i < before.size(); ++i) {
        EXPECT_TRUE(before[i].bytes == after[i].bytes);
        EXPECT_NEAR(before[i].time, after[i].time, 0.0015);
      }
    }
  }
}

TEST(TranscodeStreams, KeepsACoverPictureWhereADryRunSaysSo) {
  ffmpeg({"-f", "lavfi", "-i", "color=red:size=64x64", "-frames:v", "1", at("cover.png")});
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-i", at("cover.png"), "-map", "0",
          "-map", "1", "-frames:v", "5", "-c:v:0", "mpeg4", "-c:v:1", "copy", "-disposition:v:1",
          "attached_pic", at("in.mp4")});
  ASSERT_EQ(coversIn(at("in.mp4")), 1);
  struct Row {
    const char* out;
    Arguments more;
    int covers;
  };
  for (const auto& [out, more, covers] : {Row{"out.mp4", {}, 1}, Row{"out.mov", {"--no-data"}, 0},
                                          Row{"out.mkv", {"--no-data"}, 0}}) {
    Arguments arguments = {at("in.mp4"), at(out), "--codec", "mpeg4", "--frames", "1-3"};
    if (!more.empty()) {
      EXPECT_NE(burnin(arguments).err.find("--no-data"), std::string::npos);
    }
    arguments.insert(arguments.end(), more.begin(), more.end());
    Arguments dry = arguments;
    dry.emplace_back("--dry-run");
    EXPECT_EQ(burnin(dry).out.find("png: copied") != std::string::npos, covers == 1) << out;
    ASSERT_EQ(burnin(arguments).exitCode, 0);
    EXPECT_EQ(coversIn(at(out)), covers) << out;
  }
}

TEST(TranscodeCodecs, EncodesWithWhatIsAskedFor) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "3", "-c:v", "v210",
          at("in.mov")});
  const std::pair<const char*, const char*> kAsked[] = {{"prores_ks:profile=3", "prores"},
                                                        {"libx264", "h264"},
                                                        {"mpeg4:b=8M", "mpeg4"},
                                                        {"v210", "v210"},
                                                        {"png", "png"}};
  for (const auto& [asked, codec] : kAsked) {
    const Outcome outcome = burnin({at("in.mov"), at("out.mov"), "--overwrite", "--codec", asked,
                                    "--position", "16,40", "--timecode-size", "2"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(codecOf(at("out.mov")), codec);
    EXPECT_EQ(readText(decodeAs(at("out.mov"), AV_PIX_FMT_GRAY8), 2, 16, 40, 2, 11), "00:00:00:02");
  }
}

TEST(TranscodeCodecs, EncodesInThePixelFormatThatIsAskedFor) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "3", "-c:v", "v210",
          at("in.mov")});
  const Outcome outcome =
      burnin({at("in.mov"), at("out.mp4"), "--codec", "libx264:crf=18:pix_fmt=yuv420p"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("out.mp4")).format, AV_PIX_FMT_YUV420P);
  const Outcome refused = burnin({at("in.mov"), at("no.mp4"), "--codec", "libx264:pix_fmt=rgb24"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_NE(refused.err.find("pixel format: rgb24"), std::string::npos) << refused.err;
}

TEST(TranscodeCodecs, WritesRawFramesInTheFormatsThatTheFileKeeps) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "2", "-c:v", "v210",
          at("in.mov")});
  struct {
    const char *format, *output;
    int exitCode;
  } const kAsked[] = {{"uyvy422", "out.mov", 0}, {"yuyv422", "out.avi", 0},
                      {"yvyu422", "out.mov", 1}, {"yuv420p", "out.nut", 0},
                      {"yuv420p", "out.mov", 1}, {"nosuch", "out.nut", 1}};
  for (const auto& each : kAsked) {
    const Outcome outcome = burnin({at("in.mov"), at(each.output), "--overwrite", "--codec",
                                    std::string("rawvideo:pix_fmt=") + each.format});
    ASSERT_EQ(outcome.exitCode, each.exitCode) << each.format << " " << outcome.err;
    if (each.exitCode == 0) {
      EXPECT_EQ(decode(at(each.output)).format, av_get_pix_fmt(each.format));
    }
  }
}

TEST(TranscodeCodecs, V210MadeAgainIsTheSame) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=322x180:rate=25", "-frames:v", "3", "-c:v", "v210",
          at("in.mov")});
  ASSERT_EQ(burnin({at("in.mov"), at("place.mov")}).exitCode, 0);
  ASSERT_EQ(burnin({at("in.mov"), at("again.mov"), "--codec", "v210"}).exitCode, 0);
  EXPECT_TRUE(decode(at("place.mov")).frames == decode(at("again.mov")).frames);
}

TEST(TranscodeSizes, TakesOddOnes) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=330x180:rate=25,format=gbrp,crop=321:143:0:0:exact=1",
          "-frames:v", "2", "-c:v", "ffv1", "-pix_fmt", "yuv444p", at("in.mkv")});
  const Outcome outcome =
      burnin({at("in.mkv"), at("out.mkv"), "--position", "17,41", "--timecode-size", "2"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Clip grey = decodeAs(at("out.mkv"), AV_PIX_FMT_GRAY8);
  EXPECT_EQ(grey.width, 321);
  EXPECT_EQ(readText(grey, 1, 17, 41, 2, 11), "00:00:00:01");
}

TEST(TranscodeCodecs, SayNothing) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "3", "-c:v", "v210",
          at("in.mov")});
  for (const char* codec :
       {"libx265", "libx265:x265-params=keyint=2", "libsvtav1:pix_fmt=yuv420p10", "libx264"}) {
    const Outcome outcome = burnin({at("in.mov"), at("out.mkv"), "--overwrite", "--codec", codec});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out + outcome.err, "") << codec;
  }
  EXPECT_EQ(burnin({at("in.mov"), at("out.mkv"), "--overwrite", "--codec", "libsvtav1"}).err,
            "nkdraw: note: frames in yuv422p10le become yuv420p10le, for libsvtav1\n");
}

TEST(TranscodeProgressive, StaysProgressive) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25", "-frames:v", "2", "-c:v",
          "prores_ks", at("in.mov")});
  ASSERT_EQ(fieldOrderOf(at("in.mov")), AV_FIELD_PROGRESSIVE);
  for (const char* out : {"out.mov", "out.mkv"}) {
    ASSERT_EQ(burnin({at("in.mov"), at(out)}).exitCode, 0);
    EXPECT_EQ(fieldOrderOf(at(out)), AV_FIELD_PROGRESSIVE) << out;
  }
}

TEST(TranscodeInterlaced, KeepsTheFieldsOfChromaApart) {
  // One field red, the other blue: chroma that mixed the fields would turn purple.
  ffmpeg({"-f",
          "lavfi",
          "-i",
          "color=red:size=320x240:rate=50",
          "-f",
          "lavfi",
          "-i",
          "color=blue:size=320x240:rate=50",
          "-filter_complex",
          "[0][1]interleave,setfield=tff,format=yuv420p,tinterlace=interleave_top,setfield=tff",
          "-frames:v",
          "2",
          "-c:v",
          "mpeg2video",
          "-q:v",
          "1",
          "-flags",
          "+ildct+ilme",
          "-top",
          "1",
          at("in.ts")});
  const Outcome dry = burnin({at("in.ts"), at("out.mov"), "--dry-run"});
  if (dry.out.find("interlaced") == std::string::npos)
    FAIL() << dry.out;
  ASSERT_EQ(burnin({at("in.ts"), at("out.mov"), "--position", "10,0", "--timecode-size", "2",
                    "--codec", "rawvideo:pix_fmt=uyvy422"})
                .exitCode,
            0);
  const Clip source = decode(at("in.ts")), burnt = decode(at("out.mov"));
  ASSERT_EQ(source.format, AV_PIX_FMT_YUV420P);
  ASSERT_EQ(burnt.format, AV_PIX_FMT_UYVY422);
  const std::size_t luma = 320 * 240;
  for (int y = 60; y < 236; ++y) {
    // Rows 0, 4, 8 ... of a field's chroma are the frame's chroma rows 0, 2, 4 ...
    const int field = y % 2;
    const int chromaRow = (y / 4) * 2 + field;
    const int cb = source.frames[0][luma + static_cast<std::size_t>(chromaRow) * 160 + 80];
    const int got = burnt.frames[0][static_cast<std::size_t>(y) * 640 + 320];
    EXPECT_NEAR(got, cb, 8) << "row " << y << ": cubic chroma of one flat field";
  }
}
