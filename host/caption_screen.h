// SPDX-License-Identifier: BSD-2-Clause
//
// Caption cells drawn on a frame, in the library's own glyphs.
#pragma once

#include "caption_decoder.h"
#include "caption_strips.h"

#include <nkdraw/draw/draw.h>
#include <nkdraw/platform/records.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace nkdraw {

/// Where the cells of a screen lie on frames of one kind, and the surface that draws them.
class CaptionScreen {
 public:
  /// Has no surface if the library does not draw in frames of this kind. Throws std::bad_alloc.
  explicit CaptionScreen(const HZWVIDEO& video);

  [[nodiscard]] explicit operator bool() const { return surface_ != nullptr; }

  /// Draws on the frame at `pixels`. Cells that do not fit whole are left out; `boxes` tells
  /// whether to draw backgrounds.
  void draw(std::span<const vbi_char> cells, char* pixels, bool boxes);

 private:
  struct Release {
    void operator()(NKDraw* surface) const { ReleaseDraw(surface); }
  };

  [[nodiscard]] int leftOf(std::size_t column) const;
  void drawRow(std::span<const vbi_char> row, bool boxes);
  void drawBoxes(std::span<const vbi_char> row);
  void drawGlyph(const vbi_char& cell, int left);
  void drawBits(unsigned bits, int left, int top);
  void drawRun(int first, int last, int y);
  void setColour(unsigned colour);

  std::unique_ptr<NKDraw, Release> surface_;
  CaptionStrips strips_;
  int width_ = 0, height_ = 0;  // of the frame
  int left_ = 0, top_ = 0;      // of the first cell
  std::size_t columns_ = 0;     // that fit into the frame
  int scale_ = 1;               // pixels a dot of a glyph
  bool plotsNeighbour_ = false;
};

}  // namespace nkdraw
