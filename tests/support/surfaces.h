// SPDX-License-Identifier: BSD-2-Clause
//
// Surfaces of every layout, of the library's own classes and of classes derived from them.
#pragma once

#include <nkdraw/nkdraw.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace nkdraw::test {

/// The layouts that the library draws in. The two of 16-bit YCbCr are not in the factory, and their
/// surfaces report ptRGBA32.
inline constexpr pixelType kLayouts[] = {
    ptRGBA32, ptARGB32, ptBGRA32,    ptABGR32,   ptRGB24,     ptBGR24,     ptYUYV,      ptUYVY,
    ptYVYU,   ptVYUY,   ptV210,      ptRGB30DPX, ptBayerBGGR, ptBayerRGGB, ptBayerGBRG, ptBayerGRBG,
    ptRGB48,  ptARGB64, ptRGBHalf48, ptYCbCr48,  ptYCbCrA64,  ptUV8,       ptUV16};

[[nodiscard]] inline std::string layoutName(pixelType type) {
  static const std::map<pixelType, std::string> kNames = {{ptRGBA32, "RGBA32"},
                                                          {ptARGB32, "ARGB32"},
                                                          {ptBGRA32, "BGRA32"},
                                                          {ptABGR32, "ABGR32"},
                                                          {ptRGB24, "RGB24"},
                                                          {ptBGR24, "BGR24"},
                                                          {ptYUYV, "YUYV"},
                                                          {ptUYVY, "UYVY"},
                                                          {ptYVYU, "YVYU"},
                                                          {ptVYUY, "VYUY"},
                                                          {ptV210, "V210"},
                                                          {ptRGB30DPX, "RGB30DPX"},
                                                          {ptBayerBGGR, "BayerBGGR"},
                                                          {ptBayerRGGB, "BayerRGGB"},
                                                          {ptBayerGBRG, "BayerGBRG"},
                                                          {ptBayerGRBG, "BayerGRBG"},
                                                          {ptBayerBGGR12, "BayerBGGR12"},
                                                          {ptBayerRGGB12, "BayerRGGB12"},
                                                          {ptBayerGBRG12, "BayerGBRG12"},
                                                          {ptBayerGRBG12, "BayerGRBG12"},
                                                          {ptRGB48, "RGB48"},
                                                          {ptARGB64, "ARGB64"},
                                                          {ptRGBHalf48, "RGBHalf48"},
                                                          {ptRGBAHalf64, "RGBAHalf64"},
                                                          {ptYCbCr48, "YCbCr48"},
                                                          {ptYCbCrA64, "YCbCrA64"},
                                                          {ptUV8, "UV8"},
                                                          {ptUV16, "UV16"}};
  const auto found = kNames.find(type);
  return found == kNames.end() ? "type" + std::to_string(static_cast<int>(type)) : found->second;
}

[[nodiscard]] constexpr bool isFourByteRgb(pixelType type) {
  return type >= 1 && type <= 4;
}

[[nodiscard]] constexpr bool isDeepYCbCr(pixelType type) {
  return type == ptYCbCr48 || type == ptYCbCrA64;
}

[[nodiscard]] constexpr bool isBayer(pixelType type) {
  return type >= ptBayerBGGR && type <= ptBayerGRBG12;
}

/// What PixelType returns.
[[nodiscard]] constexpr pixelType presentedType(pixelType type) {
  return isDeepYCbCr(type) ? ptRGBA32 : type;
}

/// Whether rows are filled without calling PutPixel.
[[nodiscard]] constexpr bool fillsRows(pixelType type) {
  return isFourByteRgb(presentedType(type));
}

/// Whether PutPixel accepts rows above the canvas: it refuses them, or wraps them around.
[[nodiscard]] constexpr bool takesRowsAbove(pixelType type) {
  return type >= ptRGBA32 && type <= ptRGB30DPX;
}

/// Calls `work` with a null pointer of the layout's class, and returns what it returns.
template <class Work>
auto withClassOf(pixelType type, Work work) {
  if (isBayer(type))
    return work(static_cast<CDrawBayer*>(nullptr));
  switch (type) {
    case ptRGB24:
    case ptBGR24:
      return work(static_cast<CDrawRGB24*>(nullptr));
    case ptYUYV:
    case ptUYVY:
    case ptYVYU:
    case ptVYUY:
      return work(static_cast<CDrawYCbCrYUYV*>(nullptr));
    case ptV210:
      return work(static_cast<CDrawYCbCr10*>(nullptr));
    case ptRGB30DPX:
      return work(static_cast<CDrawRGB30DPX*>(nullptr));
    case ptRGB48:
      return work(static_cast<CDrawRGB48*>(nullptr));
    case ptRGBHalf48:
      return work(static_cast<CDrawRGBHalf48*>(nullptr));
    case ptARGB64:
    case ptRGBAHalf64:
      return work(static_cast<CDrawARGB64*>(nullptr));
    case ptYCbCr48:
      return work(static_cast<CDrawYCbCrYCbCr16*>(nullptr));
    case ptYCbCrA64:
      return work(static_cast<CDrawYCbCrYCbCrA16*>(nullptr));
    case ptUV8:
      return work(static_cast<CDrawUV8*>(nullptr));
    case ptUV16:
      return work(static_cast<CDrawUV16*>(nullptr));
    default:
      return work(static_cast<CDrawRGBA32*>(nullptr));
  }
}

struct Releaser {
  void operator()(NKDraw* surface) const { ReleaseDraw(surface); }
};
using Surface = std::unique_ptr<NKDraw, Releaser>;

/// Of the library's own class.
[[nodiscard]] inline Surface makeSurface(pixelType type, int width, int height, int pitch,
                                         char* canvas) {
  if (isDeepYCbCr(type)) {
    Surface surface =
        withClassOf(type, [type]<class Base>(Base*) { return Surface(new Base(type)); });
    surface->SetCanvas(canvas, height, width, pitch);
    return surface;
  }
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

/// Records every plot before it is done.
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
  Surface surface = withClassOf(type, made);
  surface->SetCanvas(canvas, height, width, pitch);
  return surface;
}

}  // namespace nkdraw::test
