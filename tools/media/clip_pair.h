// SPDX-License-Identifier: BSD-2-Clause
//
// Two clips that are processed together, frame by frame.
#pragma once

#include "media/clip_facts.h"
#include "media/media_input.h"

#include <cstdint>
#include <string>

namespace nkdraw::media {

/// Two clips with the same frame size and frame rate.
struct ClipPair {
  /// Throws Failure if a clip can't be read, if the clips differ, or if the output is one of them.
  /// `shape` is of the piped clip, or of both if none is piped.
  ClipPair(const std::string& a, const std::string& b, const std::string& output,
           const InputShape& shape = {});

  /// What to do about damaged frames.
  void beginDamage(OnDamage action);

  MediaInput a, b;
  FrameKind frames;  // of the first clip; the second differs only in its origin
};

/// What is known about the number of frames before they have been read.
struct FrameCount {
  std::int64_t frames = 0;  // 0: nothing
  bool exact = false;       // otherwise within one

  /// Whether a clip certainly has fewer.
  [[nodiscard]] bool isBelow(std::int64_t needed) const {
    return frames > 0 && frames + (exact ? 0 : 1) < needed;
  }
};

[[nodiscard]] FrameCount countOf(MediaInput& input);

}  // namespace nkdraw::media
