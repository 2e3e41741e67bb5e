// SPDX-License-Identifier: BSD-2-Clause
//
// The format in which decoded frames are drawn on.
#pragma once

#include "media/canvas_stage.h"
#include "media/layouts.h"
#include "media/libav.h"

namespace nkdraw::media {

/// The nearest format that surfaces draw in: 10-bit 4:2:2 for YCbCr with more than 8
/// bits, UYVY for other YCbCr and grey, 32-bit RGB for RGB.
[[nodiscard]] AVPixelFormat drawnFormat(AVPixelFormat source);
/// `source` itself if frames can be drawn on in it, as FrameCanvas does, else the nearest format.
[[nodiscard]] AVPixelFormat keptFormat(AVPixelFormat source);

/// How the samples of a drawn format are stored.
[[nodiscard]] Storage storageOf(AVPixelFormat drawn);

/// Where the rows of a frame in a drawn format are.
[[nodiscard]] Picture planesOf(AVFrame& frame);

}  // namespace nkdraw::media
