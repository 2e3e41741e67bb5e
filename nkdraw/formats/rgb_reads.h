// SPDX-License-Identifier: BSD-2-Clause
//
// Reads that all RGB surfaces of this library share.
#pragma once

#include <nkdraw/surface/hsv.h>
#include <nkdraw/surface/pixel.h>

namespace nkdraw {

inline constexpr double kColourlessHue = -1.0;

/// GetPixelHSV, but a grey has a hue of -1.0.
inline std::uint32_t readHsv(NKPixel& surface, int x, int y, double& h, double& s, double& v,
                             double& a) {
  double r = 0.0, g = 0.0, b = 0.0;
  surface.GetPixelRGBA(x, y, r, g, b, a);
  toHsv(r, g, b, kColourlessHue, h, s, v);
  return 0;
}

}  // namespace nkdraw
