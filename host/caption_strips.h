// SPDX-License-Identifier: BSD-2-Clause
//
// Rows of captions, drawn aside once and laid on every frame until their cells change.
#pragma once

#include "caption_decoder.h"

#include <nkdraw/surface/pixel_type.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace nkdraw {

/// Where the rows lie in frames of one kind.
struct StripPlace {
  pixelType layout;
  std::size_t pitch;  ///< bytes of a frame's row
  int left, right;    ///< the cells' first pixel, and the one after their last
  int dots;           ///< lines of a glyph
  int scale;          ///< lines of the frame for each of these
};

/// A strip has each line of dots once, or twice where a layout's rows differ in turn.
class CaptionStrips {
 public:
  CaptionStrips() = default;
  /// Throws std::bad_alloc.
  explicit CaptionStrips(const StripPlace& place);

  /// The lines that `draw` of `lay` draws for each line of dots.
  [[nodiscard]] int linesPerDot() const { return linesPerDot_; }

  /// Lays a row on the frame at `pixels`, whose line `top` is its first. If the cells are others
  /// than before, `draw(canvas)` draws them first, from line 0 of a canvas as wide as the frame; it
  /// must set the same bits whatever they were.
  template <class Draw>
  void lay(std::span<const vbi_char> cells, std::size_t row, bool boxes, char* pixels, int top,
           Draw draw) {
    Strip& strip = strips_[row];
    if (!strip.shows(cells, boxes)) {
      strip.take(cells, boxes);
      for (const int ground : {0x00, 0xFF})
        draw(cleared(ground));
      keepDrawn(row);
    }
    layOn(row, pixels, top);
  }

 private:
  struct Strip {
    std::array<vbi_char, CaptionDecoder::kColumns> cells;
    bool boxes;
    bool drawn = false;
    std::size_t first, end;  // of the line's bytes that are drawn on
    bool opaque;             // whether nothing of these is kept

    [[nodiscard]] bool shows(std::span<const vbi_char> others, bool withBoxes) const {
      return drawn && boxes == withBoxes &&
             std::memcmp(cells.data(), others.data(), others.size_bytes()) == 0;
    }
    void take(std::span<const vbi_char> others, bool withBoxes) {
      std::ranges::copy(others, cells.begin());
      boxes = withBoxes;
      drawn = true;
    }
  };

  [[nodiscard]] std::size_t lines() const {
    return static_cast<std::size_t>(place_.dots) * static_cast<std::size_t>(linesPerDot_);
  }
  [[nodiscard]] std::size_t canvasBytes() const { return place_.pitch * lines(); }
  /// The bits that the frame keeps in this row, each line followed by the bits that it gets.
  [[nodiscard]] std::uint8_t* lineOf(std::size_t row, std::size_t line) const;
  [[nodiscard]] char* cleared(int ground);
  void keepDrawn(std::size_t row);
  void findEdges(std::size_t row);
  void layOn(std::size_t row, char* pixels, int top) const;

  StripPlace place_{};
  int linesPerDot_ = 1;
  std::size_t first_ = 0, bytes_ = 0;  // of the cells in a frame's row
  // Two canvases, on zeros and on ones, then the strips. A strip takes memory when it is drawn.
  std::unique_ptr<std::uint8_t[]> room_;
  std::array<Strip, CaptionDecoder::kRows> strips_{};
};

}  // namespace nkdraw
