// SPDX-License-Identifier: BSD-2-Clause
//
// Font sheets and outlines. This version serves neither; what the library asks for them is refused.
#include <nkdraw/draw/draw.h>

std::uint32_t NKDraw::UseDefaultFont(bool /*wanted*/) {
  return 0xFFFFFFFF;
}

std::uint32_t NKDraw::SetFont(const char* /*name*/) {
  return 0;
}

std::uint32_t NKDraw::HaveFont() {
  return 0;
}

std::int32_t NKDraw::ExtractBMPData(const char* /*path*/) {
  return -1;
}

std::int32_t NKDraw::ExtractPNGData(const char* /*path*/) {
  return -1;
}

void NKDraw::LineA(const nkRegion*, const tagRECT*, int, int, int, int) {}
