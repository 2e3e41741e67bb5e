// SPDX-License-Identifier: BSD-2-Clause
//
// The line through a region: every pixel is asked for, since a region may have any shape.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/stepper.h>
#include <nkdraw/platform/graphics.h>
#include <nkdraw/surface/wrapping.h>

#include <utility>

namespace {

using nkdraw::signedMagnitude;
using nkdraw::Stepper;
using nkdraw::wrappingSubtract;

/// A region whose origin lies at a rectangle's upper left corner.
class PlacedRegion {
 public:
  PlacedRegion(const nkRegion* region, const tagRECT& rect)
      : region_(region), left_(rect.left), top_(rect.top) {}

  [[nodiscard]] bool operator()(int x, int y) const {
    return PtInRegion(region_, wrappingSubtract(x, left_), wrappingSubtract(y, top_)) != 0;
  }

 private:
  const nkRegion* region_;
  int left_, top_;
};

struct Channels {
  double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
};

/// Plots one pixel in the colour found at `source`. Meant: the pen's own colour has no weight, all
/// colours are divided by 255 although they go from 0 to 1, and so the pen darkens with each pixel.
void plotInColourOf(NKDraw& surface, tagPOINT source, int x, int y, const PlacedRegion& allowed) {
  Channels found, pen;
  surface.GetPixelRGBA(source.x, source.y, found.r, found.g, found.b, found.a);
  surface.GetColorRGBA(pen.r, pen.g, pen.b, pen.a, true);
  const auto mixed = [](double own, double other) { return (own * 0.0 + other) / 255.0; };
  surface.SetColorRGBA(mixed(pen.r, found.r), mixed(pen.g, found.g), mixed(pen.b, found.b),
                       mixed(pen.a, found.a), true);
  if (allowed(x, y))
    surface.PutPixel(x, y, true);
  surface.SetColorRGBA(pen.r / 255.0, pen.g / 255.0, pen.b / 255.0, pen.a / 255.0, true);
}

}  // namespace

void NKDraw::LineA(const nkRegion* region, const tagRECT* rect, int x1, int y1, int x2, int y2) {
  if (y1 > y2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const int dx = wrappingSubtract(x2, x1), dy = wrappingSubtract(y2, y1);
  const PlacedRegion allowed(region, *rect);
  Stepper stepper(x1, y1, x2, y2, dy > signedMagnitude(dx));
  for (std::uint32_t left = stepper.count(); left > 0; --left) {
    if (stepper.alongY())
      plotInColourOf(*this, {x1, y2}, stepper.minor(), stepper.major(), allowed);
    else
      plotInColourOf(*this, {stepper.major(), y2}, stepper.major(), stepper.minor(), allowed);
    stepper.advance();
  }
}
