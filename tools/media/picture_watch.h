// SPDX-License-Identifier: BSD-2-Clause
//
// Finds the frames that a decoder lost, by the times of the packets that it got.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <set>
#include <vector>

namespace nkdraw::media {

/// A packet counts from the first key frame on, if it has a time.
class PictureWatch {
 public:
  explicit PictureWatch(AVCodecID codec);

  /// The decoder gets this packet. Returns whether its frame would be missed.
  bool sent(const AVPacket& packet);
  /// The decoder had trouble with one of the last packets.
  void troubled() { troubledUntil_ = count_ + kReach; }

  /// The decoder gives the frame with this time: the times of those before it that it did not give.
  /// Some codecs have packets that rightly give none, so there only trouble makes them lost.
  [[nodiscard]] std::vector<std::int64_t> lostBefore(std::int64_t time);
  /// Whether a frame of this time counts.
  [[nodiscard]] bool counts(std::int64_t time) const {
    return intraOnly_ || (begun_ && time >= first_);
  }

 private:
  static constexpr std::int64_t kReach = 64;  // packets; no decoder holds more

  bool intraOnly_, alwaysGives_, begun_ = false;
  std::int64_t first_ = 0;  // of the first key frame
  std::int64_t count_ = 0, troubledUntil_ = -1;
  std::set<std::int64_t> pending_;
};

}  // namespace nkdraw::media
