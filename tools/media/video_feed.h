// SPDX-License-Identifier: BSD-2-Clause
//
// The video of a clip, one frame after the other, as packets or decoded.
#pragma once

#include "media/clip_facts.h"
#include "media/libav.h"
#include "media/media_input.h"
#include "media/timecode_source.h"
#include "media/video_decoder.h"

#include <cstdint>
#include <deque>

namespace nkdraw::media {

/// The file's own frames, of uncompressed video.
class PacketFeed {
 public:
  using Unit = Packet;
  /// Packets of other streams are not read from here on.
  PacketFeed(MediaInput& input, const FrameKind& frames);

  /// The next frame and its number; false at the end. Throws Failure or Interrupted.
  bool next(Packet& packet, std::int64_t& index);

 private:
  MediaInput& input_;
  FrameClock clock_;
};

class DecodedFeed {
 public:
  using Unit = Frame;
  DecodedFeed(MediaInput& input, const FrameKind& frames);

  /// As above; also throws Failure for a frame of another size.
  bool next(Frame& frame, std::int64_t& index);

 private:
  MediaInput& input_;
  FrameKind frames_;
  VideoDecoder decoder_;
  FrameClock clock_;
  std::deque<Frame> ready_;
  bool ended_ = false;
};

}  // namespace nkdraw::media
