// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/converting_road.h"

#include "media/clip_facts.h"
#include "media/drawn_format.h"

namespace nkdraw::tool {
ConvertingRoad::ConvertingRoad(MediaInput& input, const Job& job, AVPixelFormat drawn)
    : input_(input),
      job_(job),
      decoder_(*input.video().codecpar, input.video().time_base, input.path()),
      converter_(drawn, job.frames.interlaced),
      burner_(job, drawn == AV_PIX_FMT_YUV422P10 ? Storage::kPlanes10 : Storage::kPacked),
      clock_(input.video().time_base, job.frames.rate, input.video().start_time) {}

bool ConvertingRoad::run(const TakePicture& takeVideo, const TakePacket& takeOther,
                         const std::function<bool()>& done) {
  const auto take = [&](AVFrame& decoded) { burn(decoded, takeVideo); };
  const Packet packet = makePacket();
  while (!(pastRange_ && done()) && input_.read(*packet)) {
    if (!input_.isVideo(*packet))
      takeOther(*packet);
    else if (!pastRange_)
      decoder_.decode(packet.get(), take);
    av_packet_unref(packet.get());
  }
  if (!pastRange_)
    decoder_.decode(nullptr, take);
  burner_.finish(input_.path());
  return pastRange_;
}

void ConvertingRoad::burn(AVFrame& decoded, const TakePicture& take) {
  const std::int64_t index = clock_.indexOf(decoded.best_effort_timestamp);
  pastRange_ = pastRange_ || index > job_.range.last;
  if (index < job_.range.first)
    burner_.pass(index, captionsOf(decoded));
  if (!job_.range.contains(index))
    return;
  checkSize(decoded, job_.frames, input_.path(), index);
  AVFrame& picture = converter_.convert(decoded);
  if (av_frame_make_writable(&picture) < 0)
    throw std::bad_alloc();
  burner_.burn(planesOf(picture), index, captionsOf(decoded));
  take(picture, index);
}

}  // namespace nkdraw::tool
