// SPDX-License-Identifier: BSD-2-Clause
//
// The pixels inside a path: those whose centre the path winds around.
#include <nkdraw/surface/truncate.h>

#include <algorithm>
#include <cmath>

#include "graphics_objects.h"

namespace {

using nkdraw::ObjectKind;
using nkdraw::Path;
using nkdraw::PathPoint;

/// Where a path crosses a line of pixel centres: the first pixel after it, and the direction.
struct Crossing {
  int x;
  int winding;
};

/// The lines of pixel centres that a path crosses.
class Crossings {
 public:
  explicit Crossings(const Path& path) {
    if (path.empty())
      return;
    const auto [low, high] = std::ranges::minmax_element(path, {}, &PathPoint::y);
    top_ = firstCentreFrom(low->y);
    lines_.resize(static_cast<std::size_t>(firstCentreFrom(high->y) - top_));
    PathPoint start = path.front();
    for (std::size_t i = 0; i < path.size(); ++i) {
      const bool moves = path[i].type == PT_MOVETO;
      if (i != 0 && !moves)
        addEdge(path[i - 1], path[i]);
      const bool last = i + 1 == path.size() || path[i + 1].type == PT_MOVETO;
      if (moves)
        start = path[i];
      if (last)
        addEdge(path[i], start);  // open figures are filled too
    }
  }

  /// The inside, as boxes one line high.
  [[nodiscard]] std::vector<pixman_box32_t> boxes() {
    std::vector<pixman_box32_t> inside;
    int y = top_;
    for (std::vector<Crossing>& line : lines_) {
      std::ranges::sort(line, {}, &Crossing::x);
      int winding = 0, left = 0;
      for (const Crossing& crossing : line) {
        if (winding != 0 && left < crossing.x)
          inside.push_back({left, y, crossing.x, y + 1});
        winding += crossing.winding;
        left = crossing.x;
      }
      ++y;
    }
    return inside;
  }

 private:
  /// The first pixel whose centre is not less than `coordinate`.
  static int firstCentreFrom(double coordinate) {
    constexpr double kFarthest = 1 << 30;
    return nkdraw::truncateToInt32(std::ceil(std::clamp(coordinate, -kFarthest, kFarthest) - 0.5));
  }

  void addEdge(const PathPoint& from, const PathPoint& to) {
    const bool down = from.y < to.y;
    const PathPoint& upper = down ? from : to;
    const PathPoint& lower = down ? to : from;
    const int end = firstCentreFrom(lower.y);
    for (int y = firstCentreFrom(upper.y); y < end; ++y) {
      const double t = (y + 0.5 - upper.y) / (lower.y - upper.y);
      const int x = firstCentreFrom(upper.x + t * (lower.x - upper.x));
      lines_[static_cast<std::size_t>(y - top_)].push_back({x, down ? 1 : -1});
    }
  }

  int top_ = 0;
  std::vector<std::vector<Crossing>> lines_;
};

/// Takes the recorded path out of the context, as a region; null if there is none.
std::unique_ptr<nkRegion> takePath(nkDeviceContext* context) {
  if (context == nullptr || !context->recorded)
    return nullptr;
  FlattenPath(context);
  const std::vector<pixman_box32_t> boxes = Crossings(context->path).boxes();
  AbortPath(context);
  auto region = std::make_unique<nkRegion>();
  pixman_region32_fini(&region->pixels);
  pixman_region32_init_rects(&region->pixels, boxes.data(), static_cast<int>(boxes.size()));
  return region;
}

/// Paints those pixels of the region that lie in the bitmap.
void fill(nkdraw::Bitmap& bitmap, nkRegion& region, std::uint32_t colour) {
  pixman_region32_intersect_rect(&region.pixels, &region.pixels, 0, 0,
                                 static_cast<unsigned>(bitmap.width),
                                 static_cast<unsigned>(bitmap.height));
  int count = 0;
  const pixman_box32_t* const boxes = pixman_region32_rectangles(&region.pixels, &count);
  for (const pixman_box32_t* box = boxes; box != boxes + count; ++box) {
    for (int y = box->y1; y < box->y2; ++y)
      std::fill_n(&bitmap.pixels[bitmap.at(box->x1, y)], box->x2 - box->x1, colour);
  }
}

}  // namespace

int FillPath(nkDeviceContext* context) {
  return nkdraw::unlessOutOfMemory(0, [context] {
    const std::unique_ptr<nkRegion> region = takePath(context);
    if (!region)
      return 0;
    const auto* const brush = nkdraw::selectedAs<nkdraw::Brush>(context, ObjectKind::kBrush);
    auto* const bitmap = nkdraw::selectedAs<nkdraw::Bitmap>(context, ObjectKind::kBitmap);
    if (brush == nullptr || bitmap == nullptr)
      return 0;
    fill(*bitmap, *region, brush->colour);
    return 1;
  });
}

nkRegion* PathToRegion(nkDeviceContext* context) {
  return nkdraw::unlessOutOfMemory(static_cast<nkRegion*>(nullptr),
                                   [context] { return takePath(context).release(); });
}
