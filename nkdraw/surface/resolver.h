// SPDX-License-Identifier: BSD-2-Clause
//
// Runs of pixels on any surface.
#pragma once

#include <nkdraw/surface/pixel.h>

namespace nkdraw {

/// Plots runs of pixels on one surface, which it looks at once. The result is that of the virtual
/// PutPixel for each pixel in turn: on an object of one of the library's own classes the layout's
/// inlined plotting does a run at once; on any other the table is called pixel by pixel, so that
/// an override sees every pixel in order.
class RunPlotter {
 public:
  /// For one primitive: the surface must stay alive and keep its canvas; its colours may change.
  explicit RunPlotter(NKPixel& surface);

  /// Plots (x, y) and further pixels of its row, `count` in all, to the right with `step` 1 and to
  /// the left with `step` -1. None for a count of 0.
  void row(int x, int y, std::uint32_t count, int step, bool foreground) const {
    row_(surface_, x, y, count, step, foreground);
  }

  /// Plots (x, y) and further pixels of its column, downward or with `step` -1 upward.
  void column(int x, int y, std::uint32_t count, int step, bool foreground) const {
    column_(surface_, x, y, count, step, foreground);
  }

  using Run = void (*)(void* surface, int x, int y, std::uint32_t count, int step, bool foreground);

 private:
  void* surface_;  // the object as row_ and column_ know it
  Run row_;
  Run column_;
};

}  // namespace nkdraw
