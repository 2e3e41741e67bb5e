// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's decoder for one video stream.
#pragma once

#include "media/libav.h"

#include <string>

namespace nkdraw::media {

class VideoDecoder {
 public:
  /// `name` is the file, for messages. Throws Failure if there is no decoder for the codec.
  VideoDecoder(const AVCodecParameters& video, AVRational timeBase, const std::string& name);

  /// Decodes a packet, null at the end, and passes on every frame that is ready. Packets that can't
  /// be decoded are skipped before the first frame, and throw Failure after it.
  void decode(const AVPacket* packet, const TakeFrame& take);

  /// FFmpeg's own object, for who decodes otherwise.
  [[nodiscard]] AVCodecContext& context() { return *decoder_; }

 private:
  std::string name_;
  CodecContext decoder_;
  Frame frame_ = makeFrame();
  bool begun_ = false;
};

}  // namespace nkdraw::media
