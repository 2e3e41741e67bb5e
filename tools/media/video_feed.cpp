// SPDX-License-Identifier: BSD-2-Clause
#include "media/video_feed.h"

#include <algorithm>
#include <utility>

namespace nkdraw::media {

VideoFeed::VideoFeed(MediaInput& input, const FrameKind& frames, TakePacket others)
    : input_(input),
      others_(std::move(others)),
      clock_(input.video().time_base, frames.rate, input.start().first) {
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
                       FrameRange wanted)
    : VideoFeed(input, frames, others),
      wanted_(wanted),
      repair_(input),
      gap_(input, frames.rate),
      rate_(frames.rate) {}

/// AVI marks a repeated frame with an empty packet.
bool PacketFeed::readFrame(Packet& packet) {
  packet = makePacket();
  while (read(*packet)) {
    if (packet->size > 0)
      return true;
    av_packet_unref(packet.get());
  }
  packet.reset();
  return false;
}

/// Shows the frame before in the place of one that the file has lost.
bool PacketFeed::fill(std::int64_t missing, Packet& packet, std::int64_t& index) {
  if (wanted_.contains(missing))
    input().damage().note(missing, "lost, the file has no data for it");
  if (last_ == nullptr)
    return false;
  const AVStream& video = input().video();
  const std::int64_t first = video.start_time != AV_NOPTS_VALUE ? video.start_time : 0;
  packet = owned<Packet>(av_packet_clone(last_.get()));
  packet->pts = packet->dts = first + av_rescale_q(missing, av_inv_q(rate_), video.time_base);
  av_packet_free_side_data(packet.get());  // captions are not said twice
  index = missing;
  return true;
}

bool PacketFeed::next(Packet& packet, std::int64_t& index) {
  if (waiting_ == nullptr && readFrame(waiting_))
    number_ = indexOf(waiting_->pts != AV_NOPTS_VALUE ? waiting_->pts : waiting_->dts);
  const bool more = waiting_ != nullptr;
  while (const auto missing = more ? gap_.missingBefore(number_) : gap_.missingAtEnd()) {
    if (fill(*missing, packet, index))
      return true;
  }
  if (!more)
    return false;
  packet = std::move(waiting_);
  index = number_;
  if (wanted_.contains(index))
    repair_.repair(packet, index);
  if (input().damage().goesOn())
    last_ = owned<Packet>(av_packet_clone(packet.get()));
  return true;
}

DecodedFeed::DecodedFeed(MediaInput& input, const FrameKind& frames, const TakePacket& others,
                         FrameRange wanted)
    : VideoFeed(input, frames, others),
      frames_(frames),
      wanted_(wanted),
      decoder_(*input.video().codecpar, input.video().time_base, input.path()),
      gap_(input, frames.rate) {}

void DecodedFeed::decodeMore() {
  const Packet packet = makePacket();
  ended_ = !read(*packet);
  const std::size_t known = ready_.size();
  decoder_.decode(ended_ ? nullptr : packet.get(), ready_);
  for (std::size_t i = known; i < ready_.size(); ++i) {
    if (!ready_[i].damage.empty())
      input().noteBroken(ready_[i].time);
  }
}

bool DecodedFeed::fits(const WatchedFrame& taken) const {
  return taken.frame != nullptr && taken.frame->width == frames_.width &&
         taken.frame->height == frames_.height;
}

/// The frame to show instead of one that is lost: the one before, at the beginning the one after.
Frame DecodedFeed::repeated() const {
  const auto next =
      std::ranges::find_if(ready_, [&](const WatchedFrame& each) { return fits(each); });
  const AVFrame* const shown = last_ != nullptr       ? last_.get()
                               : next != ready_.end() ? next->frame.get()
                                                      : nullptr;
  if (shown == nullptr)
    return nullptr;
  Frame frame = owned<Frame>(av_frame_clone(shown));
  av_frame_remove_side_data(frame.get(), AV_FRAME_DATA_A53_CC);  // captions are not said twice
  return frame;
}

void DecodedFeed::check(WatchedFrame& taken, std::int64_t index) {
  DamageList& damage = input().damage();
  if (damage.goesOn() && taken.damage.empty() && !fits(taken))
    taken.damage = "lost, it has another size";
  if (!taken.damage.empty())
    damage.note(index, taken.damage);
  if (taken.damage.empty())
    checkSize(*taken.frame, frames_, input().path(), index);
}

/// Shows the frame before in the place of one that the file has lost.
bool DecodedFeed::fill(std::int64_t missing, Frame& frame, std::int64_t& index) {
  if (wanted_.contains(missing))
    input().damage().note(missing, "lost, the file has no data for it");
  frame = repeated();
  index = missing;
  return frame != nullptr;
}

bool DecodedFeed::next(Frame& frame, std::int64_t& index) {
  while (ready_.empty() && !ended_)
    decodeMore();
  const bool more = !ready_.empty();
  if (more)
    index = indexOf(ready_.front().time);
  const auto missing = more ? gap_.missingBefore(index) : gap_.missingAtEnd();
  if (missing && (more || last_ != nullptr || wanted_.contains(*missing)))
    return fill(*missing, frame, index);
  if (!more)
    return false;
  WatchedFrame taken = std::move(ready_.front());
  ready_.pop_front();
  if (wanted_.contains(index))
    check(taken, index);
  if (taken.frame == nullptr || (!taken.damage.empty() && !fits(taken)))
    taken.frame = repeated();
  if (taken.frame == nullptr)
    return next(frame, index);
  if (input().damage().goesOn() && fits(taken))
    last_ = owned<Frame>(av_frame_clone(taken.frame.get()));
  frame = std::move(taken.frame);
  return true;
}

}  // namespace nkdraw::media
