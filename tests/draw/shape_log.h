// SPDX-License-Identifier: BSD-2-Clause
//
// A surface that records the lines and rows of a shape, and draws nothing.
#pragma once

#include <tests/support/fields.h>
#include <tests/support/reference_shapes.h>

#include <nkdraw/nkdraw.h>

#include <cstdint>
#include <vector>

namespace nkdraw::test {

class ShapeLog final : public CDrawRGB24 {
 public:
  ShapeLog() : NKDraw(ptRGB24), CDrawRGB24(ptRGB24) {}

  using NKDraw::Line;
  std::uint32_t Line(int x1, int y1, int x2, int y2) override {
    lines.push_back({x1, y1, x2, y2});
    return 4711;  // not to be handed on
  }
  std::uint32_t LineHoriz(int x1, int y, int x2) override {
    rows.push_back({x1, y, x2, y});
    return 4711;
  }
  std::uint32_t PutPixel(int, int, bool) override {
    ++plots;
    return 4711;
  }

  [[nodiscard]] tagPOINT pen() const { return {penX, penY}; }

  std::vector<Segment> lines, rows;
  int plots = 0;
};

/// What the next Pie would draw from: the arc state of the process, seen in the radii of a pie
/// whose arc fails.
inline ArcEnds arcEnds() {
  ShapeLog log;
  log.Pie(0, 0, 0, 0, 1, 1, 1, 1);
  return {log.lines.at(0).x1, log.lines.at(0).y1, log.lines.at(1).x1, log.lines.at(1).y1};
}

}  // namespace nkdraw::test
