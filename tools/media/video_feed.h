// SPDX-License-Identifier: BSD-2-Clause
//
// The video of a clip, frame by frame in file order, each with its number, as packets or decoded.
// The file is read once, without seeking.
#pragma once

#include "media/clip_facts.h"
#include "media/frame_gap.h"
#include "media/frame_kind.h"
#include "media/libav.h"
#include "media/media_input.h"
#include "media/packet_repair.h"
#include "media/timecode_source.h"
#include "media/watched_decoder.h"

#include <cstdint>
#include <deque>
#include <functional>

namespace nkdraw::media {

/// The base of all feeds: reads the clip's packets and separates them. A feed's `next` returns
/// frames.
class VideoFeed {
 public:
  /// Reads on, and passes on packets of other streams, until `done` or the end of the file.
  void readOthersUntil(const std::function<bool()>& done);

 protected:
  /// `others` gets the packets of the other streams while frames are read; without it they are not
  /// read.
  VideoFeed(MediaInput& input, const FrameKind& frames, TakePacket others);
  ~VideoFeed() = default;

  /// The video's next packet; false at the end. Throws Failure or Interrupted.
  [[nodiscard]] bool read(AVPacket& packet);
  [[nodiscard]] std::int64_t indexOf(std::int64_t time) { return clock_.indexOf(time); }
  [[nodiscard]] MediaInput& input() { return input_; }

 private:
  MediaInput& input_;
  TakePacket others_;
  FrameClock clock_;
};

/// The file's own frames, of uncompressed video.
class PacketFeed : public VideoFeed {
 public:
  using Unit = Packet;
  /// The input must outlive the feed. Damage is noted only of the frames in `wanted`.
  PacketFeed(MediaInput& input, const FrameKind& frames, const TakePacket& others = {},
             FrameRange wanted = {});

  /// The next frame and its number; false at the end. A frame that the file has lost repeats the
  /// one before, or ends the run. Throws Failure or Interrupted.
  [[nodiscard]] bool next(Packet& packet, std::int64_t& index);

 private:
  [[nodiscard]] bool readFrame(Packet& packet);
  [[nodiscard]] bool fill(std::int64_t missing, Packet& packet, std::int64_t& index);

  FrameRange wanted_;
  PacketRepair repair_;
  FrameGap gap_;
  AVRational rate_;
  Packet waiting_;           // read, and not yet returned
  std::int64_t number_ = 0;  // of that
  Packet last_;              // the last one, if the run goes on after damage
};

/// Decoded frames, in the pixel format that they decode to.
class DecodedFeed : public VideoFeed {
 public:
  using Unit = Frame;
  /// As above. Frames outside `wanted` may have any size.
  DecodedFeed(MediaInput& input, const FrameKind& frames, const TakePacket& others = {},
              FrameRange wanted = {});

  /// As above; also throws Failure if a frame has another size, or if one of those wanted is
  /// damaged and the run is to stop then. A lost frame repeats the one before.
  [[nodiscard]] bool next(Frame& frame, std::int64_t& index);

 private:
  void decodeMore();
  [[nodiscard]] bool fits(const WatchedFrame& taken) const;
  void check(WatchedFrame& taken, std::int64_t index);
  [[nodiscard]] Frame repeated() const;
  [[nodiscard]] bool fill(std::int64_t missing, Frame& frame, std::int64_t& index);

  FrameKind frames_;
  FrameRange wanted_;
  WatchedDecoder decoder_;
  std::deque<WatchedFrame> ready_;
  Frame last_;  // the last whole one, if the run goes on after damage
  FrameGap gap_;
  bool ended_ = false;
};

}  // namespace nkdraw::media
