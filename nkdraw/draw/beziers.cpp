// SPDX-License-Identifier: BSD-2-Clause
//
// Cubic Béziers, split in half until a straight line is near enough.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/line_runner.h>
#include <nkdraw/surface/truncate.h>
#include <nkdraw/surface/wrapping.h>

namespace {

using nkdraw::truncateToInt32;
using nkdraw::wrappingAdd;
using nkdraw::wrappingSubtract;

std::int32_t wrappingMultiply(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

/// The line a x + b y + c = 0 through the two ends; all zero when they coincide.
struct Chord {
  double a, b, c;

  Chord(int x1, int y1, int x4, int y4)
      : a(wrappingSubtract(x1, x4)),
        b(wrappingSubtract(y4, y1)),
        c(wrappingSubtract(wrappingMultiply(wrappingSubtract(x4, x1), y1),
                           wrappingMultiply(wrappingSubtract(y4, y1), x1))) {}

  [[nodiscard]] bool isPoint() const { return a == 0.0 && b == 0.0 && c == 0.0; }

  /// Whether the point lies less than a pixel from the line.
  [[nodiscard]] bool isNear(int x, int y) const {
    const double distance = y * a + x * b + c;
    return a * a + b * b > distance * distance;
  }
};

/// One coordinate of the points between the ends of two halves, the middle common to both. Cut to
/// whole pixels towards zero.
struct Halves {
  std::int32_t firstControl1, firstControl2, middle, secondControl1, secondControl2;

  Halves(int p1, int p2, int p3, int p4) {
    const double a = wrappingAdd(p1, p2), b = wrappingAdd(p2, p3), c = wrappingAdd(p3, p4);
    const double d = a + b, e = b + c;
    firstControl1 = truncateToInt32(a * 0.5);
    firstControl2 = truncateToInt32(d * 0.25);
    middle = truncateToInt32((d + e) * 0.125);
    secondControl1 = truncateToInt32(e * 0.25);
    secondControl2 = truncateToInt32(c * 0.5);
  }
};

/// Two ends and their control points.
struct Cubic {
  tagPOINT start, control1, control2, end;
};

/// Calls `flat(curve)` if a line is near enough, else `half(curve)` for each of its halves. False
/// for a curve whose ends coincide.
template <class Flat, class Half>
bool divide(const Cubic& curve, Flat flat, Half half) {
  const auto& [p1, p2, p3, p4] = curve;
  const Chord chord(p1.x, p1.y, p4.x, p4.y);
  if (chord.isPoint())
    return false;
  if (chord.isNear(p2.x, p2.y) && chord.isNear(p3.x, p3.y)) {
    flat(curve);
    return true;
  }
  const Halves x(p1.x, p2.x, p3.x, p4.x), y(p1.y, p2.y, p3.y, p4.y);
  const tagPOINT middle = {x.middle, y.middle};
  half(Cubic{p1, {x.firstControl1, y.firstControl1}, {x.firstControl2, y.firstControl2}, middle});
  half(Cubic{
      middle, {x.secondControl1, y.secondControl1}, {x.secondControl2, y.secondControl2}, p4});
  return true;
}

/// Draws a whole curve at once, for callers that need not see the halves.
template <class Flat>
bool drawWhole(const Cubic& curve, Flat flat) {
  return divide(curve, flat, [flat](const Cubic& half) { drawWhole(half, flat); });
}

}  // namespace

std::uint32_t NKDraw::Bezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
  const Cubic curve = {{x1, y1}, {x2, y2}, {x3, y3}, {x4, y4}};
  nkdraw::LineRunner lines(*this, antialias);
  const auto flat = [&](const Cubic& part) {
    penX = part.start.x;
    penY = part.start.y;
    lines.line(part.start.x, part.start.y, part.end.x, part.end.y);
  };
  const auto half = [this](const Cubic& part) {
    const auto& [p1, p2, p3, p4] = part;
    Bezier(p1.x, p1.y, p2.x, p2.y, p3.x, p3.y, p4.x, p4.y);
  };
  const bool drawn = lines.direct() ? drawWhole(curve, flat) : divide(curve, flat, half);
  return drawn ? 0 : NKStatusRefused;
}

// Deliberate: callers rely on the refusal of a single curve, 4 points.
std::uint32_t NKDraw::PolyBezier(const tagPOINT* points, std::uint32_t count) {
  if (count <= 4 || (count - 4) % 3 != 0)
    return NKStatusRefused;
  for (std::uint32_t k = 0; k < (count - 2) / 3 + 1; ++k) {
    const tagPOINT* const p = points + std::size_t{k} * 3;
    Bezier(p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y, p[3].x, p[3].y);
  }
  return 0;
}

std::uint32_t NKDraw::PolyBezierTo(const tagPOINT* points, std::uint32_t count) {
  const std::uint32_t status = PolyBezier(points, count);
  if (status != 0)
    return status;
  const tagPOINT& behind = points[std::size_t{count} + 2];  // deliberate: past the curves' points
  penX = behind.x;
  penY = behind.y;
  return 0;
}
