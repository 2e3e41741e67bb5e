// SPDX-License-Identifier: BSD-2-Clause
//
// Single samples of frames in FFmpeg's pixel formats: planar or packed, up to 16 bits, of both byte
// orders.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

/// Whether every sample of frames in this format can be reached by a Component: not for palettes,
/// mosaics, floating point, samples that share bytes across pixels, and frames that are not in
/// memory.
[[nodiscard]] bool hasComponents(AVPixelFormat format);

/// One component of a pixel format, and where its samples are. Columns and rows count in the
/// component's own plane, which may be smaller than the frame.
class Component {
 public:
  /// Component `number` of the format, in FFmpeg's order: Y, Cb, Cr or R, G, B, then alpha.
  Component(AVPixelFormat format, int number);

  /// The largest value of a sample.
  [[nodiscard]] unsigned most() const { return mask_; }
  [[nodiscard]] int depth() const { return place_.depth; }

  /// Columns and rows of the component in a frame of this size.
  [[nodiscard]] int columns(int width) const { return AV_CEIL_RSHIFT(width, columnShift_); }
  [[nodiscard]] int rows(int height) const { return AV_CEIL_RSHIFT(height, rowShift_); }

  [[nodiscard]] unsigned get(const AVFrame& frame, int column, int row) const {
    return word(at(frame, column, row)) >> place_.shift & mask_;
  }
  /// `value` is at most most(). Leaves all other bits alone. The frame must be writable.
  void put(AVFrame& frame, int column, int row, unsigned value) const {
    std::uint8_t* const bytes = at(frame, column, row);
    setWord(bytes, (word(bytes) & ~(mask_ << place_.shift)) | value << place_.shift);
  }

 private:
  [[nodiscard]] std::uint8_t* at(const AVFrame& frame, int column, int row) const {
    return frame.data[place_.plane] + std::ptrdiff_t{frame.linesize[place_.plane]} * row +
           std::ptrdiff_t{place_.step} * column + offset_;
  }
  [[nodiscard]] unsigned word(const std::uint8_t* bytes) const {
    return isByte_ ? bytes[0] : unsigned{bytes[high_]} << 8 | bytes[1 - high_];
  }
  void setWord(std::uint8_t* bytes, unsigned value) const {
    if (!isByte_)
      bytes[high_] = static_cast<std::uint8_t>(value >> 8);
    bytes[isByte_ ? 0 : 1 - high_] = static_cast<std::uint8_t>(value);
  }

  AVComponentDescriptor place_;
  unsigned mask_;
  int columnShift_ = 0, rowShift_ = 0;
  bool isByte_;          // in one byte, else in a word of two
  std::ptrdiff_t high_;  // of a word's two bytes
  std::ptrdiff_t offset_;
};

}  // namespace nkdraw::media
