// SPDX-License-Identifier: BSD-2-Clause
//
// Outputs that others can play: their codec, profile, pixel format and tag, and that they are read
// back before they get their name.
#include "program.h"

#include <media/failure.h>
#include <media/read_back.h>

#include <gtest/gtest.h>

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

/// The video as ffprobe describes it: "h264 High yuv420p avc1".
std::string videoOf(const std::string& name) {
  const Outcome outcome =
      runProgram("ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries",
                             "stream=codec_name,profile,codec_tag_string,pix_fmt", "-of",
                             "csv=p=0:s=\\ ", at(name)});
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
  EXPECT_TRUE(videoOf("out.mov").ends_with("avc1 yuv422p10le")) << videoOf("out.mov");
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
