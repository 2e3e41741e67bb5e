// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/burnt_decoder.h"

#include <utility>

namespace nkdraw::tool {

BurntDecoder::BurntDecoder(MediaInput& input, const ClipPlan& plan, Take take)
    : decoder_(*input.video().codecpar, input.video().time_base, input.path()),
      converter_(plan.picture.drawn, plan.job.frames.interlaced, FrameConverter::Range::kKept),
      take_(std::move(take)) {}

void BurntDecoder::decode(const AVPacket& packet, std::int64_t index) {
  indexes_.push_back(index);
  decoder_.decode(&packet, [this](AVFrame& frame) { pass(frame); });
}

void BurntDecoder::finish() {
  decoder_.decode(nullptr, [this](AVFrame& frame) { pass(frame); });
}

/// Uncompressed frames come in the order of their packets.
void BurntDecoder::pass(AVFrame& frame) {
  const std::int64_t index = indexes_.front();
  indexes_.pop_front();
  take_(converter_.convert(frame), index);
}

}  // namespace nkdraw::tool
