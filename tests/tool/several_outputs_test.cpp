// SPDX-License-Identifier: BSD-2-Clause
//
// Several outputs of one run: each is what a run of its own writes.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

void makeClip(const std::string& path, const Arguments& encoding) {
  Arguments arguments = {"-f",        "lavfi",      "-i", "testsrc2=size=320x180:rate=25",
                         "-f",        "lavfi",      "-i", "sine",
                         "-c:a",      "pcm_s16le",  "-t", "0.32",
                         "-timecode", "10:00:00:00"};
  arguments.insert(arguments.end(), encoding.begin(), encoding.end());
  arguments.push_back(path);
  ffmpeg(arguments);
}

struct Wanted {
  std::string name;
  Arguments options;
};

/// One run for all, and one for each.
void writeBothWays(const std::string& input, const std::vector<Wanted>& wanted) {
  Arguments all = {input};
  for (const auto& [name, options] : wanted) {
    all.insert(all.end(), {"--output", at("all-" + name)});
    all.insert(all.end(), options.begin(), options.end());
    Arguments one = {input, at("one-" + name)};
    one.insert(one.end(), options.begin(), options.end());
    const Outcome outcome = burnin(one);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  }
  const Outcome outcome = burnin(all);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
}

void expectSame(const std::string& name) {
  SCOPED_TRACE(name);
  const std::string all = at("all-" + name), one = at("one-" + name);
  EXPECT_EQ(codecOf(all), codecOf(one));
  const Clip a = decode(all), b = decode(one);
  EXPECT_EQ(a.format, b.format);
  EXPECT_EQ(a.frames.size(), 8U);
  EXPECT_EQ(a.frames, b.frames);
  EXPECT_EQ(a.timecode, b.timecode);
  const auto sound = packetsOf(all, AVMEDIA_TYPE_AUDIO);
  const auto ownSound = packetsOf(one, AVMEDIA_TYPE_AUDIO);
  ASSERT_EQ(sound.size(), ownSound.size());
  for (std::size_t i = 0; i < sound.size(); ++i) {
    EXPECT_EQ(sound[i].bytes, ownSound[i].bytes);
    EXPECT_EQ(sound[i].time, ownSound[i].time);
  }
}

const std::vector<Wanted> kWanted = {{"own.mov", {}},
                                     {"viewing.mp4", {"--viewing-copy"}},
                                     {"silent.avi", {"--no-audio"}},
                                     {"lossless.mkv", {"--codec", "ffv1", "--audio-codec", "flac"}},
                                     {"copy.nut", {}}};

}  // namespace

class UncompressedOutputs : public testing::TestWithParam<const char*> {};

TEST_P(UncompressedOutputs, AreThoseOfRunsOfTheirOwn) {
  if (GetParam() == std::string("v210"))
    makeClip(at("in.mov"), {"-c:v", "v210"});
  else
    makeClip(at("in.mov"), {"-c:v", "rawvideo", "-pix_fmt", GetParam()});
  writeBothWays(at("in.mov"), kWanted);
  for (const Wanted& each : kWanted)
    expectSame(each.name);
}

INSTANTIATE_TEST_SUITE_P(Layouts, UncompressedOutputs,
                         testing::Values("uyvy422", "bgra", "rgb24", "v210"));

TEST(SeveralOutputs, OfACompressedClipAreThoseOfRunsOfTheirOwn) {
  makeClip(at("in.mov"), {"-c:v", "prores_ks"});
  writeBothWays(at("in.mov"), kWanted);
  for (const Wanted& each : kWanted)
    expectSame(each.name);
}

TEST(SeveralOutputs, TakeTheOptionsThatStandBehindThem) {
  makeClip(at("in.mov"), {"-c:v", "v210"});
  const Outcome outcome =
      burnin({at("in.mov"), at("a.mov"), "--no-audio", "--output", at("b.mov"), "--output",
              at("c.bin"), "--format", "matroska", "--lossless", "--no-audio", "--clock"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(packetsOf(at("a.mov"), AVMEDIA_TYPE_AUDIO).empty());
  EXPECT_FALSE(packetsOf(at("b.mov"), AVMEDIA_TYPE_AUDIO).empty());
  EXPECT_EQ(codecOf(at("a.mov")), "v210");
  EXPECT_NE(outcome.err.find("a.mov: stream 1"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("c.bin: stream 1"), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.err.find("b.mov"), std::string::npos) << outcome.err;
}

TEST(SeveralOutputs, KeepTheRangeTogether) {
  makeClip(at("in.mov"), {"-c:v", "v210"});
  const Outcome outcome = burnin(
      {at("in.mov"), at("a.mov"), "--frames", "2-4", "--output", at("b.mkv"), "--codec", "ffv1"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(decode(at("a.mov")).frames.size(), 3U);
  EXPECT_EQ(decode(at("b.mkv")).frames, decode(at("a.mov")).frames);
}

TEST(SeveralOutputs, AreAllWrittenOrNone) {
  makeClip(at("in.mov"), {"-c:v", "v210"});
  const std::string in = at("in.mov"), a = at("a.mov");
  expectRefusal({"burnin", in, a, "--output", at("no/b.mov")}, 3, "no/b.mov");
  expectRefusal({"burnin", in, a, "--output", at("b.mp4"), "--codec", "libx264:crf=abc"}, 1,
                "libx264");
  expectRefusal({"burnin", in, a, "--frames", "2-400", "--output", at("b.mp4"), "--viewing-copy"},
                2, "ends before");
}

TEST(SeveralOutputs, AreNotTheInputNorEachOther) {
  makeClip(at("in.mov"), {"-c:v", "v210"});
  fs::create_directory(at("there"));
  fs::create_symlink(at("there"), at("link"));
  const std::string in = at("in.mov"), a = at("a.mov");
  expectRefusal({"burnin", in, a, "--output", at("./in.mov"), "--overwrite"}, 1, "is the input");
  expectRefusal({"burnin", in, a, "--output", at("./a.mov")}, 1, "two outputs are one file");
  expectRefusal({"burnin", in, at("there/a.mov"), "--output", at("link/a.mov")}, 1,
                "two outputs are one file");
  expectRefusal({"burnin", in, "-", "--output", "/dev/stdout"}, 1, "two outputs are one file");
}

TEST(SeveralOutputs, AreClips) {
  makeClip(at("in.mov"), {"-c:v", "v210"});
  const std::string in = at("in.mov");
  expectRefusal({"burnin", in, at("a.png"), "--still", "2", "--output", at("b.png")}, 1,
                "written alone");
  expectRefusal({"burnin", in, at("a.mov"), "--output", at("b%04d.png")}, 1, "written alone");
  expectRefusal({"burnin", "--layout", "v210", at("a.mov"), "--output", at("b.mov")}, 1,
                "the test pattern");
}

TEST(SeveralOutputs, RefuseAnOptionThatBelongsToNone) {
  makeClip(at("in.mov"), {"-c:v", "v210"});
  expectRefusal({"burnin", at("in.mov"), "--codec", "ffv1", "--output", at("a.mkv")}, 1,
                "stands before");
  expectRefusal(
      {"burnin", at("in.mov"), "--output", at("a.mkv"), "--codec", "ffv1", "--codec", "ffv1"}, 1,
      "--codec");
}

TEST(SeveralOutputs, AreAllDescribed) {
  makeClip(at("in.mov"), {"-c:v", "v210"});
  const Outcome outcome =
      burnin({at("in.mov"), at("a.mov"), "--output", at("b.mp4"), "--viewing-copy", "--dry-run"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  for (const char* const words :
       {"a.mov: mov", "b.mp4: mp4", "codec     unchanged", "libx264", "note      "})
    EXPECT_NE(outcome.out.find(words), std::string::npos) << words << '\n' << outcome.out;
  EXPECT_FALSE(exists(at("a.mov")));
}
