// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/box_place.h"

#include "media/failure.h"

#include <algorithm>

namespace nkdraw::tool {
namespace {

constexpr int kMarginShare = 20;  // the default margin is this part of the frame

std::string coordinates(Point point) {
  return std::to_string(point.x) + "," + std::to_string(point.y);
}

}  // namespace

int margin(int frame, int extent) {
  return even(std::clamp(frame / kMarginShare, 0, std::max((frame - extent) / 2, 0)));
}

void checkInside(const std::string& what, Point at, std::int64_t right, std::int64_t bottom,
                 const FrameKind& frames, const std::string& advice) {
  const char* const side = at.x < 0                 ? "left"
                           : at.y < 0               ? "upper"
                           : right > frames.width   ? "right"
                           : bottom > frames.height ? "lower"
                                                    : nullptr;
  if (side == nullptr)
    return;
  throw Failure(ExitCode::kUsage, what + " leaves the frame at the " + side + " edge",
                std::to_string(right - at.x) + "x" + std::to_string(bottom - at.y) + " pixels at " +
                    coordinates(at) + " in a frame of " + std::to_string(frames.width) + "x" +
                    std::to_string(frames.height),
                advice);
}

}  // namespace nkdraw::tool
