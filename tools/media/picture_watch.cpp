// SPDX-License-Identifier: BSD-2-Clause
#include "media/picture_watch.h"

namespace nkdraw::media {

PictureWatch::PictureWatch(AVCodecID codec)
    : intraOnly_((avcodec_descriptor_get(codec)->props & AV_CODEC_PROP_INTRA_ONLY) != 0),
      alwaysGives_(intraOnly_ || codec == AV_CODEC_ID_MPEG2VIDEO ||
                   codec == AV_CODEC_ID_MPEG1VIDEO) {}

bool PictureWatch::sent(const AVPacket& packet) {
  ++count_;
  const std::int64_t time = packet.pts == AV_NOPTS_VALUE && intraOnly_ ? packet.dts : packet.pts;
  if (time == AV_NOPTS_VALUE || (packet.flags & AV_PKT_FLAG_DISCARD) != 0)
    return false;
  if (!begun_ && (packet.flags & AV_PKT_FLAG_KEY) != 0) {
    begun_ = true;
    first_ = time;
  }
  if (!counts(time))
    return false;
  pending_.insert(time);
  return true;
}

std::vector<std::int64_t> PictureWatch::lostBefore(std::int64_t time) {
  const auto end = pending_.lower_bound(time);
  std::vector<std::int64_t> lost(pending_.begin(), end);
  pending_.erase(pending_.begin(), end);
  pending_.erase(time);
  if (!alwaysGives_ && count_ > troubledUntil_)
    lost.clear();
  return lost;
}

}  // namespace nkdraw::media
