// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's decoder of one video stream.
#pragma once

#include "media/libav.h"

#include <string>

namespace nkdraw::media {

class VideoDecoder {
 public:
  /// `name` is the file for messages. Throws Failure when no decoder reads the codec.
  VideoDecoder(const AVCodecParameters& video, AVRational timeBase, const std::string& name);

  /// Decodes a packet, null at the end, and hands on every frame that is ready. Packets that
  /// can't be decoded are passed over up to the first frame, and then throw Failure.
  void decode(const AVPacket* packet, const TakeFrame& take);

 private:
  std::string name_;
  CodecContext decoder_;
  Frame frame_ = makeFrame();
  bool begun_ = false;
};

}  // namespace nkdraw::media
