// SPDX-License-Identifier: BSD-2-Clause
//
// What a burn-in settles before the first frame.
#pragma once

#include "layouts.h"
#include "overlay_plan.h"
#include "timecode_source.h"

#include <cstdint>
#include <limits>
#include <memory>

namespace nkdraw::tool {

class CaptionTrack;
struct SoundTrack;

/// No clip has more frames, and the times of so many can be reckoned in 64 bits.
inline constexpr std::int64_t kMostFrames = std::int64_t{1} << 36;

/// Frame numbers from 0, both ends included.
struct FrameRange {
  std::int64_t first = 0;
  std::int64_t last = std::numeric_limits<std::int64_t>::max();

  [[nodiscard]] bool isWhole() const { return first == 0 && !isBounded(); }
  [[nodiscard]] bool isBounded() const { return last != std::numeric_limits<std::int64_t>::max(); }
  [[nodiscard]] bool contains(std::int64_t frame) const { return frame >= first && frame <= last; }
};

/// One clip's burn-in.
struct Job {
  const Layout* layout = nullptr;  // of the frames that are drawn on
  bool inPlace = false;            // they are the file's own packets
  FrameKind frames;
  TimecodeStart timecode;
  OverlayPlan plan;
  FrameRange range;
  std::shared_ptr<const CaptionTrack> captions;  // from a file of their own
  std::shared_ptr<const SoundTrack> sound;       // for the meters
};

}  // namespace nkdraw::tool
