// SPDX-License-Identifier: BSD-2-Clause
//
// Surfaces of every layout, of the library's own classes and of classes derived from them.
#pragma once

#include <nkdraw/nkdraw.h>

#include <memory>
#include <string>
#include <vector>

namespace nkdraw::test {

/// The layouts that the library draws in.
inline constexpr pixelType kLayouts[] = {ptRGBA32, ptARGB32, ptBGRA32, ptABGR32, ptRGB24, ptBGR24,
                                         ptYUYV,   ptUYVY,   ptYVYU,   ptVYUY,   ptV210};

[[nodiscard]] inline std::string layoutName(pixelType type) {
  switch (type) {
    case ptRGBA32:
      return "RGBA32";
    case ptARGB32:
      return "ARGB32";
    case ptBGRA32:
      return "BGRA32";
    case ptABGR32:
      return "ABGR32";
    case ptRGB24:
      return "RGB24";
    case ptBGR24:
      return "BGR24";
    case ptYUYV:
      return "YUYV";
    case ptUYVY:
      return "UYVY";
    case ptYVYU:
      return "YVYU";
    case ptVYUY:
      return "VYUY";
    case ptV210:
      return "V210";
    default:
      return "type" + std::to_string(static_cast<int>(type));
  }
}

[[nodiscard]] constexpr bool isFourByteRgb(pixelType type) {
  return type >= 1 && type <= 4;
}

struct Releaser {
  void operator()(NKDraw* surface) const { ReleaseDraw(surface); }
};
using Surface = std::unique_ptr<NKDraw, Releaser>;

/// Of the library's own class.
[[nodiscard]] inline Surface makeSurface(pixelType type, int width, int height, int pitch,
                                         char* canvas) {
  NKDraw* surface = nullptr;
  GetDraw(static_cast<std::uint32_t>(type), width, height, pitch, canvas, surface);
  return Surface(surface);
}

/// Overrides nothing, but is a class that the library does not know.
template <class Base>
class Unknown final : public Base {
 public:
  explicit Unknown(pixelType type) : NKDraw(type), Base(type) {}
};

struct Plot {
  int x, y;
  bool foreground;
  bool operator==(const Plot&) const = default;
};

/// What a class that watches its pixels adds.
struct PlotLog {
  std::vector<Plot> plots;
};

/// Notes every plot before it is done.
template <class Base>
class Recording final : public Base, public PlotLog {
 public:
  explicit Recording(pixelType type) : NKDraw(type), Base(type) {}
  std::uint32_t PutPixel(int x, int y, bool foreground) override {
    plots.push_back({x, y, foreground});
    return Base::PutPixel(x, y, foreground);
  }
};

/// A surface of class `Derived<the layout's own class>`, bound; `log`, unless null, takes its log.
template <template <class> class Derived>
[[nodiscard]] Surface makeDerived(pixelType type, int width, int height, int pitch, char* canvas,
                                  PlotLog** log = nullptr) {
  const auto made = [&]<class Base>(Base*) {
    auto* const surface = new Derived<Base>(type);
    if constexpr (std::is_base_of_v<PlotLog, Derived<Base>>) {
      if (log != nullptr)
        *log = surface;
    }
    return Surface(surface);
  };
  Surface surface;
  if (isFourByteRgb(type))
    surface = made(static_cast<CDrawRGBA32*>(nullptr));
  else if (type == ptRGB24 || type == ptBGR24)
    surface = made(static_cast<CDrawRGB24*>(nullptr));
  else if (type == ptV210)
    surface = made(static_cast<CDrawYCbCr10*>(nullptr));
  else
    surface = made(static_cast<CDrawYCbCrYUYV*>(nullptr));
  surface->SetCanvas(canvas, height, width, pitch);
  return surface;
}

}  // namespace nkdraw::test
