// SPDX-License-Identifier: BSD-2-Clause
//
// Files whose end is missing: never taken for complete, wherever they were cut.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

constexpr int kInput = 2, kDamaged = 5;
constexpr std::size_t kFrames = 20;

struct Kind {
  const char* name;
  const char* file;
  Arguments codec;
  const char* size = "160x90";
};

class CutFiles : public testing::TestWithParam<Kind> {};

const Kind kKinds[] = {
    {"RGBInAVI", "in.avi", {"-c:v", "rawvideo", "-pix_fmt", "bgra"}},
    {"V210InAVI", "in.avi", {"-c:v", "v210"}},
    {"MJPEGInAVI", "in.avi", {"-c:v", "mjpeg"}},
    {"V210InMOV", "in.mov", {"-c:v", "v210", "-movflags", "+faststart"}},
    {"ProResInMOV", "in.mov", {"-c:v", "prores_ks", "-movflags", "+faststart"}},
    {"V210InMatroska", "in.mkv", {"-c:v", "v210", "-allow_raw_vfw", "1"}},
    {"MPEG2InMXF", "in.mxf", {"-c:v", "mpeg2video", "-ac", "1"}},
    {"DNxHRInMXF", "in.mxf", {"-c:v", "dnxhd", "-profile:v", "dnxhr_hq"}, "256x120"},
    {"MPEG2InGXF", "in.gxf", {"-c:v", "mpeg2video", "-ac", "1"}, "720x576"},
};

/// Where the data of the video's packets ends in the file, by FFmpeg.
std::vector<std::size_t> packetEnds(const std::string& path) {
  std::vector<std::size_t> ends;
  const std::string list =
      runProgram("ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries",
                             "packet=size,pos", "-of", "csv=p=0", path})
          .out;
  for (std::size_t begin = 0; begin < list.size(); begin = list.find('\n', begin) + 1) {
    const std::size_t comma = list.find(',', begin);
    ends.push_back(std::stoul(list.substr(begin, comma - begin)) +
                   std::stoul(list.substr(comma + 1)));
  }
  return ends;
}

/// Each cut must be named and, on request, written up to there.
void expectNamed(const Kind& kind, std::uintmax_t size) {
  const std::string cut = at(std::string("cut-") + kind.file);
  std::filesystem::copy_file(at(kind.file), cut, std::filesystem::copy_options::overwrite_existing);
  std::filesystem::resize_file(cut, size);
  const Arguments all = {"burnin", cut,         at("out.mkv"), "--overwrite", "--timecode-size",
                         "1",      "--no-data", "--codec",     "ffv1"};
  expectRefusal(all, kInput, "");
  Arguments goesOn = all;
  goesOn.insert(goesOn.end(), {"--on-damage", "continue"});
  const Outcome outcome = nkdrawTool(goesOn);
  EXPECT_EQ(outcome.exitCode, kDamaged) << size << outcome.err;
  EXPECT_NE(outcome.err.find("its end: the file breaks off, "), std::string::npos) << outcome.err;
  EXPECT_LE(decode(at("out.mkv")).frames.size(), kFrames);
  std::filesystem::remove(at("out.mkv"));
}

}  // namespace

TEST_P(CutFiles, AreNamedWhereverTheyEnd) {
  const Kind& kind = GetParam();
  Arguments make = {
      "-f",   "lavfi",    "-i", std::string("testsrc2=rate=25:duration=0.8:size=") + kind.size,
      "-f",   "lavfi",    "-i", "anoisesrc=r=48000:seed=7:d=0.8",
      "-c:a", "pcm_s16le"};
  make.insert(make.end(), kind.codec.begin(), kind.codec.end());
  make.push_back(at(kind.file));
  ffmpeg(make);
  const std::uintmax_t size = std::filesystem::file_size(at(kind.file));
  expectNamed(kind, size / 2);
  expectNamed(kind, size * 9 / 10);
  const std::vector<std::size_t> ends = packetEnds(at(kind.file));
  ASSERT_EQ(ends.size(), kFrames);
  expectNamed(kind, ends[9]);   // between packets
  expectNamed(kind, ends[18]);  // without the last frame
}

INSTANTIATE_TEST_SUITE_P(Of, CutFiles, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<Kind>& each) {
                           return std::string(each.param.name);
                         });

namespace {

/// A file of uncompressed frames in which the frame after a place is lost, so that the reader looks
/// for the next one.
void makeGap(const std::string& suffix, std::size_t noise) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x90:rate=25", "-frames:v", "20", "-c:v", "v210",
          at("whole" + suffix)});
  const std::vector<std::size_t> ends = packetEnds(at("whole" + suffix));
  std::ifstream file(at("whole" + suffix), std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  for (std::size_t i = 0; i < noise; ++i)
    bytes[ends[6] + i] = '\0';
  std::ofstream(at("in" + suffix), std::ios::binary) << bytes;
}

}  // namespace

TEST(GapsInUncompressedFiles, AreNamedAndKeepTheCount) {
  makeGap(".mkv", 24);
  expectRefusal({"burnin", at("in.mkv"), at("out.mkv"), "--timecode-size", "1"}, 4, "frame 7 ");
  const Outcome outcome = burnin(
      {at("in.mkv"), at("out.mkv"), "--no-ltc", "--text", "0,0,A", "--on-damage", "continue"});
  EXPECT_EQ(outcome.exitCode, kDamaged) << outcome.err;
  ASSERT_EQ(burnin({at("whole.mkv"), at("good.mkv"), "--no-ltc", "--text", "0,0,A"}).exitCode, 0);
  const Clip good = decode(at("good.mkv")), out = decode(at("out.mkv"));
  ASSERT_EQ(out.frames.size(), kFrames);
  EXPECT_TRUE(out.frames[6] == good.frames[6]);
  EXPECT_TRUE(out.frames[7] == good.frames[6]);
  EXPECT_TRUE(out.frames[19] == good.frames[19]);
}
