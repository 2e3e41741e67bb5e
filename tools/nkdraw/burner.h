// SPDX-License-Identifier: BSD-2-Clause
//
// Burns a job's overlay into frames, however their rows are stored.
#pragma once

#include "canvas_stage.h"
#include "job.h"
#include "overlay_session.h"

namespace nkdraw::tool {

class Burner {
 public:
  Burner(const Job& job, Storage storage)
      : stage_(*job.layout, storage, job.frames.width, job.frames.height, job.plan.rows(),
               job.plan.pairsWhole()),
        session_(job.plan, job.frames, job.timecode, stage_.canvasLayout()) {}

  /// Draws on the frame, `index` frames after the clip's first.
  void burn(const Picture& picture, std::int64_t index) {
    stage_.draw(picture, [&](std::uint8_t* canvas) { session_.burn(canvas, index); });
  }

 private:
  CanvasStage stage_;
  OverlaySession session_;
};

}  // namespace nkdraw::tool
