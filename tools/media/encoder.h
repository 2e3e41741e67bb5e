// SPDX-License-Identifier: BSD-2-Clause
//
// Shared by video and audio encoders: how a user asks for one, and how it is fed.
#pragma once

#include "media/libav.h"

#include <optional>
#include <string>

namespace nkdraw::media {

/// An encoder that a user may ask for.
struct CodecRequest {
  std::string option;                ///< the name of the option, for messages
  std::optional<std::string> asked;  ///< "NAME" or "NAME:KEY=VALUE:..."; none for our choice
};

/// An encoder and its settings.
struct CodecChoice {
  const AVCodec* codec = nullptr;
  AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;  ///< the input of a video encoder
  std::string options;                          ///< "key=value:key=value"
  std::string option;                           ///< from the request
  std::string note = {};  ///< what the user should know of the choice; empty for nothing
  bool evenSize = false;  ///< an odd last column or row is left out
};

/// The requested encoder, of this type, if files of `format` can hold its codec. Throws Failure.
[[nodiscard]] CodecChoice namedEncoder(const CodecRequest& request, AVMediaType type,
                                       const AVOutputFormat& format);

/// The choice's options for an open call. Throws Failure for malformed text.
void readOptions(const CodecChoice& choice, Options& options);

/// Throws Failure if an open call did not know an option.
void checkAllKnown(const CodecChoice& choice, const Options& options);

/// Encodes a frame, null at the end, and passes on every packet that is ready. `what` is the text
/// of a Failure.
void encode(AVCodecContext& encoder, const AVFrame* frame, const CodecChoice& choice,
            const char* what, const TakePacket& take);

/// "ffv1, yuv422p10le"
[[nodiscard]] std::string codecText(const CodecChoice& choice);

}  // namespace nkdraw::media
