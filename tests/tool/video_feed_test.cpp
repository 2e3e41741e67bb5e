// SPDX-License-Identifier: BSD-2-Clause
//
// Reads a clip's frames: packets and decoded frames come in order, with their numbers, and packets
// of other streams are set aside.
#include "program.h"

#include <media/failure.h>
#include <media/video_feed.h>

#include <gtest/gtest.h>

#include <vector>

using namespace nkdraw::media;

namespace {

constexpr int kFrames = 12;

std::string clipWithSound(const char* codec, const char* name) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=64x48:rate=25", "-f", "lavfi", "-i",
          "sine=sample_rate=48000", "-t", "0.48", "-c:v", codec, "-c:a", "pcm_s16le", at(name)});
  return at(name);
}

template <class Feed>
std::vector<std::int64_t> numbersOf(Feed& feed) {
  std::vector<std::int64_t> numbers;
  typename Feed::Unit unit;
  for (std::int64_t index = -1; feed.next(unit, index);)
    numbers.push_back(index);
  return numbers;
}

std::vector<std::int64_t> upTo(std::int64_t end) {
  std::vector<std::int64_t> numbers;
  for (std::int64_t i = 0; i < end; ++i)
    numbers.push_back(i);
  return numbers;
}

/// The numbers that a feed gives, and the bytes of sound that it puts aside.
template <class Feed>
void expectFramesAndSound(const std::string& path) {
  MediaInput input(path);
  int sound = 0;
  Feed feed(input, framesOf(input, ownLayout(input)), [&](AVPacket& packet) {
    EXPECT_FALSE(input.isVideo(packet));
    sound += packet.size;
  });
  EXPECT_EQ(numbersOf(feed), upTo(kFrames));
  EXPECT_EQ(sound, 48000 * 48 / 100 * 2);
}

}  // namespace

TEST(VideoFeed, GivesEveryFrameWithItsNumberAndPutsTheSoundAside) {
  expectFramesAndSound<PacketFeed>(clipWithSound("rawvideo", "raw.nut"));
  expectFramesAndSound<DecodedFeed>(clipWithSound("ffv1", "coded.mkv"));
}

TEST(VideoFeed, ReadsOnForTheOthersUntilTheyAreThrough) {
  const std::string path = clipWithSound("rawvideo", "raw.nut");
  for (const int enough : {0, 1, 5}) {
    MediaInput input(path);
    int others = 0;
    PacketFeed feed(input, framesOf(input, ownLayout(input)), [&](AVPacket&) { ++others; });
    Packet packet;
    std::int64_t index = 0;
    ASSERT_TRUE(feed.next(packet, index));
    const int before = others;
    feed.readOthersUntil([&] { return others >= before + enough; });
    EXPECT_EQ(others, before + enough);
  }
}

TEST(VideoFeed, RefusesAFrameOfAnotherSizeAmongThoseThatAreWanted) {
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=64x48:rate=25", "-frames:v", "3", "-c:v",
          "mpeg2video", "-f", "mpegts", at("small.ts")});
  ffmpeg({"-f", "lavfi", "-i", "testsrc2=size=96x64:rate=25", "-frames:v", "3", "-c:v",
          "mpeg2video", "-output_ts_offset", "0.12", "-f", "mpegts", at("large.ts")});
  ffmpeg({"-i", "concat:" + at("small.ts") + "|" + at("large.ts"), "-c", "copy", at("both.ts")});
  MediaInput first(at("both.ts")), second(at("both.ts"));
  const FrameKind frames = framesOf(first, nullptr);
  DecodedFeed wanted(first, frames);
  EXPECT_THROW((void)numbersOf(wanted), Failure);
  DecodedFeed beginning(second, frames, {}, FrameRange{0, 0});
  EXPECT_GT(numbersOf(beginning).size(), 3U);
}
