// SPDX-License-Identifier: BSD-2-Clause
#include "media/frame_gap.h"

#include "media/libav_log.h"

#include <algorithm>

namespace nkdraw::media {

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
  const std::int64_t duration = input_.file().duration;
  if (!expected_ || duration <= 0)
    return std::nullopt;
  return missingBefore(av_rescale_q(duration, AVRational{1, AV_TIME_BASE}, av_inv_q(rate_)));
}

}  // namespace nkdraw::media
