// SPDX-License-Identifier: BSD-2-Clause
//
// Where to begin to read a clip, so that a frame far from its beginning costs no more than one near
// to it.
#pragma once

#include "media/libav.h"
#include "media/media_input.h"

#include <cstdint>

namespace nkdraw::media {

/// The frame that is wanted, and how it will be read.
struct StartRequest {
  std::int64_t frame = 0;     ///< as FrameClock numbers it
  AVRational rate = {25, 1};  ///< frames a second
  bool otherStreams = false;  ///< packets of other streams are wanted too, from its time on
};

/// The place from which a run gives this frame, all later ones, and what comes with them as a run
/// over the whole clip would: the same numbers and the same pixels. Tries it on the file, opened
/// once more. The beginning, if the clip's kind of file, its times or its frames leave a doubt.
[[nodiscard]] StartPoint startFor(MediaInput& input, const StartRequest& request);

}  // namespace nkdraw::media
