// SPDX-License-Identifier: BSD-2-Clause
//
// The surfaces of 4:4:4 YCbCr in 16-bit words. Their pixelKind keeps its start value.
#include <nkdraw/formats/ycbcr16.h>

#include <nkdraw/formats/component_pixels.h>
#include <nkdraw/formats/ycbcr16_plotter.h>

CDrawYCbCrYCbCr16::CDrawYCbCrYCbCr16(pixelType type)
    : NKDraw(type),
      ComponentPixels({4096.0, 60160.0, 4864.0, 56064.0, 4608.0, 56064.0},
                      {0xEB00, 0x1000, 0x8000}) {}

CDrawYCbCrYCbCr16& CDrawYCbCrYCbCr16::operator=(CDrawYCbCrYCbCr16& other) {
  ComponentSurface::operator=(other);
  return *this;
}

CDrawYCbCrYCbCrA16::CDrawYCbCrYCbCrA16(pixelType type)
    : NKDraw(type),
      ComponentPixels({4096.0, 62275.0, 4864.0, 56064.0, 4608.0, 56064.0},
                      {0xEB00, 0x1000, 0x8000}) {}

CDrawYCbCrYCbCrA16& CDrawYCbCrYCbCrA16::operator=(CDrawYCbCrYCbCrA16& other) {
  ComponentSurface::operator=(other);
  foreAlpha = other.foreAlpha;
  backAlpha = other.backAlpha;
  return *this;
}

std::uint32_t CDrawYCbCrYCbCrA16::SetColorYCbCr(double y, double cb, double cr, double a,
                                                bool foreground) {
  ComponentSurface::SetColorYCbCr(y, cb, cr, a, foreground);
  (foreground ? foreAlpha : backAlpha) = foreground ? foreCr : backCr;
  return 0;
}

template class nkdraw::ComponentPixels<CDrawYCbCrYCbCr16, ptYCbCr48>;
template class nkdraw::ComponentPixels<CDrawYCbCrYCbCrA16, ptYCbCrA64>;
