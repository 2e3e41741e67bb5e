// SPDX-License-Identifier: BSD-2-Clause
//
// Gives the overlay a packed canvas for every frame, however the frame's rows are stored.
#pragma once

#include "media/layouts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace nkdraw::media {

/// Where the rows of a frame are: the first row of each plane, and the bytes from one row to the
/// next, negative if the frame is stored bottom row first. Packed frames have one plane.
struct Picture {
  std::array<std::uint8_t*, 3> planes = {};
  std::array<std::ptrdiff_t, 3> pitches = {};
};

/// Where row `y` of each plane begins; null for missing planes.
[[nodiscard]] inline std::array<std::uint8_t*, 3> rowOf(const Picture& picture, int y) {
  std::array<std::uint8_t*, 3> row = {};
  for (std::size_t plane = 0; plane < row.size() && picture.planes[plane] != nullptr; ++plane)
    row[plane] = picture.planes[plane] + picture.pitches[plane] * y;
  return row;
}

/// How the samples of a frame are stored.
enum class Storage {
  kPacked,        ///< as in its layout
  kSignedChroma,  ///< YUY2 with signed chroma, as in QuickTime's 'yuv2'
  kPlanes10,      ///< three planes of 16-bit words with 10-bit samples, drawn on as v210
};

/// Rows from `first` up to, not including, `end`.
struct RowSpan {
  int first, end;
};

/// What will be drawn, as far as the choice of the canvas depends on it.
enum class CanvasUse {
  kWholePairs,  ///< strokes that begin and end on even columns
  kStrokes,     ///< strokes anywhere
  kWatermark,   ///< also a watermark, which only three layouts can blend
};

/// If rows are packed top-down, in a layout that can show all of the overlay, frames are drawn on
/// where they are. Otherwise the rows that the overlay touches are copied to a canvas, which is
/// allocated once, and back. 24-bit RGB becomes 32-bit RGB, because the library fills backgrounds
/// with four bytes a pixel. YUY2 and YVYU become UYVY unless all pairs are drawn whole, because the
/// library swaps the lumas of their pairs. With a watermark, all other RGB becomes 32-bit RGB, blue
/// first. No step loses a bit.
class CanvasStage {
 public:
  /// Throws Failure for a layout that can't be drawn on, or is not stored in this way.
  CanvasStage(const Layout& layout, Storage storage, int width, int height,
              std::vector<RowSpan> rows, CanvasUse use);

  /// The layout that the overlay draws on.
  [[nodiscard]] const Layout& canvasLayout() const { return *canvasLayout_; }

  /// Calls `draw` with a canvas that shows the frame, and copies what it drew back to the frame.
  template <class Draw>
  void draw(const Picture& picture, Draw draw) {
    if (isCanvas(picture)) {
      draw(picture.planes[0]);
      return;
    }
    load(picture);
    draw(buffer_.get());
    store(picture);
  }

 private:
  using Rows = std::array<std::uint8_t*, 3>;
  using MoveRow = void (*)(const Rows& frame, std::uint8_t* canvas, int width);
  struct Transfer {
    pixelType from;
    Storage storage;
    pixelType to;
    MoveRow load, store;
  };
  static const Transfer kTransfers[];
  static const Transfer& transferFor(pixelType type, Storage storage, CanvasUse use);

  [[nodiscard]] bool isCanvas(const Picture& picture) const;
  void load(const Picture& picture);
  void store(const Picture& picture) const;
  void move(MoveRow moveRow, const Picture& picture) const;

  const Transfer* transfer_;
  const Layout* canvasLayout_;
  int width_, height_;
  std::ptrdiff_t canvasPitch_;
  std::vector<RowSpan> rows_;
  std::unique_ptr<std::uint8_t[]> buffer_;  // of the whole frame; allocated on first use
};

}  // namespace nkdraw::media
