// SPDX-License-Identifier: BSD-2-Clause
//
// A second, plain implementation of soft lines, as calls of the surface's operations.
#pragma once

#include <nkdraw/nkdraw.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace nkdraw::test {

/// The line of two pixels a step, weighted through the alpha of the colour.
inline void referenceLineWu(NKDraw& surface, int fromX, int fromY, int toX, int toY) {
  double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
  surface.GetColorRGBA(r, g, b, a, true);
  double x1 = fromX, y1 = fromY, x2 = toX, y2 = toY;
  const bool steep = std::fabs(y2 - y1) > std::fabs(x2 - x1);
  if (steep) {
    std::swap(x1, y1);
    std::swap(x2, y2);
  }
  if (x1 > x2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const auto plot = [&](std::int64_t along, std::int64_t across, double weight) {
    surface.SetColorRGBA(r, g, b, weight, true);
    const auto first = static_cast<int>(static_cast<std::uint32_t>(along));
    const auto second = static_cast<int>(static_cast<std::uint32_t>(across));
    surface.PutPixel(steep ? second : first, steep ? first : second, true);
  };
  const double gradient = x2 == x1 ? 1.0 : (y2 - y1) / (x2 - x1);
  const double xend1 = std::trunc(std::floor(x1 + 0.5));
  const double yend1 = y1 + gradient * (xend1 - x1);
  const double gap1 = 1.0 - ((x1 + 0.5) - std::floor(x1 + 0.5));
  const auto first = static_cast<std::int64_t>(xend1);
  plot(first, static_cast<std::int64_t>(std::floor(yend1)),
       (1.0 - (yend1 - std::floor(yend1))) * gap1);
  plot(first, static_cast<std::int64_t>(std::floor(yend1)) + 1, (yend1 - std::floor(yend1)) * gap1);
  double intery = yend1 + gradient;
  const double xend2 = std::trunc(std::floor(x2 + 0.5));
  const double yend2 = y2 + gradient * (xend2 - x2);
  const double gap2 = (x2 + 0.5) - std::floor(x2 + 0.5);
  const auto last = static_cast<std::int64_t>(xend2);
  plot(last, static_cast<std::int64_t>(std::floor(yend2)),
       (1.0 - (yend2 - std::floor(yend2))) * gap2);
  plot(last, static_cast<std::int64_t>(std::floor(yend2)) + 1, (yend2 - std::floor(yend2)) * gap2);
  for (std::int64_t x = first + 1; x < last; ++x) {
    const double floored = std::floor(intery), fraction = intery - floored;
    plot(x, static_cast<std::int64_t>(floored), 1.0 - fraction);
    plot(x, static_cast<std::int64_t>(floored) + 1, fraction);
    intery += gradient;
  }
}

/// Line of an antialiased surface, for ends that lie neither on one axis nor on one diagonal.
inline void referenceWeightedLine(NKDraw& surface, int x1, int y1, int x2, int y2) {
  using Colour = std::array<double, 4>;
  const auto get = [&surface] {
    Colour c{};
    surface.GetColorRGBA(c[0], c[1], c[2], c[3], true);
    return c;
  };
  const auto set = [&surface](const Colour& a, double weightA, const Colour& b, double weightB) {
    Colour mixed{};
    for (std::size_t i = 0; i < 4; ++i)
      mixed[i] = (weightA * a[i] + weightB * b[i]) / 255.0;
    surface.SetColorRGBA(mixed[0], mixed[1], mixed[2], mixed[3], true);
  };
  const auto darken = [&surface](const Colour& c) {
    surface.SetColorRGBA(c[0] / 255.0, c[1] / 255.0, c[2] / 255.0, c[3] / 255.0, true);
  };
  const auto minus = [](int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
  };
  const auto plus = [](int a, std::uint32_t b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) + b);
  };
  if (y1 > y2) {
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const int dx = minus(x2, x1), dy = minus(y2, y1);
  const std::uint32_t sign = dx >= 0 ? 1U : 0xFFFFFFFFU;
  const auto adx = dx >= 0 ? static_cast<std::uint32_t>(dx) : 0U - static_cast<std::uint32_t>(dx);
  const auto down = static_cast<std::uint32_t>(dy);
  Colour c = get();
  darken(c);
  surface.PutPixel(x1, y1, true);
  surface.PutPixel(x2, y2, true);
  const bool alongY = dy > static_cast<int>(adx);
  const std::uint32_t step = alongY ? (adx << 16) / down : (down << 16) / adx;
  std::uint32_t acc = 0;
  int x = x1, y = y1;
  for (std::uint32_t left = (alongY ? down : adx) - 1; left > 0; --left) {
    acc += step;
    if (alongY) {
      y = plus(y, 1);
      x = plus(x1, sign * (acc >> 16));
    } else {
      x = plus(x, sign);
      y = plus(y1, acc >> 16);
    }
    Colour p{};
    surface.GetPixelRGBA(x, y, p[0], p[1], p[2], p[3]);
    c = get();
    const double w = ((acc >> 8) & 0xFF) / 255.0, v = 1.0 - w;
    set(p, w, c, v);
    surface.PutPixel(x, y, true);
    set(p, v, c, w);
    surface.PutPixel(alongY ? plus(x, sign) : x, alongY ? y : plus(y, 1), true);
    darken(c);
  }
  darken(c);
}

}  // namespace nkdraw::test
