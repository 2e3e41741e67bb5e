// SPDX-License-Identifier: BSD-2-Clause
//
// Hue, saturation and value of an RGB colour.
#pragma once

#include <algorithm>

namespace nkdraw {

/// Hue in degrees, 0.0 or more and below 360.0; if channels tie for the largest, red goes first,
/// then green. False for black and greys, which get `greyHue` and a saturation of 0.0.
inline bool toHsv(double r, double g, double b, double greyHue, double& h, double& s, double& v) {
  const double largest = std::max({r, g, b});
  const double delta = largest - std::min({r, g, b});
  v = largest;
  if (largest == 0.0 || delta == 0.0) {
    s = 0.0;
    h = greyHue;
    return false;
  }
  s = delta / largest;
  if (r == largest)
    h = (g - b) / delta;
  else if (g == largest)
    h = (b - r) / delta + 2.0;
  else
    h = (r - g) / delta + 4.0;
  h *= 60.0;
  if (h < 0.0)
    h += 360.0;
  return true;
}

}  // namespace nkdraw
