// SPDX-License-Identifier: BSD-2-Clause
//
// The library's overlay, set up for one clip.
#pragma once

#include "layouts.h"
#include "overlay_plan.h"

#include <nkdraw/overlay/overlay.h>

#include <cstdint>

namespace nkdraw::tool {

/// Burns what a plan asks for into the frames of one clip.
class OverlaySession : private CNkOverlay {
 public:
  OverlaySession(const OverlayPlan& plan, const FrameKind& frames, const TimecodeStart& timecode,
                 const Layout& canvas);

  /// Draws on a packed frame of the canvas layout, the one `index` frames after the first.
  void burn(std::uint8_t* canvas, std::int64_t index);

 private:
  void place(const OverlayPlan& plan);

  TimecodeStart timecode_;
};

}  // namespace nkdraw::tool
