// SPDX-License-Identifier: BSD-2-Clause
//
// NKPixel's own layouts: packing a colour, plotting and reading 8-bit RGB pixels.
#include <nkdraw/surface/address.h>
#include <nkdraw/surface/pixel.h>
#include <nkdraw/surface/rgb_plotter.h>

#include <algorithm>

using nkdraw::ByteOrder;

std::uint32_t NKPixel::SetTransparency(double value, bool foreground) {
  (foreground ? foregroundAlpha : backgroundAlpha) = value > 1.0 ? 1.0 : value < 0.0 ? 0.0 : value;
  return 0;
}

void NKPixel::SetTransparency(bool on) {
  transparencyOn = on;
}

bool NKPixel::GetTransparency() {
  return transparencyOn;
}

void NKPixel::SetAlphaAdditive(bool on) {
  alphaAdditive = on;
}

bool NKPixel::GetAlphaAdditive() {
  return alphaAdditive;
}

std::uint32_t NKPixel::SetColorRGBA(double r, double g, double b, double a, bool foreground) {
  const ByteOrder order = nkdraw::byteOrder(pixelKind);
  std::uint8_t* const packed = foreground ? foregroundPixel : backgroundPixel;
  packed[order.r] = nkdraw::truncateToLow8(r * 255.0);
  packed[order.g] = nkdraw::truncateToLow8(g * 255.0);
  packed[order.b] = nkdraw::truncateToLow8(b * 255.0);
  packed[order.a] = order.hasAlpha() ? nkdraw::truncateToLow8(a * 255.0) : std::uint8_t{0};
  return 0;
}

std::uint32_t NKPixel::GetColorRGBA(double& r, double& g, double& b, double& a, bool foreground) {
  nkdraw::readChannels(foreground ? foregroundPixel : backgroundPixel, nkdraw::byteOrder(pixelKind),
                       r, g, b, a);
  return 0;
}

void* NKPixel::GetPixel(int x, int y) {
  return nkdraw::isThreeByteType(pixelKind) ? nkdraw::threeByteAddress(canvas, pitch, x, y)
                                            : nkdraw::wordAddress(canvas, pitch, x, y);
}

std::uint32_t NKPixel::PutPixel(int x, int y, bool foreground) {
  return nkdraw::Plotter<NKPixel>(*this, foreground).put(x, y);
}

std::uint32_t NKPixel::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
  nkdraw::readChannels(static_cast<const std::uint8_t*>(GetPixel(x, y)),
                       nkdraw::byteOrder(pixelKind), r, g, b, a);
  return 0;
}
