// SPDX-License-Identifier: BSD-2-Clause
//
// Frames from one of FFmpeg's pixel formats to another.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

/// Keeps the matrix of YCbCr, brings it to studio range, as most files can't say otherwise, unless
/// the target's name says full, and takes the fields of interlaced frames apart where chroma
/// changes its height.
class FrameConverter {
 public:
  FrameConverter(AVPixelFormat to, bool interlaced) : to_(to), interlaced_(interlaced) {}

  /// A frame of the target format, good until the next call; `from` itself if it is one already.
  /// Throws Failure.
  [[nodiscard]] AVFrame& convert(AVFrame& from);

 private:
  void prepare(const AVFrame& from);
  void scale(const AVFrame& from, int field);

  AVPixelFormat to_;
  bool interlaced_;
  int fields_ = 1;
  Scaler scaler_;
  Frame converted_;
  AVPixelFormat preparedFor_ = AV_PIX_FMT_NONE;
};

/// Whether the format uses the full range whatever a frame's tag says.
[[nodiscard]] bool isFullRange(AVPixelFormat format);

/// The matrix of a frame, as it says or by its width.
[[nodiscard]] AVColorSpace matrixOf(const AVFrame& frame);

}  // namespace nkdraw::media
