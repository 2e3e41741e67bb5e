// SPDX-License-Identifier: BSD-2-Clause
//
// Chroma that several pixels share: what each of them would have, and their mean.
#pragma once

#include "media/component.h"
#include "media/orientation.h"

#include <cstdint>
#include <vector>

namespace nkdraw::media {

/// Collects the chroma of the pixels that were drawn on. A sample becomes the mean of all pixels
/// that share it, where those not drawn on have its own value.
class ChromaShares {
 public:
  /// For frames in a format with chroma. If the frames are interlaced and rows share chroma, they
  /// do so field by field.
  ChromaShares(AVPixelFormat format, int width, int height, bool interlaced);

  /// The column and the row of the samples that this pixel of the frame shares.
  [[nodiscard]] Pixel sampleOf(Pixel pixel) const {
    return {pixel.x >> columnShift_, rowOf_[static_cast<std::size_t>(pixel.y)]};
  }
  /// Whether a sample belongs to a single pixel.
  [[nodiscard]] bool isWhole() const { return columnShift_ == 0 && rowShift_ == 0; }

  /// The chroma that this pixel shall have.
  void add(Pixel pixel, unsigned cb, unsigned cr);
  /// Writes the means to the frame, and forgets the pixels.
  void settle(AVFrame& frame);

 private:
  struct Share {
    std::uint32_t cb = 0, cr = 0, pixels = 0;  // sums of up to 2^10 samples of 16 bits
  };

  [[nodiscard]] int pixelsOf(Pixel sample) const;

  Component cb_, cr_;
  int width_, columns_, columnShift_, rowShift_;
  std::vector<int> rowOf_;                  // of the samples, by the frame's rows
  std::vector<int> rowsOf_;                 // how many rows share a row of samples
  std::vector<std::vector<Share>> shares_;  // by rows, which are made when they are needed
  std::vector<Pixel> touched_;
};

}  // namespace nkdraw::media
