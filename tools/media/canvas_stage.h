// SPDX-License-Identifier: BSD-2-Clause
//
// Gives the overlay a packed canvas for every frame, whatever way the frame's rows are stored.
#pragma once

#include "media/layouts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace nkdraw::media {

/// Where the rows of a frame lie: the first row of each plane, and the bytes from one row to the
/// next, negative when the frame is stored bottom row first. Packed frames have one plane.
struct Picture {
  std::array<std::uint8_t*, 3> planes = {};
  std::array<std::ptrdiff_t, 3> pitches = {};
};

/// Where row `y` of each plane begins; null for planes that there are not.
[[nodiscard]] inline std::array<std::uint8_t*, 3> rowOf(const Picture& picture, int y) {
  std::array<std::uint8_t*, 3> row = {};
  for (std::size_t plane = 0; plane < row.size() && picture.planes[plane] != nullptr; ++plane)
    row[plane] = picture.planes[plane] + picture.pitches[plane] * y;
  return row;
}

/// How the samples of a frame are stored.
enum class Storage {
  kPacked,        ///< as its layout says
  kSignedChroma,  ///< YUY2 with signed chroma, as QuickTime's 'yuv2' has it
  kPlanes10,      ///< three planes of 16-bit words with 10-bit samples, drawn on as v210
};

/// Rows from `first` up to, not including, `end`.
struct RowSpan {
  int first, end;
};

/// What is drawn, as far as the canvas must suit it.
enum class CanvasUse {
  kWholePairs,  ///< strokes that begin and end on even columns
  kStrokes,     ///< strokes anywhere
  kWatermark,   ///< a watermark, too, which is blended into three layouts only
};

/// Frames whose rows are packed top-down in a layout that shows all of the overlay are drawn on
/// where they lie. Of all others the rows that the overlay touches go through a canvas that is
/// allocated once, and come back: 24-bit RGB as 32-bit, since the library fills backgrounds with
/// four bytes; YUY2 and YVYU as UYVY, unless every pair is drawn whole, since the library swaps
/// the lumas of their pairs; with a watermark all other RGB as 32-bit RGB, blue first. No step
/// loses a bit.
class CanvasStage {
 public:
  /// Throws Failure for a layout that is not drawn on, or not stored so.
  CanvasStage(const Layout& layout, Storage storage, int width, int height,
              std::vector<RowSpan> rows, CanvasUse use);

  /// What the overlay draws on.
  [[nodiscard]] const Layout& canvasLayout() const { return *canvasLayout_; }

  /// Calls `draw` with a canvas that shows the frame, and brings back to the frame what it drew.
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
  std::unique_ptr<std::uint8_t[]> buffer_;  // of the whole frame; made when it is first needed
};

}  // namespace nkdraw::media
