// SPDX-License-Identifier: BSD-2-Clause
#include "media/watched_decoder.h"

#include <algorithm>
#include <utility>

namespace nkdraw::media {
namespace {

constexpr std::int64_t kReach = 64;  // packets whose frames an error may cost
constexpr int kMostErrors = 64;      // in a row, of one packet

}  // namespace

WatchedDecoder::WatchedDecoder(const AVCodecParameters& video, AVRational timeBase,
                               const std::string& name)
    : lost_(video.codec_id), decoder_(video, timeBase, name), context_(decoder_.context()) {
  context_.opaque = &log_;
}

void WatchedDecoder::decode(const AVPacket* packet, std::deque<WatchedFrame>& ready) {
  if (packet != nullptr)
    context_.reordered_opaque = sent_ = lost_.sent(*packet);
  noteError(avcodec_send_packet(&context_, packet));
  receive(ready);
  if (packet == nullptr && begun_)
    addLost(lost_.lostAtEnd(isTroubled()), ready);
  log_.forgetBefore(sent_ - kReach);
}

void WatchedDecoder::receive(std::deque<WatchedFrame>& ready) {
  for (int errors = 0; errors < kMostErrors;) {
    const int error = avcodec_receive_frame(&context_, frame_.get());
    if (error == AVERROR(EAGAIN) || error == AVERROR_EOF)
      return;
    noteError(error);
    if (error < 0)
      ++errors;
    else
      take(*frame_, ready);
    av_frame_unref(frame_.get());
  }
}

void WatchedDecoder::take(AVFrame& frame, std::deque<WatchedFrame>& ready) {
  if (!std::exchange(begun_, true))
    begin(frame);
  addLost(lost_.lostBefore(frame, isTroubled()), ready);
  WatchedFrame taken = {makeFrame(), frame.best_effort_timestamp, damageOf(frame)};
  av_frame_move_ref(taken.frame.get(), &frame);
  ready.push_back(std::move(taken));
}

/// Packets before the first frame are lost only if the first key frame is damaged; otherwise the
/// recording begins in the middle, and these needed what was before it.
void WatchedDecoder::begin(const AVFrame& first) {
  if (lost_.inOrder())
    return;
  const auto message = log_.take(lost_.firstKey());
  if (message)
    return log_.note(lost_.firstKey(), *message);
  lost_.forgetBefore(first);
  lastError_ = -1;
}

void WatchedDecoder::addLost(const std::vector<SentPacket>& lost, std::deque<WatchedFrame>& ready) {
  for (const SentPacket& packet : lost)
    ready.push_back(
        {nullptr, packet.time,
         "lost, " + log_.take(packet.number).value_or("no frame comes out of its data")});
}

void WatchedDecoder::noteError(int error) {
  if (error < 0 && error != AVERROR(EAGAIN) && error != AVERROR_EOF)
    lastError_ = sent_;
}

bool WatchedDecoder::isTroubled() {
  const std::int64_t last = std::max(lastError_, log_.newest());
  return last >= 0 && sent_ - last <= kReach;
}

std::string WatchedDecoder::damageOf(const AVFrame& frame) {
  if (const auto message = log_.take(frame.reordered_opaque))
    return *message;
  const bool flagged = frame.decode_error_flags != 0 || (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0;
  return flagged ? "parts of it can't be decoded" : "";
}

}  // namespace nkdraw::media
