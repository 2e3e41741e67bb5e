// SPDX-License-Identifier: BSD-2-Clause
//
// Whether a clip has the frames asked for. Nothing is cut short.
#pragma once

#include "cli/using_media.h"
#include "media/frame_kind.h"
#include "media/media_input.h"

#include <algorithm>
#include <cstdint>

namespace nkdraw::tool {

/// The number of frames of the range that the clip has, if known; otherwise 0.
[[nodiscard]] std::int64_t expectedFrames(MediaInput& input, const FrameRange& range);

/// Throws Failure if the clip is known to end before the range does.
void checkRange(MediaInput& input, const FrameRange& range);

/// What was read of a range.
struct RangeRead {
  std::int64_t written = 0;  // frames
  std::int64_t last = -1;    // the largest number of one
  bool continues = false;    // whether the video continues past the range

  void note(std::int64_t index) {
    ++written;
    last = std::max(last, index);
  }
};

/// Throws Failure if the video ended before the range, or has no frame in it.
void checkRead(const RangeRead& read, MediaInput& input, const FrameRange& range);

}  // namespace nkdraw::tool
