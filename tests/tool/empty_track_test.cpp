// SPDX-License-Identifier: BSD-2-Clause
//
// Sound that begins behind the range is not dropped in silence.
#include "clip.h"
#include "program.h"

#include <gtest/gtest.h>

namespace {

constexpr char kNote[] = "it has no sound in the frames that are written";

std::string lateSound() {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=1", "-itsoffset", "0.5", "-f",
          "lavfi", "-i", "sine=duration=0.5", "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a",
          "pcm_s16le", at("in.mov")});
  return at("in.mov");
}

}  // namespace

TEST(ATrackWithoutSoundInTheRange, IsNamedWhereTheFileHoldsNoEmptyTracks) {
  const std::string in = lateSound();
  const Outcome outcome = burnin({in, at("out.mov"), "--frames", "2-8"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("stream 1 (audio, pcm_s16le) is left out"), std::string::npos)
      << outcome.err;
  EXPECT_NE(outcome.err.find(kNote), std::string::npos) << outcome.err;
  EXPECT_EQ(burnin({in, at("out.mkv"), "--frames", "2-8"}).err, "") << "it holds the track";
}

TEST(ATrackWithSoundInTheRange, IsNotNamed) {
  EXPECT_EQ(burnin({lateSound(), at("out.mov"), "--frames", "2-18"}).err, "");
}
