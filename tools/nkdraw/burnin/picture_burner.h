// SPDX-License-Identifier: BSD-2-Clause
//
// Burns a job's overlay into uncompressed frames, where they are and however their rows are stored.
#pragma once

#include "burnin/burner.h"
#include "cli/using_media.h"
#include "media/canvas_stage.h"
#include "media/frame_canvas.h"
#include "media/libav.h"

#include <cstdint>
#include <optional>

namespace nkdraw::tool {

/// The library's boxes have alpha 0. In layouts with alpha, all that is drawn becomes opaque,
/// unless the job asks for the library's alpha.
class PictureBurner {
 public:
  PictureBurner(const Job& job, Storage storage);

  /// Draws on the frame `index` frames after the clip's first; `captions` are the clip's own.
  void burn(const Picture& picture, std::int64_t index, Captions captions);
  [[nodiscard]] Burner& burner() { return *burner_; }

 private:
  AVFrame& frameOf(const Picture& picture);

  // One of the two.
  std::optional<CanvasStage> stage_;
  std::optional<FrameCanvas> opaque_;
  Frame frame_ = makeFrame();
  std::optional<Burner> burner_;
};

}  // namespace nkdraw::tool
