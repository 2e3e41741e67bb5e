// SPDX-License-Identifier: BSD-2-Clause
//
// The packed 8-bit 4:2:2 surface.
#include <nkdraw/formats/ycbcr8.h>

#include <nkdraw/formats/mode_for_width.h>
#include <nkdraw/formats/ycbcr8_plotter.h>
#include <nkdraw/surface/colour_matrix.h>
#include <nkdraw/surface/truncate.h>

namespace {

using nkdraw::MatrixFamily;
using nkdraw::ycbcr8::PairOrder;

constexpr double kUnit = 0.00390625;  // 1/256

/// The word of a pair in one colour. Bits above the eighth carry into the next sample.
std::uint32_t pairWord(pixelType type, std::uint32_t y, std::uint32_t cb, std::uint32_t cr) {
  const PairOrder& order = nkdraw::ycbcr8::pairOrder(type);
  return (y << (8 * order.luma[0])) + (y << (8 * order.luma[1])) + (cb << (8 * order.cb)) +
         (cr << (8 * order.cr));
}

/// The matrices of NKPixel restated for byte samples:
/// R = (Y' + crToR Cr') scale, G = (Y' - crToG Cr' - cbToG Cb') scale, B = (Y' + cbToB Cb') scale,
/// with Y' = (y - lumaOffset) lumaScale, Cb' = cb - chromaOffset, Cr' = cr - chromaOffset.
struct BytesToRgb {
  int lumaOffset;
  double lumaScale;
  int chromaOffset;
  double crToR, crToG, cbToG, cbToB;
  double scale;
};

constexpr double kSquaredUnit = 1.52587890625e-05;  // 1/65536

constexpr BytesToRgb kBytesToRgb[] = {
    {16, 1.164, 128, 1.596, 0.813, 0.391, 2.017, kUnit},                       // 601 studio
    {0, 256.0, 128, 350.976, 178.688, 86.016, 443.392, kSquaredUnit},          // 601 full
    {16, 297.984, 128, 459.008, 136.448, 54.528, 542.72, kSquaredUnit},        // 709 studio
    {0, 256.0, 128, 403.1488, 119.839744, 47.954944, 475.0336, kSquaredUnit},  // 709 full
    {16, 1.164, 128, 1.6786, 0.6504, 0.1873, 2.1417, kUnit},                   // 2020 studio
    {0, 256.0, 128, 377.4976, 146.2784, 42.1376, 481.664, kSquaredUnit},       // 2020 full
    {0, 256.0, 0, 377.49760000000003, 146.2664004719764, 42.12560047197639, 481.6384,
     kSquaredUnit},  // constant luminance
};

}  // namespace

CDrawYCbCrYUYV::CDrawYCbCrYUYV(pixelType type) : NKDraw(type) {
  pixelKind = type == ptYUYV || type == ptYVYU || type == ptVYUY ? type : ptUYVY;
  ycbcrMode = mode709Studio;
  const bool lumaFirst = pixelKind == ptYUYV || pixelKind == ptYVYU;
  foregroundCode = lumaFirst ? 0xEB80EB80 : 0x80EB80EB;
  backgroundCode = lumaFirst ? 0x10801080 : 0x80108010;
}

CDrawYCbCrYUYV& CDrawYCbCrYUYV::operator=(CDrawYCbCrYUYV& other) {
  NKDraw::operator=(other);
  yOffset = other.yOffset;
  yScale = other.yScale;
  cbOffset = other.cbOffset;
  cbScale = other.cbScale;
  crOffset = other.crOffset;
  crScale = other.crScale;
  foregroundCode = other.foregroundCode;
  backgroundCode = other.backgroundCode;
  reservedYUV = other.reservedYUV;
  return *this;
}

std::uint32_t CDrawYCbCrYUYV::SetCanvas(char* newCanvas, int newHeight, int newWidth,
                                        int newPitch) {
  NKPixel::SetCanvas(newCanvas, newHeight, newWidth, newPitch);
  height = static_cast<std::uint32_t>(newHeight);
  width = static_cast<std::uint32_t>(newWidth);
  canvas = newCanvas;
  flipped = false;
  pitch = std::max(static_cast<std::uint32_t>(newPitch),
                   nkdraw::packedPitch(nkdraw::ycbcr8::kFacts, width));
  ycbcrMode = nkdraw::modeForWidth(ycbcrMode, newWidth);
  return 0;
}

int CDrawYCbCrYUYV::GetPitch() {
  return static_cast<int>(nkdraw::packedPitch(nkdraw::ycbcr8::kFacts, width));
}

void* CDrawYCbCrYUYV::GetPixel(int x, int y) {
  if (canvas == nullptr)
    return nullptr;
  return canvas + pitch * static_cast<std::uint32_t>(y) + std::ptrdiff_t{x / 2} * 4;
}

std::uint32_t CDrawYCbCrYUYV::PutPixel(int x, int y, bool foreground) {
  return nkdraw::Plotter<CDrawYCbCrYUYV>(*this, foreground).put(x, y);
}

std::uint32_t CDrawYCbCrYUYV::GetPixelRGBA(int x, int y, double& r, double& g, double& b,
                                           double& a) {
  const auto* const pair = static_cast<const std::uint8_t*>(GetPixel(x, y));
  a = 0.0;
  if (pair == nullptr) {
    r = g = b = 0.5;
    return 0;
  }
  const MatrixFamily family = nkdraw::familyToRgb(ycbcrMode);
  if (family != MatrixFamily::kUnknown) {
    const BytesToRgb& row = kBytesToRgb[static_cast<int>(family)];
    const PairOrder& order = nkdraw::ycbcr8::pairOrder(pixelKind);
    // Only the UYVY order reads the second pixel's own luma.
    const int place = pixelKind == ptUYVY ? x & 1 : 0;
    const double luma = (pair[order.luma[place]] - row.lumaOffset) * row.lumaScale;
    const double blue = pair[order.cb] - row.chromaOffset;
    const double red = pair[order.cr] - row.chromaOffset;
    r = (luma + red * row.crToR) * row.scale;
    g = (luma - red * row.crToG - blue * row.cbToG) * row.scale;
    b = (luma + blue * row.cbToB) * row.scale;
  }
  if (ycbcrMode < nkdraw::kUnclampedModes) {
    for (double* channel : {&r, &g, &b})
      *channel = nkdraw::clampToUnit(*channel);
  }
  return 0;
}

std::uint32_t CDrawYCbCrYUYV::GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr,
                                            double& a) {
  const auto* const pair = static_cast<const std::uint8_t*>(GetPixel(x, y));
  if (pair == nullptr) {
    y2 = cb = cr = 0.0;
    return 0;
  }
  const PairOrder& order = nkdraw::ycbcr8::pairOrder(pixelKind);
  y2 = pair[order.luma[0]] * kUnit;
  cb = pair[order.cb] * kUnit;
  cr = pair[order.cr] * kUnit;
  a = 1.0;
  return 0;
}

std::uint32_t CDrawYCbCrYUYV::GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                                             unsigned char& cr, unsigned char& a) {
  const auto* const pair = static_cast<const std::uint8_t*>(GetPixel(x, y));
  const PairOrder& order = nkdraw::ycbcr8::pairOrder(pixelKind);
  y2 = pair == nullptr ? std::uint8_t{0} : pair[order.luma[0]];
  cb = pair == nullptr ? std::uint8_t{0} : pair[order.cb];
  cr = pair == nullptr ? std::uint8_t{0} : pair[order.cr];
  a = 255;
  return 0;
}

std::uint32_t CDrawYCbCrYUYV::GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                              std::uint32_t& cr, std::uint32_t& a) {
  unsigned char luma = 0, blue = 0, red = 0, alpha = 0;
  CDrawYCbCrYUYV::GetPixelYCbCr8(x, y, luma, blue, red, alpha);
  y2 = luma * 4U;
  cb = blue * 4U;
  cr = red * 4U;
  a = alpha;
  return 0;
}

std::uint32_t CDrawYCbCrYUYV::GetPixelHSV(int /*x*/, int /*y*/, double& /*h*/, double& /*s*/,
                                          double& /*v*/, double& /*a*/) {
  return NKStatusRefused;
}

double CDrawYCbCrYUYV::GetLuma(int x, int y) {
  const auto* const pair = static_cast<const std::uint8_t*>(GetPixel(x, y));
  return pair[nkdraw::ycbcr8::pairOrder(pixelKind).luma[0]] * kUnit;
}

std::uint32_t CDrawYCbCrYUYV::SetColorYCbCr(double y, double cb, double cr, double /*a*/,
                                            bool foreground) {
  (foreground ? foregroundCode : backgroundCode) =
      pairWord(pixelKind, nkdraw::truncateToLow32(y * yScale + yOffset),
               nkdraw::truncateToLow32(cb * cbScale + cbOffset),
               nkdraw::truncateToLow32(cr * crScale + crOffset));
  return 0;
}

std::uint32_t CDrawYCbCrYUYV::SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                              std::uint32_t /*a*/, bool foreground) {
  (foreground ? foregroundCode : backgroundCode) =
      pairWord(pixelKind, (y >> 2) & 0xFF, (cb >> 2) & 0xFF, (cr >> 2) & 0xFF);
  return 0;
}

std::uint32_t CDrawYCbCrYUYV::SetColorRGBA(double r, double g, double b, double a,
                                           bool foreground) {
  double y = 0.0, cb = 0.0, cr = 0.0, unused = 0.0;
  RGBToYCbCr(r, g, b, 0.0, y, cb, cr, unused);
  SetColorYCbCr(y, cb, cr, a, foreground);
  return 0;
}

std::uint32_t CDrawYCbCrYUYV::SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr,
                                             unsigned char /*a*/, bool foreground) {
  (foreground ? foregroundCode : backgroundCode) = pairWord(pixelKind, y, cb, cr);
  return 0;
}
