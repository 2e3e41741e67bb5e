// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/clip_frames.h"

#include "media/drawn_format.h"

namespace nkdraw::tool {

InPlaceFrames::InPlaceFrames(MediaInput& input, const Job& job)
    : input_(input), rows_(*input.video().codecpar, *job.layout), burner_(job, rows_.storage()) {}

AVPacket& InPlaceFrames::burn(AVPacket& packet, std::int64_t index) {
  if (av_packet_make_writable(&packet) < 0)
    throw std::bad_alloc();
  const Picture rows = rows_.rowsOf(packet, index, input_.path());
  burner_.burn(rows, index, captionsOf(packet));
  if (plain_)
    rows_.makePlain(packet, rows);
  return packet;
}

TranscodedFrames::TranscodedFrames(const Job& job, AVPixelFormat drawn)
    : converter_(drawn, job.frames.interlaced), burner_(job, storageOf(drawn)) {}

AVFrame& TranscodedFrames::burn(AVFrame& decoded, std::int64_t index) {
  AVFrame& frame = converter_.convert(decoded);
  if (av_frame_make_writable(&frame) < 0)
    throw std::bad_alloc();
  burner_.burn(planesOf(frame), index, captionsOf(decoded));
  return frame;
}

}  // namespace nkdraw::tool
