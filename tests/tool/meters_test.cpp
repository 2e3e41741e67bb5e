// SPDX-License-Identifier: BSD-2-Clause
//
// Meters in burnt clips.
#include "clip.h"
#include "layers.h"

#include <burnin/meter_feed.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace layers;
using namespace nkdraw::tool;

/// Which rows of a channel's column are lit, from the top.
std::vector<bool> litRows(const Clip& grey, std::size_t frame, int left, int top, int channel) {
  std::vector<bool> rows;
  for (int row = 0; row < 15; ++row) {
    const int x = left + 40 + 30 * channel + 10, y = top + 10 + 12 * row + 5;
    rows.push_back(grey.frames[frame][static_cast<std::size_t>(y * kWidth + x)] > 60);
  }
  return rows;
}

TEST(BurntMeters, LightTheRowsThatTheLevelReaches) {
  const int level = 2 * static_cast<int>(std::lround(0.1 * 32767));
  const int steps =
      static_cast<int>(std::floor((std::floor(20 * std::log10(level)) - 56) / 41 * 15));
  ASSERT_EQ(steps, 7);
  std::vector<bool> expected(15, false);
  std::fill(expected.end() - steps, expected.end(), true);
  for (const char* layout : {"uyvy", "v210", "bgra", "rgb24", "yuy2"}) {
    const std::string in = makeClip(layout, "black", 30, "aevalsrc=0.1*sin(2*PI*1000*t):s=48000");
    expectBurnt({in, at("out.nut"), "--no-ltc", "--meters", "--meters-at", "31,51"});
    const Clip grey = decodeAs(at("out.nut"), AV_PIX_FMT_GRAY8);
    for (const std::size_t frame : {0U, 12U, 29U}) {
      EXPECT_EQ(litRows(grey, frame, 31, 51, 0), expected) << layout << " " << frame;
      for (int channel = 1; channel < 8; ++channel)
        EXPECT_EQ(litRows(grey, frame, 31, 51, channel), std::vector<bool>(15)) << channel;
    }
  }
}

std::uint32_t channelOf(const std::uint32_t* words, int channel) {
  return words[channel / 2] >> channel % 2 * 16 & 0xFFFF;
}

SoundTrack trackOf(const std::string& path) {
  MediaInput input(path);
  return {path, 1, AudioShape(*input.file().streams[1]->codecpar)};
}

TEST(BurntMeters, AreOfTheFirstEightChannels) {
  std::string sound = "aevalsrc=";
  for (int channel = 1; channel <= 8; ++channel)
    sound.append(channel > 1 ? "|" : "").append(std::to_string(channel)).append("/16");
  const SoundTrack track = trackOf(makeClip("uyvy", "black", 3, sound + ":s=48000"));
  MeterFeed feed(track, {30000, 1001});
  feed.advanceTo(2);
  for (int channel = 0; channel < 8; ++channel)
    EXPECT_NEAR(channelOf(feed.levels(), channel), (channel + 1) * 4096, 2) << channel;
}

TEST(BurntMeters, HoldAPeakForASecondAndAHalf) {
  // Loud up to the end of frame 5, at 30 frames a second.
  const SoundTrack track =
      trackOf(makeClip("uyvy", "black", 90, R"(aevalsrc=if(lt(t\,0.19)\,1\,0):s=48000)"));
  MeterFeed feed(track, {30, 1});
  const auto expectAt = [&](std::int64_t frame, std::uint32_t level, std::uint32_t peak) {
    feed.advanceTo(frame);
    EXPECT_NEAR(channelOf(feed.levels(), 0), level, 2) << frame;
    EXPECT_NEAR(channelOf(feed.peaks(), 0), peak, 2) << frame;
  };
  expectAt(0, 65534, 65534);
  expectAt(5, 65534, 65534);
  expectAt(6, 0, 65534);
  expectAt(49, 0, 65534);
  expectAt(50, 0, 0);
  expectAt(200, 0, 0);  // behind the end of the sound
}

}  // namespace
