// SPDX-License-Identifier: BSD-2-Clause
//
// What the frames of a clip are, and which of them are meant.
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
  std::uint32_t sourceCode = 0;  // codec code that the format line names
  bool pairs = false;            // two pixels share their chroma where they are drawn on
};

/// No clip has more frames, and the times of so many can be reckoned in 64 bits.
inline constexpr std::int64_t kMostFrames = std::int64_t{1} << 36;

/// Frame numbers from 0, both ends included.
struct FrameRange {
  std::int64_t first = 0;
  std::int64_t last = std::numeric_limits<std::int64_t>::max();

  [[nodiscard]] bool isWhole() const { return first == 0 && !isBounded(); }
  [[nodiscard]] bool isBounded() const { return last != std::numeric_limits<std::int64_t>::max(); }
  /// The first number beyond; for an open range the largest that there is, which no frame has.
  [[nodiscard]] std::int64_t end() const { return isBounded() ? last + 1 : last; }
  [[nodiscard]] bool contains(std::int64_t frame) const { return frame >= first && frame <= last; }
};

/// Where frames go in an output, by their numbers; two at one time go one after the other.
class FramePlaces {
 public:
  [[nodiscard]] std::int64_t placeOf(std::int64_t index) {
    const std::int64_t place = std::max(index, next_);
    next_ = place + 1;
    return place;
  }
  /// The least place that no frame has yet.
  [[nodiscard]] std::int64_t next() const { return next_; }

 private:
  std::int64_t next_ = 0;
};

}  // namespace nkdraw::media
