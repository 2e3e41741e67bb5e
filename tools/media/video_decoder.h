// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's decoder of one video stream.
#pragma once

#include "media/libav.h"

#include <functional>
#include <string>

namespace nkdraw::media {

class VideoDecoder {
 public:
  /// `name` is the file for messages. Throws Failure when no decoder reads the codec.
  VideoDecoder(const AVCodecParameters& video, AVRational timeBase, const std::string& name);

  using TakeFrame = std::function<void(AVFrame& frame)>;
  /// Decodes a packet, null at the end, and hands on every picture that is ready. Packets that
  /// can't be decoded are passed over up to the first picture, and then throw Failure.
  void decode(const AVPacket* packet, const TakeFrame& take);

 private:
  std::string name_;
  CodecContext decoder_;
  Frame frame_ = makeFrame();
  bool begun_ = false;
};

}  // namespace nkdraw::media
