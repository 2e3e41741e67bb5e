// SPDX-License-Identifier: BSD-2-Clause
//
// Lines of two pixels at each step, mixed by hand from the canvas and the pen's colour.
#pragma once

#include <nkdraw/surface/pixel.h>
#include <nkdraw/surface/wrapping.h>

#include <cstdint>

namespace nkdraw {

struct Channels {
  double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
};

inline Channels penColour(NKPixel& surface) {
  Channels c;
  surface.GetColorRGBA(c.r, c.g, c.b, c.a, true);
  return c;
}

/// Deliberate: drawings depend on it. Channels go up to 1.0, yet the pen is set to a 255th of the
/// value.
inline void setDimmedPen(NKPixel& surface, const Channels& c) {
  surface.SetColorRGBA(c.r / 255.0, c.g / 255.0, c.b / 255.0, c.a / 255.0, true);
}

/// first * c1 + second * c2 in each channel.
constexpr Channels mixed(double first, const Channels& c1, double second, const Channels& c2) {
  return {first * c1.r + second * c2.r, first * c1.g + second * c2.g, first * c1.b + second * c2.b,
          first * c1.a + second * c2.a};
}

/// A line that is neither straight nor exactly diagonal. It plots both ends whole, then the pixels
/// between them in pairs, each mixed from `canvas` and pen by its distance from the line. Only
/// pixels for which `allowed(x, y)` is true are plotted. The pen ends darker than it was. (x1, y1)
/// is the upper end; the deltas must not be 0.
template <class Allowed>
void weightedLine(NKPixel& surface, int x1, int y1, int x2, int y2, Allowed allowed) {
  const int dx = wrappingSubtract(x2, x1);
  const std::uint32_t dy = magnitude(wrappingSubtract(y2, y1)), adx = magnitude(dx);
  const int sign = dx >= 0 ? 1 : -1;
  const bool steep = dy > adx;
  const std::uint32_t major = steep ? dy : adx, minor = steep ? adx : dy;
  const std::uint32_t step = (minor << 16) / major;  // 16.16

  const auto plot = [&](int x, int y, const Channels& colour) {
    setDimmedPen(surface, colour);
    if (allowed(x, y))
      surface.PutPixel(x, y, true);
  };
  Channels pen = penColour(surface);
  setDimmedPen(surface, pen);
  surface.PutPixel(x1, y1, true);
  surface.PutPixel(x2, y2, true);

  std::uint32_t offset = 0;  // along the minor axis, 16.16
  int x = x1, y = y1;
  for (std::uint32_t left = major - 1; left > 0; --left) {
    offset += step;
    const auto whole = static_cast<std::int32_t>(offset >> 16);
    if (steep) {
      y = wrappingAdd(y, 1);
      x = wrappingAdd(x1, std::int64_t{sign} * whole);
    } else {
      x = wrappingAdd(x, sign);
      y = wrappingAdd(y1, whole);
    }
    Channels canvas;
    surface.GetPixelRGBA(x, y, canvas.r, canvas.g, canvas.b, canvas.a);
    pen = penColour(surface);
    const double w = ((offset >> 8) & 0xFF) / 255.0, v = 1.0 - w;
    plot(x, y, mixed(w, canvas, v, pen));
    if (steep)
      plot(wrappingAdd(x, sign), y, mixed(v, canvas, w, pen));
    else
      plot(x, wrappingAdd(y, 1), mixed(v, canvas, w, pen));
    setDimmedPen(surface, pen);
  }
  setDimmedPen(surface, pen);
}

}  // namespace nkdraw
