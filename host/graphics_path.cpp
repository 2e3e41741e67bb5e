// SPDX-License-Identifier: BSD-2-Clause
//
// Records a path, and returns it.
#include <nkdraw/surface/truncate.h>

#include <cmath>

#include "graphics_objects.h"

namespace {

using nkdraw::Path;
using nkdraw::PathPoint;

constexpr std::uint8_t kKind = static_cast<std::uint8_t>(~PT_CLOSEFIGURE);

bool hasPath(const nkDeviceContext* context) {
  return context != nullptr && context->recorded;
}

/// The point at `t` of the curve from `start` with the points at `segment`.
PathPoint onCurve(const PathPoint& start, const PathPoint* segment, double t) {
  const double u = 1.0 - t;
  const double w0 = u * u * u, w1 = 3.0 * u * u * t, w2 = 3.0 * u * t * t, w3 = t * t * t;
  return {w0 * start.x + w1 * segment[0].x + w2 * segment[1].x + w3 * segment[2].x,
          w0 * start.y + w1 * segment[0].y + w2 * segment[1].y + w3 * segment[2].y, PT_LINETO};
}

/// Replaces the three points of a curve with points on it; the last point stays exact.
void flatten(const PathPoint& start, PathPoint* segment) {
  const PathPoint first = onCurve(start, segment, 1.0 / 3.0);
  const PathPoint second = onCurve(start, segment, 2.0 / 3.0);
  const auto close = static_cast<std::uint8_t>(segment[2].type & PT_CLOSEFIGURE);
  segment[0] = first;
  segment[1] = second;
  segment[2].type = static_cast<std::uint8_t>(PT_LINETO | close);
}

}  // namespace

int BeginPath(nkDeviceContext* context) {
  if (context == nullptr)
    return 0;
  context->path.clear();
  context->recording = true;
  context->recorded = false;
  return 1;
}

int CloseFigure(nkDeviceContext* context) {
  if (context == nullptr || !context->recording)
    return 0;
  if (!context->path.empty() && context->path.back().type != PT_MOVETO)
    context->path.back().type |= PT_CLOSEFIGURE;
  return 1;
}

int EndPath(nkDeviceContext* context) {
  if (context == nullptr || !context->recording)
    return 0;
  context->recording = false;
  context->recorded = true;
  return 1;
}

int AbortPath(nkDeviceContext* context) {
  if (context == nullptr)
    return 0;
  context->path.clear();
  context->recording = context->recorded = false;
  return 1;
}

int GetPath(nkDeviceContext* context, tagPOINT* points, std::uint8_t* types, int size) {
  if (!hasPath(context))
    return -1;
  const Path& path = context->path;
  const auto count = static_cast<int>(path.size());
  if (size == 0)
    return count;
  if (size < count)
    return -1;
  for (const PathPoint& point : path) {
    *points++ = {nkdraw::truncateToInt32(std::round(point.x)),
                 nkdraw::truncateToInt32(std::round(point.y))};
    *types++ = point.type;
  }
  return count;
}

int FlattenPath(nkDeviceContext* context) {
  if (!hasPath(context))
    return 0;
  Path& path = context->path;
  for (std::size_t i = 1; i + 2 < path.size(); ++i) {
    if ((path[i].type & kKind) != PT_BEZIERTO)
      continue;
    flatten(path[i - 1], &path[i]);
    i += 2;
  }
  return 1;
}

int SelectClipPath(nkDeviceContext* context, int /*mode*/) {
  return hasPath(context) ? 1 : 0;
}
