// SPDX-License-Identifier: BSD-2-Clause
//
// Rows of the canvases on which the overlay draws for decoded frames, sample by sample, and the key
// that tells pixels that were drawn on from all others.
#pragma once

#include "media/layouts.h"
#include "media/sample_scale.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace nkdraw::media {

/// The samples of a row: Y for every pixel, Cb and Cr for every pair of pixels; or R, G, B and
/// alpha.
using CanvasLine = std::array<std::vector<std::uint16_t>, 4>;

/// A layout in which the overlay draws for decoded frames.
struct CanvasKind {
  pixelType type;
  int depth;
  bool isRGB;
  bool blends;  ///< a watermark is blended with what lies under it, not plotted
  /// A value that the overlay never draws: of Y, or of alpha in RGB.
  std::uint16_t key;
  /// Writes the key's pixels to a row of whole groups, `bytes` long.
  void (*clear)(std::uint8_t* row, std::size_t bytes);
  /// Reads the pixels from `first`, where a group begins, up to `end`.
  void (*read)(const std::uint8_t* row, CanvasLine& line, int first, int end);
};

/// The kind for frames of a format: v210 for YCbCr and grey of more than 8 bits, else UYVY; BGRA
/// for RGB.
[[nodiscard]] const CanvasKind& canvasKindFor(AVPixelFormat format);

/// Columns from `first` up to, not including, `end`.
struct Columns {
  int first, end;
};

/// The columns of a row between which it differs from another; whole groups, but for the end of the
/// row. None if `first` is `end`.
[[nodiscard]] Columns changedColumns(const CanvasKind& kind, const std::uint8_t* row,
                                     const std::uint8_t* other, int width);

/// Room for the samples of a row.
[[nodiscard]] CanvasLine makeLine(const CanvasKind& kind, int width);

}  // namespace nkdraw::media
