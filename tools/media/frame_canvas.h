// SPDX-License-Identifier: BSD-2-Clause
//
// Draws the overlay on decoded frames in their own pixel format. The overlay draws on a canvas that
// shows the picture as a viewer sees it; only the pixels that it drew come back, in the frame's own
// bits and range. No other sample of the frame changes.
#pragma once

#include "media/canvas_lines.h"
#include "media/canvas_stage.h"
#include "media/chroma_shares.h"
#include "media/component.h"
#include "media/orientation.h"
#include "media/sample_scale.h"

#include <memory>
#include <optional>
#include <vector>

namespace nkdraw::media {

/// The frames to draw on.
struct FrameShape {
  AVPixelFormat format;
  int width, height;  ///< as stored
  bool interlaced = false;
  Orientation orientation = {};
};

/// A part of the picture.
struct Area {
  int x, y, width, height;
};

/// On every pixel that was drawn on, alpha becomes opaque. Chroma that more pixels share than in
/// the canvas becomes their mean.
class FrameCanvas {
 public:
  /// The format must have Components. The overlay touches only these rows of the picture, and
  /// blends only in the area `blended`.
  FrameCanvas(const FrameShape& shape, std::vector<RowSpan> rows, std::optional<Area> blended);

  /// The layout that the overlay draws in.
  [[nodiscard]] const Layout& layout() const { return layoutOf(kind_.type); }

  /// Calls `draw` with the canvas, and copies what it drew to the frame, which must be writable.
  template <class Draw>
  void draw(AVFrame& frame, Draw draw) {
    prepare(frame);
    draw(canvas_.get());
    takeOver(frame);
  }

 private:
  /// Between the samples of the canvas and the frame's, by component; grey has the first only.
  struct Scales {
    std::vector<SampleScale> toFrame, toCanvas;
  };

  void prepare(const AVFrame& frame);
  void allocate();
  void setRange(bool full);
  void load(const AVFrame& frame, const Area& area);
  void loadRGB(const AVFrame& frame, Pixel shown, std::uint8_t* pixel) const;
  void loadYCbCr(const AVFrame& frame, Pixel shown, std::uint8_t* pair) const;
  void takeOver(AVFrame& frame);
  void takeRow(AVFrame& frame, int y, Columns columns);
  void takeRGB(AVFrame& frame, int x, int y) const;
  void takeLuma(AVFrame& frame, int x, int y) const;
  void takeChroma(int x, int y);
  [[nodiscard]] bool hasLuma(std::size_t x) const { return drawn_[0][x] != before_[0][x]; }
  [[nodiscard]] bool hasChroma(std::size_t x) const;
  void makeOpaque(AVFrame& frame, Pixel pixel) const;
  [[nodiscard]] unsigned loaded(const AVFrame& frame, std::size_t component, Pixel at) const;

  [[nodiscard]] Pixel inFrame(int x, int y) const {
    return shape_.orientation.inFrame({x, y}, shape_.width, shape_.height);
  }
  [[nodiscard]] std::uint8_t* row(const std::unique_ptr<std::uint8_t[]>& rows, int y) const {
    return rows.get() + pitch_ * y;
  }

  FrameShape shape_;
  const CanvasKind& kind_;
  int width_, height_;  // of the picture
  std::ptrdiff_t pitch_;
  std::vector<RowSpan> rows_;
  std::optional<Area> blended_;
  std::vector<Component> components_;  // of colour
  std::optional<Component> alpha_;
  std::optional<ChromaShares> chroma_;
  std::optional<bool> full_;
  Scales scales_;
  CanvasLine drawn_, before_;
  std::unique_ptr<std::uint8_t[]> canvas_, blank_;  // blank: as the canvas was before drawing
};

}  // namespace nkdraw::media
