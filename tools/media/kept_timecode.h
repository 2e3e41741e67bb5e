// SPDX-License-Identifier: BSD-2-Clause
//
// Whether an output tells the timecode that it was given.
#pragma once

#include "media/libav.h"

#include <string>

namespace nkdraw::media {

/// What an output should tell of its first frame.
struct OutputTimecode {
  std::string text;  // empty: nothing
  AVRational rate;
  AVCodecID codec;  // of its video
};

/// Whether files of this format have a place for the timecode of the video.
[[nodiscard]] bool holdsTimecode(const AVOutputFormat& format);

/// What a user should know beforehand: that files of this format hold no timecode, and which do.
/// Empty if they may hold it.
[[nodiscard]] std::string foreseenLoss(const AVOutputFormat& format,
                                       const OutputTimecode& timecode);

/// What a user should know of the complete file `file`, which messages call `name`: that it tells
/// another timecode, or none. Empty if it tells this one, if the loss was foreseen, and for pipes,
/// which can't be read again.
[[nodiscard]] std::string foundLoss(const std::string& file, const std::string& name,
                                    const AVOutputFormat& format, const OutputTimecode& timecode);

}  // namespace nkdraw::media
