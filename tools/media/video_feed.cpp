// SPDX-License-Identifier: BSD-2-Clause
#include "media/video_feed.h"

#include <utility>

namespace nkdraw::media {

PacketFeed::PacketFeed(MediaInput& input, const FrameKind& frames)
    : input_(input), clock_(input.video().time_base, frames.rate, input.video().start_time) {
  input.readOnly(input.video());
}

bool PacketFeed::next(Packet& packet, std::int64_t& index) {
  packet = makePacket();
  while (input_.read(*packet)) {
    if (input_.isVideo(*packet) && packet->size > 0) {  // AVI marks a repeat with an empty packet
      index = clock_.indexOf(packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts);
      return true;
    }
    av_packet_unref(packet.get());
  }
  return false;
}

DecodedFeed::DecodedFeed(MediaInput& input, const FrameKind& frames)
    : input_(input),
      frames_(frames),
      decoder_(*input.video().codecpar, input.video().time_base, input.path()),
      clock_(input.video().time_base, frames.rate, input.video().start_time) {
  input.readOnly(input.video());
}

bool DecodedFeed::next(Frame& frame, std::int64_t& index) {
  const auto keep = [this](AVFrame& decoded) {
    ready_.push_back(makeFrame());
    av_frame_move_ref(ready_.back().get(), &decoded);
  };
  const Packet packet = makePacket();
  while (ready_.empty() && !ended_) {
    ended_ = !input_.read(*packet);
    if (ended_)
      decoder_.decode(nullptr, keep);
    else if (input_.isVideo(*packet))
      decoder_.decode(packet.get(), keep);
    av_packet_unref(packet.get());
  }
  if (ready_.empty())
    return false;
  frame = std::move(ready_.front());
  ready_.pop_front();
  index = clock_.indexOf(frame->best_effort_timestamp);
  checkSize(*frame, frames_, input_.path(), index);
  return true;
}

}  // namespace nkdraw::media
