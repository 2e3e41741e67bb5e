// SPDX-License-Identifier: BSD-2-Clause
//
// GXF: what is written is read by FFmpeg's own tool without a complaint.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Kind {
  const char* name;
  Arguments codec;
  const char* rate;
  const char* size;
};

class GXF : public testing::TestWithParam<Kind> {};

const Kind kKinds[] = {
    {"MPEG2", {"-c:v", "mpeg2video", "-pix_fmt", "yuv422p", "-b:v", "20M"}, "25", "720x576"},
    {"MPEG2At30", {"-c:v", "mpeg2video", "-b:v", "10M"}, "30000/1001", "720x480"},
    {"DV", {"-c:v", "dvvideo", "-pix_fmt", "yuv420p"}, "25", "720x576"},
};

/// What FFmpeg says while it decodes the file, which it leaves at the first error.
std::string complaintOf(const std::string& name) {
  std::string said = runProgram("ffmpeg", {"-nostdin", "-v", "error", "-xerror", "-i", at(name),
                                           "-f", "null", "-"})
                         .err;
  const std::size_t path = said.find(at(name));
  return path != std::string::npos ? said.erase(path, at(name).size()) : said;
}

}  // namespace

TEST_P(GXF, IsKeptAndReadWithoutAComplaint) {
  const Kind& kind = GetParam();
  Arguments make = {"-f",        "lavfi",
                    "-i",        std::string("testsrc2=size=") + kind.size + ":rate=" + kind.rate,
                    "-f",        "lavfi",
                    "-i",        "anoisesrc=r=48000:seed=7",
                    "-frames:v", "10",
                    "-shortest", "-c:a",
                    "pcm_s16le", "-ac",
                    "1"};
  make.insert(make.end(), kind.codec.begin(), kind.codec.end());
  make.push_back(at("in.gxf"));
  ffmpeg(make);
  const Outcome outcome = burnin({at("in.gxf"), at("out.gxf"), "--no-data"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  // FFmpeg complains of the end of every GXF with DV, its own ones too.
  EXPECT_EQ(complaintOf("out.gxf"), std::string(kind.name) == "DV" ? complaintOf("in.gxf") : "");
  EXPECT_EQ(decode(at("out.gxf")).frames.size(), 10U);
  EXPECT_EQ(codecOf(at("out.gxf")), codecOf(at("in.gxf")));
}

INSTANTIATE_TEST_SUITE_P(Of, GXF, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<Kind>& each) {
                           return std::string(each.param.name);
                         });
