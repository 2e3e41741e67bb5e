// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/picture_burner.h"

namespace nkdraw::tool {

PictureBurner::PictureBurner(const Job& job, Storage storage)
    : stage_(*job.layout, storage, job.frames.width, job.frames.height, job.plan.rows(),
             job.plan.canvasUse()),
      burner_(job, stage_.canvasLayout()) {}

void PictureBurner::burn(const Picture& picture, std::int64_t index, Captions captions) {
  stage_.draw(picture, [&](std::uint8_t* canvas) { burner_.burn(canvas, index, captions); });
}

}  // namespace nkdraw::tool
