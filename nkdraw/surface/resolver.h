// SPDX-License-Identifier: BSD-2-Clause
//
// Runs of pixels on any surface.
#pragma once

#include <nkdraw/surface/pixel.h>
#include <nkdraw/surface/wrapping.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace nkdraw {

/// Positions one by one along an axis, the major one; the other coordinate is a 16.16 fixed-point
/// number.
struct Slope {
  bool alongY;          ///< which axis is the major one
  int direction;        ///< 1 or -1
  std::uint32_t count;  ///< of positions
  int major;
  std::uint32_t minor;  ///< 16.16, wrapping
  std::uint32_t step;   ///< of minor for each position

  /// Leaves out the first `positions`.
  void skip(std::uint32_t positions) {
    count -= positions;
    major = wrappingAdd(major, std::int64_t{direction} * positions);
    minor += step * positions;
  }
};

/// The bits of up to kMostBytes bytes side by side, the highest first, on so many lines.
struct BitLines {
  static constexpr std::size_t kMostBytes = 48;
  std::array<std::uint8_t, kMostBytes> bits;
  std::uint32_t lines;
};

/// Lines of bits from (x, bottom) to the right and upward, each bit `scale` pixels wide. No more
/// than kMostPixels wide.
struct BitBox {
  static constexpr std::uint32_t kMostPixels = 384;
  std::span<const BitLines> rows;
  std::uint32_t bytes;  ///< in each row
  int x, bottom;
  std::uint32_t scale;

  [[nodiscard]] std::uint32_t pixels() const { return bytes * 8 * scale; }
};

/// Plots runs of pixels on one surface, whose class it finds out once. The result is that of the
/// virtual PutPixel for each pixel in turn: on an object of one of the library's own classes the
/// layout's inlined plotting does a run at once; on any other the table is called pixel by pixel,
/// so that an override sees every pixel in order.
class RunPlotter {
 public:
  /// For one primitive: while it draws, the surface keeps its canvas, colours and transparency.
  explicit RunPlotter(NKPixel& surface);

  /// Whether the surface is of one of the library's own classes, none of which overrides a drawing
  /// operation: what these would call may then be plotted here.
  [[nodiscard]] bool ownClass() const { return ownClass_; }

  /// Plots (x, y) and further pixels of its row, `count` in all, to the right with `step` 1 and to
  /// the left with `step` -1. None for a count of 0.
  void row(int x, int y, std::uint32_t count, int step, bool foreground) const {
    runs_->row(plotters_[foreground ? 1 : 0].data(), x, y, count, step);
  }

  /// Plots (x, y) and the pixels below it, `count` in all.
  void column(int x, int y, std::uint32_t count, bool foreground) const {
    if (x == static_cast<std::int16_t>(x))
      return slope({true, 1, count, y, static_cast<std::uint32_t>(x) << 16, 0}, foreground);
    for (; count > 0; --count, y = wrappingAdd(y, 1))  // out of a slope's reach
      row(x, y, 1, 1, foreground);
  }

  void slope(const Slope& positions, bool foreground) const { slopes({&positions, 1}, foreground); }

  /// Plots one slope after the other.
  void slopes(std::span<const Slope> all, bool foreground) const {
    runs_->slopes(plotters_[foreground ? 1 : 0].data(), all);
  }

  /// Plots eight bits, the highest at (x, y) and the others to its right, each `scale` pixels wide:
  /// the set ones in the foreground and, unless `transparent`, the others in the background.
  void bits(unsigned bits, int x, int y, std::uint32_t scale, bool transparent) const {
    runs_->bits(transparent ? nullptr : plotters_[0].data(), plotters_[1].data(), bits, x, y,
                scale);
  }

  /// Plots a box of bits in both colours, if the layout has a short way to do so; false when it is
  /// left to the caller.
  [[nodiscard]] bool box(const BitBox& box) const {
    return runs_->box(plotters_[0].data(), plotters_[1].data(), surface_, box);
  }

  /// How a kind of plotter, given by its address, plots.
  struct Runs {
    void (*row)(const void* plotter, int x, int y, std::uint32_t count, int step);
    void (*slopes)(const void* plotter, std::span<const Slope> all);
    void (*bits)(const void* background, const void* foreground, unsigned bits, int x, int y,
                 std::uint32_t scale);
    bool (*box)(const void* background, const void* foreground, const NKPixel& surface,
                const BitBox& box);
  };
  /// Room for a plotter of any kind.
  using Storage = std::array<std::byte, 64>;

 private:
  alignas(std::max_align_t) std::array<Storage, 2> plotters_;  // background, foreground
  const NKPixel& surface_;
  const Runs* runs_;
  bool ownClass_;
};

}  // namespace nkdraw
