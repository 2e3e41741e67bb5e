// SPDX-License-Identifier: BSD-2-Clause
//
// Transport and program streams that were put one behind the other: their times jump in the middle.
// They are moved, so that the video runs on, and all else stays in sync with it.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <vector>

namespace nkdraw::media {

class JoinedTimes {
 public:
  /// `video` is the stream whose frames run on without a gap.
  JoinedTimes(const AVFormatContext& file, int video);

  /// Moves the packet's times behind a jump. To be called with all packets in the file's order.
  /// Returns whether to keep it: not if it would lie over what was before the jump.
  [[nodiscard]] bool join(AVPacket& packet);
  /// Whether the file is of a kind that can be joined; then it must be told of all streams.
  [[nodiscard]] bool watches() const { return !tracks_.empty(); }
  /// Whether the video's times have jumped.
  [[nodiscard]] bool jumped() const { return !jumps_.empty(); }

 private:
  /// Times in the stream's time base; the packets' are moved ones.
  struct Track {
    std::int64_t offset = 0;
    std::int64_t last = AV_NOPTS_VALUE, before = AV_NOPTS_VALUE;  // the last two packets
    std::int64_t end = AV_NOPTS_VALUE;                            // of the last packet
    std::size_t jumps = 0;                                        // the video's that it followed
    bool waits = false;                                           // it jumped before the video
  };

  [[nodiscard]] static bool jumpsBack(const Track& track, std::int64_t time, AVRational timeBase);
  [[nodiscard]] bool jumpsAhead(const Track& track, std::int64_t time, AVRational timeBase) const;
  [[nodiscard]] bool isUsual(const Track& track, std::int64_t time) const;
  void move(Track& track, const AVPacket& packet);
  void follow(Track& track, AVRational timeBase);
  static void note(Track& track, const AVPacket& packet);

  const AVFormatContext& file_;
  int video_;
  std::vector<Track> tracks_;
  std::vector<std::int64_t> jumps_;  // the video's offsets, in its time base
};

}  // namespace nkdraw::media
