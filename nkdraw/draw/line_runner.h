// SPDX-License-Identifier: BSD-2-Clause
//
// Draws shapes made of many lines.
#pragma once

#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace nkdraw {

/// The absolute value; the lowest integer stays negative.
[[nodiscard]] constexpr int signedMagnitude(int value) {
  return static_cast<int>(magnitude(value));
}

/// minorDelta / majorDelta in 16.16, towards zero. The shift is a 32-bit one: a minor delta of
/// 32,768 or more overflows.
[[nodiscard]] constexpr std::uint32_t slopeQuotient(int minorDelta, int majorDelta) {
  if (majorDelta == 0)
    return 0;
  const std::uint32_t shifted = static_cast<std::uint32_t>(minorDelta) << 16;
  if (majorDelta == -1)  // the one divisor by which the lowest integer can't be divided
    return 0U - shifted;
  return static_cast<std::uint32_t>(static_cast<int>(shifted) / majorDelta);
}

/// The positions from (x1, y1) to (x2, y2), both included, rounded half up across the line.
[[nodiscard]] constexpr Slope slopeBetween(int x1, int y1, int x2, int y2, bool alongY) {
  constexpr std::uint32_t kHalf = 0x8000;
  const int dx = wrappingSubtract(x2, x1), dy = wrappingSubtract(y2, y1);
  const int majorDelta = alongY ? dy : dx, minorDelta = alongY ? dx : dy;
  const int direction = majorDelta > 0 ? 1 : -1;
  const std::uint32_t step = slopeQuotient(minorDelta, majorDelta);
  return {alongY,
          direction,
          magnitude(majorDelta) + 1,
          alongY ? y1 : x1,
          (static_cast<std::uint32_t>(alongY ? x1 : y1) << 16) + kHalf,
          direction > 0 ? step : 0U - step};
}

/// The positions of NKDraw::Line; they are the same from either end.
[[nodiscard]] constexpr Slope slopeOfLine(int x1, int y1, int x2, int y2) {
  if (y1 > y2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const bool alongY = wrappingSubtract(y2, y1) > signedMagnitude(wrappingSubtract(x2, x1));
  return slopeBetween(x1, y1, x2, y2, alongY);
}

/// Draws lines as the surface's virtual Line does. A class of the library's own does not override
/// Line, and gets many lines at once.
class LineRunner {
 public:
  /// For one shape: while it draws, the surface keeps its canvas, colours and transparency. An
  /// `antialiased` surface gets its lines one by one, because they change its colour.
  LineRunner(NKDraw& surface, bool antialiased)
      : surface_(surface), plotter_(surface), direct_(plotter_.ownClass() && !antialiased) {}
  LineRunner(const LineRunner&) = delete;
  LineRunner& operator=(const LineRunner&) = delete;
  ~LineRunner() { flush(); }

  [[nodiscard]] bool direct() const { return direct_; }

  void line(int x1, int y1, int x2, int y2) {
    if (!direct_) {
      surface_.Line(x1, y1, x2, y2);
      return;
    }
    if (waiting_ == slopes_.size())
      flush();
    slopes_[waiting_++] = slopeOfLine(x1, y1, x2, y2);
  }

 private:
  void flush() {
    plotter_.slopes(std::span(slopes_).first(waiting_), true);
    waiting_ = 0;
  }

  NKDraw& surface_;
  RunPlotter plotter_;
  bool direct_;
  std::size_t waiting_ = 0;
  std::array<Slope, 64> slopes_;
};

}  // namespace nkdraw
