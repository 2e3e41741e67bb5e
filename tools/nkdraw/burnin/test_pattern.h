// SPDX-License-Identifier: BSD-2-Clause
//
// A moving test pattern, drawn by the library: colour bars, steps of grey, a moving box and the
// frame number.
#pragma once

#include "cli/using_media.h"
#include "media/layouts.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class NKDraw;

namespace nkdraw::tool {

class TestPattern {
 public:
  /// Frames of at least 32 by 32 pixels.
  TestPattern(const Layout& layout, int width, int height);

  /// Bytes of a frame, with rows packed as in the layout.
  [[nodiscard]] std::size_t frameBytes() const { return still_.size(); }
  /// Draws frame `index` into a buffer of that size.
  void draw(std::uint8_t* canvas, std::int64_t index);

 private:
  struct Colour {
    double r, g, b;
  };
  struct ReleaseSurface {
    void operator()(NKDraw* surface) const;
  };

  void bind(std::uint8_t* canvas);
  void choose(Colour colour);
  void fill(int left, int top, int right, int bottom, Colour colour);
  void drawStill();
  void drawBox(std::int64_t index);
  void drawNumber(std::int64_t index);

  const Layout& layout_;
  int width_, height_;  // the width counts whole pairs
  std::unique_ptr<NKDraw, ReleaseSurface> surface_;
  std::vector<std::uint8_t> still_;  // what does not move
};

}  // namespace nkdraw::tool
