// SPDX-License-Identifier: BSD-2-Clause
//
// How a viewer sees a frame: upright, or turned by quarters and mirrored.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

struct Pixel {
  int x, y;
};

/// From the picture that is shown to the frame that is stored.
struct Orientation {
  bool turned = false;                    ///< rows are shown as columns
  bool mirrorX = false, mirrorY = false;  ///< columns and rows of the frame that run backwards

  [[nodiscard]] bool isUpright() const { return !turned && !mirrorX && !mirrorY; }

  /// Where a pixel of the picture lies in the frame, which has this size.
  [[nodiscard]] Pixel inFrame(Pixel shown, int width, int height) const {
    const Pixel at = turned ? Pixel{shown.y, shown.x} : shown;
    return {mirrorX ? width - 1 - at.x : at.x, mirrorY ? height - 1 - at.y : at.y};
  }
};

/// The frame as it is shown. Its format must have Components without shared chroma.
[[nodiscard]] Frame upright(const AVFrame& frame, const Orientation& orientation);

/// Whether files of this format tell players how to turn the frames.
[[nodiscard]] bool tellsOrientation(const AVOutputFormat& format);

/// By the stream's display matrix; upright without one, and if it does more than turn by quarters
/// and mirror.
[[nodiscard]] Orientation orientationOf(const AVStream& video);

}  // namespace nkdraw::media
