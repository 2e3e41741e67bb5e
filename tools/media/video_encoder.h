// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's encoder for one video stream, and the choice of the encoder.
#pragma once

#include "media/encoder.h"
#include "media/frame_converter.h"
#include "media/frame_kind.h"
#include "media/libav.h"

#include <cstdint>

namespace nkdraw::media {

/// The encoder that the request names (pix_fmt is one of its options), else a lossless one: v210
/// and uncompressed frames in file formats where they are common, else FFV1. `drawn` is the format
/// in which the frames are drawn on. Throws Failure.
[[nodiscard]] CodecChoice chooseCodec(const CodecRequest& request, AVPixelFormat drawn,
                                      const AVOutputFormat& format);

class VideoEncoder {
 public:
  /// Encodes frames like `first`, with its colours and shape. Throws Failure.
  VideoEncoder(const CodecChoice& choice, const AVFrame& first, const FrameKind& frames,
               const AVOutputFormat& format);
  VideoEncoder(const VideoEncoder&) = delete;
  VideoEncoder& operator=(const VideoEncoder&) = delete;
  ~VideoEncoder();

  /// The description of the video for the output's stream.
  void describeTo(AVStream& stream) const;
  [[nodiscard]] AVRational timeBase() const { return encoder_->time_base; }

  /// Encodes a frame as the output's frame `index`; null ends the clip.
  void encode(AVFrame* frame, std::int64_t index, const TakePacket& take);

 private:
  void describe(const AVFrame& first, const FrameKind& frames);
  void open(const AVFrame& first);

  CodecChoice choice_;
  const AVOutputFormat& format_;
  CodecContext encoder_;
  FrameConverter converter_;
  bool begun_ = false;
};

}  // namespace nkdraw::media
