// SPDX-License-Identifier: BSD-2-Clause
#include "media/joined_times.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

constexpr AVRational kTolerance = {1, 10};    // seconds; less is no jump
constexpr AVRational kAhead = {10, 1};        // seconds; less is a gap
constexpr AVRational kFarAhead = {43200, 1};  // seconds; more is no gap, whatever else there is
constexpr std::int64_t kUsualSteps = 4;       // a stream's own steps that make no jump

/// The demuxers of streams that can be joined byte by byte.
constexpr std::string_view kJoined[] = {"mpegts", "mpeg"};

bool canBeJoined(const AVFormatContext& file) {
  return std::ranges::find(kJoined, file.iformat->name) != std::end(kJoined);
}

}  // namespace

JoinedTimes::JoinedTimes(const AVFormatContext& file, int video)
    : file_(file), video_(video), tracks_(canBeJoined(file) ? file.nb_streams : 0) {}

bool JoinedTimes::jumpsBack(const Track& track, std::int64_t time, AVRational timeBase) {
  if (track.last == AV_NOPTS_VALUE)
    return false;
  // A single packet whose time is too late is no jump.
  const std::int64_t reached =
      track.before != AV_NOPTS_VALUE ? std::min(track.last, track.before) : track.last;
  return time + av_rescale_q(1, kTolerance, timeBase) < reached;
}

/// A stream with rare packets tells nothing by itself.
bool JoinedTimes::isUsual(const Track& track, std::int64_t time) const {
  if (track.jumps < jumps_.size())
    return false;
  return track.before == AV_NOPTS_VALUE ||
         time - track.last <= kUsualSteps * (track.last - track.before);
}

/// The clock jumps in all streams at once; a stream may rightly pause while others go on. FFmpeg
/// takes a jump far back for an overflow of the clock, and makes it one far ahead.
bool JoinedTimes::jumpsAhead(const Track& track, std::int64_t time, AVRational timeBase) const {
  if (track.last == AV_NOPTS_VALUE && track.jumps == jumps_.size())
    return false;
  if (track.last != AV_NOPTS_VALUE && time - av_rescale_q(1, kFarAhead, timeBase) > track.last)
    return true;
  const std::int64_t reach = time - av_rescale_q(1, kAhead, timeBase);
  const auto isBehind = [&](const Track& each) {
    const auto index = static_cast<std::size_t>(&each - tracks_.data());
    return each.last == AV_NOPTS_VALUE ||
           av_compare_ts(each.last, file_.streams[index]->time_base, reach, timeBase) < 0;
  };
  return std::ranges::all_of(tracks_, isBehind) && !isUsual(track, time);
}

void JoinedTimes::follow(Track& track, AVRational timeBase) {
  track.jumps = jumps_.size();
  track.waits = false;
  track.last = track.before = AV_NOPTS_VALUE;
  track.offset = av_rescale_q(jumps_.back(), file_.streams[video_]->time_base, timeBase);
}

void JoinedTimes::move(Track& track, const AVPacket& packet) {
  const AVRational timeBase = file_.streams[packet.stream_index]->time_base;
  const std::int64_t time = packet.dts + track.offset;
  if (jumpsBack(track, time, timeBase) || jumpsAhead(track, time, timeBase)) {
    if (track.end != AV_NOPTS_VALUE)
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
