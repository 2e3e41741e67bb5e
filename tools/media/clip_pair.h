// SPDX-License-Identifier: BSD-2-Clause
//
// Two clips that are worked on together, frame by frame.
#pragma once

#include "media/clip_facts.h"
#include "media/media_input.h"

#include <cstdint>
#include <string>

namespace nkdraw::media {

/// Two clips of one frame size and one frame rate.
struct ClipPair {
  /// Throws Failure for clips that can't be read or that differ, and for an output that is one of
  /// them.
  ClipPair(const std::string& a, const std::string& b, const std::string& output);

  MediaInput a, b;
  FrameKind frames;  // of the first, and but for its origin of the second
};

/// What is known about a number of frames before they have been read.
struct FrameCount {
  std::int64_t frames = 0;  // 0: nothing
  bool exact = false;       // else one more or less

  /// Whether a clip surely has fewer.
  [[nodiscard]] bool isBelow(std::int64_t needed) const {
    return frames > 0 && frames + (exact ? 0 : 1) < needed;
  }
};

[[nodiscard]] FrameCount countOf(MediaInput& input);

}  // namespace nkdraw::media
