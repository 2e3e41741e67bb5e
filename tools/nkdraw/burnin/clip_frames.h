// SPDX-License-Identifier: BSD-2-Clause
//
// The frames of a clip, burnt: in place, in the file's own packets, or transcoded, in frames that
// were decoded and converted.
#pragma once

#include "burnin/burner.h"
#include "cli/using_media.h"
#include "media/frame_converter.h"
#include "media/frame_cursor.h"
#include "media/media_input.h"
#include "media/packet_rows.h"
#include "media/video_feed.h"

#include <cstdint>
#include <functional>

namespace nkdraw::tool {

/// For uncompressed clips: the overlay is drawn on the file's own packets.
class InPlaceFrames {
 public:
  using Feed = PacketFeed;
  InPlaceFrames(MediaInput& input, const Job& job);

  /// Makes the frames plain as well, for an output of another kind than the input.
  void makePlain() { plain_ = true; }

  /// Burns into the packet of frame `index`. Throws Failure for a frame that is cut short.
  [[nodiscard]] AVPacket& burn(AVPacket& packet, std::int64_t index);
  [[nodiscard]] Burner& burner() { return burner_; }

 private:
  MediaInput& input_;
  PacketRows rows_;
  Burner burner_;
  bool plain_ = false;
};

/// For all others: frames are converted to the nearest format that is drawn on.
class TranscodedFrames {
 public:
  using Feed = DecodedFeed;
  TranscodedFrames(const Job& job, AVPixelFormat drawn);

  /// The decoded frame `index` as it is drawn on, burnt; good until the next call.
  [[nodiscard]] AVFrame& burn(AVFrame& decoded, std::int64_t index);
  [[nodiscard]] Burner& burner() { return burner_; }

 private:
  FrameConverter converter_;
  Burner burner_;
};

/// What becomes of a clip's packets beside the video's.
struct OtherPackets {
  TakePacket take;
  std::function<bool()> isThrough;  // whether no more of them are wanted behind the range
};

/// Reads the clip up to the end of the job's range, burns and hands every frame of the range, with
/// its number, to `take`. Returns whether the video has a frame past the range.
template <class Frames, class Take>
bool burnRange(MediaInput& input, const Job& job, Frames& frames, const OtherPackets& others,
               Take take) {
  FrameCursor<typename Frames::Feed> cursor(input, job.frames, others.take, job.range);
  cursor.passUntil(job.range.end(), [&](auto& frame, std::int64_t index) {
    if (job.range.contains(index))
      take(frames.burn(*frame, index), index);
    else
      frames.burner().pass(index, captionsOf(*frame));
  });
  const bool pastRange = cursor.hasMore();
  if (pastRange)
    cursor.feed().readOthersUntil(others.isThrough);
  frames.burner().finish(input.path());
  return pastRange;
}

}  // namespace nkdraw::tool
