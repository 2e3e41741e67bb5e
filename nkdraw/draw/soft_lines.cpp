// SPDX-License-Identifier: BSD-2-Clause
//
// Xiaolin Wu's antialiased line: the weight of each pixel goes into the alpha of the pen, and the
// surface decides what alpha means.
#include <nkdraw/draw/draw.h>

#include <nkdraw/surface/truncate.h>
#include <nkdraw/surface/wrapping.h>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

using nkdraw::truncateToInt32;
using nkdraw::wrappingAdd;

/// Plots pairs of neighbouring pixels across the line.
class WuPen {
 public:
  WuPen(NKPixel& surface, bool steep) : surface_(surface), steep_(steep) {
    double alpha = 0.0;
    surface_.GetColorRGBA(r_, g_, b_, alpha, true);
  }

  /// The pixels above and below `minor`, weighted by their distance and `scale`.
  void pair(int major, double minor, double scale) {
    const double whole = std::floor(minor), fraction = minor - whole;
    const int first = truncateToInt32(whole);
    plot(major, first, (1.0 - fraction) * scale);
    plot(major, wrappingAdd(first, 1), fraction * scale);
  }

 private:
  void plot(int major, int minor, double weight) {
    surface_.SetColorRGBA(r_, g_, b_, weight, true);
    if (steep_)
      surface_.PutPixel(minor, major, true);
    else
      surface_.PutPixel(major, minor, true);
  }

  NKPixel& surface_;
  bool steep_;
  double r_ = 0.0, g_ = 0.0, b_ = 0.0;
};

}  // namespace

std::uint32_t NKDraw::LineWu(int x1, int y1, int x2, int y2) {
  constexpr double kHalf = 0.5;  // of the weight, at whole-numbered ends
  const bool steep = std::abs(std::int64_t{y2} - y1) > std::abs(std::int64_t{x2} - x1);
  WuPen pen(*this, steep);
  if (steep) {
    std::swap(x1, y1);
    std::swap(x2, y2);
  }
  if (x1 > x2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const double firstX = x1, lastX = x2, firstY = y1, lastY = y2;
  const double gradient = x1 == x2 ? 1.0 : (lastY - firstY) / (lastX - firstX);
  pen.pair(x1, firstY, kHalf);
  pen.pair(x2, lastY, kHalf);
  double minor = firstY + gradient;
  for (std::int64_t x = std::int64_t{x1} + 1; x < x2; ++x, minor += gradient)
    pen.pair(static_cast<int>(x), minor, 1.0);
  return 0;
}

std::uint32_t NKDraw::LineWuTo(int x, int y) {
  const std::uint32_t status = LineWu(penX, penY, x, y);
  penX = x;
  penY = y;
  return status;
}
