// SPDX-License-Identifier: BSD-2-Clause
#include "media/promised_end.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nkdraw::media {
namespace {

/// FFmpeg's demuxers that take the video's length from a header, and don't tell themselves when
/// data is missing.
constexpr std::string_view kTelling[] = {"avi", "mxf", "gxf"};

/// The one whose index lists every frame with its place.
constexpr std::string_view kListing = "mov,";

}  // namespace

PromisedEnd::PromisedEnd(const AVFormatContext& file, AVStream& video, AVRational rate)
    : file_(file), video_(video), rate_(rate) {
  // Of a file that is cut, FFmpeg makes the duration less. A tick in AVI is a frame.
  const bool counts = std::string_view(file.iformat->name) == "avi";
  const std::int64_t length = counts ? std::max(video.duration, video.nb_frames) : video.duration;
  const bool tells = std::ranges::find(kTelling, file.iformat->name) != std::end(kTelling);
  const bool fromHeader = file.duration_estimation_method == AVFMT_DURATION_FROM_STREAM;
  if (tells && fromHeader && video.start_time != AV_NOPTS_VALUE && length > 0)
    promised_ = video.start_time + length;
}

void PromisedEnd::note(const AVPacket& packet) {
  const std::int64_t time = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
  if (promised_ == AV_NOPTS_VALUE || time == AV_NOPTS_VALUE)
    return;
  const std::int64_t frame = av_rescale_q(1, av_inv_q(rate_), video_.time_base);
  const std::int64_t end = time + std::max(packet.duration, frame);
  reached_ = reached_ == AV_NOPTS_VALUE ? end : std::max(reached_, end);
}

std::int64_t PromisedEnd::missingByTime() const {
  if (promised_ == AV_NOPTS_VALUE || reached_ == AV_NOPTS_VALUE)
    return 0;
  return av_rescale_q(promised_ - reached_, video_.time_base, av_inv_q(rate_));
}

std::int64_t PromisedEnd::missingByIndex() const {
  const std::int64_t size = file_.pb != nullptr ? avio_size(file_.pb) : -1;
  if (size <= 0 || !std::string_view(file_.iformat->name).starts_with(kListing))
    return 0;
  std::int64_t missing = 0;
  for (int i = 0; i < avformat_index_get_entries_count(&video_); ++i) {
    const AVIndexEntry& entry = *avformat_index_get_entry(&video_, i);
    missing += entry.pos + entry.size > size ? 1 : 0;
  }
  return missing;
}

std::string PromisedEnd::missing() const {
  const std::int64_t frames = std::max(missingByTime(), missingByIndex());
  if (frames <= 0)
    return {};
  return frames == 1 ? "the last frame is missing"
                     : "the last " + std::to_string(frames) + " frames are missing";
}

}  // namespace nkdraw::media
