// SPDX-License-Identifier: BSD-2-Clause
#include "media/video_feed.h"

#include <utility>

namespace nkdraw::media {

VideoFeed::VideoFeed(MediaInput& input, const FrameKind& frames, TakePacket others)
    : input_(input),
      others_(std::move(others)),
      clock_(input.video().time_base, frames.rate, input.video().start_time) {
  if (!others_)
    input.readOnly(input.video());
}

bool VideoFeed::read(AVPacket& packet) {
  while (input_.read(packet)) {
    if (input_.isVideo(packet))
      return true;
    if (others_)
      others_(packet);
    av_packet_unref(&packet);
  }
  return false;
}

void VideoFeed::readOthersUntil(const std::function<bool()>& done) {
  const Packet packet = makePacket();
  while (!done() && input_.read(*packet)) {
    if (others_ && !input_.isVideo(*packet))
      others_(*packet);
    av_packet_unref(packet.get());
  }
}

PacketFeed::PacketFeed(MediaInput& input, const FrameKind& frames, const TakePacket& others,
                       FrameRange /*wanted*/)
    : VideoFeed(input, frames, others) {}

bool PacketFeed::next(Packet& packet, std::int64_t& index) {
  packet = makePacket();
  while (read(*packet)) {
    if (packet->size > 0) {  // AVI marks a repeated frame with an empty packet
      index = indexOf(packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts);
      return true;
    }
    av_packet_unref(packet.get());
  }
  return false;
}

DecodedFeed::DecodedFeed(MediaInput& input, const FrameKind& frames, const TakePacket& others,
                         FrameRange wanted)
    : VideoFeed(input, frames, others),
      frames_(frames),
      wanted_(wanted),
      decoder_(*input.video().codecpar, input.video().time_base, input.path()) {}

void DecodedFeed::decodeMore() {
  const auto keep = [this](AVFrame& decoded) {
    ready_.push_back(makeFrame());
    av_frame_move_ref(ready_.back().get(), &decoded);
  };
  const Packet packet = makePacket();
  ended_ = !read(*packet);
  decoder_.decode(ended_ ? nullptr : packet.get(), keep);
}

bool DecodedFeed::next(Frame& frame, std::int64_t& index) {
  while (ready_.empty() && !ended_)
    decodeMore();
  if (ready_.empty())
    return false;
  frame = std::move(ready_.front());
  ready_.pop_front();
  index = indexOf(frame->best_effort_timestamp);
  if (wanted_.contains(index))
    checkSize(*frame, frames_, input().path(), index);
  return true;
}

}  // namespace nkdraw::media
