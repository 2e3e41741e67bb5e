// SPDX-License-Identifier: BSD-2-Clause
//
// Regions: sets of pixels, kept by pixman as rectangles.
#include "graphics_objects.h"

nkRegion* nkCreateRectRegion(int left, int top, int right, int bottom) {
  auto* const region = nkdraw::tryMake<nkRegion>();
  if (region != nullptr && left < right && top < bottom) {
    const pixman_box32_t box = {left, top, right, bottom};
    pixman_region32_fini(&region->pixels);
    pixman_region32_init_with_extents(&region->pixels, &box);
  }
  return region;
}

void nkDeleteRegion(nkRegion* region) {
  const std::unique_ptr<nkRegion> owned(region);
}

int PtInRegion(const nkRegion* region, int x, int y) {
  return region != nullptr && pixman_region32_contains_point(&region->pixels, x, y, nullptr) != 0
             ? 1
             : 0;
}
