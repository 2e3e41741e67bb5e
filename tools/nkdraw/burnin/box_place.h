// SPDX-License-Identifier: BSD-2-Clause
//
// Where boxes lie in a frame.
#pragma once

#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/frame_kind.h"

#include <cstdint>
#include <string>

namespace nkdraw::tool {

[[nodiscard]] inline int even(int value) {
  return value & ~1;
}

/// Where a block of text begins; in interlaced frames on an even row.
[[nodiscard]] inline int rowIn(const FrameKind& frames, int y) {
  return frames.interlaced ? even(y) : y;
}

/// A margin that leaves room for `extent` pixels of `frame`, if possible.
[[nodiscard]] int margin(int frame, int extent);

/// Throws Failure with this advice if the box `what` leaves the frame. Its far corners, one column
/// and one row past it, may lie on the edge.
void checkInside(const std::string& what, Point at, std::int64_t right, std::int64_t bottom,
                 const FrameKind& frames, const std::string& advice);

}  // namespace nkdraw::tool
