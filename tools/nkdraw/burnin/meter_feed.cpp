// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/meter_feed.h"

#include <algorithm>
#include <cmath>

namespace nkdraw::tool {
namespace {

constexpr double kFullScale = 65536.0, kLargest = 65535.0;
constexpr AVRational kHold = {3, 2};  // seconds

}  // namespace

MeterFeed::MeterFeed(const SoundTrack& sound, AVRational frameRate)
    : frameTime_(av_inv_q(frameRate)),
      moment_{1, sound.shape.rate},
      hold_(av_rescale_q(1, kHold, frameTime_)),
      stride_(sound.shape.channels()),
      reader_(sound.path, sound.stream, sound.shape, "leave --meters out") {}

void MeterFeed::advanceTo(std::int64_t index) {
  while (next_ <= index)
    readFrame();
  pack();
}

void MeterFeed::readFrame() {
  const std::int64_t begin = av_rescale_q(next_, frameTime_, moment_);
  const std::int64_t end = av_rescale_q(next_ + 1, frameTime_, moment_);
  const auto count = static_cast<std::size_t>(end - begin);
  samples_.resize(count * stride_);
  const std::size_t got = reader_.read(samples_.data(), count);
  for (std::size_t i = 0; i < std::min(stride_, kChannels); ++i) {
    double magnitude = 0.0;
    for (std::size_t moment = 0; moment < got; ++moment)
      magnitude = std::max(magnitude, std::abs(samples_[moment * stride_ + i]));
    note(channels_[i], magnitude);
  }
  ++next_;
}

void MeterFeed::note(Channel& channel, double magnitude) const {
  channel.level = static_cast<std::uint32_t>(std::min(magnitude * kFullScale, kLargest));
  if (channel.level < channel.peak && next_ - channel.since < hold_)
    return;
  channel.peak = channel.level;
  channel.since = next_;
}

void MeterFeed::pack() {
  constexpr unsigned kHalf = 16;
  for (std::size_t i = 0; i < kChannels; i += 2) {
    levels_[i / 2] = channels_[i].level | channels_[i + 1].level << kHalf;
    peaks_[i / 2] = channels_[i].peak | channels_[i + 1].peak << kHalf;
  }
}

}  // namespace nkdraw::tool
