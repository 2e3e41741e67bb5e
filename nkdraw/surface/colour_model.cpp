// SPDX-License-Identifier: BSD-2-Clause
//
// Conversions between RGB, YCbCr and HSV, and the colour calls that only pass a colour on.
//
// The coefficients are rounded from ITU-R BT.601, BT.709 and BT.2020. Deliberate: callers rely on
// these values, and on sums being added from left to right.
#include <nkdraw/surface/colour_matrix.h>
#include <nkdraw/surface/hsv.h>
#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/surface/pixel.h>

#include <algorithm>
#include <iterator>

namespace nkdraw {
namespace {

constexpr MatrixFamily kFamilies[] = {
    MatrixFamily::k601Studio,     // 0
    MatrixFamily::k601Studio,     // 1
    MatrixFamily::k601Full,       // 2
    MatrixFamily::k709Studio,     // 3
    MatrixFamily::k709Full,       // 4
    MatrixFamily::k2020Studio,    // 5
    MatrixFamily::k2020Full,      // 6
    MatrixFamily::k2020Constant,  // 7
    MatrixFamily::k2020Constant,  // 8
};

constexpr std::int32_t kMode7 = 7;

}  // namespace

MatrixFamily familyFromRgb(NKPixel::cmYCbCr mode) {
  const std::int32_t index = mode >= kUnclampedModes ? mode - kUnclampedModes : mode;
  return index >= 0 && index < std::ssize(kFamilies) ? kFamilies[index] : MatrixFamily::kUnknown;
}

MatrixFamily familyToRgb(NKPixel::cmYCbCr mode) {
  return mode == kMode7 ? MatrixFamily::k2020Full : familyFromRgb(mode);
}

}  // namespace nkdraw

namespace {

using nkdraw::MatrixFamily;

/// Adding or subtracting it changes no value, not even the sign of a zero.
constexpr double kNoOffset = -0.0;

/// R = Y' + crToR Cr', G = Y' - crToG Cr' - cbToG Cb', B = Y' + cbToB Cb', with
/// Y' = (y - lumaOffset) lumaScale, Cb' = cb - chromaOffset, Cr' = cr - chromaOffset.
struct ToRgb {
  double lumaOffset, lumaScale, chromaOffset;
  double crToR, crToG, cbToG, cbToB;
  bool cbFirst;  // green takes the Cb term first
};

constexpr ToRgb kToRgb[] = {
    {0.0625, 1.164, 0.5, 1.596, 0.813, 0.391, 2.017, false},                    // 601 studio
    {0.0, 1.0, 0.5, 1.371, 0.698, 0.336, 1.732, false},                         // 601 full
    {0.0625, 1.168932, 0.5, 1.799744, 0.534991, 0.214082, 2.120653, false},     // 709 studio
    {0.0, 1.0, 0.5, 1.5748, 0.468124, 0.187324, 1.8556, false},                 // 709 full
    {0.0625, 1.164, 0.5, 1.6786, 0.6504, 0.1873, 2.1417, false},                // 2020 studio
    {0.0, 1.0, 0.5, 1.4746, 0.5714, 0.1646, 1.8815, false},                     // 2020 full
    {0.0, 1.0, 0.0, 1.4746, 0.57135312684366, 0.16455312684366, 1.8814, true},  // constant
};

/// Y = g + r + b + lumaOffset, Cb = bToCb b - (g + r) + chromaOffset, Cr = r - g - b +
/// chromaOffset, each channel times its factor.
struct FromRgb {
  double gToY, rToY, bToY, lumaOffset;
  double bToCb, gToCb, rToCb;
  double rToCr, gToCr, bToCr;
  double chromaOffset;
};

constexpr FromRgb kFromRgb[] = {
    // 601 studio
    {0.504, 0.257, 0.098, 0.0625, 0.439, 0.291, 0.148, 0.439, 0.368, 0.071, 0.5},
    // 601 full
    {0.587, 0.299, 0.114, kNoOffset, 0.511, 0.339, 0.172, 0.511, 0.428, 0.083, 0.5},
    // 709 studio
    {0.614, 0.183, 0.062, 0.0625, 0.439, 0.338, 0.101, 0.439, 0.399, 0.04, 0.5},
    // 709 full
    {0.71521, 0.212585, 0.072205, kNoOffset, 0.511414, 0.394226, 0.117188, 0.511414, 0.464508,
     0.046906, 0.5},
    // 2020 studio: has no offsets, although the conversion to RGB subtracts them
    {0.58228, 0.22561, 0.05093, kNoOffset, 0.43921, 0.31656, 0.12266, 0.43921, 0.40389, 0.03532,
     kNoOffset},
    // 2020 full: likewise
    {0.678, 0.2627, 0.0593, kNoOffset, 0.5, 0.3604, 0.1396, 0.5, 0.4598, 0.0402, kNoOffset},
};

/// One sum in 10-bit units: (r + g + b) each times its factor, times `scale`, plus `offset`.
struct FromRgb10 {
  double scale;
  double rToY, gToY, bToY;
  double bToCb, rToCb, gToCb;
  double rToCr, gToCr, bToCr;
};

/// For BT.601 and BT.709 in studio range, in units of 1/16384. All three terms of Cr are added.
constexpr FromRgb10 kStudio10 = {6.103515625e-05, 11914.0, 40095.0, 4050.0,  28073.0,
                                 6388.0,          21595.0, 28017.0, 25349.0, 2566.0};
constexpr FromRgb10 k2020Of10 = {1.0,      269.0,    694.272, 60.7232,   512.0,
                                 142.9504, 369.0496, 512.0,   -470.8352, -41.1648};

const FromRgb10* matrix10(NKPixel::cmYCbCr mode) {
  switch (nkdraw::familyFromRgb(mode)) {
    case MatrixFamily::k601Studio:
    case MatrixFamily::k709Studio:
      return &kStudio10;
    case MatrixFamily::k2020Studio:
    case MatrixFamily::k2020Full:
      return &k2020Of10;
    default:
      return nullptr;
  }
}

}  // namespace

std::uint32_t NKPixel::YCbCrToRGB(double y, double cb, double cr, double /*a*/, double& r,
                                  double& g, double& b, double& aOut) {
  const MatrixFamily family = nkdraw::familyToRgb(ycbcrMode);
  if (family != MatrixFamily::kUnknown) {
    const ToRgb& row = kToRgb[static_cast<int>(family)];
    const double luma = (y - row.lumaOffset) * row.lumaScale;
    const double blue = cb - row.chromaOffset;
    const double red = cr - row.chromaOffset;
    r = luma + row.crToR * red;
    g = row.cbFirst ? luma - row.cbToG * blue - row.crToG * red
                    : luma - row.crToG * red - row.cbToG * blue;
    b = luma + row.cbToB * blue;
  }
  if (ycbcrMode < nkdraw::kUnclampedModes) {
    for (double* channel : {&r, &g, &b})
      *channel = nkdraw::clampToUnit(*channel);
  }
  aOut = 0.0;
  return 0;
}

std::uint32_t NKPixel::RGBToYCbCr(double r, double g, double b, double /*a*/, double& y, double& cb,
                                  double& cr, double& /*aOut*/) {
  const MatrixFamily family = nkdraw::familyFromRgb(ycbcrMode);
  if (family == MatrixFamily::kUnknown)
    return 0;
  if (family == MatrixFamily::k2020Constant) {
    y = 0.2627 * r + 0.678 * g + 0.0593 * b;
    cb = (b - y) / (b - y <= 0.0 ? 1.9404 : 1.5816);
    cr = (r - y) / (r - y <= 0.0 ? 1.7184 : 0.9936);
    return 0;
  }
  const FromRgb& row = kFromRgb[static_cast<int>(family)];
  y = row.gToY * g + row.rToY * r + row.bToY * b + row.lumaOffset;
  cb = row.bToCb * b - (row.gToCb * g + row.rToCb * r) + row.chromaOffset;
  cr = row.rToCr * r - row.gToCr * g - row.bToCr * b + row.chromaOffset;
  return 0;
}

std::uint32_t NKPixel::RGBToYCbCr10(double r, double g, double b, double /*a*/, double& y,
                                    double& cb, double& cr, double& /*aOut*/) {
  const FromRgb10* const row = matrix10(ycbcrMode);
  if (row == nullptr)
    return 0;
  y = (row->rToY * r + row->gToY * g + row->bToY * b) * row->scale + 64.0;
  cb = (row->bToCb * b - (row->rToCb * r + row->gToCb * g)) * row->scale + 512.0;
  cr = (row->rToCr * r + row->gToCr * g + row->bToCr * b) * row->scale + 512.0;
  return 0;
}

std::uint32_t NKPixel::RGBToHSV(double r, double g, double b, double a, double& h, double& s,
                                double& v, double& aOut) {
  if (nkdraw::toHsv(r, g, b, -1.0, h, s, v))
    aOut = a;
  return 0;
}

std::uint32_t NKPixel::YCbCrToHSV(double y, double cb, double cr, double a, double& h, double& s,
                                  double& v, double& aOut) {
  double r = 0.0, g = 0.0, b = 0.0, alpha = 0.0;
  YCbCrToRGB(y, cb, cr, a, r, g, b, alpha);
  RGBToHSV(r, g, b, alpha, h, s, v, aOut);
  return 0;
}

std::uint32_t NKPixel::IsRgbType() {
  return nkdraw::isYCbCr(pixelKind) ? 0 : 1;
}

std::uint32_t NKPixel::SetYCbCrMode(cmYCbCr mode) {
  ycbcrMode = mode;
  return 0;
}

std::uint32_t NKPixel::GetYCbCrMode(cmYCbCr& mode) {
  mode = ycbcrMode;
  return 0;
}

std::uint32_t NKPixel::GetColorYCbCr(double& /*y*/, double& /*cb*/, double& /*cr*/, double& /*a*/,
                                     bool /*foreground*/) {
  return 0;
}

std::uint32_t NKPixel::SetColorYCbCr(double /*y*/, double /*cb*/, double /*cr*/, double /*a*/,
                                     bool /*foreground*/) {
  return 0;
}

std::uint32_t NKPixel::SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr,
                                      unsigned char a, bool foreground) {
  return SetColorYCbCr(y / 255.0, cb / 255.0, cr / 255.0, a / 255.0, foreground);
}

std::uint32_t NKPixel::SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                       std::uint32_t a, bool foreground) {
  constexpr double kUnit = 0.0009765625;
  return SetColorYCbCr(y * kUnit, cb * kUnit, cr * kUnit, a * kUnit, foreground);
}
