// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/picture_burner.h"

namespace nkdraw::tool {
namespace {

bool hasAlpha(const Layout& layout) {
  return (av_pix_fmt_desc_get(layout.pixelFormat)->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

}  // namespace

PictureBurner::PictureBurner(const Job& job, Storage storage) {
  const auto [width, height] = std::pair(job.frames.width, job.frames.height);
  if (hasAlpha(*job.layout) && !job.libraryAlpha)
    opaque_.emplace(FrameShape{job.layout->pixelFormat, width, height}, job.plan.rows(),
                    job.plan.blended());
  else
    stage_.emplace(*job.layout, storage, width, height, job.plan.rows(), job.plan.canvasUse());
  burner_.emplace(job, opaque_ ? opaque_->layout() : stage_->canvasLayout());
  frame_->format = job.layout->pixelFormat;
  frame_->width = width;
  frame_->height = height;
}

/// The picture as FFmpeg describes packed frames.
AVFrame& PictureBurner::frameOf(const Picture& picture) {
  frame_->data[0] = picture.planes[0];
  frame_->linesize[0] = static_cast<int>(picture.pitches[0]);
  return *frame_;
}

void PictureBurner::burn(const Picture& picture, std::int64_t index, Captions captions) {
  const auto draw = [&](std::uint8_t* canvas) { burner_->burn(canvas, index, captions); };
  if (opaque_)
    opaque_->draw(frameOf(picture), draw);
  else
    stage_->draw(picture, draw);
}

}  // namespace nkdraw::tool
