// SPDX-License-Identifier: BSD-2-Clause
//
// Boxes of bits, such as text with its background: a row of bits is plotted once, in a separate
// buffer, and then copied to all of its lines.
#pragma once

#include <nkdraw/surface/run_kernels.h>
#include <nkdraw/surface/run_loops.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace nkdraw {

/// Plotters whose pixels depend on nothing but x and their own old value. They offer
///
///     static constexpr int kGroupPixels;               // that share bytes
///     static constexpr std::size_t kGroupBytes;
///     char* rowAt(int y) const;                        // where x 0 lies
///     Plotter onCanvas(char* canvas) const;            // with row 0 there
template <class AnyPlotter>
concept RowPlotter = requires(const AnyPlotter& plotter, char* canvas) {
  AnyPlotter::kGroupPixels;
  AnyPlotter::kGroupBytes;
  plotter.rowAt(0);
  plotter.onCanvas(canvas);
};

/// Whether the whole box lies on the canvas, and its rows do not overlap.
template <RowPlotter AnyPlotter>
bool isInside(const BitBox& box, const NKPixel& surface) {
  const auto lines =
      std::accumulate(box.rows.begin(), box.rows.end(), std::int64_t{0},
                      [](std::int64_t sum, const BitLines& row) { return sum + row.lines; });
  const std::uint64_t groups =
      (std::uint64_t{surface.Width()} + AnyPlotter::kGroupPixels - 1) / AnyPlotter::kGroupPixels;
  return surface.GetCanvas() != nullptr && box.x >= 0 &&
         box.x + std::int64_t{box.pixels()} <= surface.Width() &&
         box.bottom < std::int64_t{surface.Height()} && box.bottom - lines + 1 >= 0 &&
         groups * AnyPlotter::kGroupBytes <= surface.Pitch() &&
         std::uint64_t{surface.Pitch()} * surface.Height() <= 0xFFFFFFFF;
}

/// Part of a row in a separate buffer, from the group that holds x on.
template <RowPlotter AnyPlotter>
class RowAside {
 private:
  static constexpr int kMostGroupPixels = 6;
  static constexpr std::size_t kMostBytesPerPixel = 8;
  static_assert(AnyPlotter::kGroupPixels <= kMostGroupPixels);
  static_assert(AnyPlotter::kGroupBytes <= AnyPlotter::kGroupPixels * kMostBytesPerPixel);
  /// Room for the longest row, and for the rest of its first and its last group.
  using Bytes =
      std::array<std::uint8_t, (BitBox::kMostPixels + 2 * kMostGroupPixels) * kMostBytesPerPixel>;

  static auto on(Bytes& bytes, const AnyPlotter& plotter) {
    return plotter.onCanvas(reinterpret_cast<char*>(bytes.data()));
  }

 public:
  RowAside(int x, std::uint32_t pixels)
      : skipped_(x % AnyPlotter::kGroupPixels),
        pixels_(pixels),
        bytes_((static_cast<std::size_t>(skipped_) + pixels + AnyPlotter::kGroupPixels - 1) /
               AnyPlotter::kGroupPixels * AnyPlotter::kGroupBytes),
        offset_(static_cast<std::size_t>(x / AnyPlotter::kGroupPixels) * AnyPlotter::kGroupBytes) {}

  /// Finds the bits of the row that a plotter leaves alone: those that still differ after it has
  /// plotted on zeros and on ones.
  void findKept(const AnyPlotter& plotter) {
    for (Bytes* const bytes : {&row_, &kept_}) {
      std::memset(bytes->data(), bytes == &kept_ ? 0xFF : 0, bytes_);
      plotRow(on(*bytes, plotter), skipped_, 0, pixels_, 1);
    }
    for (std::size_t i = 0; i < bytes_; ++i)
      kept_[i] ^= row_[i];
  }

  void plot(const AnyPlotter& background, const AnyPlotter& foreground, const std::uint8_t* bits,
            std::uint32_t count, std::uint32_t scale) {
    const auto paper = on(row_, background), ink = on(row_, foreground);
    for (std::uint32_t i = 0; i < count; ++i)
      plotBits(&paper, ink, bits[i], skipped_ + static_cast<int>(8 * scale * i), 0, scale);
  }

  void layOn(char* row) const {
    runKernels().merge(reinterpret_cast<std::uint8_t*>(row) + offset_, kept_.data(), row_.data(),
                       bytes_);
  }

 private:
  int skipped_;  // pixels of the first group
  std::uint32_t pixels_;
  std::size_t bytes_, offset_;
  Bytes row_, kept_;
};

/// False if this is no way to draw the box: the caller must.
template <class AnyPlotter>
bool plotBox(const AnyPlotter& background, const AnyPlotter& foreground, const NKPixel& surface,
             const BitBox& box) {
  if constexpr (requires { &AnyPlotter::template unfoldBoth<int>; }) {
    return AnyPlotter::unfoldBoth(background, foreground, [&](const auto& paper, const auto& ink) {
      return plotBox(paper, ink, surface, box);
    });
  } else if constexpr (RowPlotter<AnyPlotter>) {
    if (!isInside<AnyPlotter>(box, surface))
      return false;
    RowAside<AnyPlotter> aside(box.x, box.pixels());
    aside.findKept(background);
    int y = box.bottom;
    for (const BitLines& row : box.rows) {
      aside.plot(background, foreground, row.bits.data(), box.bytes, box.scale);
      for (std::uint32_t line = 0; line < row.lines; ++line, --y)
        aside.layOn(background.rowAt(y));
    }
    return true;
  } else {
    return false;
  }
}

}  // namespace nkdraw
