// SPDX-License-Identifier: BSD-2-Clause
#include "media/lost_frames.h"

#include "media/video_start.h"

#include <algorithm>
#include <utility>

namespace nkdraw::media {
namespace {

constexpr std::size_t kMostPending = 512;  // no decoder holds more

bool isInOrder(AVCodecID codec) {
  return codec == AV_CODEC_ID_FFV1 || isIntraOnly(codec);
}

}  // namespace

LostFrames::LostFrames(AVCodecID codec)
    : inOrder_(isInOrder(codec)),
      alwaysGives_(inOrder_ || codec == AV_CODEC_ID_MPEG2VIDEO || codec == AV_CODEC_ID_MPEG1VIDEO) {
}

/// Empty packets repeat a frame; those outside an edit list are not shown.
bool LostFrames::counts(const AVPacket& packet, std::int64_t time) const {
  if (packet.size == 0 || (packet.flags & AV_PKT_FLAG_DISCARD) != 0)
    return false;
  return inOrder_ || (firstKey_ >= 0 && time != AV_NOPTS_VALUE && time >= firstTime_);
}

std::int64_t LostFrames::sent(const AVPacket& packet) {
  const std::int64_t number = count_++;
  const std::int64_t time = packet.pts == AV_NOPTS_VALUE && inOrder_ ? packet.dts : packet.pts;
  if (firstKey_ < 0 && (packet.flags & AV_PKT_FLAG_KEY) != 0 && time != AV_NOPTS_VALUE) {
    firstKey_ = number;
    firstTime_ = time;
  }
  if (counts(packet, time))
    pending_.push_back({number, time});
  if (pending_.size() > kMostPending)
    pending_.erase(pending_.begin());
  return number;
}

bool LostFrames::isBefore(const SentPacket& packet, const AVFrame& frame) const {
  return inOrder_ ? packet.number < frame.reordered_opaque
                  : frame.pts != AV_NOPTS_VALUE && packet.time < frame.pts;
}

void LostFrames::arrived(const AVFrame& frame) {
  std::erase_if(pending_, [&](const SentPacket& packet) {
    return inOrder_ ? packet.number == frame.reordered_opaque : packet.time == frame.pts;
  });
}

std::vector<SentPacket> LostFrames::lostBefore(const AVFrame& frame, bool troubled) {
  arrived(frame);
  std::vector<SentPacket> lost;
  std::erase_if(pending_, [&](const SentPacket& packet) {
    const bool before = isBefore(packet, frame);
    if (before)
      lost.push_back(packet);
    return before;
  });
  return alwaysGives_ || troubled ? sorted(std::move(lost)) : std::vector<SentPacket>();
}

std::vector<SentPacket> LostFrames::lostAtEnd(bool troubled) {
  std::vector<SentPacket> lost = std::exchange(pending_, {});
  return alwaysGives_ || troubled ? sorted(std::move(lost)) : std::vector<SentPacket>();
}

void LostFrames::forgetBefore(const AVFrame& frame) {
  std::erase_if(pending_, [&](const SentPacket& packet) { return isBefore(packet, frame); });
}

std::vector<SentPacket> LostFrames::sorted(std::vector<SentPacket> lost) const {
  if (!inOrder_)
    std::ranges::sort(lost, {}, &SentPacket::time);
  return lost;
}

}  // namespace nkdraw::media
