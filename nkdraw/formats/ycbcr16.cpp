// SPDX-License-Identifier: BSD-2-Clause
//
// The surfaces of 4:4:4 YCbCr in 16-bit words.
#include <nkdraw/formats/ycbcr16.h>

#include <nkdraw/formats/ycbcr16_plotter.h>

namespace {

using nkdraw::kWordUnit;
using nkdraw::load16;

constexpr std::uint32_t kBytes = 6, kBytesWithAlpha = 8;

char* addressOf(char* canvas, std::uint32_t pitch, std::uint32_t bytesPerPixel, int x, int y) {
  return canvas + nkdraw::rowOffset(pitch, y) + std::ptrdiff_t{bytesPerPixel} * x;
}

void readComponents(const void* pixel, double& y, double& cb, double& cr) {
  y = load16(pixel, 0) * kWordUnit;
  cb = load16(pixel, 1) * kWordUnit;
  cr = load16(pixel, 2) * kWordUnit;
}

}  // namespace

// pixelKind keeps its start value.
CDrawYCbCrYCbCr16::CDrawYCbCrYCbCr16(pixelType type)
    : NKDraw(type),
      ComponentSurface(kBytes, {4096.0, 60160.0, 4864.0, 56064.0, 4608.0, 56064.0},
                       {0xEB00, 0x1000, 0x8000}) {}

CDrawYCbCrYCbCr16& CDrawYCbCrYCbCr16::operator=(CDrawYCbCrYCbCr16& other) {
  ComponentSurface::operator=(other);
  return *this;
}

void* CDrawYCbCrYCbCr16::GetPixel(int x, int y) {
  return addressOf(canvas, pitch, kBytes, x, y);
}

std::uint32_t CDrawYCbCrYCbCr16::PutPixel(int x, int y, bool foreground) {
  return nkdraw::Plotter<CDrawYCbCrYCbCr16>(*this, foreground).put(x, y);
}

std::uint32_t CDrawYCbCrYCbCr16::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                                               double& /*a*/) {
  readComponents(GetPixel(x, y), y2, cb, cr);
  return 0;
}

double CDrawYCbCrYCbCr16::GetLuma(int x, int y) {
  return load16(GetPixel(x, y), 0) * kWordUnit;
}

CDrawYCbCrYCbCrA16::CDrawYCbCrYCbCrA16(pixelType type)
    : NKDraw(type),
      ComponentSurface(kBytesWithAlpha, {4096.0, 62275.0, 4864.0, 56064.0, 4608.0, 56064.0},
                       {0xEB00, 0x1000, 0x8000}) {}

CDrawYCbCrYCbCrA16& CDrawYCbCrYCbCrA16::operator=(CDrawYCbCrYCbCrA16& other) {
  ComponentSurface::operator=(other);
  foreAlpha = other.foreAlpha;
  backAlpha = other.backAlpha;
  return *this;
}

void* CDrawYCbCrYCbCrA16::GetPixel(int x, int y) {
  return addressOf(canvas, pitch, kBytesWithAlpha, x, y);
}

std::uint32_t CDrawYCbCrYCbCrA16::PutPixel(int x, int y, bool foreground) {
  return nkdraw::Plotter<CDrawYCbCrYCbCrA16>(*this, foreground).put(x, y);
}

std::uint32_t CDrawYCbCrYCbCrA16::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                                                double& a) {
  const void* const pixel = GetPixel(x, y);
  readComponents(pixel, y2, cb, cr);
  a = load16(pixel, 3) * kWordUnit;
  return 0;
}

double CDrawYCbCrYCbCrA16::GetLuma(int x, int y) {
  return load16(GetPixel(x, y), 0) * kWordUnit;
}

std::uint32_t CDrawYCbCrYCbCrA16::SetColorYCbCr(double y, double cb, double cr, double a,
                                                bool foreground) {
  ComponentSurface::SetColorYCbCr(y, cb, cr, a, foreground);
  (foreground ? foreAlpha : backAlpha) = foreground ? foreCr : backCr;
  return 0;
}
