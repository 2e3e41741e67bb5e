// SPDX-License-Identifier: BSD-2-Clause
//
// Pipes whose streams come late: sound that appears in the middle, and video that stops.
#include "clip.h"
#include "program.h"

#include <media/lookahead.h>
#include <media/media_input.h>

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

void append(const std::string& from, const std::string& to) {
  std::ofstream(to, std::ios::binary | std::ios::app)
      << std::ifstream(from, std::ios::binary).rdbuf();
}

/// `nkdraw burnin - OUT`, with the file at standard input.
Outcome burninPiped(const std::string& in, const std::string& out) {
  return runProgram("/bin/sh", {"-c", "cat '" + in + "' | " NKDRAW_TOOL " burnin - '" + out + "'"});
}

}  // namespace

TEST(LateStreams, AreNamedWhenAPipeBringsThemTooLate) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=10", "-c:v", "mpeg2video",
          at("mute.ts")});
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=2", "-f", "lavfi", "-i",
          "sine=duration=2", "-c:v", "mpeg2video", "-c:a", "mp2", "-output_ts_offset", "10",
          at("sound.ts")});
  append(at("mute.ts"), at("in.ts"));
  append(at("sound.ts"), at("in.ts"));
  const Outcome outcome = burninPiped(at("in.ts"), at("out.mkv"));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("stream 1 (audio, mp2); give the file itself"), std::string::npos)
      << outcome.err;
}

TEST(LateStreams, AreNotLookedForWithoutEnd) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=160x96:rate=25:duration=0.04", "-f", "lavfi", "-i",
          "anullsrc=r=48000:cl=7.1:d=25", "-c:v", "mpeg2video", "-c:a", "pcm_s32le", at("in.mkv")});
  nkdraw::media::MediaInput input(at("in.mkv"));
  testing::internal::CaptureStderr();
  {
    nkdraw::media::Lookahead packets(input);
    EXPECT_NE(packets.next(), nullptr);
    EXPECT_EQ(packets.next(), nullptr);
  }
  EXPECT_NE(testing::internal::GetCapturedStderr().find("no video comes for long"),
            std::string::npos);
  std::size_t count = 0;
  const nkdraw::media::Packet packet = nkdraw::media::makePacket();
  for (; input.read(*packet); av_packet_unref(packet.get()))
    ++count;
  EXPECT_EQ(count, 1 + packetsOf(at("in.mkv"), AVMEDIA_TYPE_AUDIO).size());
}
