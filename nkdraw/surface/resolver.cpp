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
#include <bit>
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
constexpr bool hasRows = requires(const AnyPlotter& plotter) {
  plotter.row(0, 0, 0);
};

/// A run of one colour has the same result in both directions, unless pixels overlap: then, and on
/// classes that want to see them, each is plotted in its turn.
template <class AnyPlotter>
void plotRow(const AnyPlotter& plotter, int x, int y, std::uint32_t count, int step) {
  if constexpr (hasRows<AnyPlotter>) {
    while (count > 0) {
      const auto length = static_cast<int>(std::min(count, kLongestRow));
      const int left = step > 0 ? x : wrappingSubtract(x, length - 1);
      plotter.row(left, y, length);
      x = wrappingAdd(x, std::int64_t{length} * step);
      count -= static_cast<std::uint32_t>(length);
    }
  } else {
    for (; count > 0; --count, x = wrappingAdd(x, step))
      plotter.put(x, y);
  }
}

constexpr int whole(std::uint32_t fixed) {
  return static_cast<int>(fixed) >> 16;
}

/// Positions until the whole part of `fixed` changes.
std::uint32_t untilNext(std::uint32_t fixed, std::uint32_t step) {
  const std::uint32_t fraction = fixed & 0xFFFF;
  return static_cast<int>(step) > 0 ? (0x10000 - fraction + step - 1) / step
                                    : fraction / (0U - step) + 1;
}

/// Whether positions along a row stay on it for so long that rows pay.
bool isFlat(const Slope& slope) {
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

/// Positions of which the pixels are under way from memory while one is written: a plotter that
/// keeps bits of what was there would wait for each.
constexpr std::uint32_t kAhead = 16;

/// The plotter is a copy: what is stored can't be a part of it, so that it stays in registers.
template <bool alongY, class AnyPlotter>
void plotSteep(AnyPlotter plotter, Slope slope) {
  const auto x = [](const Slope& at) { return alongY ? whole(at.minor) : at.major; };
  const auto y = [](const Slope& at) { return alongY ? at.major : whole(at.minor); };
  if constexpr (requires { plotter.prefetch(0, 0); }) {
    Slope ahead = slope;
    for (ahead.skip(std::min(kAhead, slope.count)); ahead.count > 0; ahead.skip(1)) {
      plotter.prefetch(x(ahead), y(ahead));
      plotter.put(x(slope), y(slope));
      slope.skip(1);
    }
  }
  for (; slope.count > 0; slope.skip(1))
    plotter.put(x(slope), y(slope));
}

/// Calls `draw` with the plotter, or with what it would choose among for every pixel.
template <class AnyPlotter, class Draw>
void unfolded(const AnyPlotter& plotter, Draw draw) {
  if constexpr (requires { plotter.unfold(draw); })
    plotter.unfold(draw);
  else
    draw(plotter);
}

template <class AnyPlotter>
void plotSlope(const AnyPlotter& plotter, const Slope& slope) {
  unfolded(plotter, [&slope](const auto& way) {
    if (hasRows<AnyPlotter> && isFlat(slope))
      plotFlat(way, slope);
    else if (slope.alongY)
      plotSteep<true>(way, slope);
    else
      plotSteep<false>(way, slope);
  });
}

/// Neighbouring bits of one kind are one row.
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

template <class AnyPlotter>
const AnyPlotter& plotterAt(const void* plotter) {
  return *static_cast<const AnyPlotter*>(plotter);
}

/// The plotting of one kind of plotter, with its type left out.
template <class AnyPlotter>
constexpr RunPlotter::Runs kRunsOf = {
    [](const void* plotter, int x, int y, std::uint32_t count, int step) {
      plotRow(plotterAt<AnyPlotter>(plotter), x, y, count, step);
    },
    [](const void* plotter, const Slope& slope) {
      plotSlope(plotterAt<AnyPlotter>(plotter), slope);
    },
    [](const void* background, const void* foreground, unsigned bits, int x, int y,
       std::uint32_t scale) {
      plotBits(static_cast<const AnyPlotter*>(background), plotterAt<AnyPlotter>(foreground), bits,
               x, y, scale);
    },
};

template <class AnyPlotter, class Surface>
void construct(Surface& surface, std::array<RunPlotter::Storage, 2>& plotters) {
  static_assert(sizeof(AnyPlotter) <= sizeof(RunPlotter::Storage));
  static_assert(std::is_trivially_destructible_v<AnyPlotter>);
  new (plotters[0].data()) AnyPlotter(surface, false);
  new (plotters[1].data()) AnyPlotter(surface, true);
}

/// What is known of one of the library's own classes.
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
            // The whole object is known to be a Surface: no search through its bases.
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
  // By address: a second copy of a class's record, in a program of several libraries, makes it
  // one that the library does not know, which costs time and changes nothing.
  const std::type_info* const type = &typeid(surface);
  const auto* const entry = std::find_if(std::begin(kEntries), std::end(kEntries),
                                         [type](const Entry& row) { return row.type == type; });
  return entry == std::end(kEntries) ? nullptr : entry;
}

}  // namespace

RunPlotter::RunPlotter(NKPixel& surface) {
  const Entry* const entry = entryOf(surface);
  ownClass_ = entry != nullptr;
  if (ownClass_) {
    entry->construct(surface, plotters_);
    runs_ = entry->runs;
  } else {
    construct<TablePlotter>(surface, plotters_);
    runs_ = &kRunsOf<TablePlotter>;
  }
}

}  // namespace nkdraw
