// SPDX-License-Identifier: BSD-2-Clause
//
// Converts frames between FFmpeg's pixel formats.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

/// Keeps the YCbCr matrix. Converts to studio range, because most files can't signal another,
/// unless the target's name says full. If the chroma height changes, the fields of interlaced
/// frames are converted separately.
class FrameConverter {
 public:
  FrameConverter(AVPixelFormat to, bool interlaced) : to_(to), interlaced_(interlaced) {}

  /// A frame in the target format, valid until the next call; `from` itself if it already has that
  /// format. Throws Failure.
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

/// Whether the format always uses the full range, whatever a frame's tag says.
[[nodiscard]] bool isFullRange(AVPixelFormat format);

/// The matrix of a frame, from its tag or else by its width.
[[nodiscard]] AVColorSpace matrixOf(const AVFrame& frame);

}  // namespace nkdraw::media
