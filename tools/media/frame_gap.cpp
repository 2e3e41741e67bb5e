// SPDX-License-Identifier: BSD-2-Clause
#include "media/frame_gap.h"

#include "media/libav_log.h"

#include <algorithm>
#include <cmath>

namespace nkdraw::media {
namespace {

/// A clip with more than one gap in so many frames has a varying rate.
constexpr std::int64_t kEven = 100;
/// Seconds; a longer gap comes from a wrong time.
constexpr double kLongest = 60.0;

/// The video's own duration in microseconds if the file tells it, else the file's; 0 if unknown.
std::int64_t durationOf(MediaInput& input) {
  std::int64_t duration = 0;
  const AVDictionaryEntry* const tag = av_dict_get(input.video().metadata, "DURATION", nullptr, 0);
  if (tag != nullptr && av_parse_time(&duration, tag->value, 1) >= 0)
    return duration;
  return input.file().duration;
}

}  // namespace

/// Whether packets are missing beside the gap before this frame, in a clip whose frames otherwise
/// come evenly.
bool FrameGap::lacksPackets(std::int64_t index) const {
  const std::int64_t first = input_.start().first;
  if (first == AV_NOPTS_VALUE || gaps_ * kEven > steps_ ||
      index - *expected_ > std::llround(av_q2d(rate_) * kLongest))
    return false;
  const AVRational timeBase = input_.video().time_base;
  const auto timeOf = [&](std::int64_t frame) {
    return first + av_rescale_q(frame, av_inv_q(rate_), timeBase);
  };
  const std::int64_t second = av_rescale_q(1, {1, 1}, timeBase);
  return input_.lacksPackets(timeOf(*expected_) - second, timeOf(index) + second);
}

/// Files may rightly have gaps, so something must show that this one is not meant.
bool FrameGap::isDamage(std::int64_t index) {
  const bool complaint = takeDemuxerComplaint(input_.file());
  complained_ = complained_ || complaint;
  if (complaint || lacksPackets(index))
    return true;
  ++gaps_;
  return false;
}

std::optional<std::int64_t> FrameGap::missingBefore(std::int64_t index) {
  const bool isGap = expected_ && index > *expected_;
  if (isGap && index > end_ && isDamage(index))
    end_ = index;
  if (expected_ && *expected_ < std::min(end_, index))
    return (*expected_)++;
  if (!isGap)
    ++steps_;
  expected_ = index + 1;
  return std::nullopt;
}

std::optional<std::int64_t> FrameGap::missingAtEnd() {
  const std::int64_t duration = durationOf(input_);
  if (!expected_ || duration <= 0)
    return std::nullopt;
  // What broke the file before may have ended it, too.
  if (!takeDemuxerComplaint(input_.file()) && !complained_)
    return std::nullopt;
  complained_ = true;
  end_ = av_rescale_q(duration, AVRational{1, AV_TIME_BASE}, av_inv_q(rate_));
  return missingBefore(end_);
}

}  // namespace nkdraw::media
