// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/native_road.h"

#include "media/failure.h"

namespace nkdraw::tool {

NativeRoad::NativeRoad(MediaInput& input, const Job& job)
    : input_(input),
      job_(job),
      rows_(*input.video().codecpar, *job.layout),
      burner_(job, rows_.storage()) {}

bool NativeRoad::run(const TakeVideo& takeVideo, const TakePacket& takeOther,
                     const std::function<bool()>& done) {
  const AVStream& video = input_.video();
  FrameClock clock(video.time_base, job_.frames.rate, video.start_time);
  const Packet packet = makePacket();
  bool pastRange = false;
  while (!(pastRange && done()) && input_.read(*packet)) {
    if (!input_.isVideo(*packet)) {
      takeOther(*packet);
    } else if (packet->size > 0) {  // AVI marks a repeated frame with an empty packet
      const std::int64_t index =
          clock.indexOf(packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts);
      pastRange = index > job_.range.last;
      if (index < job_.range.first)
        burner_.pass(index, captionsOf(*packet));
      if (job_.range.contains(index)) {
        burn(*packet, index);
        takeVideo(*packet, index);
      }
    }
    av_packet_unref(packet.get());
  }
  burner_.finish(input_.path());
  return pastRange;
}

void NativeRoad::burn(AVPacket& packet, std::int64_t index) {
  if (av_packet_make_writable(&packet) < 0)
    throw std::bad_alloc();
  const Picture picture = rows_.rowsOf(packet);
  if (picture.planes[0] == nullptr)
    throw Failure(ExitCode::kInput, "a frame is cut short", input_.path(),
                  "frame " + std::to_string(index) + " has " + std::to_string(packet.size) +
                      " bytes; the input may be incomplete");
  burner_.burn(picture, index, captionsOf(packet));
  if (plain_)
    rows_.makePlain(packet, picture);
}

}  // namespace nkdraw::tool
