// SPDX-License-Identifier: BSD-2-Clause
#include "media/rising_times.h"

#include <algorithm>
#include <cstdio>

namespace nkdraw::media {

void RisingTimes::raise(AVPacket& packet) {
  if (packet.dts == AV_NOPTS_VALUE || (format_.flags & AVFMT_NOTIMESTAMPS) != 0)
    return;
  const std::int64_t step = (format_.flags & AVFMT_TS_NONSTRICT) != 0 ? 0 : 1;
  if (last_ != AV_NOPTS_VALUE && packet.dts < last_ + step)
    moveTo(packet, last_ + step);
  last_ = packet.dts;
}

void RisingTimes::moveTo(AVPacket& packet, std::int64_t first) {
  if (packet.pts != AV_NOPTS_VALUE && packet.pts >= packet.dts)
    packet.pts = std::max(packet.pts, first);
  packet.dts = first;
  if (!told_)
    std::fprintf(stderr, "nkdraw: note: %s has packets whose times don't rise, they are moved\n",
                 name_.c_str());
  told_ = true;
}

}  // namespace nkdraw::media
