// SPDX-License-Identifier: BSD-2-Clause
//
// The format in which decoded frames are drawn on.
#pragma once

#include "media/canvas_stage.h"
#include "media/layouts.h"
#include "media/libav.h"

namespace nkdraw::media {

/// The format in which frames of `source` are drawn on: 10-bit 4:2:2 for YCbCr with more than 8
/// bits, UYVY for other YCbCr and grey, 32-bit RGB for RGB.
[[nodiscard]] AVPixelFormat drawnFormat(AVPixelFormat source);
/// The layout of the canvas for a drawn format.
[[nodiscard]] const Layout& canvasFor(AVPixelFormat drawn);

/// How the samples of a drawn format are stored.
[[nodiscard]] Storage storageOf(AVPixelFormat drawn);

/// Where the rows of a frame in a drawn format are.
[[nodiscard]] Picture planesOf(AVFrame& frame);

}  // namespace nkdraw::media
