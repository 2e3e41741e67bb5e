// SPDX-License-Identifier: BSD-2-Clause
//
// The surfaces of chroma planes.
#include <nkdraw/formats/chroma_planes.h>

#include <nkdraw/formats/chroma_plotter.h>
#include <nkdraw/formats/component_pixels.h>

CDrawUV8::CDrawUV8(pixelType type)
    : NKDraw(type), ComponentPixels({16.0, 235.0, 19.0, 219.0, 18.0, 219.0}, {235, 16, 128}) {
  pixelKind = type;
}

CDrawUV8& CDrawUV8::operator=(CDrawUV8& other) {
  ComponentSurface::operator=(other);
  return *this;
}

CDrawUV16::CDrawUV16(pixelType type)
    : NKDraw(type),
      ComponentPixels({4096.0, 60160.0, 4096.0, 56064.0, 4096.0, 56064.0},
                      {0xEB00, 0x1000, 0x8000}) {
  pixelKind = type;
}

CDrawUV16& CDrawUV16::operator=(CDrawUV16& other) {
  ComponentSurface::operator=(other);
  return *this;
}

template class nkdraw::ComponentPixels<CDrawUV8, ptUV8>;
template class nkdraw::ComponentPixels<CDrawUV16, ptUV16>;
