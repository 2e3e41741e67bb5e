// SPDX-License-Identifier: BSD-2-Clause
//
// 8-bit 4:2:2: which byte of a pair is which sample, and how pixels are written.
#pragma once

#include <nkdraw/formats/ycbcr8.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/surface/plotter.h>
#include <nkdraw/surface/run_kernels.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>

namespace nkdraw::ycbcr8 {

/// The samples are the same in all four orders, except for their sequence.
inline constexpr const LayoutFacts& kFacts = kFactsOf<ptUYVY>;

/// Byte offsets in the four bytes that two pixels share.
struct PairOrder {
  std::uint8_t luma[2];
  std::uint8_t cb, cr;
};

constexpr PairOrder pairOrderOf(const LayoutFacts& facts) {
  const auto place = [&facts](Channel channel, std::size_t n = 0) {
    return static_cast<std::uint8_t>(sampleOf(facts, channel, n));
  };
  return {{place(Channel::kY), place(Channel::kY, 1)}, place(Channel::kCb), place(Channel::kCr)};
}

/// By pixelType from ptYUYV on.
inline constexpr std::array<PairOrder, 4> kPairOrders = {
    pairOrderOf(kFactsOf<ptYUYV>), pairOrderOf(kFactsOf<ptUYVY>), pairOrderOf(kFactsOf<ptYVYU>),
    pairOrderOf(kFactsOf<ptVYUY>)};

[[nodiscard]] constexpr const PairOrder& pairOrder(pixelType type) {
  return kPairOrders[type >= ptYUYV && type <= ptVYUY ? static_cast<std::size_t>(type - ptYUYV)
                                                      : 1];
}

/// The bits of a pair's word that an even (0) or odd (1) x leaves alone: one luma. Deliberate:
/// callers rely on it. The orders that begin with luma keep the luma at the pixel's own place and
/// write the other.
[[nodiscard]] constexpr std::uint32_t keptBits(pixelType type, unsigned parity) {
  const PairOrder& order = pairOrder(type);
  const bool lumaFirst = order.luma[0] == 0;
  return 0xFFU << (8 * order.luma[lumaFirst ? parity : 1 - parity]);
}

}  // namespace nkdraw::ycbcr8

namespace nkdraw {

template <>
class Plotter<CDrawYCbCrYUYV> {
 public:
  Plotter(const CDrawYCbCrYUYV& surface, bool foreground)
      : canvas_(surface.canvas),
        width_(surface.width),
        height_(surface.height),
        pitch_(surface.pitch),
        colour_(foreground ? surface.foregroundCode : surface.backgroundCode),
        kept_{ycbcr8::keptBits(surface.pixelKind, 0), ycbcr8::keptBits(surface.pixelKind, 1)} {}

  std::uint32_t put(int x, int y) const {
    if (drawable())
      merge(rowStart(y), static_cast<std::uint32_t>(x));
    return 0;
  }

  static constexpr int kGroupPixels = ycbcr8::kFacts.groupPixels;
  static constexpr std::size_t kGroupBytes = ycbcr8::kFacts.groupBytes;
  [[nodiscard]] char* rowAt(int y) const { return rowStart(y); }
  [[nodiscard]] Plotter onCanvas(char* canvas) const {
    Plotter same = *this;
    same.canvas_ = canvas;
    return same;
  }

  /// Also prefetches what lies `ahead` of the pixel, wherever that is.
  void putAhead(int x, int y, std::ptrdiff_t ahead) const {
    if (!drawable())
      return;
    char* const row = rowStart(y);
    prefetch(pairAt(row, static_cast<std::uint32_t>(x)), ahead);
    merge(row, static_cast<std::uint32_t>(x));
  }
  /// From one pixel to another, so many columns and rows away.
  [[nodiscard]] std::ptrdiff_t distance(int columns, int rows) const {
    return std::ptrdiff_t{pitch_} * rows + 2 * columns;
  }

  void row(int x, int y, int count) const {
    if (!drawable() || count <= 0)
      return;
    char* const start = rowStart(y);
    const auto first = static_cast<std::uint32_t>(x);
    const auto end = first + static_cast<std::uint32_t>(count);
    const std::uint32_t inside = x < 0 ? first : std::min(std::max(first, width_), end);
    fill(start, first, inside);
    for (std::uint32_t column = inside; column != end; ++column)
      merge(start, column);
  }

 private:
  [[nodiscard]] bool drawable() const { return canvas_ != nullptr && width_ != 0 && height_ != 0; }

  /// Divisions are slow, and coordinates hardly ever need wrapping.
  static std::uint32_t wrapped(std::uint32_t value, std::uint32_t limit) {
    return value < limit ? value : value % limit;
  }

  [[nodiscard]] char* rowStart(int y) const {
    return canvas_ + wrapped(static_cast<std::uint32_t>(y), height_) * pitch_;
  }

  [[nodiscard]] char* pairAt(char* start, std::uint32_t column) const {
    return start + std::size_t{wrapped(column, width_) >> 1} * 4;
  }

  /// Coordinates wrap around the canvas, but the luma is chosen by the column as given.
  void merge(char* start, std::uint32_t column) const {
    char* const pair = pairAt(start, column);
    const std::uint32_t kept = kept_[column & 1];
    store32(pair, (load32(pair) & kept) | (colour_ & ~kept));
  }

  /// Columns inside the canvas: both pixels of a pair together replace all of its bytes.
  void fill(char* start, std::uint32_t column, std::uint32_t end) const {
    if (column < end && (column & 1) != 0)
      merge(start, column++);
    const std::uint32_t pairs = (end - column) / 2;
    storeRun(reinterpret_cast<std::uint8_t*>(start + std::size_t{column} * 2),
             std::bit_cast<std::array<std::uint8_t, 4>>(colour_), pairs);
    if (column + 2 * pairs < end)
      merge(start, end - 1);
  }

  char* canvas_;
  std::uint32_t width_, height_, pitch_;
  std::uint32_t colour_;
  std::array<std::uint32_t, 2> kept_;
};

}  // namespace nkdraw
