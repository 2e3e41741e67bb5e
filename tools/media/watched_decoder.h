// SPDX-License-Identifier: BSD-2-Clause
//
// A decoder that goes on after damage and says which frames it touched.
#pragma once

#include "media/decoder_log.h"
#include "media/libav.h"
#include "media/lost_frames.h"
#include "media/video_decoder.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace nkdraw::media {

/// A frame of the video, in the order in which they are shown.
struct WatchedFrame {
  Frame frame;         // null if it is lost
  std::int64_t time;   // in the stream's time base, or AV_NOPTS_VALUE
  std::string damage;  // empty if it is whole
};

class WatchedDecoder {
 public:
  /// As VideoDecoder's.
  WatchedDecoder(const AVCodecParameters& video, AVRational timeBase, const std::string& name);

  /// Decodes a packet, null at the end, and adds every frame that is ready to `ready`.
  void decode(const AVPacket* packet, std::deque<WatchedFrame>& ready);

 private:
  void receive(std::deque<WatchedFrame>& ready);
  void take(AVFrame& frame, std::deque<WatchedFrame>& ready);
  void begin(const AVFrame& first);
  void addLost(const std::vector<SentPacket>& lost, std::deque<WatchedFrame>& ready);
  void noteError(int error);
  [[nodiscard]] bool isTroubled();
  [[nodiscard]] std::string damageOf(const AVFrame& frame);

  DecoderLog log_;
  LostFrames lost_;
  VideoDecoder decoder_;
  AVCodecContext& context_;
  Frame frame_ = makeFrame();
  std::int64_t sent_ = -1;       // the last packet's number
  std::int64_t lastError_ = -1;  // the packet sent last when an error came back
  bool begun_ = false;
};

}  // namespace nkdraw::media
