// SPDX-License-Identifier: BSD-2-Clause
//
// Reading begins near the wanted frame, and gives what a run over the whole clip gives.
#include "clip.h"
#include "program.h"

#include <media/clip_facts.h>
#include <media/libav_log.h>
#include <media/start_point.h>
#include <media/video_feed.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

using namespace nkdraw::media;

namespace {

constexpr int kFrames = 100;
constexpr std::int64_t kTargets[] = {1, 7, 24, 25, 31, 50, 62, 75, 98, 99};

struct ClipKind {
  const char* name;
  const char* file;
  const char* filter;  // behind the test picture
  Arguments codec;
  bool begins;  // later than at the beginning, for the last frame
};

class StartPoints : public testing::TestWithParam<ClipKind> {};

const Arguments kH264 = {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-g",
                         "25",   "-bf",     "3",        "-preset", "ultrafast"};

Arguments with(Arguments all, const Arguments& more) {
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

/// With key frames at 84 and 98.
const Arguments kShortGroups =
    with({"-c:v", "libx264", "-pix_fmt", "yuv420p"},
         {"-x264-params", "open-gop=1:keyint=14:scenecut=0:bframes=3:b-pyramid=normal"});

const ClipKind kKinds[] = {
    {"UncompressedMOV", "clip.mov", "null", {"-c:v", "v210"}, true},
    {"UncompressedAVI", "clip.avi", "null", {"-c:v", "rawvideo", "-pix_fmt", "uyvy422"}, true},
    {"UncompressedNUT", "clip.nut", "null", {"-c:v", "rawvideo", "-pix_fmt", "bgra"}, true},
    {"UncompressedMKV", "clip.mkv", "null", {"-c:v", "v210"}, true},
    {"H264WithBFrames", "clip.mp4", "null", kH264, true},
    {"H264WithOpenGroups", "clip.mov", "null",
     with(kH264, {"-x264-params", "open-gop=1:scenecut=0"}), true},
    {"H264WithOpenGroupsInMatroska", "clip.mkv", "null",
     with(kH264, {"-x264-params", "open-gop=1:scenecut=0"}), true},
    {"H264WithOpenGroupsAndAKeyFrameAtTheEnd", "clip.mov", "null", kShortGroups, true},
    {"H264WithOpenGroupsAndAKeyFrameAtTheEndInATransportStream", "clip.ts", "null", kShortGroups,
     true},
    {"H264WithGradualRefresh", "clip.mp4", "null",
     with(kH264, {"-bf", "0", "-x264-params", "intra-refresh=1"}), true},
    {"H264InAVI", "clip.avi", "null", kH264, false},
    {"MPEG2WithOpenGroups",
     "clip.ts",
     "null",
     {"-c:v", "mpeg2video", "-g", "12", "-bf", "2", "-b:v", "2M"},
     true},
    {"MPEG2InMOV",
     "clip.mov",
     "null",
     {"-c:v", "mpeg2video", "-g", "12", "-bf", "2", "-b:v", "2M"},
     true},
    {"MPEG2InMXF",
     "clip.mxf",
     "null",
     {"-c:v", "mpeg2video", "-g", "12", "-bf", "2", "-b:v", "2M"},
     true},
    {"MPEG2InAProgramStream",
     "clip.mpg",
     "null",
     {"-c:v", "mpeg2video", "-g", "12", "-bf", "2", "-b:v", "2M"},
     true},
    {"ProResInMOV", "clip.mov", "null", {"-c:v", "prores_ks"}, true},
    {"VaryingRate", "clip.mkv", "select='not(between(mod(n\\,10)\\,3\\,5))+eq(n\\,99)'",
     with(kH264, {"-vsync", "passthrough"}), true},
    {"TransportStreamWhoseTimesWrap", "clip.ts", "null",
     with(kH264, {"-output_ts_offset", "95441.7", "-muxdelay", "0"}), true},
};

void makeClip(const ClipKind& kind) {
  Arguments arguments = {"-f",  "lavfi",
                         "-i",  "testsrc2=size=160x96:rate=25",
                         "-vf", std::string("trim=end_frame=100,") + kind.filter};
  arguments = with(arguments, kind.codec);
  arguments.push_back(at(kind.file));
  ffmpeg(arguments);
}

struct Numbered {
  std::int64_t number;
  Bytes bytes;
  bool operator==(const Numbered&) const = default;
};

Bytes bytesOf(const AVPacket& packet) {
  return {packet.data, packet.data + packet.size};
}
Bytes bytesOf(const AVFrame& frame) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  const int size = av_image_get_buffer_size(format, frame.width, frame.height, 1);
  Bytes bytes(static_cast<std::size_t>(size));
  av_image_copy_to_buffer(bytes.data(), size, frame.data, frame.linesize, format, frame.width,
                          frame.height, 1);
  return bytes;
}

/// The frames from `target` on, at most so many.
template <class Feed>
std::vector<Numbered> framesFrom(MediaInput& input, std::int64_t target, std::size_t most) {
  Feed feed(input, framesOf(input, ownLayout(input)));
  std::vector<Numbered> frames;
  typename Feed::Unit unit;
  for (std::int64_t index = 0; frames.size() < most && feed.next(unit, index);) {
    if (index >= target)
      frames.push_back({index, bytesOf(*unit)});
  }
  return frames;
}

StartPoint startOf(MediaInput& input, std::int64_t frame, bool others) {
  return startFor(input, {frame, input.frameRate(), others});
}

template <class Feed>
void expectSameFrames(const std::string& path) {
  MediaInput whole(path);
  const std::vector<Numbered> all = framesFrom<Feed>(whole, 0, kFrames + 1);
  ASSERT_GT(all.size(), 50U);
  for (const std::int64_t target : kTargets) {
    for (const bool others : {false, true}) {
      MediaInput part(path);
      part.startAt(startOf(part, target, others));
      const auto first =
          std::ranges::find_if(all, [&](const Numbered& each) { return each.number >= target; });
      const auto length = std::min<std::ptrdiff_t>(all.end() - first, 4);
      const std::vector<Numbered> expected(first, first + length);
      EXPECT_TRUE(framesFrom<Feed>(part, target, 4) == expected) << target << " " << others;
    }
  }
}

}  // namespace

TEST_P(StartPoints, GiveTheFramesOfTheWholeClip) {
  showLibavMessages(false);
  makeClip(GetParam());
  MediaInput input(at(GetParam().file));
  if (ownLayout(input) != nullptr)
    expectSameFrames<PacketFeed>(at(GetParam().file));
  else
    expectSameFrames<DecodedFeed>(at(GetParam().file));
  const StartPoint last = startOf(input, 99, false);
  EXPECT_EQ(last.time || last.skipped > 0, GetParam().begins);
}

INSTANTIATE_TEST_SUITE_P(Each, StartPoints, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<ClipKind>& each) {
                           return std::string(each.param.name);
                         });

TEST(StartPoint, LiesBehindAnEditListsGap) {
  makeClip({"", "long.mov", "null", kH264, true});
  ffmpeg({"-ss", "0.5", "-i", at("long.mov"), "-c", "copy", at("edited.mov")});
  expectSameFrames<DecodedFeed>(at("edited.mov"));
}

TEST(StartPoint, IsTheBeginningWhereTheTimesJump) {
  makeClip({"", "a.ts", "null", kH264, true});
  std::ifstream once(at("a.ts"), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(once), {}};
  std::ofstream(at("twice.ts"), std::ios::binary) << bytes << bytes;
  MediaInput input(at("twice.ts"));
  for (const std::int64_t target : {99, 150}) {
    const StartPoint start = startOf(input, target, false);
    EXPECT_FALSE(start.time || start.skipped > 0) << target;
  }
}
