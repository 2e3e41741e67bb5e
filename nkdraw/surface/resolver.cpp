// SPDX-License-Identifier: BSD-2-Clause
//
// Picks the concrete class of a surface, once for a primitive.
#include <nkdraw/surface/resolver.h>

#include <nkdraw/formats/bayer_plotter.h>
#include <nkdraw/formats/chroma_plotter.h>
#include <nkdraw/formats/rgb16_plotter.h>
#include <nkdraw/formats/rgb30_dpx.h>
#include <nkdraw/formats/rgb8.h>
#include <nkdraw/formats/ycbcr10_plotter.h>
#include <nkdraw/formats/ycbcr16_plotter.h>
#include <nkdraw/formats/ycbcr8_plotter.h>
#include <nkdraw/surface/rgb_plotter.h>
#include <nkdraw/surface/wrapping.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <type_traits>
#include <typeinfo>

namespace nkdraw {
namespace {

constexpr std::uint32_t kLongestRow = std::numeric_limits<int>::max();

/// Plots through the table, for classes that the library does not know.
class TablePlotter {
 public:
  TablePlotter(NKPixel& surface, bool foreground) : surface_(surface), foreground_(foreground) {}

  std::uint32_t put(int x, int y) const { return surface_.PutPixel(x, y, foreground_); }

 private:
  NKPixel& surface_;
  bool foreground_;
};

template <class AnyPlotter>
void putRow(const void* plotter, int x, int y, std::uint32_t count, int step) {
  for (; count > 0; --count, x = wrappingAdd(x, step))
    static_cast<const AnyPlotter*>(plotter)->put(x, y);
}

template <class AnyPlotter>
void putColumn(const void* plotter, int x, int y, std::uint32_t count, int step) {
  for (; count > 0; --count, y = wrappingAdd(y, step))
    static_cast<const AnyPlotter*>(plotter)->put(x, y);
}

/// A run of one colour has the same result in both directions.
template <class AnyPlotter>
void inlinedRow(const void* plotter, int x, int y, std::uint32_t count, int step) {
  while (count > 0) {
    const auto length = static_cast<int>(std::min(count, kLongestRow));
    const int left = step > 0 ? x : wrappingSubtract(x, length - 1);
    static_cast<const AnyPlotter*>(plotter)->row(left, y, length);
    x = wrappingAdd(x, std::int64_t{length} * step);
    count -= static_cast<std::uint32_t>(length);
  }
}

template <class AnyPlotter, class Surface>
void construct(Surface& surface, std::array<RunPlotter::Storage, 2>& plotters) {
  static_assert(sizeof(AnyPlotter) <= sizeof(RunPlotter::Storage));
  static_assert(std::is_trivially_destructible_v<AnyPlotter>);
  new (plotters[0].data()) AnyPlotter(surface, false);
  new (plotters[1].data()) AnyPlotter(surface, true);
}

/// Where pixels overlap, each is plotted in its turn.
template <class AnyPlotter>
constexpr RunPlotter::Run rowOf() {
  if constexpr (requires(const AnyPlotter& plotter) { plotter.row(0, 0, 0); })
    return inlinedRow<AnyPlotter>;
  else
    return putRow<AnyPlotter>;
}

/// What is known of one of the library's own classes.
struct Entry {
  const std::type_info* type;
  void (*construct)(NKPixel& surface, std::array<RunPlotter::Storage, 2>& plotters);
  RunPlotter::Run row;
  RunPlotter::Run column;
};

/// `Surface` is the concrete class, `Plotted` the one whose plotting it uses.
template <class Surface, class Plotted = Surface>
Entry entryFor() {
  using Inlined = Plotter<Plotted>;
  return {&typeid(Surface),
          [](NKPixel& surface, std::array<RunPlotter::Storage, 2>& plotters) {
            construct<Inlined>(dynamic_cast<Plotted&>(surface), plotters);
          },
          rowOf<Inlined>(), putColumn<Inlined>};
}

const Entry* entryOf(const NKPixel& surface) {
  static const Entry kEntries[] = {
      entryFor<CDrawYCbCr10>(),
      entryFor<CDrawYCbCrYUYV>(),
      entryFor<CDrawRGBA32, NKPixel>(),
      entryFor<CDrawRGB24, NKPixel>(),
      entryFor<CDrawRGB30DPX, NKPixel>(),
      entryFor<CDrawRGB48, WordSurface<3>>(),
      entryFor<CDrawRGBHalf48, WordSurface<3>>(),
      entryFor<CDrawARGB64, WordSurface<4>>(),
      entryFor<CDrawBayer>(),
      entryFor<CDrawUV8>(),
      entryFor<CDrawUV16>(),
      entryFor<CDrawYCbCrYCbCr16>(),
      entryFor<CDrawYCbCrYCbCrA16>(),
  };
  const auto* const entry =
      std::find_if(std::begin(kEntries), std::end(kEntries),
                   [&surface](const Entry& row) { return *row.type == typeid(surface); });
  return entry == std::end(kEntries) ? nullptr : entry;
}

}  // namespace

RunPlotter::RunPlotter(NKPixel& surface) {
  if (const Entry* const entry = entryOf(surface)) {
    entry->construct(surface, plotters_);
    row_ = entry->row;
    column_ = entry->column;
  } else {
    construct<TablePlotter>(surface, plotters_);
    row_ = putRow<TablePlotter>;
    column_ = putColumn<TablePlotter>;
  }
}

}  // namespace nkdraw
