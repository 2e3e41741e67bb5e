// SPDX-License-Identifier: BSD-2-Clause
//
// Decodes frames that were burnt in place, for outputs that encode them.
#pragma once

#include "burnin/clip_plan.h"
#include "cli/using_media.h"
#include "media/frame_converter.h"
#include "media/media_input.h"
#include "media/video_decoder.h"

#include <cstdint>
#include <deque>
#include <functional>

namespace nkdraw::tool {

class BurntDecoder {
 public:
  /// Gets each frame, in the plan's format for drawing, and its number.
  using Take = std::function<void(AVFrame& frame, std::int64_t index)>;

  BurntDecoder(MediaInput& input, const ClipPlan& plan, Take take);

  /// Decodes the packet of the frame `index`; a decoder with threads passes it on later.
  void decode(const AVPacket& packet, std::int64_t index);
  /// Passes on what is left, at the end.
  void finish();

 private:
  void pass(AVFrame& frame);

  VideoDecoder decoder_;
  FrameConverter converter_;
  Take take_;
  std::deque<std::int64_t> indexes_;  // of the frames in the decoder
};

}  // namespace nkdraw::tool
