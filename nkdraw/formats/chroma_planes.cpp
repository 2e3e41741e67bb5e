// SPDX-License-Identifier: BSD-2-Clause
//
// The surfaces of chroma planes.
#include <nkdraw/formats/chroma_planes.h>

#include <nkdraw/formats/chroma_plotter.h>

namespace {

constexpr double kLuma = 0.5;

/// Words at an address of the canvas; on the 8-bit plane they reach into the next pixel.
void readChroma(const void* pixel, double& y, double& cb, double& cr) {
  y = kLuma;
  cb = nkdraw::load16(pixel, 0) * nkdraw::kWordUnit;
  cr = nkdraw::load16(pixel, 1) * nkdraw::kWordUnit;
}

}  // namespace

CDrawUV8::CDrawUV8(pixelType type)
    : NKDraw(type), ComponentSurface(2, {16.0, 235.0, 19.0, 219.0, 18.0, 219.0}, {235, 16, 128}) {
  pixelKind = type;
}

CDrawUV8& CDrawUV8::operator=(CDrawUV8& other) {
  ComponentSurface::operator=(other);
  return *this;
}

void* CDrawUV8::GetPixel(int x, int y) {
  return canvas + nkdraw::rowOffset(pitch, y) + std::ptrdiff_t{2} * x;
}

std::uint32_t CDrawUV8::PutPixel(int x, int y, bool foreground) {
  nkdraw::Plotter<CDrawUV8>(*this, foreground).write(GetPixel(x, y));
  return 0;
}

std::uint32_t CDrawUV8::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                                      double& /*a*/) {
  readChroma(GetPixel(x, y), y2, cb, cr);
  return 0;
}

double CDrawUV8::GetLuma(int /*x*/, int /*y*/) {
  return kLuma;
}

CDrawUV16::CDrawUV16(pixelType type)
    : NKDraw(type),
      ComponentSurface(4, {4096.0, 60160.0, 4096.0, 56064.0, 4096.0, 56064.0},
                       {0xEB00, 0x1000, 0x8000}) {
  pixelKind = type;
}

CDrawUV16& CDrawUV16::operator=(CDrawUV16& other) {
  ComponentSurface::operator=(other);
  return *this;
}

void* CDrawUV16::GetPixel(int x, int y) {
  return canvas + nkdraw::rowOffset(pitch, y) + std::ptrdiff_t{4} * x;
}

std::uint32_t CDrawUV16::PutPixel(int x, int y, bool foreground) {
  nkdraw::Plotter<CDrawUV16>(*this, foreground).write(GetPixel(x, y));
  return 0;
}

std::uint32_t CDrawUV16::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                                       double& /*a*/) {
  readChroma(GetPixel(x, y), y2, cb, cr);
  return 0;
}

double CDrawUV16::GetLuma(int /*x*/, int /*y*/) {
  return kLuma;
}
