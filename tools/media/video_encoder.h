// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's encoder for the burnt video, and which one is taken.
#pragma once

#include "media/frame_kind.h"
#include "media/libav.h"
#include "media/picture_converter.h"

#include <functional>
#include <optional>
#include <string>

namespace nkdraw::media {

/// An encoder and what it is fed.
struct CodecChoice {
  const AVCodec* codec = nullptr;
  AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;
  std::string options;  // "key=value:key=value"
};

/// The encoder that `request` names ("NAME" or "NAME:KEY=VALUE:...", pix_fmt among the keys), else
/// a lossless one: v210 and uncompressed frames where such files are common, else FFV1. `drawn` is
/// the format that the frames are drawn on in. Throws Failure.
[[nodiscard]] CodecChoice chooseCodec(const std::optional<std::string>& request,
                                      AVPixelFormat drawn, const AVOutputFormat& format);

class VideoEncoder {
 public:
  /// Encodes pictures like `first`, with its colours and shape.
  VideoEncoder(const CodecChoice& choice, const AVFrame& first, const FrameKind& frames,
               const AVOutputFormat& format);

  /// What the output's stream says of the video.
  void describeTo(AVStream& stream) const;
  [[nodiscard]] AVRational timeBase() const { return encoder_->time_base; }

  using TakePacket = std::function<void(AVPacket& packet)>;
  /// Encodes a picture, the output's frame `index`; null ends the clip.
  void encode(AVFrame* picture, std::int64_t index, const TakePacket& take);

 private:
  CodecContext encoder_;
  PictureConverter converter_;
  Packet packet_ = makePacket();
};

}  // namespace nkdraw::media
