// SPDX-License-Identifier: BSD-2-Clause
//
// In place, a clip's file is copied and only the pixels under the overlay are written anew: every
// other byte of the output is the input's. The pixels are those of a run that writes the file anew.
#include "clip.h"
#include "layers.h"
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

/// How to make a file.
struct Kind {
  std::string name, suffix;
  Arguments codec;
};

const Kind kKinds[] = {
    {"V210InMOV", ".mov", {"-c:v", "v210"}},
    {"V210InMOVForTheWeb", ".mov", {"-c:v", "v210", "-movflags", "+faststart"}},
    {"V210InFragments", ".mov", {"-c:v", "v210", "-movflags", "+frag_every_frame"}},
    {"UYVYInMOV", ".mov", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422"}},
    {"YUY2InMOV", ".mov", {"-c:v", "rawvideo", "-pix_fmt", "yuyv422"}},
    {"RGB24InMOV", ".mov", {"-c:v", "rawvideo", "-pix_fmt", "rgb24"}},
    {"ARGBInMOV", ".mov", {"-c:v", "rawvideo", "-pix_fmt", "argb"}},
    {"V210InAVI", ".avi", {"-c:v", "v210"}},
    {"UYVYInAVI", ".avi", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422"}},
    {"BottomUpBGR24InAVI", ".avi", {"-c:v", "rawvideo", "-pix_fmt", "bgr24"}},
    {"BGRAInAVI", ".avi", {"-c:v", "rawvideo", "-pix_fmt", "bgra"}},
    {"V210InMatroska", ".mkv", {"-c:v", "v210"}},
    {"UYVYInMatroska", ".mkv", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422", "-allow_raw_vfw", "1"}},
    {"V210InNUT", ".nut", {"-c:v", "v210"}},
    {"RGBAInNUT", ".nut", {"-c:v", "rawvideo", "-pix_fmt", "rgba"}},
};

const Arguments kLayers = {"--vitc", "--format-line",   "--frame-number", "--text",      "31,4,A",
                           "--text", "200,300,Take 12", "--meters",       "--meters-at", "340,40"};

/// What players pass over, at the end of a MOV.
const std::string kSkipped("\0\0\0\x10skip8 bytes.", 16);

Bytes contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void append(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
}

/// A clip with noise, sound and tags, large enough that its frames are left unread.
std::string makeClip(const Kind& kind, int frames = 3, const std::string& size = "640x360") {
  const std::string path = at("in" + kind.suffix);
  Arguments arguments = {
      "-f",        "lavfi",
      "-i",        "testsrc2=size=" + size + ":rate=25,noise=alls=40:all_seed=7:allf=t",
      "-f",        "lavfi",
      "-i",        "sine=sample_rate=48000",
      "-frames:v", std::to_string(frames),
      "-t",        std::to_string(frames * 0.04)};
  arguments.insert(arguments.end(), kind.codec.begin(), kind.codec.end());
  arguments.insert(arguments.end(),
                   {"-c:a", "pcm_s16le", "-timecode", "10:00:00:00", "-metadata", "title=T", path});
  ffmpeg(arguments);
  return path;
}

Outcome burnt(const std::string& in, const std::string& out, const Arguments& more = kLayers) {
  Arguments arguments = {in, out};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return burnin(arguments);
}

/// The packets of the video, burnt by a run with two outputs, which writes both anew.
std::vector<RawPacket> writtenAnew(const std::string& in, const std::string& suffix,
                                   Arguments layers = kLayers) {
  layers.insert(layers.end(), {"--overwrite", "--output", at("second" + suffix)});
  const Outcome outcome = burnt(in, at("anew" + suffix), layers);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return packetsOf(at("anew" + suffix), AVMEDIA_TYPE_VIDEO);
}

/// The file with these frames in the place of its own.
Bytes withFrames(Bytes file, const std::vector<RawPacket>& own,
                 const std::vector<RawPacket>& burnt) {
  EXPECT_EQ(own.size(), burnt.size());
  auto from = file.begin();
  for (std::size_t i = 0; i < own.size() && i < burnt.size(); ++i) {
    const auto place = std::search(from, file.end(), own[i].bytes.begin(), own[i].bytes.end());
    EXPECT_EQ(own[i].bytes.size(), burnt[i].bytes.size());
    if (place == file.end()) {
      ADD_FAILURE() << "frame " << i << " is not in the file";
      break;
    }
    from = std::copy(burnt[i].bytes.begin(), burnt[i].bytes.end(), place);
  }
  return file;
}

void expectPatched(const std::string& in, const std::string& suffix,
                   const Arguments& layers = kLayers) {
  const auto frames = writtenAnew(in, suffix, layers);
  std::filesystem::remove(at("out" + suffix));
  const Outcome outcome = burnt(in, at("out" + suffix), layers);
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out + outcome.err, "");
  const Bytes file = contentsOf(in);
  const Bytes expected = withFrames(file, packetsOf(in, AVMEDIA_TYPE_VIDEO), frames);
  EXPECT_TRUE(contentsOf(at("out" + suffix)) == expected);
  EXPECT_FALSE(expected == file);
}

class Patch : public testing::TestWithParam<Kind> {};

INSTANTIATE_TEST_SUITE_P(AllKinds, Patch, testing::ValuesIn(kKinds),
                         [](const auto& each) { return each.param.name; });

TEST_P(Patch, ChangesNoByteButThePixelsUnderTheOverlay) {
  expectPatched(makeClip(GetParam()), GetParam().suffix);
}

TEST(PatchedFile, KeepsWhatLiesBehindTheClip) {
  const std::string in = makeClip(kKinds[0]);
  append(in, kSkipped);
  expectPatched(in, ".mov");
}

TEST(PatchedFile, MayHaveFramesThatAreReadWhole) {
  expectPatched(makeClip(kKinds[0], 5, "192x108"), ".mov", {"--vitc", "--text", "4,4,A"});
  expectPatched(makeClip(kKinds[11], 5, "192x108"), ".mkv", {"--vitc", "--text", "4,4,A"});
}

TEST(PatchedFile, HasItsWatermarkBlended) {
  const std::string logo = layers::makeLogo();
  for (const Kind* const kind : {&kKinds[0], &kKinds[2], &kKinds[5], &kKinds[10]})
    expectPatched(makeClip(*kind), kind->suffix,
                  {"--watermark", logo, "--watermark-at", "301,201"});
}

TEST(PatchedFile, OfOddWidthKeepsItsLastColumn) {
  const Kind kind = {"", ".mov", {"-c:v", "v210"}};
  expectPatched(makeClip(kind, 2, "639x361"), ".mov");
}

TEST(PatchedFile, HasItsFieldsAsTheyAre) {
  const Kind kind = {"", ".mov", {"-c:v", "v210", "-flags", "+ildct", "-field_order", "tt"}};
  expectPatched(makeClip(kind), ".mov", {"--text", "31,31,A", "--size", "3"});
}

TEST(PatchedFile, ReplacesAnotherOnlyWhenItIsComplete) {
  const std::string in = makeClip(kKinds[0]);
  append(at("out.mov"), "old");
  EXPECT_EQ(burnt(in, at("out.mov")).exitCode, 3);
  EXPECT_EQ(contentsOf(at("out.mov")).size(), 3U);
  EXPECT_EQ(burnt(in, at("out.mov"), {"--overwrite"}).exitCode, 0);
  EXPECT_EQ(contentsOf(at("out.mov")).size(), contentsOf(in).size());
  EXPECT_EQ(filesAtWork().size(), 2U);
}

TEST(PatchedFile, IsNotLeftBehindByASignal) {
  const std::string in = makeClip(kKinds[0], 600, "320x180");
  const Outcome outcome = burninUntil({in, at("out.mov"), "--vitc"}, ".nkdraw-", SIGTERM);
  EXPECT_EQ(outcome.exitCode, 128 + SIGTERM) << outcome.err;
  EXPECT_EQ(filesAtWork(), std::vector<std::string>{"in.mov"});
}

TEST(PatchedFile, IsNotForRunsThatChangeTheFile) {
  const std::string in = makeClip(kKinds[0]);
  append(in, kSkipped);
  const std::vector<Arguments> changes = {{"--frames", "1-2"},
                                          {"--start-timecode", "01:00:00:00"},
                                          {"--no-audio"},
                                          {"--container-option", "movflags=+faststart"}};
  for (const Arguments& change : changes) {
    Arguments arguments = change;
    arguments.emplace_back("--overwrite");
    EXPECT_EQ(burnt(in, at("out.mov"), arguments).exitCode, 0);
    const Bytes file = contentsOf(at("out.mov"));
    const std::string end = "8 bytes.";
    EXPECT_FALSE(std::equal(end.rbegin(), end.rend(), file.rbegin())) << change[0];
  }
}

TEST(PatchedFile, KeepsSoundWhosePacketsAreLargerThanAFrame) {
  const std::string in = at("in.mkv");
  std::string noise = "aevalsrc='random(0)-0.5";
  for (int channel = 1; channel < 6; ++channel)
    noise += "|random(" + std::to_string(channel) + ")-0.5";
  ffmpeg({"-f",
          "lavfi",
          "-i",
          "testsrc2=s=160x120:r=25:d=1",
          "-f",
          "lavfi",
          "-i",
          noise + "':c=5.1:d=1:s=48000",
          "-sample_fmt",
          "s16",
          "-c:a",
          "flac",
          "-frame_size",
          "8192",
          "-c:v",
          "rawvideo",
          "-pix_fmt",
          "uyvy422",
          "-allow_raw_vfw",
          "1",
          in});
  expectPatched(in, ".mkv", {"--timecode-size", "1", "--position", "0,0"});
}

/// Frames of one colour are found in the file at many places.
TEST(PatchedFile, MayHaveFramesOfOneColour) {
  const std::string in = at("in.mkv");
  ffmpeg({"-f", "lavfi", "-i", "color=0x808080:size=96x40:rate=25", "-frames:v", "5", "-vf",
          "format=gray,format=uyvy422,lutyuv=128:128:128", "-c:v", "rawvideo", "-allow_raw_vfw",
          "1", in});
  const Arguments small = {"--timecode-size", "1", "--position", "0,0"};
  const auto frames = writtenAnew(in, ".mkv", small);
  EXPECT_EQ(burnt(in, at("out.mkv"), small).exitCode, 0);
  const auto got = packetsOf(at("out.mkv"), AVMEDIA_TYPE_VIDEO);
  ASSERT_EQ(got.size(), frames.size());
  for (std::size_t i = 0; i < got.size(); ++i)
    EXPECT_TRUE(got[i].bytes == frames[i].bytes) << "frame " << i;
}

/// The frames of a MOV, those too that its edit list hides.
std::vector<RawPacket> allFramesOf(const std::string& path) {
  std::filesystem::remove(at("plain.mov"));
  ffmpeg({"-ignore_editlist", "1", "-i", path, "-map", "0:v", "-c", "copy", at("plain.mov")});
  return packetsOf(at("plain.mov"), AVMEDIA_TYPE_VIDEO);
}

/// The edit list of a cut MOV hides frames: a patch would leave them as they are.
TEST(PatchedFile, HidesNoFramesThatWereNotBurnt) {
  const Kind kind = {"", ".mov", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422"}};
  const std::string in = makeClip(kind, 10);
  for (const char* const start : {"0.06", "0.13", "0.2"}) {
    ffmpeg({"-ss", start, "-i", in, "-c", "copy", at("cut.mov")});
    const Outcome outcome = burnt(at("cut.mov"), at("out.mov"), {"--overwrite", "--vitc"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const auto own = allFramesOf(at("cut.mov")), all = allFramesOf(at("out.mov"));
    EXPECT_GE(all.size(), packetsOf(at("cut.mov"), AVMEDIA_TYPE_VIDEO).size());
    for (const RawPacket& frame : all)
      EXPECT_EQ(std::ranges::count(own, frame.bytes, &RawPacket::bytes), 0) << start;
  }
}

TEST(PatchedFile, IsWrittenAnewWhereAFrameIsDamaged) {
  const std::string in = makeClip(kKinds[0], 6);
  const auto frames = packetsOf(in, AVMEDIA_TYPE_VIDEO);
  ffmpeg({"-i", in, "-map", "0:v", "-c", "copy", at("in.mkv")});
  Bytes bytes = contentsOf(at("in.mkv"));
  bytes.resize(bytes.size() - frames[5].bytes.size() / 2);
  std::ofstream(at("cut.mkv"), std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  EXPECT_EQ(burnt(at("cut.mkv"), at("out.mkv")).exitCode, 2);
  EXPECT_FALSE(exists(at("out.mkv")));
  const Outcome outcome = burnt(at("cut.mkv"), at("out.mkv"), {"--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, 5) << outcome.err;
  EXPECT_GE(packetsOf(at("out.mkv"), AVMEDIA_TYPE_VIDEO).size(), 5U);
}

}  // namespace
