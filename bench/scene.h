// SPDX-License-Identifier: BSD-2-Clause
//
// What is drawn for measurement: always the same points, for this library and for others.
#pragma once

#include "frame.h"

#include <random>

namespace bench {

inline std::vector<tagPOINT> randomPoints(std::size_t count, int margin) {
  std::mt19937 random(1);
  const auto below = [&random](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  std::vector<tagPOINT> points(count);
  for (tagPOINT& point : points)
    point = {margin + below(kWidth - 2 * margin), margin + below(kHeight - 2 * margin)};
  return points;
}

struct Stroke {
  tagPOINT from, to;
};

/// 1,000 lines of a mean length of 1,170 pixels from the frame's left third to its right third.
inline const std::vector<Stroke>& lines() {
  static const std::vector<Stroke> strokes = [] {
    const std::vector<tagPOINT> points = randomPoints(2000, 0);
    std::vector<Stroke> made;
    for (std::size_t i = 0; i < points.size(); i += 2)
      made.push_back(
          {{points[i].x / 3, points[i].y}, {kWidth - 1 - points[i + 1].x / 3, points[i + 1].y}});
    return made;
  }();
  return strokes;
}

struct Disc {
  tagPOINT centre;
  int radius;
};

/// 100 circles with radii from 20 to 400.
inline const std::vector<Disc>& circles() {
  static const std::vector<Disc> discs = [] {
    std::vector<Disc> made;
    for (const tagPOINT& centre : randomPoints(100, 410))
      made.push_back({centre, 20 + 380 * static_cast<int>(made.size()) / 99});
    return made;
  }();
  return discs;
}

/// The corners of 100 rectangles of 300x200.
inline const std::vector<tagPOINT>& corners() {
  static const std::vector<tagPOINT> points = randomPoints(100, 310);
  return points;
}

inline constexpr int kRectWidth = 300, kRectHeight = 200;

/// Another text of eleven characters at every call.
inline const char* nextText() {
  static constexpr const char* kTexts[] = {"01:23:45:12", "01:23:45:13"};
  static unsigned turn = 0;
  return kTexts[++turn % 2];
}

}  // namespace bench
