// SPDX-License-Identifier: BSD-2-Clause
#include "media/joined_times.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr AVRational kTolerance = {1, 10};    // seconds; less is no jump
constexpr AVRational kFarAhead = {43200, 1};  // seconds; less is a gap

/// The demuxers of streams that can be joined byte by byte.
constexpr std::string_view kJoined[] = {"mpegts", "mpeg"};

bool canBeJoined(const AVFormatContext& file) {
  return std::ranges::find(kJoined, file.iformat->name) != std::end(kJoined);
}

}  // namespace

JoinedTimes::JoinedTimes(const AVFormatContext& file, int video)
    : file_(file), video_(video), tracks_(canBeJoined(file) ? file.nb_streams : 0) {}

/// A single packet whose time is too late is no jump. FFmpeg takes one far back for an overflow of
/// the clock, and makes it one far ahead.
bool JoinedTimes::jumps(const Track& track, std::int64_t time, AVRational timeBase) {
  if (track.last == AV_NOPTS_VALUE)
    return false;
  const std::int64_t reached =
      track.before != AV_NOPTS_VALUE ? std::min(track.last, track.before) : track.last;
  return time + av_rescale_q(1, kTolerance, timeBase) < reached ||
         time - av_rescale_q(1, kFarAhead, timeBase) > track.last;
}

void JoinedTimes::follow(Track& track, AVRational timeBase) {
  track.jumps = jumps_.size();
  track.waits = false;
  track.last = track.before = AV_NOPTS_VALUE;
  track.offset = av_rescale_q(jumps_.back(), file_.streams[video_]->time_base, timeBase);
}

void JoinedTimes::move(Track& track, const AVPacket& packet) {
  const AVRational timeBase = file_.streams[packet.stream_index]->time_base;
  if (jumps(track, packet.dts + track.offset, timeBase)) {
    track.offset = track.end - packet.dts;
    track.waits = true;
    if (packet.stream_index == video_)
      jumps_.push_back(track.offset);
  }
  if (track.waits && track.jumps < jumps_.size())
    follow(track, timeBase);
}

void JoinedTimes::note(Track& track, const AVPacket& packet) {
  const std::int64_t step =
      track.last != AV_NOPTS_VALUE ? std::max<std::int64_t>(packet.dts - track.last, 0) : 0;
  track.before = track.last;
  track.last = packet.dts;
  track.end = packet.dts + (packet.duration > 0 ? packet.duration : step);
}

bool JoinedTimes::join(AVPacket& packet) {
  const auto stream = static_cast<std::size_t>(packet.stream_index);
  if (stream >= tracks_.size())
    return true;
  Track& track = tracks_[stream];
  if (packet.dts != AV_NOPTS_VALUE)
    move(track, packet);
  if (packet.pts != AV_NOPTS_VALUE)
    packet.pts += track.offset;
  if (packet.dts == AV_NOPTS_VALUE)
    return true;
  packet.dts += track.offset;
  const bool isBehindJump = track.jumps > 0 && track.last == AV_NOPTS_VALUE;
  if (isBehindJump && packet.dts + packet.duration / 2 < track.end)
    return false;
  note(track, packet);
  return true;
}

}  // namespace nkdraw::media
