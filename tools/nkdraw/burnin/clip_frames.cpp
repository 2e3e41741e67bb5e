// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/clip_frames.h"

#include "media/start_point.h"

namespace nkdraw::tool {
namespace {

FrameShape shapeOf(const Job& job, AVPixelFormat format) {
  return {.format = format,
          .width = job.frames.width,
          .height = job.frames.height,
          .interlaced = job.frames.interlaced,
          .orientation = job.orientation};
}

}  // namespace

InPlaceFrames::InPlaceFrames(MediaInput& input, const Job& job)
    : input_(input), rows_(*input.video().codecpar, *job.layout), burner_(job, rows_.storage()) {}

AVPacket& InPlaceFrames::burn(AVPacket& packet, std::int64_t index) {
  if (av_packet_make_writable(&packet) < 0)
    throw std::bad_alloc();
  burnt_ = rows_.rowsOf(packet, index, input_);
  burner_.burn(burnt_, index, captionsOf(packet));
  return packet;
}

TranscodedFrames::TranscodedFrames(const Job& job, AVPixelFormat drawn)
    : converter_(drawn, job.frames.interlaced, FrameConverter::Range::kKept),
      canvas_(shapeOf(job, drawn), job.plan.rows(), job.plan.blended()),
      burner_(job, canvas_.layout()) {}

AVFrame& TranscodedFrames::burn(AVFrame& decoded, std::int64_t index) {
  AVFrame& frame = converter_.convert(decoded);
  writable_.makeWritable(frame);
  canvas_.draw(frame,
               [&](std::uint8_t* canvas) { burner_.burn(canvas, index, captionsOf(decoded)); });
  return frame;
}

void startAtRange(MediaInput& input, const Job& job, const OtherPackets& others) {
  const bool ownCaptions = job.plan.request.captions && job.captions == nullptr;
  if (!ownCaptions)
    input.startAt(startFor(input, {job.range.first, job.frames.rate, others.take != nullptr}));
}

}  // namespace nkdraw::tool
