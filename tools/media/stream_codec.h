// SPDX-License-Identifier: BSD-2-Clause
//
// The encodings of kinds of output that hold nothing but plain frames: raw video, Y4M and picture
// sequences.
#pragma once

#include "media/encoder.h"
#include "media/libav.h"

#include <optional>
#include <string>

namespace nkdraw::media {

/// Whether this kind of output holds raw frames in any pixel format.
[[nodiscard]] bool keepsAnyRaw(const AVOutputFormat& format);

/// Whether it never holds the packets of uncompressed files: their frames are encoded.
[[nodiscard]] bool isAlwaysEncoded(const AVOutputFormat& format);

/// Whether it holds one video and nothing else.
[[nodiscard]] bool holdsVideoAlone(const AVOutputFormat& format);

/// The encoding of frames in the format `drawn` for raw video and Y4M; none for all other kinds of
/// output. Throws Failure if Y4M doesn't hold such frames.
[[nodiscard]] std::optional<CodecChoice> streamCodec(AVPixelFormat drawn,
                                                     const AVOutputFormat& format,
                                                     const std::string& option);

}  // namespace nkdraw::media
