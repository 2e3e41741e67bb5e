// SPDX-License-Identifier: BSD-2-Clause
//
// Timecode that only the video itself holds: in the GOP headers of MPEG-2 (ISO/IEC 13818-2), in the
// picture timing of H.264 and HEVC (ITU-T H.264 and H.265, annex D), and in the subcode of DV
// (IEC 61834-4).
#pragma once

#include "media/media_input.h"

#include <string>

namespace nkdraw::media {

struct StreamTimecode {
  std::string text;  // "HH:MM:SS:FF", ';' before the frames for drop-frame; empty if there is none
  std::string origin;  // "the MPEG-2 GOP header"
};

/// The timecode of the video's first frame. Reads ahead in the input, which gives the packets out
/// again. Video of other codecs is not read.
[[nodiscard]] StreamTimecode streamTimecode(MediaInput& input);

}  // namespace nkdraw::media
