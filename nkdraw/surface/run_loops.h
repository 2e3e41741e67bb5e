// SPDX-License-Identifier: BSD-2-Clause
//
// Rows, slopes and bits, for any kind of plotter.
#pragma once

#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace nkdraw {

template <class AnyPlotter>
inline constexpr bool hasRows = requires(const AnyPlotter& plotter) {
  plotter.row(0, 0, 0);
};

/// Whether the pixels of a run that begins at this column overlap, for a layout where only some
/// runs do.
template <class AnyPlotter>
constexpr bool overlaps(int leftmost) {
  if constexpr (requires { AnyPlotter::overlaps(leftmost); })
    return AnyPlotter::overlaps(leftmost);
  else
    return false;
}

template <class AnyPlotter>
void plotInTurn(const AnyPlotter& plotter, int x, int y, std::uint32_t count, int step) {
  for (; count > 0; --count, x = wrappingAdd(x, step))
    plotter.put(x, y);
}

/// Plots a row. A run of one colour gives the same result in both directions, unless pixels
/// overlap. Pixels are plotted one by one, in order, if they overlap, if the class wants to see
/// them, or if coordinates wrap.
template <class AnyPlotter>
void plotRow(const AnyPlotter& plotter, int x, int y, std::uint32_t count, int step) {
  if constexpr (hasRows<AnyPlotter>) {
    constexpr std::uint32_t kLongestRow = std::numeric_limits<int>::max();
    while (count > 0) {
      const auto length = static_cast<int>(std::min(count, kLongestRow));
      const int left = step > 0 ? x : wrappingSubtract(x, length - 1);
      const bool wraps = wrappingAdd(left, length - 1) < left;
      if (wraps || overlaps<AnyPlotter>(left))
        plotInTurn(plotter, x, y, static_cast<std::uint32_t>(length), step);
      else
        plotter.row(left, y, length);
      x = wrappingAdd(x, std::int64_t{length} * step);
      count -= static_cast<std::uint32_t>(length);
    }
  } else {
    plotInTurn(plotter, x, y, count, step);
  }
}

constexpr int whole(std::uint32_t fixed) {
  return static_cast<int>(fixed) >> 16;
}

/// Positions until the integer part of `fixed` changes.
inline std::uint32_t untilNext(std::uint32_t fixed, std::uint32_t step) {
  const std::uint32_t fraction = fixed & 0xFFFF;
  return static_cast<int>(step) > 0 ? (0x10000 - fraction + step - 1) / step
                                    : fraction / (0U - step) + 1;
}

/// Whether a slope stays on each row long enough for plotting in rows to pay.
inline bool isFlat(const Slope& slope) {
  constexpr std::uint32_t kSteepest = 0x10000 / 8;
  return !slope.alongY && magnitude(static_cast<int>(slope.step)) <= kSteepest;
}

template <class AnyPlotter>
void plotFlat(const AnyPlotter& plotter, Slope slope) {
  while (slope.count > 0) {
    const std::uint32_t length =
        slope.step == 0 ? slope.count : std::min(slope.count, untilNext(slope.minor, slope.step));
    plotRow(plotter, slope.major, whole(slope.minor), length, slope.direction);
    slope.skip(length);
  }
}

/// How many positions ahead pixels are prefetched. A plotter that keeps some of the old bits must
/// read each pixel, and would wait for memory every time.
inline constexpr int kAhead = 16;

/// How far the memory of a pixel is from that of one kAhead positions earlier, about.
template <bool alongY, class AnyPlotter>
std::ptrdiff_t bytesAhead(const AnyPlotter& plotter, const Slope& slope) {
  const int major = kAhead * slope.direction;
  const auto minor = static_cast<int>(std::int64_t{kAhead} * static_cast<int>(slope.step) >> 16);
  return alongY ? plotter.distance(minor, major) : plotter.distance(major, minor);
}

/// Takes a copy of the plotter: stores can't alias it, so it stays in registers.
template <bool alongY, class AnyPlotter>
void plotSteep(AnyPlotter plotter, Slope slope) {
  const auto x = [](const Slope& at) { return alongY ? whole(at.minor) : at.major; };
  const auto y = [](const Slope& at) { return alongY ? at.major : whole(at.minor); };
  if constexpr (requires { plotter.distance(0, 0); }) {
    if (slope.count > kAhead) {
      const std::ptrdiff_t ahead = bytesAhead<alongY>(plotter, slope);
      for (; slope.count > 0; slope.skip(1))
        plotter.putAhead(x(slope), y(slope), ahead);
    }
  }
  for (; slope.count > 0; slope.skip(1))
    plotter.put(x(slope), y(slope));
}

/// Calls `draw` with the plotter, or with the way of plotting that it would choose for every pixel.
template <class AnyPlotter, class Draw>
void unfolded(const AnyPlotter& plotter, Draw draw) {
  if constexpr (requires { plotter.unfold(draw); })
    plotter.unfold(draw);
  else
    draw(plotter);
}

template <class AnyPlotter>
void plotSlopes(const AnyPlotter& plotter, std::span<const Slope> all) {
  unfolded(plotter, [all](const auto& way) {
    for (const Slope& slope : all) {
      if (hasRows<AnyPlotter> && isFlat(slope))
        plotFlat(way, slope);
      else if (slope.alongY)
        plotSteep<true>(way, slope);
      else
        plotSteep<false>(way, slope);
    }
  });
}

/// Neighbouring bits of one kind form one row.
template <class AnyPlotter>
void plotBits(const AnyPlotter* background, const AnyPlotter& foreground, unsigned bits, int x,
              int y, std::uint32_t scale) {
  constexpr int kBits = 8;
  auto left = static_cast<std::uint8_t>(bits);
  for (int done = 0; done < kBits;) {
    const bool ink = (left & 0x80) != 0;
    const int length = std::min(ink ? std::countl_one(left) : std::countl_zero(left), kBits - done);
    const std::uint32_t pixels = static_cast<std::uint32_t>(length) * scale;
    if (ink)
      plotRow(foreground, x, y, pixels, 1);
    else if (background != nullptr)
      plotRow(*background, x, y, pixels, 1);
    x = wrappingAdd(x, pixels);
    left = static_cast<std::uint8_t>(left << length);
    done += length;
  }
}

}  // namespace nkdraw
