// SPDX-License-Identifier: BSD-2-Clause
//
// Burns a job's overlay into uncompressed frames, where they are and however their rows are stored.
#pragma once

#include "burnin/burner.h"
#include "cli/using_media.h"
#include "media/canvas_stage.h"

#include <cstdint>

namespace nkdraw::tool {

class PictureBurner {
 public:
  PictureBurner(const Job& job, Storage storage);

  /// Draws on the frame `index` frames after the clip's first; `captions` are the clip's own.
  void burn(const Picture& picture, std::int64_t index, Captions captions);
  [[nodiscard]] Burner& burner() { return burner_; }

 private:
  CanvasStage stage_;
  Burner burner_;
};

}  // namespace nkdraw::tool
