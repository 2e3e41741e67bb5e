// SPDX-License-Identifier: BSD-2-Clause
//
// The encoders of each codec, and the options with which one makes video of the kind and the
// quality of a given clip.
#pragma once

#include "media/frame_kind.h"
#include "media/intra_look.h"
#include "media/libav.h"

#include <cstdint>
#include <span>
#include <string>

namespace nkdraw::media {

/// The video of a clip, as far as it matters for making more of its kind.
struct SourceVideo {
  AVCodecID codec = AV_CODEC_ID_NONE;
  int profile = FF_PROFILE_UNKNOWN;
  AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;  // of the frames that come
  std::int64_t bitRate = 0;                     // 0 if unknown
  std::uint32_t tag = 0;                        // of the codec in its file, or 0
  IntraLook intra;
  bool reorders = true;  // whether frames are stored in another order than shown
  FrameKind frames;
};

/// What the rules for options know.
struct EncoderTask {
  const SourceVideo& source;
  const AVCodec& encoder;
  AVPixelFormat pixelFormat;  // of the encoder's input
  bool sameCodec;             // as the source's; otherwise its profile and bit rate mean nothing
  const AVOutputFormat& format;
};

/// The names of FFmpeg's encoders for a codec, best first; empty for codecs with a single one.
[[nodiscard]] std::span<const char* const> encoderNames(AVCodecID codec);

/// Whether the encoder takes frames of this size, rate and order of fields. DNxHD and DNxHR take
/// some only.
[[nodiscard]] bool takesSuch(const EncoderTask& task);

/// "key=value:key=value"
[[nodiscard]] std::string codecOptions(const EncoderTask& task);

/// The options of a viewing copy in H.264.
[[nodiscard]] std::string viewingOptions();

}  // namespace nkdraw::media
