// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/burner.h"

#include "burnin/caption_track.h"

#include <algorithm>
#include <cstdio>

namespace nkdraw::tool {

Burner::Burner(const Job& job, const Layout& canvas)
    : job_(job), session_(job.plan, job.shown, job.timecode, canvas) {
  if (job.sound != nullptr)
    meters_.emplace(*job.sound, job.frames.rate);
}

/// A file's captions are found by frame numbers, including numbers without a frame.
Captions Burner::captionsAt(std::int64_t index, Captions own) {
  hadCaptions_ = hadCaptions_ || !own.empty();
  if (job_.captions == nullptr)
    return own;
  for (; next_ < index; ++next_)
    session_.pass(job_.captions->at(next_));
  if (next_ > index)
    return {};  // a second frame with the same time
  ++next_;
  return job_.captions->at(index);
}

/// Whether the frame gets the mark of damaged ones.
bool Burner::isDamaged(std::int64_t index) const {
  return job_.plan.request.markDamage && job_.damage != nullptr && job_.damage->contains(index);
}

void Burner::burn(std::uint8_t* canvas, std::int64_t index, Captions captions) {
  FrameExtras extras;
  if (job_.plan.request.captions)
    extras.captions = captionsAt(index, captions);
  if (meters_) {
    meters_->advanceTo(index);
    extras.levels = meters_->levels();
    extras.peaks = meters_->peaks();
  }
  extras.damaged = isDamaged(index);
  session_.burn(canvas, index, extras);
}

std::span<const tagRECT> Burner::touched(std::int64_t index) {
  return session_.touched(index, isDamaged(index));
}

void Burner::pass(std::int64_t index, Captions captions) {
  if (job_.plan.request.captions)
    session_.pass(captionsAt(index, captions));
}

void Burner::finish(const std::string& path) const {
  const auto& asked = job_.plan.request.captions;
  if (asked && !asked->file && !hadCaptions_)
    std::fprintf(stderr, "nkdraw: no captions came with the video: %s; try --captions-file\n",
                 path.c_str());
}

Captions captionsOf(const AVFrame& frame) {
  const AVFrameSideData* const side = av_frame_get_side_data(&frame, AV_FRAME_DATA_A53_CC);
  return side != nullptr ? Captions(side->data, side->size) : Captions();
}

Captions captionsOf(const AVPacket& packet) {
  std::size_t size = 0;
  const std::uint8_t* const data = av_packet_get_side_data(&packet, AV_PKT_DATA_A53_CC, &size);
  return data != nullptr ? Captions(data, size) : Captions();
}

}  // namespace nkdraw::tool
