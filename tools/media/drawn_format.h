// SPDX-License-Identifier: BSD-2-Clause
//
// The format that decoded pictures are drawn on in.
#pragma once

#include "media/canvas_stage.h"
#include "media/layouts.h"
#include "media/libav.h"

namespace nkdraw::media {

/// The format in which pictures of `source` are drawn on: 10-bit 4:2:2 for YCbCr with more than 8
/// bits, UYVY for other YCbCr and grey, 32-bit RGB for RGB.
[[nodiscard]] AVPixelFormat drawnFormat(AVPixelFormat source);
/// The layout of the canvas for a drawn format.
[[nodiscard]] const Layout& canvasFor(AVPixelFormat drawn);

/// Draws on a picture of a drawn format.
[[nodiscard]] Picture planesOf(AVFrame& picture);

}  // namespace nkdraw::media
