// SPDX-License-Identifier: BSD-2-Clause
//
// Shapes and text to measure on frames of every layout: many random lines, circles, curves, fills,
// labels, a running timecode.
#pragma once

#include "scene.h"

#include <cstdint>
#include <vector>

namespace bench {

/// A layout, and the bytes of a row of the frame.
struct Kind {
  const char* name;
  pixelType type;
  std::uint32_t bytesPerRow;
};

/// The three most common layouts, then all others.
inline constexpr Kind kKinds[] = {
    {"BGRA", ptBGRA32, 7680},  {"UYVY", ptUYVY, 3840},       {"v210", ptV210, 5120},
    {"BGR24", ptBGR24, 5760},  {"RGB48", ptRGB48, 11520},    {"ARGB64", ptARGB64, 15360},
    {"DPX", ptRGB30DPX, 7680}, {"Bayer", ptBayerRGGB, 2880}, {"UV8", ptUV8, 3840},
    {"UV16", ptUV16, 7680},
};

inline void drawLines(NKDraw& surface) {
  for (const Stroke& line : lines())
    surface.Line(line.from.x, line.from.y, line.to.x, line.to.y);
}

inline void drawCircles(NKDraw& surface) {
  for (const Disc& disc : circles())
    surface.Circle(disc.centre.x, disc.centre.y, disc.radius);
}

inline void beziers(NKDraw& surface) {
  static const std::vector<tagPOINT> points = randomPoints(400, 10);
  for (std::size_t i = 0; i < points.size(); i += 4)
    surface.Bezier(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y, points[i + 2].x,
                   points[i + 2].y, points[i + 3].x, points[i + 3].y);
}

inline void frame(NKDraw& surface) {
  surface.EraseCanvas(true);
}

inline void rectangles(NKDraw& surface) {
  for (const tagPOINT& corner : corners()) {
    const tagRECT rect = {corner.x, corner.y, corner.x + kRectWidth, corner.y + kRectHeight};
    surface.FillRect(&rect);
  }
}

inline void softLines(NKDraw& surface) {
  static const std::vector<tagPOINT> points = randomPoints(200, 10);
  for (std::size_t i = 0; i < points.size(); i += 2)
    surface.LineWu(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y);
}

inline void label(NKDraw& surface) {
  surface.Label(100, 100, nextText(), false, false);
}

template <int kLines, bool kTransparent>
void text(NKDraw& surface) {
  surface.SetTextTransparent(kTransparent);
  tagRECT rect = {24, 600, kWidth, 600 + kLines};
  surface.DrawText(nextText(), 11, &rect, DT_CALCRECT);
}

struct Work {
  const char* name;
  void (*draw)(NKDraw& surface);
};

inline constexpr Work kWorks[] = {
    {"Timecode30", text<30, true>},
    {"Timecode30Box", text<30, false>},
    {"Text10", text<10, true>},
    {"Text10Box", text<10, false>},
    {"Label", label},
    {"Lines1000", drawLines},
    {"Circles100", drawCircles},
    {"Beziers100", beziers},
    {"Frame", frame},
    {"Rectangles100", rectangles},
    {"SoftLines100", softLines},
};

}  // namespace bench
