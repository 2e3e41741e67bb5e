// SPDX-License-Identifier: BSD-2-Clause
//
// The manual's table of what happens to each kind of input is what really happens to it.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

struct Kind {
  const char* name;    // in the table
  const char* suffix;  // of input and output
  Arguments encoder;
  const char* source = "testsrc2=size=320x180:rate=25";
};

const Kind kKinds[] = {
    {"v210", ".mov", {"-c:v", "v210"}},
    {"UYVY", ".mov", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422"}},
    {"32-bit RGB", ".mov", {"-c:v", "rawvideo", "-pix_fmt", "argb"}},
    {"planar 4:2:0", ".nut", {"-c:v", "rawvideo", "-pix_fmt", "yuv420p"}},
    {"16-bit RGB", ".nut", {"-c:v", "rawvideo", "-pix_fmt", "rgb48le"}},
    {"palette", ".nut", {"-c:v", "rawvideo", "-pix_fmt", "pal8"}},
    {"ProRes 422 HQ", ".mov", {"-c:v", "prores_ks", "-profile:v", "hq"}},
    {"ProRes 4444 with alpha",
     ".mov",
     {"-c:v", "prores_ks", "-profile:v", "4444", "-pix_fmt", "yuva444p10le"}},
    {"DNxHR HQX", ".mov", {"-c:v", "dnxhd", "-profile:v", "dnxhr_hqx", "-pix_fmt", "yuv422p10le"}},
    {"H.264, 8 bits", ".mp4", {"-c:v", "libx264", "-pix_fmt", "yuv420p"}},
    {"H.264, 10 bits 4:2:2", ".mp4", {"-c:v", "libx264", "-pix_fmt", "yuv422p10le"}},
    {"HEVC, 10 bits",
     ".mp4",
     {"-c:v", "libx265", "-pix_fmt", "yuv420p10le", "-x265-params", "log-level=none"}},
    {"MPEG-2 transport stream", ".ts", {"-c:v", "mpeg2video", "-b:v", "4M"}},
    {"MPEG-2 4:2:2 in MXF", ".mxf", {"-c:v", "mpeg2video", "-pix_fmt", "yuv422p", "-b:v", "10M"}},
    {"FFV1, 10 bits", ".mkv", {"-c:v", "ffv1", "-pix_fmt", "yuv422p10le"}},
    {"JPEG 2000", ".mov", {"-c:v", "jpeg2000", "-pix_fmt", "yuv420p"}},
    {"Motion JPEG", ".avi", {"-c:v", "mjpeg", "-pix_fmt", "yuvj422p"}},
    {"DV", ".avi", {"-c:v", "dvvideo"}, "testsrc2=size=720x576:rate=25"},
    {"VP9", ".webm", {"-c:v", "libvpx-vp9", "-b:v", "500k"}},
};

/// "v210, yuv422p10le"
std::string videoOf(const std::string& path) {
  const Outcome probe = runProgram(
      "ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries",
                  "stream=codec_name,profile,pix_fmt", "-of", "default=nokey=1:nw=1", path});
  std::string text = probe.out;
  text.erase(text.find_last_not_of('\n') + 1);
  // Of a transport stream, ffprobe lists the streams a second time, by program.
  if (const std::size_t half = text.size() / 2; text.substr(0, half) == text.substr(half + 1))
    text.erase(half);
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at))
    text.replace(at, 1, ", ");
  for (const std::string_view none : {", unknown", ", 0"}) {
    if (const std::size_t at = text.find(std::string(none) + ","); at != std::string::npos)
      text.erase(at, none.size());
  }
  return text;
}

std::string tableText() {
  std::ifstream file(NKDRAW_BURNING_IN);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string rowOf(const Kind& kind) {
  const std::string in = at(std::string("kind_in") + kind.suffix);
  const std::string out = at(std::string("kind_out") + kind.suffix);
  Arguments make = {"-f", "lavfi", "-i", kind.source, "-frames:v", "3"};
  make.insert(make.end(), kind.encoder.begin(), kind.encoder.end());
  make.push_back(in);
  ffmpeg(make);
  const Outcome dry = burnin({in, out, "--overwrite", "--dry-run"});
  EXPECT_EQ(dry.exitCode, 0) << dry.err;
  const Outcome outcome = burnin({in, out, "--overwrite"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  const bool inPlace = dry.out.find("in place") != std::string::npos;
  return std::string("| ") + kind.name + ", `" + kind.suffix + "` | " + videoOf(in) + " | " +
         (inPlace ? "in place" : "transcode") + " | " + videoOf(out) + " |\n";
}

class KindOfInput : public testing::TestWithParam<Kind> {};

}  // namespace

TEST_P(KindOfInput, BecomesWhatTheTableSays) {
  const std::string row = rowOf(GetParam());
  EXPECT_NE(tableText().find(row), std::string::npos) << "the row is now\n" << row;
}

INSTANTIATE_TEST_SUITE_P(Each, KindOfInput, testing::ValuesIn(kKinds), [](const auto& each) {
  std::string name = each.param.name;
  std::erase_if(name, [](char letter) { return std::isalnum(letter) == 0; });
  return name;
});

TEST(KindsOfInput, AreAllInTheTable) {
  const std::string text = tableText();
  const std::size_t head = text.find("| input | its video | method | the output's video |\n");
  ASSERT_NE(head, std::string::npos);
  const std::string table = text.substr(head, text.find("\n\n", head) - head);
  EXPECT_EQ(std::ranges::count(table, '\n'), std::ssize(kKinds) + 1) << table;
}
