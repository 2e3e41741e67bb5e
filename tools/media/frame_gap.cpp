// SPDX-License-Identifier: BSD-2-Clause
#include "media/frame_gap.h"

#include "media/libav_log.h"

#include <algorithm>

namespace nkdraw::media {
namespace {

/// The video's own duration in microseconds if the file tells it, else the file's; 0 if unknown.
std::int64_t durationOf(MediaInput& input) {
  std::int64_t duration = 0;
  const AVDictionaryEntry* const tag = av_dict_get(input.video().metadata, "DURATION", nullptr, 0);
  if (tag != nullptr && av_parse_time(&duration, tag->value, 1) >= 0)
    return duration;
  return input.file().duration;
}

}  // namespace

/// Files may rightly have gaps, so there must have been a complaint.
std::optional<std::int64_t> FrameGap::missingBefore(std::int64_t index) {
  if (expected_ && index > *expected_ && takeDemuxerComplaint(input_.file()))
    end_ = index;
  if (expected_ && *expected_ < std::min(end_, index))
    return (*expected_)++;
  expected_ = index + 1;
  return std::nullopt;
}

std::optional<std::int64_t> FrameGap::missingAtEnd() {
  const std::int64_t duration = durationOf(input_);
  if (!expected_ || duration <= 0)
    return std::nullopt;
  if (end_ > 0)  // what broke the file before may have ended it, too
    input_.file().opaque = &input_;
  return missingBefore(av_rescale_q(duration, AVRational{1, AV_TIME_BASE}, av_inv_q(rate_)));
}

}  // namespace nkdraw::media
