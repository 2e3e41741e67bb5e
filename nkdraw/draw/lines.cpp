// SPDX-License-Identifier: BSD-2-Clause
//
// Straight lines: a 16.16 fixed-point stepper along the longer axis, plotted in runs.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/weighted_line.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/surface/address.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>

#include <utility>

namespace {

constexpr std::uint32_t kRefused = 0xFFFFFFFF;

using nkdraw::magnitude;
using nkdraw::wrappingAdd;
using nkdraw::wrappingSubtract;

/// Pixels from `first` to `last`, which is not less, both included.
constexpr std::uint32_t span(int first, int last) {
  return static_cast<std::uint32_t>(last) - static_cast<std::uint32_t>(first) + 1;
}

constexpr int signedMagnitude(int value) {
  return static_cast<int>(magnitude(value));
}

/// Walks from (x1, y1) towards (x2, y2) along one axis, one position at a time.
class Stepper {
 public:
  Stepper(int x1, int y1, int x2, int y2, bool alongY) : alongY_(alongY) {
    const int dx = wrappingSubtract(x2, x1), dy = wrappingSubtract(y2, y1);
    const int majorDelta = alongY_ ? dy : dx, minorDelta = alongY_ ? dx : dy;
    direction_ = majorDelta > 0 ? 1 : -1;
    count_ = magnitude(majorDelta) + 1;
    major_ = alongY_ ? y1 : x1;
    fixed_ = (static_cast<std::uint32_t>(alongY_ ? x1 : y1) << 16) + kHalf;
    const std::uint32_t step = majorDelta == 0 ? 0U : slope(minorDelta, majorDelta);
    step_ = direction_ > 0 ? step : 0U - step;
  }

  [[nodiscard]] std::uint32_t count() const { return count_; }

  /// Whether all positions lie on one row, or column.
  [[nodiscard]] bool straight() const { return step_ == 0; }

  void advance() {
    fixed_ += step_;
    major_ = wrappingAdd(major_, direction_);
  }

 private:
  friend class RunGatherer;
  static constexpr std::uint32_t kHalf = 0x8000;

  /// The shift is a 32-bit one: a minor delta of 32,768 or more overflows.
  static std::uint32_t slope(int minorDelta, int majorDelta) {
    const auto shifted = static_cast<int>(static_cast<std::uint32_t>(minorDelta) << 16);
    return static_cast<std::uint32_t>(std::int64_t{shifted} / majorDelta);
  }

  [[nodiscard]] int minor() const { return static_cast<int>(fixed_) >> 16; }

  bool alongY_;
  int direction_;
  std::uint32_t count_;  // positions, both ends included
  int major_;
  std::uint32_t fixed_;  // the other coordinate, 16.16
  std::uint32_t step_;
};

/// Gathers neighbouring positions on one row, or column, and plots them as one run.
class RunGatherer {
 public:
  RunGatherer(NKPixel& surface, const Stepper& stepper) : plotter_(surface), stepper_(stepper) {}

  /// The stepper's position is part of the line.
  void take() {
    const int minor = stepper_.minor();
    if (length_ > 0 && minor != minor_)
      flush();
    if (length_ == 0) {
      first_ = stepper_.major_;
      minor_ = minor;
    }
    ++length_;
  }

  /// So many positions from the stepper's on, all on its row or column.
  void takeStraight(std::uint32_t count) {
    take();
    length_ = count;
  }

  /// The run ends here.
  void flush() {
    if (length_ == 0)
      return;
    if (stepper_.alongY_)
      plotter_.column(minor_, first_, length_, stepper_.direction_, true);
    else
      plotter_.row(first_, minor_, length_, stepper_.direction_, true);
    length_ = 0;
  }

 private:
  nkdraw::RunPlotter plotter_;
  const Stepper& stepper_;
  int first_ = 0;
  int minor_ = 0;
  std::uint32_t length_ = 0;
};

}  // namespace

std::uint32_t NKDraw::LineTo(int x, int y) {
  const std::uint32_t status = Line(penX, penY, x, y);
  penX = x;
  penY = y;
  return status;
}

std::uint32_t NKDraw::Line(int x1, int y1, int x2, int y2) {
  if (y1 > y2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const int dx = wrappingSubtract(x2, x1), dy = wrappingSubtract(y2, y1);
  if (antialias && dx != 0 && dy != 0 && signedMagnitude(dx) != dy) {
    nkdraw::weightedLine(*this, x1, y1, x2, y2, [](int, int) { return true; });
    return 0;
  }
  Stepper stepper(x1, y1, x2, y2, dy > signedMagnitude(dx));
  RunGatherer run(*this, stepper);
  if (stepper.straight()) {
    run.takeStraight(stepper.count());
  } else {
    for (std::uint32_t left = stepper.count(); left > 0; --left) {
      run.take();
      stepper.advance();
    }
  }
  run.flush();
  return 0;
}

std::uint32_t NKDraw::Line(tagPOINT& from, tagPOINT& to) {
  return Line(from.x, from.y, to.x, to.y);
}

std::uint32_t NKDraw::LineVert(int x, int y1, int y2) {
  if (y1 <= y2)
    nkdraw::RunPlotter(*this).column(x, y1, span(y1, y2), 1, true);
  return 0;
}

std::uint32_t NKDraw::LineHoriz(int x1, int y, int x2) {
  if (!nkdraw::isFourByteRgb(pixelKind)) {
    if (x1 <= x2)
      nkdraw::RunPlotter(*this).row(x1, y, span(x1, x2), 1, true);
    return 0;
  }
  // A block fill that leaves x2 out. What is refused here could only write far off the canvas.
  if (canvas != nullptr && y >= 0 && x1 < x2)
    SetMemoryFast(nkdraw::wordAddress(canvas, pitch, x1, y), nkdraw::load32(foregroundPixel),
                  (span(x1, x2) - 1) * 4);
  return 0;
}

std::uint32_t NKDraw::Dash(int x1, int y1, int x2, int y2, int on, int off) {
  const bool alongY =
      signedMagnitude(wrappingSubtract(y2, y1)) > signedMagnitude(wrappingSubtract(x2, x1));
  Stepper stepper(x1, y1, x2, y2, alongY);
  RunGatherer run(*this, stepper);
  int onLeft = on, offLeft = off;
  for (std::uint32_t left = stepper.count(); left > 0; --left) {
    if (onLeft > 0) {
      run.take();
      --onLeft;
    } else {
      run.flush();
    }
    if (offLeft == 0) {
      onLeft = on;
      offLeft = off;
    }
    if (onLeft == 0 && offLeft >= 1)
      --offLeft;
    stepper.advance();
  }
  run.flush();
  return 0;
}

std::uint32_t NKDraw::Polyline(const tagPOINT* points, std::uint32_t count) {
  if (count < 2)
    return kRefused;
  const auto lines = static_cast<std::int32_t>(count - 1);
  for (std::int32_t i = 0; i < lines; ++i)
    Line(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y);
  return 0;
}

std::uint32_t NKDraw::PolylineTo(const tagPOINT* points, std::uint32_t count) {
  const std::uint32_t status = Polyline(points, count);
  if (status != 0)
    return status;
  penX = points[count].x;  // meant: the element behind the last point
  penY = points[count].y;
  return 0;
}
