// SPDX-License-Identifier: BSD-2-Clause
//
// Operations on top of plotting and reading a pixel.
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/hsv.h>
#include <nkdraw/surface/luma_weights.h>
#include <nkdraw/surface/pixel.h>
#include <nkdraw/surface/truncate.h>

void NKPixel::BlendPixel(double& c1, double& c2, double& c3, double n1, double n2, double n3,
                         int percent) {
  const double w = percent / 100.0;
  const double k = 1.0 - w;
  c1 = k * c1 + w * n1;
  c2 = k * c2 + w * n2;
  c3 = w * n3 + k * c3;
}

std::uint32_t NKPixel::SetPixel(int x, int y, double c1, double c2, double c3, double c4,
                                bool foreground) {
  if (IsRgbType() == 1)
    SetColorRGBA(c1, c2, c3, c4, foreground);
  else
    SetColorYCbCr(c1, c2, c3, c4, foreground);
  return PutPixel(x, y, foreground);
}

std::uint32_t NKPixel::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) {
  double r = 0.0, g = 0.0, b = 0.0;
  GetPixelRGBA(x, y, r, g, b, a);
  RGBToYCbCr(r, g, b, a, y2, cb, cr, a);
  return 0;
}

std::uint32_t NKPixel::GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                                      unsigned char& cr, unsigned char& a) {
  double luma = 0.0, blue = 0.0, red = 0.0, alpha = 0.0;
  GetPixelYCbCr(x, y, luma, blue, red, alpha);
  y2 = nkdraw::truncateToLow8(luma * 255.0);
  cb = nkdraw::truncateToLow8(blue * 255.0);
  cr = nkdraw::truncateToLow8(red * 255.0);
  a = nkdraw::truncateToLow8(alpha * 255.0);
  return 0;
}

// Deliberate: callers rely on the factor 1024, not 1023, by which a channel of 1.0 reads as 1024.
std::uint32_t NKPixel::GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                       std::uint32_t& cr, std::uint32_t& a) {
  double luma = 0.0, blue = 0.0, red = 0.0, alpha = 0.0;
  GetPixelYCbCr(x, y, luma, blue, red, alpha);
  y2 = nkdraw::truncateToLow32(luma * 1024.0);
  cb = nkdraw::truncateToLow32(blue * 1024.0);
  cr = nkdraw::truncateToLow32(red * 1024.0);
  a = nkdraw::truncateToLow32(alpha * 1024.0);
  return 0;
}

std::uint32_t NKPixel::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
  double r = 0.0, g = 0.0, b = 0.0;
  GetPixelRGBA(x, y, r, g, b, a);
  nkdraw::toHsv(r, g, b, 0.0, h, s, v);
  return 0;
}

double NKPixel::GetLuma(int x, int y) {
  const nkdraw::ByteOrder order = nkdraw::byteOrder32(pixelKind);  // ptBGR24 is not swapped here
  const auto* const pixel = static_cast<const std::uint8_t*>(GetPixel(x, y));
  const nkdraw::LumaWeights& weights = nkdraw::lumaWeights(ycbcrMode);
  return (weights.green * pixel[order.g] + weights.red * pixel[order.r] +
          weights.blue * pixel[order.b]) *
         0.00390625;
}
