// SPDX-License-Identifier: BSD-2-Clause
//
// A frame in any layout to draw on, and its picture.
#pragma once

#include "cli/using_media.h"
#include "draw/draw_layouts.h"
#include "media/libav.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace nkdraw::tool {

/// Limits for widths and heights of frames.
inline constexpr int kLargestCanvas = 8192;

/// A frame of zero bytes with a surface, whose colours are white on black. Rows are packed as in
/// the layout.
class DrawCanvas {
 public:
  /// The size must be a multiple of the layout's units.
  DrawCanvas(const DrawLayout& layout, int width, int height);

  [[nodiscard]] NKDraw& surface() { return *guarded_.surface; }
  /// The first pixel drawn outside the canvas since the last call; such pixels are never plotted.
  [[nodiscard]] std::optional<tagPOINT> takeStray() { return guarded_.edge->takeStray(); }

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  /// The frame's bytes.
  [[nodiscard]] std::span<const std::uint8_t> frame() const;
  /// The frame as 8-bit RGB, in the way that its layout is shown. Channels are limited to 0.0 to
  /// 1.0 and rounded.
  [[nodiscard]] Frame picture();

 private:
  [[nodiscard]] GuardedSurface asSixBytes();

  const DrawLayout& layout_;
  int width_, height_;
  GuardedSurface guarded_;
  std::size_t frameBytes_;
  std::vector<std::uint8_t> bytes_;  // the frame, and room after it
};

}  // namespace nkdraw::tool
