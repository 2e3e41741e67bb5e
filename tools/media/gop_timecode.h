// SPDX-License-Identifier: BSD-2-Clause
//
// The timecode that MPEG-1 and MPEG-2 video carries itself, in its GOP headers (ISO/IEC 13818-2).
#pragma once

#include "media/encoder.h"
#include "media/libav.h"

#include <string>

namespace nkdraw::media {

/// Has the encoder write `timecode` for the first frame, and count from there, if it can at this
/// rate. Options that the user gave for it win. Returns whether the video will have a timecode.
bool writeGOPTimecode(CodecChoice& choice, const std::string& timecode, AVRational rate);

}  // namespace nkdraw::media
