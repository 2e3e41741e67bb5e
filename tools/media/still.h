// SPDX-License-Identifier: BSD-2-Clause
//
// Stills: one frame as a picture file.
#pragma once

#include "media/libav.h"
#include "media/orientation.h"

#include <string>

namespace nkdraw::media {

/// Writes the frame, turned upright, into the file or pipe `file`, in RGB or, as JPEG, in YCbCr,
/// without alpha. The suffix of `name`, which messages use, says what kind of picture: PNG in a
/// pipe. Frames of more than 8 bits keep them in PNG, TIFF and DPX. Throws Failure.
void writeStill(AVFrame& frame, const std::string& file, const std::string& name,
                const Orientation& orientation = {});

}  // namespace nkdraw::media
