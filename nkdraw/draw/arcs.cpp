// SPDX-License-Identifier: BSD-2-Clause
//
// Arcs: chains of lines, one per whole degree, whatever the radius.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/line_runner.h>
#include <nkdraw/surface/truncate.h>
#include <nkdraw/surface/wrapping.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <iterator>
#include <optional>
#include <span>

namespace {

using nkdraw::truncateToInt32;
using nkdraw::wrappingAdd;

// Deliberate: drawings depend on 3.14 for pi, with which a full turn ends a little early.
constexpr double kDegreesPerRadian = 57.324840764331206;    // 180 / 3.14
constexpr double kRadiansPerDegree = 0.017444444444444446;  // 3.14 / 180

/// The ends of the last arc in the process, of any surface, for Pie. Threads that draw pies at the
/// same time get each other's ends.
std::atomic<std::int32_t> arcStartX, arcStartY, arcEndX, arcEndY;

/// Whole degrees from `start` on, both ends included, counter-clockwise on the screen.
struct Sweep {
  std::int32_t start, end;

  /// An end below the start becomes the next larger angle with the same remainder.
  Sweep(double from, double to) : start(truncateToInt32(from)), end(truncateToInt32(to)) {
    if (end >= start)
      return;
    const std::uint32_t turns =
        (static_cast<std::uint32_t>(start) - static_cast<std::uint32_t>(end) - 1) / 360;
    end = wrappingAdd(end, std::int64_t{turns} * 360 + 360);
  }
};

struct Direction {
  float cosine, sine;
};

/// The values for all whole degrees, computed once and then read by all threads.
class Directions {
 public:
  Directions() {
    for (int i = 0; i < kTurn; ++i) {
      const double radians = i * kRadiansPerDegree;
      turn_[static_cast<std::size_t>(i)] = {static_cast<float>(std::cos(radians)),
                                            static_cast<float>(std::sin(radians))};
    }
  }

  /// For any number of turns, forward or backward.
  [[nodiscard]] Direction of(std::int32_t degree) const {
    const std::int32_t within = degree % kTurn;  // with the sign of the degree
    const Direction& direction = turn_[nkdraw::magnitude(within)];
    return {direction.cosine, within < 0 ? -direction.sine : direction.sine};
  }

  /// Those from a degree on that is not negative, up to the end of the turn.
  [[nodiscard]] std::span<const Direction> from(std::int32_t degree) const {
    return std::span(turn_).subspan(static_cast<std::size_t>(degree % kTurn));
  }

  static constexpr int kTurn = 360;

 private:
  std::array<Direction, kTurn> turn_;
};

const Directions& directions() {
  static const Directions all;
  return all;
}

/// An ellipse from the middle of a box.
struct BoxedEllipse {
  double radiusX, radiusY, centreX, centreY;

  [[nodiscard]] tagPOINT at(Direction direction) const {
    const double px = double{direction.cosine * static_cast<float>(radiusX)} + centreX;
    const double py = centreY - double{direction.sine * static_cast<float>(radiusY)};
    return {truncateToInt32(px), truncateToInt32(py)};
  }
};

/// An ellipse around a pixel, whose points are computed in single precision throughout.
struct CentredEllipse {
  float x, y, radiusX, radiusY;

  CentredEllipse(int centreX, int centreY, int rx, int ry)
      : x(static_cast<float>(centreX)),
        y(static_cast<float>(centreY)),
        radiusX(static_cast<float>(rx)),
        radiusY(static_cast<float>(ry)) {}

  [[nodiscard]] tagPOINT at(Direction direction) const {
    const float px = direction.cosine * radiusX + x;
    const float py = y - direction.sine * radiusY;
    return {truncateToInt32(double{px}), truncateToInt32(double{py})};
  }
};

/// The points of a sweep in turn.
template <class Ellipse>
class SweepPoints {
 public:
  SweepPoints(const Ellipse& ellipse, Sweep sweep) : ellipse_(ellipse), degree_(sweep.start) {}

  [[nodiscard]] tagPOINT next() {
    return ellipse_.at(directions().of(static_cast<std::int32_t>(degree_++)));
  }

 private:
  const Ellipse& ellipse_;
  std::int64_t degree_;
};

/// Around a pixel: up to a turn of points at once, as long as all numbers are small.
template <>
class SweepPoints<CentredEllipse> {
 public:
  SweepPoints(const CentredEllipse& ellipse, Sweep sweep)
      : ellipse_(ellipse), degree_(sweep.start), left_(std::int64_t{sweep.end} - degree_ + 1) {
    const auto isSmall = [](float number) { return std::abs(number) < 1 << 20; };
    atOnce_ = sweep.start >= 0 && isSmall(ellipse.x) && isSmall(ellipse.y) &&
              isSmall(ellipse.radiusX) && isSmall(ellipse.radiusY);
  }

  [[nodiscard]] tagPOINT next() {
    if (!atOnce_)
      return ellipse_.at(directions().of(static_cast<std::int32_t>(degree_++)));
    if (at_ == made_)
      makeMore();
    return points_[at_++];
  }

 private:
  /// A number within 32 bits is truncated like any conversion does.
  void makeMore() {
    const std::span<const Direction> turn = directions().from(static_cast<std::int32_t>(degree_));
    made_ = static_cast<std::size_t>(
        std::min<std::int64_t>(std::max<std::int64_t>(left_, 1), std::ssize(turn)));
    const float scaleX = ellipse_.radiusX, scaleY = -ellipse_.radiusY;
    for (std::size_t i = 0; i < made_; ++i) {
      points_[i].x = static_cast<std::int32_t>(turn[i].cosine * scaleX + ellipse_.x);
      points_[i].y = static_cast<std::int32_t>(turn[i].sine * scaleY + ellipse_.y);
    }
    at_ = 0;
    degree_ += static_cast<std::int64_t>(made_);
    left_ -= static_cast<std::int64_t>(made_);
  }

  CentredEllipse ellipse_;
  std::int64_t degree_, left_;
  bool atOnce_;
  std::size_t at_ = 0, made_ = 0;
  std::array<tagPOINT, Directions::kTurn> points_;
};

/// Joins the points of a sweep; returns the last one.
template <class Ellipse>
tagPOINT drawSweep(NKDraw& surface, bool antialiased, const Ellipse& ellipse, Sweep sweep) {
  nkdraw::LineRunner lines(surface, antialiased);
  SweepPoints points(ellipse, sweep);
  tagPOINT last = points.next();
  for (std::int64_t degree = std::int64_t{sweep.start} + 1; degree <= sweep.end; ++degree) {
    const tagPOINT next = points.next();
    lines.line(last.x, last.y, next.x, next.y);
    last = next;
  }
  return last;
}

/// atan(numerator / denominator) in degrees, the quotient in single precision.
double angleOf(double numerator, double denominator) {
  const float quotient = static_cast<float>(numerator) / static_cast<float>(denominator);
  return std::atan(double{quotient}) * kDegreesPerRadian;
}

/// The angle of a point as seen from a centre; none for the centre itself. Deliberate: callers rely
/// on straight below being 90 and straight above 270, the reverse of all other directions.
std::optional<double> angleOfPoint(double px, double py, double cx, double cy) {
  if (px == cx && py == cy)
    return std::nullopt;
  if (px == cx)
    return py > cy ? 90.0 : 270.0;
  if (py == cy)
    return px > cx ? 0.0 : 180.0;
  if (py > cy)
    return px > cx ? -angleOf(py - cy, px - cx) : 180.0 + angleOf(py - cy, cx - px);
  return px > cx ? 360.0 - angleOf(py - cy, px - cx) : angleOf(py - cy, cx - px) + 180.0;
}

}  // namespace

std::uint32_t NKDraw::Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
  if (x2 <= x1 || y2 <= y1)
    return NKStatusRefused;
  const double right = x2, bottom = y2;
  const double radiusX = (right - x1) * 0.5, radiusY = (bottom - y1) * 0.5;
  const BoxedEllipse ellipse = {radiusX, radiusY, right - radiusX, bottom - radiusY};
  const auto from = angleOfPoint(x3, y3, ellipse.centreX, ellipse.centreY);
  const auto to = angleOfPoint(x4, y4, ellipse.centreX, ellipse.centreY);
  if (!from || !to)
    return NKStatusRefused;
  const Sweep sweep(*from, *to);
  const tagPOINT first = ellipse.at(directions().of(sweep.start));
  arcStartX = first.x;
  arcStartY = first.y;
  const tagPOINT last = drawSweep(*this, antialias, ellipse, sweep);
  arcEndX = last.x;
  arcEndY = last.y;
  return 0;
}

// Deliberate: callers rely on the start ray going through (y3, x3).
std::uint32_t NKDraw::ArcTo(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
  Arc(x1, y1, x2, y2, y3, x3, x4, y4);
  penX = x4;
  penY = y4;
  return 0;
}

// The start ray is as in ArcTo. If the arc is refused, the radii go to the ends of an earlier arc.
std::uint32_t NKDraw::Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
  const int cx = wrappingAdd(x1, x2) / 2, cy = wrappingAdd(y1, y2) / 2;
  Arc(x1, y1, x2, y2, y3, x3, x4, y4);
  Line(arcStartX, arcStartY, cx, cy);
  Line(arcEndX, arcEndY, cx, cy);
  return 0;
}

std::uint32_t NKDraw::AngleArc(int x, int y, std::uint32_t radius, float start, float end) {
  const auto signedRadius = static_cast<int>(radius);
  drawSweep(*this, antialias, CentredEllipse(x, y, signedRadius, signedRadius), Sweep(start, end));
  return 0;
}

std::uint32_t NKDraw::AngleArcTo(int x, int y, int radiusX, int radiusY, float start, float end) {
  const tagPOINT last =
      drawSweep(*this, antialias, CentredEllipse(x, y, radiusX, radiusY), Sweep(start, end));
  penX = last.x;
  penY = last.y;
  return 0;
}

std::uint32_t NKDraw::Circle(int x, int y, int radius) {
  AngleArc(x, y, static_cast<std::uint32_t>(radius), 0.0F, 360.0F);
  return 0;
}

std::uint32_t NKDraw::Ellipse(int x, int y, int radiusX, int radiusY) {
  AngleArcTo(x, y, radiusX, radiusY, 0.0F, 360.0F);
  return 0;
}
