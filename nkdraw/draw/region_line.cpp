// SPDX-License-Identifier: BSD-2-Clause
//
// The line through a region. It asks for every pixel, because a region may have any shape.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/line_runner.h>
#include <nkdraw/draw/weighted_line.h>
#include <nkdraw/platform/graphics.h>
#include <nkdraw/surface/wrapping.h>

#include <utility>

namespace {

using nkdraw::signedMagnitude;
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

/// Plots one pixel in the colour found at `source`. Deliberate: drawings depend on it. The pen's
/// own colour has no weight, and every pixel is dimmed, so the pen darkens with each.
void plotInColourOf(NKDraw& surface, tagPOINT source, int x, int y, const PlacedRegion& allowed) {
  nkdraw::Channels found;
  surface.GetPixelRGBA(source.x, source.y, found.r, found.g, found.b, found.a);
  const nkdraw::Channels pen = nkdraw::penColour(surface);
  nkdraw::setDimmedPen(surface, nkdraw::mixed(0.0, pen, 1.0, found));
  if (allowed(x, y))
    surface.PutPixel(x, y, true);
  nkdraw::setDimmedPen(surface, pen);
}

void plainLine(NKDraw& surface, nkdraw::Slope line, int x1, int y2, const PlacedRegion& allowed) {
  for (; line.count > 0; line.skip(1)) {
    const int minor = static_cast<int>(line.minor) >> 16;
    if (line.alongY)
      plotInColourOf(surface, {x1, y2}, minor, line.major, allowed);
    else
      plotInColourOf(surface, {line.major, y2}, line.major, minor, allowed);
  }
}

}  // namespace

void NKDraw::LineA(const nkRegion* region, const tagRECT* rect, int x1, int y1, int x2, int y2) {
  if (y1 > y2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const int dx = wrappingSubtract(x2, x1), dy = wrappingSubtract(y2, y1);
  const PlacedRegion allowed(region, *rect);
  if (antialias && dx != 0 && dy != 0 && signedMagnitude(dx) != dy)
    nkdraw::weightedLine(*this, x1, y1, x2, y2, allowed);
  else
    plainLine(*this, nkdraw::slopeOfLine(x1, y1, x2, y2), x1, y2, allowed);
}
