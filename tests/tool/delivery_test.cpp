// SPDX-License-Identifier: BSD-2-Clause
//
// Outputs that others can play: their codec, profile, pixel format and tag, and that they are read
// back before they get their name.
#include "clip.h"
#include "program.h"

#include <media/failure.h>
#include <media/read_back.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

constexpr int kUsage = 1;

/// Makes a clip of the test pattern, with this encoder.
void makeClip(const std::string& name, const std::string& size, const Arguments& encoder) {
  Arguments arguments = {"-f",        "lavfi", "-i", "testsrc2=size=" + size + ":rate=25",
                         "-frames:v", "3"};
  arguments.insert(arguments.end(), encoder.begin(), encoder.end());
  arguments.push_back(at(name));
  ffmpeg(arguments);
}

/// The video as ffprobe describes it: "h264/High/avc1/yuv420p".
std::string videoOf(const std::string& name) {
  const Outcome outcome =
      runProgram("ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries",
                             "stream=codec_name,profile,codec_tag_string,pix_fmt", "-of",
                             "csv=p=0:s=/", at(name)});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return outcome.out.substr(0, outcome.out.find('\n'));
}

/// Decodes the whole file, and stops at the first error.
void expectPlays(const std::string& name) {
  const Outcome outcome = runProgram(
      "ffmpeg", {"-nostdin", "-v", "error", "-xerror", "-i", at(name), "-f", "null", "-"});
  EXPECT_EQ(outcome.exitCode, 0) << name << ": " << outcome.err;
  EXPECT_EQ(outcome.err, "") << name;
}

}  // namespace

TEST(Delivery, TenBitH264IsNotTaggedAsAVCIntra) {
  makeClip("in.mov", "1280x720", {"-c:v", "prores_ks"});
  const Outcome outcome =
      burnin({at("in.mov"), at("out.mov"), "--codec", "libx264:preset=ultrafast"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(videoOf("out.mov").ends_with("/avc1/yuv422p10le")) << videoOf("out.mov");
  expectPlays("out.mov");
}

TEST(Delivery, FFV1GoesIntoQuickTimeFilesByName) {
  makeClip("in.mkv", "320x180", {"-c:v", "ffv1"});
  ASSERT_EQ(burnin({at("in.mkv"), at("out.mov"), "--codec", "ffv1"}).exitCode, 0);
  EXPECT_TRUE(videoOf("out.mov").starts_with("ffv1/")) << videoOf("out.mov");
  expectPlays("out.mov");
}

TEST(Delivery, WebVideoIsNotTriedInQuickTimeFiles) {
  makeClip("in.webm", "320x180", {"-c:v", "libvpx"});
  const Outcome outcome = burnin({at("in.webm"), at("out.mov")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("mov files hold no vp8"), std::string::npos) << outcome.err;
  expectPlays("out.mov");
}

TEST(Delivery, HEVCHasTheTagThatPlayersTake) {
  makeClip("in.mov", "320x180", {"-c:v", "prores_ks"});
  for (const char* out : {"out.mov", "out.mp4"}) {
    const Outcome outcome = burnin({at("in.mov"), at(out), "--codec", "libx265:preset=ultrafast"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(videoOf(out).find("hvc1"), std::string::npos) << videoOf(out);
    expectPlays(out);
  }
}

TEST(Delivery, WhatCannotBeReadBackIsAFailure) {
  // FFmpeg writes Motion JPEG into transport streams, and reads it as data.
  makeClip("in.ts", "320x180", {"-c:v", "mjpeg"});
  const AVOutputFormat& format = *av_guess_format("mpegts", nullptr, nullptr);
  EXPECT_THROW(nkdraw::media::checkReadable(at("in.ts"), format, "in.ts"), nkdraw::media::Failure);
  makeClip("in.mov", "320x180", {"-c:v", "prores_ks"});
  expectRefusal({"burnin", at("in.mov"), at("out.ts"), "--codec", "mjpeg"}, kUsage,
                "does not hold this codec");
}

namespace {

/// A clip of one kind, and what its burnt copy must be.
struct Kind {
  const char* name;
  const char* file;
  Arguments encoder;
  const char* video;
  const char* size = "320x180";
};

const Kind kKinds[] = {
    {"ProResLT", "in.mov", {"-c:v", "prores_ks", "-profile:v", "1"}, "prores/LT/apcs/yuv422p10le"},
    {"ProResProxy",
     "in.mkv",
     {"-c:v", "prores_ks", "-profile:v", "0"},
     "prores/Proxy/apco/yuv422p10le"},
    {"ProRes4444",
     "in.mov",
     {"-c:v", "prores_ks", "-profile:v", "4", "-pix_fmt", "yuva444p10"},
     "prores/4444/ap4h/yuva444p12le"},
    {"DNxHR",
     "in.mov",
     {"-c:v", "dnxhd", "-profile:v", "dnxhr_sq", "-pix_fmt", "yuv422p"},
     "dnxhd/DNXHR SQ/AVdh/yuv422p"},
    {"DNxHD",
     "in.mxf",
     {"-c:v", "dnxhd", "-b:v", "90M", "-pix_fmt", "yuv422p10"},
     "dnxhd/DNXHD/[0][0][0][0]/yuv422p10le",
     "1280x720"},
    {"H264", "in.mp4", {"-c:v", "libx264", "-pix_fmt", "yuv420p"}, "h264/High/avc1/yuv420p"},
    {"H264Main",
     "in.mp4",
     {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-profile:v", "main"},
     "h264/Main/avc1/yuv420p"},
    {"H264Baseline",
     "in.mp4",
     {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-profile:v", "baseline"},
     "h264/Constrained Baseline/avc1/yuv420p"},
    {"H264Deep",
     "in.mov",
     {"-c:v", "libx264", "-pix_fmt", "yuv422p10"},
     "h264/High 4:2:2/avc1/yuv422p10le"},
    {"HEVC",
     "in.mp4",
     {"-c:v", "libx265", "-x265-params", "log-level=none", "-pix_fmt", "yuv420p10"},
     "hevc/Main 10/hvc1/yuv420p10le"},
    {"MPEG2",
     "in.mxf",
     {"-c:v", "mpeg2video", "-pix_fmt", "yuv422p", "-b:v", "20M"},
     "mpeg2video/4:2:2/[0][0][0][0]/yuv422p"},
    {"FFV1", "in.mkv", {"-c:v", "ffv1", "-pix_fmt", "yuv444p10"}, "ffv1/unknown/FFV1/yuv444p10le"},
    {"JPEG2000", "in.mov", {"-c:v", "jpeg2000", "-pix_fmt", "yuv420p"}, "jpeg2000/0/mjp2/yuv420p"},
    {"MJPEG", "in.avi", {"-c:v", "mjpeg", "-pix_fmt", "yuvj422p"}, "mjpeg/Baseline/MJPG/yuvj422p"},
    {"VP9",
     "in.webm",
     {"-c:v", "libvpx-vp9", "-deadline", "realtime"},
     "vp9/Profile 0/[0][0][0][0]/yuv420p"},
    {"DV",
     "in.avi",
     {"-c:v", "dvvideo", "-pix_fmt", "yuv420p"},
     "dvvideo/unknown/dvsd/yuv420p",
     "720x576"},
    {"PNG", "in.mov", {"-c:v", "png"}, "png/unknown/png /rgb24"},
    {"UtVideo",
     "in.avi",
     {"-c:v", "utvideo", "-pix_fmt", "yuv422p"},
     "utvideo/unknown/ULY2/yuv422p"},
};

class OwnKind : public testing::TestWithParam<Kind> {};

}  // namespace

TEST_P(OwnKind, IsKeptWithoutAnOption) {
  const Kind& kind = GetParam();
  makeClip(kind.file, kind.size, kind.encoder);
  const std::string out = "out" + std::string(kind.file + 2);
  const Outcome outcome = burnin({at(kind.file), at(out), "--timecode-size", "1"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(videoOf(out).starts_with(kind.video)) << videoOf(out);
  EXPECT_EQ(decode(at(out)).frames.size(), 3U);
  expectPlays(out);
}

INSTANTIATE_TEST_SUITE_P(Of, OwnKind, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<Kind>& each) {
                           return std::string(each.param.name);
                         });

TEST(KindsOfFiles, NeedNoOption) {
  makeClip("in.mov", "320x180", {"-c:v", "v210"});
  struct {
    const char *out, *video, *words;
  } const kUsual[] = {{"out.mp4", "h264/High 4:2:2/avc1/yuv422p10le", "becomes h264"},
                      {"out.ts", "h264/High 4:2:2", "becomes h264"},
                      {"out.mxf", "dnxhd/DNXHR HQX", "becomes dnxhd"},
                      {"out.mpg", "mpeg2video/4:2:2", "becomes mpeg2video"},
                      {"out.webm", "vp9/Profile 3", "becomes vp9"},
                      {"out.mkv", "v210", ""},
                      {"out.avi", "v210", ""},
                      {"out.nut", "v210", ""}};
  for (const auto& [out, video, words] : kUsual) {
    const Outcome outcome = burnin({at("in.mov"), at(out)});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_TRUE(videoOf(out).starts_with(video)) << out << " " << videoOf(out);
    EXPECT_NE(outcome.err.find(words), std::string::npos) << outcome.err;
    expectPlays(out);
  }
}

TEST(KindsOfFiles, ThatDoNotHoldTheCodecGetAnotherThatIsNamed) {
  makeClip("in.mov", "320x180", {"-c:v", "prores_ks"});
  const Outcome outcome = burnin({at("in.mov"), at("out.avi")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(videoOf("out.avi").starts_with("ffv1")) << videoOf("out.avi");
  EXPECT_NE(outcome.err.find("becomes ffv1: avi files hold no prores"), std::string::npos)
      << outcome.err;
}

TEST(ViewingCopy, IsWhatBrowsersPlay) {
  makeClip("in.mov", "321x181", {"-c:v", "ffv1", "-pix_fmt", "yuv444p10"});
  const Outcome outcome =
      burnin({at("in.mov"), at("out.mp4"), "--viewing-copy", "--timecode-size", "1"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(videoOf("out.mp4"), "h264/High/avc1/yuv420p");
  EXPECT_EQ(decode(at("out.mp4")).width, 320);
  EXPECT_EQ(decode(at("out.mp4")).height, 180);
  std::ifstream file(at("out.mp4"), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  EXPECT_LT(bytes.find("moov"), bytes.find("mdat"));
  expectPlays("out.mp4");
}

TEST(ContainerOptions, ReachTheMuxer) {
  makeClip("in.mov", "320x180", {"-c:v", "v210"});
  const Outcome outcome = burnin({at("in.mov"), at("out.mov"), "--container-option",
                                  "movflags=+faststart", "--container-option", "brand=nkdw"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  std::ifstream file(at("out.mov"), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  EXPECT_LT(bytes.find("moov"), bytes.find("mdat"));
  EXPECT_EQ(bytes.substr(8, 4), "nkdw");
}

TEST(ContainerOptions, ThatAreUnknownAreRefused) {
  makeClip("in.mov", "320x180", {"-c:v", "v210"});
  expectRefusal({"burnin", at("in.mov"), at("out.mov"), "--container-option", "nosuch=1"}, kUsage,
                "no such option: nosuch");
  expectRefusal({"burnin", at("in.mov"), at("out.mov"), "--container-option", "nosuch"}, kUsage,
                "KEY=VALUE");
}

TEST(Delivery, HasOneWay) {
  makeClip("in.mov", "320x180", {"-c:v", "v210"});
  expectRefusal({"burnin", at("in.mov"), at("out.mov"), "--lossless", "--viewing-copy"}, kUsage,
                "exclude each other");
  expectRefusal({"burnin", at("in.mov"), at("out.png"), "--still", "0", "--lossless"}, kUsage,
                "--lossless");
}

TEST(Delivery, ADryRunTellsTheEncoderAndItsOptions) {
  makeClip("in.mp4", "320x180", {"-c:v", "libx264", "-pix_fmt", "yuv420p"});
  const Outcome outcome =
      burnin({at("in.mp4"), at("out.mov"), "--viewing-copy", "--timecode-size", "1", "--dry-run"});
  EXPECT_NE(outcome.out.find("libx264, yuv420p, profile=high:crf=20, avc1"), std::string::npos)
      << outcome.out;
}

TEST(Delivery, KeepsTheOrderOfFields) {
  for (const std::string order : {"tff", "bff"}) {
    const std::string in = order + ".mov", out = order + ".mp4";
    makeClip(in, "720x480", {"-vf", "setfield=" + order, "-c:v", "v210"});
    const Outcome outcome = burnin({at(in), at(out), "--codec", "libx264:preset=ultrafast"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(fieldOrderOf(at(out)), order == "tff" ? AV_FIELD_TT : AV_FIELD_BB);
  }
}

TEST(Delivery, OfFieldsIntoMXFTakesWhatHasFields) {
  for (const std::string size : {"1920x1080", "720x576"}) {
    makeClip(size + ".mov", size, {"-vf", "setfield=tff", "-c:v", "v210"});
    const Outcome outcome = burnin({at(size + ".mov"), at(size + ".mxf")});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const bool isHD = size.starts_with("1920");
    EXPECT_TRUE(videoOf(size + ".mxf").starts_with(isHD ? "dnxhd/DNXHD" : "mpeg2video/4:2:2"))
        << videoOf(size + ".mxf");
    EXPECT_EQ(fieldOrderOf(at(size + ".mxf")), AV_FIELD_TT);
    expectPlays(size + ".mxf");
  }
}

TEST(Lossless, KeepsTwelveBitsAndAlpha) {
  makeClip("in.mov", "320x180", {"-vf", "format=yuva444p10le", "-c:v", "prores_ks"});
  for (const char* const out : {"out.mov", "out.mkv"}) {
    const Outcome outcome = burnin({at("in.mov"), at(out), "--lossless"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_TRUE(videoOf(out).starts_with("ffv1/")) << videoOf(out);
    EXPECT_TRUE(videoOf(out).ends_with("/yuva444p16le")) << videoOf(out);
  }
}

TEST(Delivery, FramesAtFractionsOfMatroskaHaveTheirExactRate) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=320x180:rate=60000/1001", "-frames:v", "4", "-c:v",
          "libx264", "-pix_fmt", "yuv420p", at("in.mkv")});
  const Outcome outcome = burnin({at("in.mkv"), at("out.mxf")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Outcome rate = runProgram("ffprobe", {"-v", "error", "-show_entries", "stream=r_frame_rate",
                                              "-of", "csv=p=0", at("out.mxf")});
  EXPECT_TRUE(rate.out.starts_with("60000/1001")) << rate.out;
}

TEST(Delivery, OfAVIFromAPipeHasNoEndThatIsMissing) {
  makeClip("in.mov", "320x180", {"-c:v", "mjpeg"});
  ASSERT_EQ(runProgram("sh", {"-c", "ffmpeg -nostdin -v error -i '" + at("in.mov") +
                                        "' -c copy -f avi - > '" + at("live.avi") + "'"})
                .exitCode,
            0);
  const Outcome outcome = burnin({at("live.avi"), at("out.mov")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("out.mov")).frames.size(), 3U);
}

TEST(Lossless, IsRefusedWhereFramesCannotBeDrawnOn) {
  makeClip("in.nut", "320x180", {"-c:v", "rawvideo", "-pix_fmt", "xyz12le"});
  expectRefusal({"burnin", at("in.nut"), at("out.mov"), "--lossless"}, kUsage, "xyz12le");
}

TEST(Lossless, IsRefusedWhereNothingHoldsTheFrames) {
  makeClip("in%04d.exr", "320x180", {"-pix_fmt", "gbrpf32le"});
  expectRefusal({"burnin", at("in%04d.exr"), at("out.mov"), "--lossless"}, kUsage, "without loss");
}

TEST(Delivery, AnEncoderThatTheFileRefusesIsNamedBeforeItIsOpened) {
  makeClip("in.mp4", "320x180", {"-c:v", "libx264", "-pix_fmt", "yuv420p"});
  expectRefusal({"burnin", at("in.mp4"), at("out.mov"), "--codec", "libsvtav1"}, kUsage,
                "libsvtav1");
  expectRefusal({"burnin", at("in.mp4"), at("out.mkv"), "--codec", "libsvtav1",
                 "--container-option", "nosuch=1"},
                kUsage, "nosuch");
}

TEST(Delivery, OfVideoIntoASoundFileIsRefused) {
  makeClip("in.mp4", "320x180", {"-c:v", "libx264", "-pix_fmt", "yuv420p"});
  for (const char* const name : {"out.mp3", "out.flac", "out.aiff"})
    expectRefusal({"burnin", at("in.mp4"), at(name)}, kUsage, "names no video file");
}
