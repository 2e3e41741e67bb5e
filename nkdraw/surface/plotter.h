// SPDX-License-Identifier: BSD-2-Clause
//
// Plotting in one colour, a pixel or a run at a time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace nkdraw {

/// Knows how one kind of surface plots. Each layout specialises it as
///
///     Plotter(const Surface& surface, bool foreground);
///     std::uint32_t put(int x, int y) const;          // PutPixel of the surface
///     void row(int x, int y, int count) const;        // put for x, x + 1, ... that do not wrap
///
/// and keeps everything that is the same for all pixels of a run. A row gives the same result, to
/// the bit, as its puts in sequence; the order of pixels within a run makes no difference. A layout
/// whose pixels overlap has no row. A layout whose pixels overlap only in some runs tells which;
/// those are plotted pixel by pixel:
///
///     static bool overlaps(int leftmost);             // for a run that begins there on its left
///
/// A layout whose pixels keep some of their old bits has also
///
///     void putAhead(int x, int y, std::ptrdiff_t ahead) const;      // put, and prefetches
///     std::ptrdiff_t distance(int columns, int rows) const;         // in bytes, about
template <class Surface>
class Plotter;

/// The memory `ahead` of a pixel's will be needed soon. The sum is a number that may lie anywhere.
inline void prefetch(const char* pixel, std::ptrdiff_t ahead) {
  const auto address = std::bit_cast<std::uintptr_t>(pixel) + static_cast<std::uintptr_t>(ahead);
  __builtin_prefetch(std::bit_cast<const char*>(address), 1);
}

}  // namespace nkdraw
