// SPDX-License-Identifier: BSD-2-Clause
//
// Video without prediction, IMX and AVC-Intra, stays so.
#include "program.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

/// A line for each packet of the video: "250000,K_".
std::string packetsOf(const std::string& name) {
  return runProgram("ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries",
                                "packet=size,flags", "-of", "csv=p=0", at(name)})
      .out;
}

/// How many packets there are, all key frames of this size.
int countOf(const std::string& name, const std::string& size) {
  std::istringstream lines(packetsOf(name));
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count)
    EXPECT_TRUE(line.starts_with(size + ",K")) << line;
  return count;
}

}  // namespace

TEST(IMX, StaysIntraWithFramesOfOneSize) {
  ffmpeg({"-f",
          "lavfi",
          "-i",
          "testsrc2=size=720x608:rate=25:duration=0.4",
          "-c:v",
          "mpeg2video",
          "-pix_fmt",
          "yuv422p",
          "-flags",
          "+ildct+low_delay",
          "-intra_vlc",
          "1",
          "-non_linear_quant",
          "1",
          "-qmin",
          "1",
          "-qmax",
          "3",
          "-dc",
          "10",
          "-g",
          "1",
          "-b:v",
          "50M",
          "-minrate",
          "50M",
          "-maxrate",
          "50M",
          "-bufsize",
          "2000000",
          "-rc_init_occupancy",
          "2000000",
          "-f",
          "mxf_d10",
          at("in.mxf")});
  ASSERT_EQ(countOf("in.mxf", "250000"), 10);
  const Outcome plan = burnin({at("in.mxf"), at("out.mxf"), "--dry-run"});
  for (const char* words : {":g=1:", ":dc=2:", "non_linear_quant=1", "intra_vlc=1"})
    EXPECT_NE(plan.out.find(words), std::string::npos) << plan.out;
  const Outcome outcome = burnin({at("in.mxf"), at("out.mxf")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(countOf("out.mxf", "250000"), 10);
}

TEST(AVCIntra, KeepsItsClass) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=1280x720:rate=50:duration=0.08", "-c:v", "libx264",
          "-pix_fmt", "yuv422p10", "-avcintra-class", "100", at("in.mov")});
  const Outcome plan = burnin({at("in.mov"), at("out.mov"), "--dry-run"});
  EXPECT_NE(plan.out.find("avcintra-class=100"), std::string::npos) << plan.out;
  const Outcome outcome = burnin({at("in.mov"), at("out.mov")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(packetsOf("out.mov"), packetsOf("in.mov"));  // the sizes are those of the class
}
