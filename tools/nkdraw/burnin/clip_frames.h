// SPDX-License-Identifier: BSD-2-Clause
//
// The burnt frames of a clip. In place they are the file's own packets; transcoded they are decoded
// and converted frames.
#pragma once

#include "burnin/burner.h"
#include "burnin/picture_burner.h"
#include "cli/using_media.h"
#include "media/frame_canvas.h"
#include "media/frame_converter.h"
#include "media/frame_cursor.h"
#include "media/frame_pool.h"
#include "media/media_input.h"
#include "media/packet_rows.h"
#include "media/video_feed.h"

#include <cstdint>
#include <functional>

namespace nkdraw::tool {

/// For uncompressed clips: draws the overlay on the file's own packets.
class InPlaceFrames {
 public:
  using Feed = PacketFeed;
  InPlaceFrames(MediaInput& input, const Job& job);

  /// Burns into the packet of frame `index`. Throws Failure if the frame is truncated.
  [[nodiscard]] AVPacket& burn(AVPacket& packet, std::int64_t index);
  /// Converts another owner of the data of the packet burnt last to the plain form, for an output
  /// in another file format than the input.
  void makePlain(AVPacket& packet) const { rows_.makePlain(packet, burnt_); }
  [[nodiscard]] Burner& burner() { return burner_.burner(); }

 private:
  MediaInput& input_;
  PacketRows rows_;
  PictureBurner burner_;
  Picture burnt_;
};

/// For all other clips: draws on decoded frames, in their own format if that can be drawn on, else
/// in the nearest.
class TranscodedFrames {
 public:
  using Feed = DecodedFeed;
  TranscodedFrames(const Job& job, AVPixelFormat drawn);

  /// The decoded frame `index`, burnt; valid until the next call.
  [[nodiscard]] AVFrame& burn(AVFrame& decoded, std::int64_t index);
  [[nodiscard]] Burner& burner() { return burner_; }

 private:
  FrameConverter converter_;
  FramePool writable_;
  FrameCanvas canvas_;
  Burner burner_;
};

/// Handles a clip's packets other than the video's.
struct OtherPackets {
  TakePacket take;                  // none if they are not wanted
  std::function<bool()> isThrough;  // whether no more are needed past the range
};

/// Begins to read the clip where the job's range lies. The state of the clip's own captions depends
/// on all frames before, so with these it is read from the beginning.
void startAtRange(MediaInput& input, const Job& job, const OtherPackets& others);

/// Reads the clip up to the end of the job's range, burns the frames of the range, and passes each
/// with its number to `take`. Returns whether the video continues past the range.
template <class Frames, class Take>
bool burnRange(MediaInput& input, const Job& job, Frames& frames, const OtherPackets& others,
               Take take) {
  startAtRange(input, job, others);
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
