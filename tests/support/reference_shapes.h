// SPDX-License-Identifier: BSD-2-Clause
//
// A second, plain implementation of curves and rectangles, as chains of lines and rows.
#pragma once

#include <nkdraw/nkdraw.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace nkdraw::test {

struct Segment {
  int x1, y1, x2, y2;
  bool operator==(const Segment&) const = default;
};

/// Where the last arc of the process began and ended.
struct ArcEnds {
  int startX = 0, startY = 0, endX = 0, endY = 0;
  bool operator==(const ArcEnds&) const = default;
};

class ReferenceShapes {
 public:
  std::vector<Segment> lines;
  tagPOINT pen{};
  ArcEnds ends;

  std::uint32_t arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    if (x2 <= x1 || y2 <= y1)
      return 0xFFFFFFFF;
    const double rx = (x2 - x1) * 0.5, ry = (y2 - y1) * 0.5;
    const double cx = x2 - rx, cy = y2 - ry;
    double a = 0.0, b = 0.0;
    if (!angle(x3, y3, cx, cy, a) || !angle(x4, y4, cx, cy, b))
      return 0xFFFFFFFF;
    const int start = static_cast<int>(a);
    const int end = normalised(start, static_cast<int>(b));
    int lastX = 0, lastY = 0;
    for (int i = start; i <= end; ++i) {
      const double t = (i % 360) * kRadians;
      const double px =
          static_cast<double>(static_cast<float>(std::cos(t)) * static_cast<float>(rx)) + cx;
      const double py =
          cy - static_cast<double>(static_cast<float>(std::sin(t)) * static_cast<float>(ry));
      const int x = static_cast<int>(px), y = static_cast<int>(py);
      if (i == start) {
        ends.startX = x;
        ends.startY = y;
      } else {
        lines.push_back({lastX, lastY, x, y});
      }
      lastX = x;
      lastY = y;
    }
    ends.endX = lastX;
    ends.endY = lastY;
    return 0;
  }

  void arcTo(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    arc(x1, y1, x2, y2, y3, x3, x4, y4);
    pen = {x4, y4};
  }

  void pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    const int cx = (x1 + x2) / 2, cy = (y1 + y2) / 2;
    arc(x1, y1, x2, y2, y3, x3, x4, y4);
    lines.push_back({ends.startX, ends.startY, cx, cy});
    lines.push_back({ends.endX, ends.endY, cx, cy});
  }

  /// The pen stays.
  void angleArc(int x, int y, std::uint32_t radius, float start, float end) {
    const auto signedRadius = static_cast<int>(radius);
    walk(x, y, signedRadius, signedRadius, start, end);
  }

  void angleArcTo(int x, int y, int radiusX, int radiusY, float start, float end) {
    pen = walk(x, y, radiusX, radiusY, start, end);
  }

  std::uint32_t bezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    const double a = minus(x1, x4), b = minus(y4, y1);
    const double c = minus(times(minus(x4, x1), y1), times(minus(y4, y1), x1));
    if (a == 0.0 && b == 0.0 && c == 0.0)
      return 0xFFFFFFFF;
    const double n = a * a + b * b;
    const double d2 = y2 * a + x2 * b + c, d3 = y3 * a + x3 * b + c;
    if (n > d2 * d2 && n > d3 * d3) {
      pen = {x1, y1};
      lines.push_back({x1, y1, x4, y4});
      return 0;
    }
    const Split x = split(x1, x2, x3, x4), y = split(y1, y2, y3, y4);
    bezier(x1, y1, x.first, y.first, x.second, y.second, x.middle, y.middle);
    bezier(x.middle, y.middle, x.third, y.third, x.fourth, y.fourth, x4, y4);
    return 0;
  }

  std::uint32_t polyBezier(const tagPOINT* points, std::uint32_t count) {
    if (count <= 4 || (count - 4) % 3 != 0)
      return 0xFFFFFFFF;
    for (std::uint32_t k = 0; k < (count - 2) / 3 + 1; ++k) {
      const tagPOINT* const p = points + 3 * k;
      bezier(p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y, p[3].x, p[3].y);
    }
    return 0;
  }

  std::uint32_t polyBezierTo(const tagPOINT* points, std::uint32_t count) {
    const std::uint32_t status = polyBezier(points, count);
    if (status == 0)
      pen = points[count + 2];
    return status;
  }

  void rectangle(int x1, int y1, int x2, int y2) {
    lines.push_back({x1, y1, x2, y1});
    lines.push_back({x1, y1, x1, y2});
    lines.push_back({x1, y2, x2, y2});
    lines.push_back({x2, y1, x2, y2});
  }

  std::uint32_t roundRect(int x1, int y1, int x2, int y2, int width, int height) {
    if (width > x2 - x1 || height > y2 - y1)
      return 0xFFFFFFFF;
    const int xl = x1 + width / 2, xr = x2 - width / 2;
    const int yt = y1 + height / 2, yb = y2 - height / 2;
    lines.push_back({xl, y1, xr, y1});
    lines.push_back({x1, yt, x1, yb});
    lines.push_back({xl, y2, xr, y2});
    lines.push_back({x2, yt, x2, yb});
    angleArcTo(xl, yt, xl - x1, yt - y1, 90.0F, 180.0F);
    angleArcTo(xl, yb, xl - x1, y2 - yb, 180.0F, 270.0F);
    angleArcTo(xr, yb, x2 - xr, y2 - yb, 270.0F, 360.0F);
    angleArcTo(xr, yt, x2 - xr, yt - y1, 0.0F, 90.0F);
    return 0;
  }

 private:
  static constexpr double kDegrees = 57.324840764331206;
  static constexpr double kRadians = 0.017444444444444446;

  static int minus(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
  }
  static int plus(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
  }
  static int times(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
  }

  static bool angle(int x, int y, double cx, double cy, double& degrees) {
    const double px = x, py = y;
    const auto quotient = [](double over, double under) {
      return std::atan(static_cast<double>(static_cast<float>(over) / static_cast<float>(under)));
    };
    if (py == cy && px == cx)
      return false;
    if (py == cy)
      degrees = px > cx ? 0.0 : 180.0;
    else if (px == cx)
      degrees = py > cy ? 90.0 : 270.0;
    else if (py > cy && px > cx)
      degrees = quotient(-(py - cy), px - cx) * kDegrees;
    else if (py > cy)
      degrees = 180.0 - quotient(-(py - cy), cx - px) * kDegrees;
    else if (px > cx)
      degrees = 360.0 - quotient(py - cy, px - cx) * kDegrees;
    else
      degrees = quotient(py - cy, cx - px) * kDegrees + 180.0;
    return true;
  }

  /// The first angle from `start` on with the remainder of `end`.
  static int normalised(int start, int end) {
    if (end >= start)
      return end;
    const std::uint32_t turns =
        (static_cast<std::uint32_t>(start) - static_cast<std::uint32_t>(end) - 1) / 360;
    return static_cast<int>(static_cast<std::uint32_t>(end) + turns * 360 + 360);
  }

  tagPOINT walk(int x, int y, int radiusX, int radiusY, float from, float to) {
    const int start = static_cast<int>(from), end = normalised(start, static_cast<int>(to));
    tagPOINT last{};
    for (int i = start; i <= end; ++i) {
      const double t = (i % 360) * kRadians;
      const float px =
          static_cast<float>(std::cos(t)) * static_cast<float>(radiusX) + static_cast<float>(x);
      const float py =
          static_cast<float>(y) - static_cast<float>(std::sin(t)) * static_cast<float>(radiusY);
      const tagPOINT point = {static_cast<int>(px), static_cast<int>(py)};
      if (i != start)
        lines.push_back({last.x, last.y, point.x, point.y});
      last = point;
    }
    return last;
  }

  /// One coordinate of the points of the two halves of a curve.
  struct Split {
    int first, second, middle, third, fourth;
  };
  static Split split(int p1, int p2, int p3, int p4) {
    const double a = plus(p1, p2), b = plus(p2, p3), c = plus(p3, p4);
    const double d = a + b, e = b + c;
    return {static_cast<int>(a * 0.5), static_cast<int>(d * 0.25),
            static_cast<int>((d + e) * 0.125), static_cast<int>(e * 0.25),
            static_cast<int>(c * 0.5)};
  }
};

}  // namespace nkdraw::test
