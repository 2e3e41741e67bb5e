// SPDX-License-Identifier: BSD-2-Clause
//
// Straight lines: a 16.16 fixed-point stepper along the longer axis.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/line_runner.h>
#include <nkdraw/draw/weighted_line.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/surface/address.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>

#include <algorithm>
#include <utility>

namespace {

using nkdraw::magnitude;
using nkdraw::wrappingSubtract;

}  // namespace

std::uint32_t NKDraw::LineTo(int x, int y) {
  const std::uint32_t status = Line(penX, penY, x, y);
  penX = x;
  penY = y;
  return status;
}

std::uint32_t NKDraw::Line(int x1, int y1, int x2, int y2) {
  const int dx = wrappingSubtract(x2, x1), dy = wrappingSubtract(y2, y1);
  if (antialias && dx != 0 && dy != 0 && magnitude(dx) != magnitude(dy)) {
    if (y1 > y2)
      nkdraw::weightedLine(*this, x2, y2, x1, y1, [](int, int) { return true; });
    else
      nkdraw::weightedLine(*this, x1, y1, x2, y2, [](int, int) { return true; });
  } else {
    nkdraw::RunPlotter(*this).slope(nkdraw::slopeOfLine(x1, y1, x2, y2), true);
  }
  return 0;
}

std::uint32_t NKDraw::Line(tagPOINT& from, tagPOINT& to) {
  return Line(from.x, from.y, to.x, to.y);
}

std::uint32_t NKDraw::LineVert(int x, int y1, int y2) {
  if (y1 <= y2)
    nkdraw::RunPlotter(*this).column(x, y1, nkdraw::span(y1, y2), true);
  return 0;
}

std::uint32_t NKDraw::LineHoriz(int x1, int y, int x2) {
  if (!nkdraw::isFourByteRgb(pixelKind)) {
    if (x1 <= x2)
      nkdraw::RunPlotter(*this).row(x1, y, nkdraw::span(x1, x2), 1, true);
    return 0;
  }
  // A block fill that leaves out x2. What is refused here could only write far outside the canvas.
  if (canvas != nullptr && y >= 0 && x1 < x2)
    SetMemoryFast(nkdraw::wordAddress(canvas, pitch, x1, y), nkdraw::load32(foregroundPixel),
                  (nkdraw::span(x1, x2) - 1) * 4);
  return 0;
}

std::uint32_t NKDraw::Dash(int x1, int y1, int x2, int y2, int on, int off) {
  const bool alongY = nkdraw::signedMagnitude(wrappingSubtract(y2, y1)) >
                      nkdraw::signedMagnitude(wrappingSubtract(x2, x1));
  nkdraw::Slope line = nkdraw::slopeBetween(x1, y1, x2, y2, alongY);
  if (on <= 0)
    return 0;
  const nkdraw::RunPlotter plotter(*this);
  if (off == 0)
    plotter.slope(line, true);
  while (off != 0 && line.count > 0) {
    nkdraw::Slope dash = line;
    dash.count = std::min(line.count, static_cast<std::uint32_t>(on));
    plotter.slope(dash, true);
    line.skip(dash.count);
    // Deliberate: callers rely on a negative gap ending the line.
    line.skip(off < 0 ? line.count : std::min(line.count, static_cast<std::uint32_t>(off)));
  }
  return 0;
}

std::uint32_t NKDraw::Polyline(const tagPOINT* points, std::uint32_t count) {
  if (count < 2)
    return NKStatusRefused;
  const auto lines = static_cast<std::int32_t>(count - 1);
  for (std::int32_t i = 0; i < lines; ++i)
    Line(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y);
  return 0;
}

std::uint32_t NKDraw::PolylineTo(const tagPOINT* points, std::uint32_t count) {
  const std::uint32_t status = Polyline(points, count);
  if (status != 0)
    return status;
  penX = points[count].x;  // deliberate: callers pass one more point, where the pen goes
  penY = points[count].y;
  return 0;
}
