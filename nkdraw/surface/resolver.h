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

/// Positions in steps of one along the major axis; the other coordinate is a 16.16 fixed-point
/// number.
struct Slope {
  bool alongY;          ///< whether y is the major axis
  int direction;        ///< 1 or -1
  std::uint32_t count;  ///< of positions
  int major;
  std::uint32_t minor;  ///< 16.16, wrapping
  std::uint32_t step;   ///< of minor for each position

  /// Skips the first `positions`.
  void skip(std::uint32_t positions) {
    count -= positions;
    major = wrappingAdd(major, std::int64_t{direction} * positions);
    minor += step * positions;
  }
};

/// `lines` runs of `columns` pixels, one below the other.
struct PixelBlock {
  int x;
  std::int64_t top;  ///< of the first run; rows wrap like coordinates
  std::uint32_t columns;
  std::int64_t lines;
};

/// Bits in up to kMostBytes bytes side by side, the highest bit first, on several lines.
struct BitLines {
  static constexpr std::size_t kMostBytes = 48;
  std::array<std::uint8_t, kMostBytes> bits;
  std::uint32_t lines;
};

/// Lines of bits from (x, bottom) to the right and upward, each bit `scale` pixels wide. At most
/// kMostPixels wide.
struct BitBox {
  static constexpr std::uint32_t kMostPixels = 384;
  std::span<const BitLines> rows;
  std::uint32_t bytes;  ///< in each row
  int x, bottom;
  std::uint32_t scale;

  [[nodiscard]] std::uint32_t pixels() const { return bytes * 8 * scale; }
  [[nodiscard]] PixelBlock pixelBlock() const {
    std::int64_t lines = 0;
    for (const BitLines& row : rows)
      lines += row.lines;
    return {x, bottom - lines + 1, pixels(), lines};
  }
};

/// Plots runs of pixels on one surface, whose class it checks once. The result is the same as
/// calling the virtual PutPixel for each pixel in turn. On an object of one of the library's own
/// classes the layout's inlined plotting draws a whole run. On any other, the virtual function is
/// called pixel by pixel, so that an override sees every pixel in order.
class RunPlotter {
 public:
  /// For one primitive: while it draws, the surface keeps its canvas, colours and transparency.
  explicit RunPlotter(NKPixel& surface);

  /// Whether the surface is of one of the library's own classes. These override no drawing
  /// operation, so whatever an operation would call may be plotted here instead.
  [[nodiscard]] bool ownClass() const { return ownClass_; }

  /// Whether it is one of these and plots as NKPixel does.
  [[nodiscard]] bool plotsAsPixel() const { return plotsAsPixel_; }

  /// Plots `count` pixels of a row from (x, y) on, to the right if `step` is 1 and to the left if
  /// it is -1. None for a count of 0.
  void row(int x, int y, std::uint32_t count, int step, bool foreground) const {
    runs_->row(plotters_[foreground ? 1 : 0].data(), x, y, count, step);
  }

  /// Plots `count` pixels of a column from (x, y) down.
  void column(int x, int y, std::uint32_t count, bool foreground) const {
    if (x == static_cast<std::int16_t>(x))
      return slope({true, 1, count, y, static_cast<std::uint32_t>(x) << 16, 0}, foreground);
    for (; count > 0; --count, y = wrappingAdd(y, 1))  // out of a slope's reach
      row(x, y, 1, 1, foreground);
  }

  /// Plots a block from its first run down.
  void block(const PixelBlock& block, bool foreground) const {
    runs_->block(plotters_[foreground ? 1 : 0].data(), surface_, block);
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

  /// Plots a box of bits in both colours if the layout has a fast way; otherwise returns false, and
  /// the caller must.
  [[nodiscard]] bool box(const BitBox& box) const {
    return runs_->box(plotters_[0].data(), plotters_[1].data(), surface_, box);
  }

  /// How a kind of plotter plots, given by its address.
  struct Runs {
    void (*row)(const void* plotter, int x, int y, std::uint32_t count, int step);
    void (*block)(const void* plotter, const NKPixel& surface, const PixelBlock& block);
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
  bool ownClass_, plotsAsPixel_;
};

}  // namespace nkdraw
