// SPDX-License-Identifier: BSD-2-Clause
//
// Finds the concrete class of a surface, once for each primitive.
#include <nkdraw/surface/resolver.h>

#include <nkdraw/formats/bayer_plotter.h>
#include <nkdraw/formats/chroma_plotter.h>
#include <nkdraw/formats/rgb16_plotter.h>
#include <nkdraw/formats/rgb30_dpx.h>
#include <nkdraw/formats/rgb8.h>
#include <nkdraw/formats/ycbcr10_plotter.h>
#include <nkdraw/formats/ycbcr16_plotter.h>
#include <nkdraw/formats/ycbcr8_plotter.h>
#include <nkdraw/surface/bit_box.h>
#include <nkdraw/surface/rgb_plotter.h>
#include <nkdraw/surface/run_loops.h>
#include <nkdraw/surface/wrapping.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <type_traits>
#include <typeinfo>

namespace nkdraw {
namespace {

/// Plots through the virtual functions, for classes unknown to the library.
class TablePlotter {
 public:
  TablePlotter(NKPixel& surface, bool foreground) : surface_(surface), foreground_(foreground) {}

  std::uint32_t put(int x, int y) const { return surface_.PutPixel(x, y, foreground_); }

 private:
  NKPixel& surface_;
  bool foreground_;
};

template <class AnyPlotter>
const AnyPlotter& plotterAt(const void* plotter) {
  return *static_cast<const AnyPlotter*>(plotter);
}

/// The functions of one kind of plotter, without its type.
template <class AnyPlotter>
constexpr RunPlotter::Runs kRunsOf = {
    [](const void* plotter, int x, int y, std::uint32_t count, int step) {
      plotRow(plotterAt<AnyPlotter>(plotter), x, y, count, step);
    },
    [](const void* plotter, const NKPixel& surface, const PixelBlock& block) {
      unfolded(plotterAt<AnyPlotter>(plotter),
               [&](const auto& way) { plotBlock(way, surface, block); });
    },
    [](const void* plotter, std::span<const Slope> all) {
      plotSlopes(plotterAt<AnyPlotter>(plotter), all);
    },
    [](const void* background, const void* foreground, unsigned bits, int x, int y,
       std::uint32_t scale) {
      plotBits(static_cast<const AnyPlotter*>(background), plotterAt<AnyPlotter>(foreground), bits,
               x, y, scale);
    },
    [](const void* background, const void* foreground, const NKPixel& surface, const BitBox& box) {
      return plotBox(plotterAt<AnyPlotter>(background), plotterAt<AnyPlotter>(foreground), surface,
                     box);
    },
};

template <class AnyPlotter, class Surface>
void construct(Surface& surface, std::array<RunPlotter::Storage, 2>& plotters) {
  static_assert(sizeof(AnyPlotter) <= sizeof(RunPlotter::Storage));
  static_assert(std::is_trivially_destructible_v<AnyPlotter>);
  new (plotters[0].data()) AnyPlotter(surface, false);
  new (plotters[1].data()) AnyPlotter(surface, true);
}

/// Facts about one of the library's own classes.
struct Entry {
  const std::type_info* type;
  void (*construct)(NKPixel& surface, std::array<RunPlotter::Storage, 2>& plotters);
  const RunPlotter::Runs* runs;
};

/// `Surface` is the concrete class, `Plotted` the one whose plotting it uses.
template <class Surface, class Plotted = Surface>
Entry entryFor() {
  using Inlined = Plotter<Plotted>;
  return {&typeid(Surface),
          [](NKPixel& surface, std::array<RunPlotter::Storage, 2>& plotters) {
            // The whole object is known to be a Surface, so its bases need not be searched.
            auto* const object = static_cast<Surface*>(dynamic_cast<void*>(&surface));
            construct<Inlined, Plotted>(*object, plotters);
          },
          &kRunsOf<Inlined>};
}

const Entry* entryOf(const NKPixel& surface) {
  static const Entry kEntries[] = {
      entryFor<CDrawRGBA32, NKPixel>(),
      entryFor<CDrawYCbCrYUYV>(),
      entryFor<CDrawYCbCr10>(),
      entryFor<CDrawRGB24, NKPixel>(),
      entryFor<CDrawRGB48, WordSurface<3>>(),
      entryFor<CDrawARGB64, WordSurface<4>>(),
      entryFor<CDrawRGB30DPX, NKPixel>(),
      entryFor<CDrawRGBHalf48, WordSurface<3>>(),
      entryFor<CDrawBayer>(),
      entryFor<CDrawUV8>(),
      entryFor<CDrawUV16>(),
      entryFor<CDrawYCbCrYCbCr16>(),
      entryFor<CDrawYCbCrYCbCrA16>(),
  };
  // Compares by address. If a program of several libraries has a second copy of a class's type
  // record, the class counts as unknown, which is slower but gives the same result.
  const std::type_info* const type = &typeid(surface);
  const auto* const entry = std::find_if(std::begin(kEntries), std::end(kEntries),
                                         [type](const Entry& row) { return row.type == type; });
  return entry == std::end(kEntries) ? nullptr : entry;
}

}  // namespace

RunPlotter::RunPlotter(NKPixel& surface) : surface_(surface) {
  const Entry* const entry = entryOf(surface);
  ownClass_ = entry != nullptr;
  plotsAsPixel_ = ownClass_ && entry->runs == &kRunsOf<Plotter<NKPixel>>;
  if (ownClass_) {
    entry->construct(surface, plotters_);
    runs_ = entry->runs;
  } else {
    construct<TablePlotter>(surface, plotters_);
    runs_ = &kRunsOf<TablePlotter>;
  }
}

}  // namespace nkdraw
