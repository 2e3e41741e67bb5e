// SPDX-License-Identifier: BSD-2-Clause
//
// Converts frames between FFmpeg's pixel formats.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

/// Keeps the YCbCr matrix. If both formats hold the same samples, so does the result.
/// If the chroma height changes, the fields of interlaced
/// frames are converted separately.
class FrameConverter {
 public:
  /// Of YCbCr that is converted; a target whose name says full always has the full range.
  enum class Range {
    kStudio,  ///< because most files can't signal another
    kKept,
  };

  FrameConverter(AVPixelFormat to, bool interlaced, Range range = Range::kStudio)
      : to_(to), interlaced_(interlaced), range_(range) {}

  /// A frame in the target format, valid until the next call; `from` itself if it already has that
  /// format. Throws Failure.
  [[nodiscard]] AVFrame& convert(AVFrame& from);
  /// Whether such a frame will have the full range.
  [[nodiscard]] bool makesFullRange(const AVFrame& from) const;

 private:
  void prepare(const AVFrame& from);
  void makeConverted(const AVFrame& from);
  AVFrame& relabel(const AVFrame& from);
  AVFrame& reorder(const AVFrame& from);
  void scale(const AVFrame& from, int field);

  AVPixelFormat to_;
  bool interlaced_;
  Range range_;
  int fields_ = 1;
  Scaler scaler_;
  Frame converted_;
  Frame relabelled_ = makeFrame();
  AVPixelFormat preparedFor_ = AV_PIX_FMT_NONE;
};

/// Whether a frame uses the full range, by its tag or its format. Grey does unless a tag says
/// otherwise.
[[nodiscard]] bool usesFullRange(const AVFrame& frame);

/// Whether the format always uses the full range, whatever a frame's tag says.
[[nodiscard]] bool isFullRange(AVPixelFormat format);

/// The matrix of a frame, from its tag or else by its width.
[[nodiscard]] AVColorSpace matrixOf(const AVFrame& frame);

}  // namespace nkdraw::media
