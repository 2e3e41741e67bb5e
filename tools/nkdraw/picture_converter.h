// SPDX-License-Identifier: BSD-2-Clause
//
// Pictures from one of FFmpeg's pixel formats to another.
#pragma once

#include "libav.h"

namespace nkdraw::tool {

/// Keeps the range and the matrix of YCbCr, and takes the fields of interlaced pictures apart where
/// chroma changes its height.
class PictureConverter {
 public:
  PictureConverter(AVPixelFormat to, bool interlaced) : to_(to), interlaced_(interlaced) {}

  /// A picture of the target format, good until the next call; `from` itself if it is one already.
  /// Throws Failure.
  [[nodiscard]] AVFrame& convert(AVFrame& from);

 private:
  void prepare(const AVFrame& from);

  AVPixelFormat to_;
  bool interlaced_;
  int fields_ = 1;
  Scaler scaler_;
  Frame picture_;
  AVPixelFormat preparedFor_ = AV_PIX_FMT_NONE;
};

/// The matrix of a picture that may not say: as the library draws, BT.709 above 720 pixels of
/// width, else BT.601.
[[nodiscard]] AVColorSpace matrixOf(const AVFrame& picture);

}  // namespace nkdraw::tool
