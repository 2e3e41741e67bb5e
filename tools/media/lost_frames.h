// SPDX-License-Identifier: BSD-2-Clause
//
// Finds the frames that a decoder lost: packets that it got, and whose frames did not come.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <vector>

namespace nkdraw::media {

/// A packet that was sent to the decoder. Packets are numbered from 0.
struct SentPacket {
  std::int64_t number;
  std::int64_t time;  // in the stream's time base, or AV_NOPTS_VALUE
};

class LostFrames {
 public:
  explicit LostFrames(AVCodecID codec);

  /// Whether frames come in the order of the packets, one of each.
  [[nodiscard]] bool inOrder() const { return inOrder_; }
  /// The first key frame's packet, where frames begin; -1 before it is sent.
  [[nodiscard]] std::int64_t firstKey() const { return firstKey_; }

  /// The decoder gets this packet. Returns its number.
  std::int64_t sent(const AVPacket& packet);
  /// The decoder gives a frame: the packets before it that gave none, in the order of their time.
  /// `troubled` tells whether it complained of one of the last packets; some codecs have packets
  /// that rightly give no frame.
  [[nodiscard]] std::vector<SentPacket> lostBefore(const AVFrame& frame, bool troubled);
  /// The same at the end of the video.
  [[nodiscard]] std::vector<SentPacket> lostAtEnd(bool troubled);
  /// Packets before this frame are no loss: decoding began in the middle of the video.
  void forgetBefore(const AVFrame& frame);

 private:
  [[nodiscard]] bool counts(const AVPacket& packet, std::int64_t time) const;
  [[nodiscard]] bool isBefore(const SentPacket& packet, const AVFrame& frame) const;
  void arrived(const AVFrame& frame);
  [[nodiscard]] std::vector<SentPacket> sorted(std::vector<SentPacket> lost) const;

  bool inOrder_, alwaysGives_;
  std::int64_t count_ = 0, firstKey_ = -1, firstTime_ = 0;
  std::vector<SentPacket> pending_;
};

}  // namespace nkdraw::media
