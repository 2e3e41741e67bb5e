// SPDX-License-Identifier: BSD-2-Clause
//
// Copied sound whose packets have the same time, as some files round them: all of it is kept.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

using Case = std::tuple<const char*, const char*>;  // codec, suffix

class CopiedTimes : public testing::TestWithParam<Case> {};

}  // namespace

TEST_P(CopiedTimes, RiseWithoutALossOfPackets) {
  const auto& [codec, suffix] = GetParam();
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=2", "-f", "lavfi", "-i",
          "sine=duration=2", "-c:v", "mpeg4", "-c:a", codec, at("in.avi")});
  const std::string out = at(std::string("out") + suffix);
  const Outcome outcome = burnin({at("in.avi"), out});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto before = packetsOf(at("in.avi"), AVMEDIA_TYPE_AUDIO);
  const auto after = packetsOf(out, AVMEDIA_TYPE_AUDIO);
  ASSERT_EQ(after.size(), before.size());
  const std::string copy = at(std::string("copy") + suffix);
  ffmpeg({"-i", at("in.avi"), "-c", "copy", copy});
  const auto copied = packetsOf(copy, AVMEDIA_TYPE_AUDIO);
  ASSERT_EQ(copied.size(), before.size());
  for (std::size_t i = 0; i < before.size(); ++i) {
    EXPECT_TRUE(after[i].bytes == before[i].bytes) << i;
    EXPECT_NEAR(after[i].time, copied[i].time, 0.002) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, CopiedTimes,
                         testing::Combine(testing::Values("adpcm_ms", "adpcm_ima_wav"),
                                          testing::Values(".avi", ".mkv")),
                         [](const testing::TestParamInfo<Case>& each) {
                           return std::get<0>(each.param) +
                                  std::string(std::get<1>(each.param) + 1);
                         });
