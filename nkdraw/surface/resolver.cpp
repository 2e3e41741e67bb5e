// SPDX-License-Identifier: BSD-2-Clause
//
// Picks the concrete class of a surface, once for a primitive.
#include <nkdraw/surface/resolver.h>

#include <nkdraw/formats/rgb8.h>
#include <nkdraw/formats/ycbcr10_plotter.h>
#include <nkdraw/formats/ycbcr8_plotter.h>
#include <nkdraw/surface/rgb_plotter.h>

#include <algorithm>
#include <limits>
#include <typeinfo>

namespace nkdraw {
namespace {

constexpr std::uint32_t kLongestRow = std::numeric_limits<int>::max();

/// `Surface` is the concrete class, `Plotted` the one whose plotting it uses.
template <class Surface, class Plotted>
struct Inlined {
  static void* cast(NKPixel& surface) { return dynamic_cast<Surface*>(&surface); }

  static void row(void* surface, int x, int y, std::uint32_t count, int step, bool foreground) {
    const Plotter<Plotted> plotter(*static_cast<Surface*>(surface), foreground);
    while (count > 0) {
      const auto length = static_cast<int>(std::min(count, kLongestRow));
      plotter.row(step > 0 ? x : offsetBy(x, 1 - std::int64_t{length}), y, length);
      x = offsetBy(x, std::int64_t{length} * step);
      count -= static_cast<std::uint32_t>(length);
    }
  }

  static void column(void* surface, int x, int y, std::uint32_t count, int step, bool foreground) {
    const Plotter<Plotted> plotter(*static_cast<Surface*>(surface), foreground);
    for (; count > 0; --count, y = offsetBy(y, step))
      plotter.put(x, y);
  }
};

struct ThroughTable {
  static void row(void* surface, int x, int y, std::uint32_t count, int step, bool foreground) {
    for (; count > 0; --count, x = offsetBy(x, step))
      static_cast<NKPixel*>(surface)->PutPixel(x, y, foreground);
  }

  static void column(void* surface, int x, int y, std::uint32_t count, int step, bool foreground) {
    for (; count > 0; --count, y = offsetBy(y, step))
      static_cast<NKPixel*>(surface)->PutPixel(x, y, foreground);
  }
};

struct Entry {
  const std::type_info* type;
  void* (*cast)(NKPixel& surface);
  RunPlotter::Run row;
  RunPlotter::Run column;
};

template <class Surface, class Plotted = Surface>
Entry inlined() {
  using Runs = Inlined<Surface, Plotted>;
  return {&typeid(Surface), Runs::cast, Runs::row, Runs::column};
}

const Entry* entryOf(const NKPixel& surface) {
  static const Entry kEntries[] = {
      inlined<CDrawYCbCr10>(),
      inlined<CDrawYCbCrYUYV>(),
      inlined<CDrawRGBA32, NKPixel>(),
      inlined<CDrawRGB24, NKPixel>(),
  };
  const auto* const entry =
      std::find_if(std::begin(kEntries), std::end(kEntries),
                   [&surface](const Entry& row) { return *row.type == typeid(surface); });
  return entry == std::end(kEntries) ? nullptr : entry;
}

}  // namespace

RunPlotter::RunPlotter(NKPixel& surface) {
  if (const Entry* const entry = entryOf(surface)) {
    surface_ = entry->cast(surface);
    row_ = entry->row;
    column_ = entry->column;
  } else {
    surface_ = &surface;
    row_ = ThroughTable::row;
    column_ = ThroughTable::column;
  }
}

}  // namespace nkdraw
