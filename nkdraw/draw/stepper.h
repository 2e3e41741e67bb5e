// SPDX-License-Identifier: BSD-2-Clause
//
// The positions of a straight line: a 16.16 fixed-point stepper along its longer axis.
#pragma once

#include <nkdraw/surface/wrapping.h>

#include <cstdint>

namespace nkdraw {

[[nodiscard]] constexpr int signedMagnitude(int value) {
  return static_cast<int>(magnitude(value));
}

/// Walks from (x1, y1) towards (x2, y2) along one axis, one position at a time.
class Stepper {
 public:
  Stepper(int x1, int y1, int x2, int y2, bool alongY) : alongY_(alongY) {
    const int dx = wrappingSubtract(x2, x1), dy = wrappingSubtract(y2, y1);
    const int majorDelta = alongY_ ? dy : dx, minorDelta = alongY_ ? dx : dy;
    direction_ = majorDelta > 0 ? 1 : -1;
    count_ = magnitude(majorDelta) + 1;
    major_ = alongY_ ? y1 : x1;
    fixed_ = (static_cast<std::uint32_t>(alongY_ ? x1 : y1) << 16) + kHalf;
    const std::uint32_t step = majorDelta == 0 ? 0U : slope(minorDelta, majorDelta);
    step_ = direction_ > 0 ? step : 0U - step;
  }

  [[nodiscard]] std::uint32_t count() const { return count_; }

  /// Whether all positions lie on one row, or column.
  [[nodiscard]] bool straight() const { return step_ == 0; }

  void advance() {
    fixed_ += step_;
    major_ = wrappingAdd(major_, direction_);
  }

  [[nodiscard]] bool alongY() const { return alongY_; }
  /// 1 or -1, the way along the axis.
  [[nodiscard]] int direction() const { return direction_; }
  /// Where it is on the axis it walks along, and on the other.
  [[nodiscard]] int major() const { return major_; }
  [[nodiscard]] int minor() const { return static_cast<int>(fixed_) >> 16; }

 private:
  static constexpr std::uint32_t kHalf = 0x8000;

  /// The shift is a 32-bit one: a minor delta of 32,768 or more overflows.
  static std::uint32_t slope(int minorDelta, int majorDelta) {
    const auto shifted = static_cast<int>(static_cast<std::uint32_t>(minorDelta) << 16);
    return static_cast<std::uint32_t>(std::int64_t{shifted} / majorDelta);
  }

  bool alongY_;
  int direction_;
  std::uint32_t count_;  // positions, both ends included
  int major_;
  std::uint32_t fixed_;  // the other coordinate, 16.16
  std::uint32_t step_;
};

}  // namespace nkdraw
