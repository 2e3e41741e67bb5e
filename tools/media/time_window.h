// SPDX-License-Identifier: BSD-2-Clause
//
// The part of a clip that is kept.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <limits>

namespace nkdraw::media {

inline constexpr AVRational kMicroseconds = {1, AV_TIME_BASE};

/// The part of the input that is kept, in FFmpeg's AV_TIME_BASE.
struct TimeWindow {
  std::int64_t shift = 0;  // subtracted from all times
  std::int64_t video = 0;  // the first kept frame
  std::int64_t first = std::numeric_limits<std::int64_t>::min();
  std::int64_t end = std::numeric_limits<std::int64_t>::max();  // of the other streams

  [[nodiscard]] bool isWhole() const { return end == std::numeric_limits<std::int64_t>::max(); }
  [[nodiscard]] bool hasFirst() const { return first != std::numeric_limits<std::int64_t>::min(); }
};

/// Moves the packet's times by this many microseconds.
inline void moveBy(std::int64_t microseconds, AVPacket& packet, AVRational timeBase) {
  const std::int64_t ticks = av_rescale_q(microseconds, kMicroseconds, timeBase);
  if (packet.pts != AV_NOPTS_VALUE)
    packet.pts += ticks;
  if (packet.dts != AV_NOPTS_VALUE)
    packet.dts += ticks;
}

}  // namespace nkdraw::media
