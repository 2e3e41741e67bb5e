// SPDX-License-Identifier: BSD-2-Clause
//
// Runs of pixels on any surface.
#pragma once

#include <nkdraw/surface/pixel.h>

#include <array>
#include <cstddef>

namespace nkdraw {

/// Plots runs of pixels on one surface, whose class it finds out once. The result is that of the
/// virtual PutPixel for each pixel in turn: on an object of one of the library's own classes the
/// layout's inlined plotting does a run at once; on any other the table is called pixel by pixel,
/// so that an override sees every pixel in order.
class RunPlotter {
 public:
  /// For one primitive: while it draws, the surface keeps its canvas, colours and transparency.
  explicit RunPlotter(NKPixel& surface);

  /// Plots (x, y) and further pixels of its row, `count` in all, to the right with `step` 1 and to
  /// the left with `step` -1. None for a count of 0.
  void row(int x, int y, std::uint32_t count, int step, bool foreground) const {
    row_(plotters_[foreground ? 1 : 0].data(), x, y, count, step);
  }

  /// Plots (x, y) and further pixels of its column, downward or with `step` -1 upward.
  void column(int x, int y, std::uint32_t count, int step, bool foreground) const {
    column_(plotters_[foreground ? 1 : 0].data(), x, y, count, step);
  }

  /// How a kind of plotter, given by its address, plots a run.
  using Run = void (*)(const void* plotter, int x, int y, std::uint32_t count, int step);
  /// Room for a plotter of any kind.
  using Storage = std::array<std::byte, 48>;

 private:
  alignas(std::max_align_t) std::array<Storage, 2> plotters_;  // background, foreground
  Run row_;
  Run column_;
};

}  // namespace nkdraw
