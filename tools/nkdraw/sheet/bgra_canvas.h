// SPDX-License-Identifier: BSD-2-Clause
//
// A picture of 32-bit pixels that the library draws on.
#pragma once

#include "cli/using_media.h"
#include "media/canvas_stage.h"
#include "media/libav.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class NKDraw;

namespace nkdraw::tool {

/// Channels from 0.0 to 1.0.
struct Colour {
  double r, g, b;
};

class BgraCanvas {
 public:
  BgraCanvas(int width, int height);

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] Picture picture();
  /// A copy for FFmpeg.
  [[nodiscard]] Frame frame() const;

  /// Right and bottom are outside.
  void fill(int left, int top, int right, int bottom, Colour colour);
  /// Characters are 8 by 10 pixels times the magnification.
  void write(const std::string& text, int left, int top, int magnification, Colour colour);
  /// Draws all of `tile` with its upper left corner at this position; it must fit.
  void place(BgraCanvas& tile, int left, int top);

 private:
  struct ReleaseSurface {
    void operator()(NKDraw* surface) const;
  };

  int width_, height_;
  std::vector<std::uint8_t> pixels_;
  std::unique_ptr<NKDraw, ReleaseSurface> surface_;
};

}  // namespace nkdraw::tool
