// SPDX-License-Identifier: BSD-2-Clause
//
// Single samples of frames in FFmpeg's pixel formats: planar or packed, up to 16 bits or floating
// point, of both byte orders.
#pragma once

#include "media/libav.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace nkdraw::media {

/// Whether every sample of frames in this format can be reached by a Component: not for palettes,
/// mosaics, samples that share bytes across pixels, and frames that are not in memory.
[[nodiscard]] bool hasComponents(AVPixelFormat format);

/// One component of a pixel format, and where its samples are. Columns and rows count in the
/// component's own plane, which may be smaller than the frame. A floating point sample reads as 16
/// bits, from 0.0 to 1.0.
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
    if (isFloat_)
      return number(at(frame, column, row));
    return word(at(frame, column, row)) >> place_.shift & mask_;
  }
  /// `value` is at most most(). Leaves all other bits alone. The frame must be writable.
  void put(AVFrame& frame, int column, int row, unsigned value) const {
    std::uint8_t* const bytes = at(frame, column, row);
    if (isFloat_)
      return setNumber(bytes, value);
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
  [[nodiscard]] unsigned number(const std::uint8_t* bytes) const {
    std::uint32_t bits = 0;
    std::memcpy(&bits, bytes, sizeof bits);
    const auto sample = std::bit_cast<float>(isSwapped_ ? av_bswap32(bits) : bits);
    const auto most = static_cast<float>(mask_);
    return sample > 0 ? static_cast<unsigned>(std::lround(std::min(sample, 1.0F) * most)) : 0;
  }
  void setNumber(std::uint8_t* bytes, unsigned value) const {
    const auto bits =
        std::bit_cast<std::uint32_t>(static_cast<float>(value) / static_cast<float>(mask_));
    const std::uint32_t stored = isSwapped_ ? av_bswap32(bits) : bits;
    std::memcpy(bytes, &stored, sizeof stored);
  }

  AVComponentDescriptor place_;
  unsigned mask_;
  int columnShift_ = 0, rowShift_ = 0;
  bool isFloat_, isSwapped_;  // in four bytes, and those in the other order
  bool isByte_;               // in one byte, else in a word of two
  std::ptrdiff_t high_;       // of a word's two bytes
  std::ptrdiff_t offset_;
};

}  // namespace nkdraw::media
