// SPDX-License-Identifier: BSD-2-Clause
//
// What encoders of video and of sound have in common: how a user asks for one, and how it is fed.
#pragma once

#include "media/libav.h"

#include <optional>
#include <string>

namespace nkdraw::media {

/// An encoder that a user may ask for.
struct CodecRequest {
  std::string option;                ///< what the user calls the choice, for messages
  std::optional<std::string> asked;  ///< "NAME" or "NAME:KEY=VALUE:..."; none leaves it to us
};

/// An encoder and what it is told.
struct CodecChoice {
  const AVCodec* codec = nullptr;
  AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;  ///< what a video encoder is fed
  std::string options;                          ///< "key=value:key=value"
  std::string option;                           ///< that of the request
};

/// The encoder of this type that was asked for, which files of `format` hold. Throws Failure.
[[nodiscard]] CodecChoice namedEncoder(const CodecRequest& request, AVMediaType type,
                                       const AVOutputFormat& format);

/// The choice's options for an open call. Throws Failure for a text that is none.
void readOptions(const CodecChoice& choice, Options& options);

/// Throws Failure for an option that an open call did not know.
void checkAllKnown(const CodecChoice& choice, const Options& options);

/// Encodes a frame, null at the end, and hands on every packet that is ready. `what` is what a
/// Failure says.
void encode(AVCodecContext& encoder, const AVFrame* frame, const CodecChoice& choice,
            const char* what, const TakePacket& take);

/// "ffv1, yuv422p10le"
[[nodiscard]] std::string codecText(const CodecChoice& choice);

}  // namespace nkdraw::media
