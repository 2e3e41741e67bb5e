// SPDX-License-Identifier: BSD-2-Clause
//
// Which class draws in which layout, and the references to the surfaces it makes.
#include <nkdraw/surface/factory.h>

#include <nkdraw/draw/draw.h>
#include <nkdraw/formats/bayer.h>
#include <nkdraw/formats/chroma_planes.h>
#include <nkdraw/formats/rgb16.h>
#include <nkdraw/formats/rgb30_dpx.h>
#include <nkdraw/formats/rgb8.h>
#include <nkdraw/formats/ycbcr10.h>
#include <nkdraw/formats/ycbcr8.h>
#include <nkdraw/surface/bitmap_info.h>
#include <nkdraw/surface/wrapping.h>

#include <algorithm>
#include <iterator>
#include <new>

namespace {

constexpr auto kNoType = static_cast<std::uint32_t>(ptNone);

template <class Surface>
NKDraw* make(pixelType type) {
  return new (std::nothrow) Surface(type);
}

struct Maker {
  std::int32_t first, last;  // pixelType
  NKDraw* (*make)(pixelType type);
};

constexpr Maker kMakers[] = {
    {ptRGBA32, ptABGR32, make<CDrawRGBA32>},
    {ptRGB24, ptBGR24, make<CDrawRGB24>},
    {ptYUYV, ptVYUY, make<CDrawYCbCrYUYV>},
    {ptV210, ptV210, make<CDrawYCbCr10>},
    {ptRGB30DPX, ptRGB30DPX, make<CDrawRGB30DPX>},
    {ptBayerBGGR, ptBayerGRBG12, make<CDrawBayer>},
    {ptRGB48, ptRGB48, make<CDrawRGB48>},
    {ptARGB64, ptARGB64, make<CDrawARGB64>},
    {ptRGBHalf48, ptRGBHalf48, make<CDrawRGBHalf48>},
    {ptRGBAHalf64, ptRGBAHalf64, make<CDrawARGB64>},
    {ptUV8, ptUV8, make<CDrawUV8>},
    {ptUV16, ptUV16, make<CDrawUV16>},
};

}  // namespace

std::uint32_t GetDraw(std::uint32_t type, int width, int height, int pitch, char* canvas,
                      NKDraw*& surface) {
  if (type == kNoType)
    return NKStatusRefused;
  const auto kind = static_cast<pixelType>(type);
  const auto* const maker = std::find_if(
      std::begin(kMakers), std::end(kMakers),
      [kind](const Maker& entry) { return entry.first <= kind && kind <= entry.last; });
  if (maker != std::end(kMakers))
    surface = maker->make(kind);
  if (surface == nullptr)
    return kNoSurface;
  surface->SetCanvas(canvas, height, width, pitch);
  return UseDefaultFont(surface, true);
}

std::uint32_t GetDraw(BITMAPINFO* info, char* canvas, NKDraw*& surface) {
  std::uint32_t type = kNoType;
  const std::uint32_t size = nkdraw::DrawSizeFromBitmapInfo(info, &type);
  if (type == kNoType || size == 0 || size == NKStatusRefused) {
    surface = nullptr;
    return NKStatusRefused;
  }
  const BITMAPINFOHEADER& header = info->bmiHeader;
  const auto height = static_cast<int>(nkdraw::magnitude(header.biHeight));
  return GetDraw(type, header.biWidth, height, 0, canvas, surface);
}

std::uint32_t GetDrawSize(std::uint32_t /*type*/, int /*width*/, int /*height*/, int /*pitch*/) {
  return 0;
}

std::uint32_t AddRefDraw(NKDraw*& surface) {
  surface->AddRef();
  return 0;
}

std::uint32_t ReleaseDraw(NKDraw*& surface) {
  NKDraw* const released = surface;
  surface = nullptr;
  released->Lock(NKForever);
  const bool last = released->Release() == 0;
  if (!last)
    surface = released;
  released->Unlock();
  if (last)
    delete released;
  return 0;
}

std::uint32_t UseDefaultFont(NKDraw*& surface, bool /*wanted*/) {
  surface->defaultFontWanted = true;
  return 0;
}

std::uint32_t SetFont(NKDraw*& /*surface*/, char* /*name*/) {
  return 0;
}
