// SPDX-License-Identifier: BSD-2-Clause
//
// The lossless encodings that keep a pixel format.
#pragma once

#include "media/libav.h"

#include <optional>

namespace nkdraw::media {

struct LosslessEncoding {
  const AVCodec* codec;
  AVPixelFormat pixelFormat;  ///< of the encoder's frames
};

/// The best for frames in the format `drawn` in this kind of file: v210 and uncompressed frames
/// where they are common, else FFV1, else uncompressed in NUT. None if a loss can't be avoided.
[[nodiscard]] std::optional<LosslessEncoding> losslessEncoding(AVPixelFormat drawn,
                                                               const AVOutputFormat& format);

}  // namespace nkdraw::media
