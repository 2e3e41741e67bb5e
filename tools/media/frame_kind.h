// SPDX-License-Identifier: BSD-2-Clause
//
// What the frames of a clip are, and which of them to process.
#pragma once

#include "media/libav.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace nkdraw::media {

/// A clip's frames.
struct FrameKind {
  int width = 0, height = 0;
  AVRational rate = {25, 1};
  bool interlaced = false;
  std::uint32_t fileType = 0;    // hzwFileType
  std::uint32_t sourceCode = 0;  // code of the codec, for the format line
  bool pairs = false;            // whether the drawn format shares chroma between two pixels
};

/// No clip has more frames; times up to this number fit into 64 bits.
inline constexpr std::int64_t kMostFrames = std::int64_t{1} << 36;

/// Frame numbers from 0, both ends included.
struct FrameRange {
  std::int64_t first = 0;
  std::int64_t last = std::numeric_limits<std::int64_t>::max();

  [[nodiscard]] bool isWhole() const { return first == 0 && !isBounded(); }
  [[nodiscard]] bool isBounded() const { return last != std::numeric_limits<std::int64_t>::max(); }
  /// The number after the last; for an open range the largest integer, which no frame has.
  [[nodiscard]] std::int64_t end() const { return isBounded() ? last + 1 : last; }
  [[nodiscard]] bool contains(std::int64_t frame) const { return frame >= first && frame <= last; }
};

/// Positions of frames in an output, by their numbers; a second frame with the same time goes to
/// the next position.
class FramePlaces {
 public:
  [[nodiscard]] std::int64_t placeOf(std::int64_t index) {
    const std::int64_t place = std::max(index, next_);
    next_ = place + 1;
    return place;
  }
  /// The lowest position that is still free.
  [[nodiscard]] std::int64_t next() const { return next_; }

 private:
  std::int64_t next_ = 0;
};

}  // namespace nkdraw::media
