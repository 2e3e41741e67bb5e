// SPDX-License-Identifier: BSD-2-Clause
//
// Burns a job's overlay into canvases, frame after frame.
#pragma once

#include "burnin/job.h"
#include "burnin/meter_feed.h"
#include "burnin/overlay_session.h"
#include "cli/using_media.h"
#include "media/layouts.h"
#include "media/libav.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace nkdraw::tool {

class Burner {
 public:
  /// For canvases in this layout.
  Burner(const Job& job, const Layout& canvas);

  /// Draws on the canvas of the frame `index` frames after the clip's first; `captions` are the
  /// clip's own.
  void burn(std::uint8_t* canvas, std::int64_t index, Captions captions);
  /// The parts of that frame that burn() may touch, all but captions: valid until the next call.
  [[nodiscard]] std::span<const tagRECT> touched(std::int64_t index);
  /// Processes the captions of a frame that is not drawn on.
  void pass(std::int64_t index, Captions captions);
  /// Call after the last frame: tells the user if captions were requested and there were none.
  void finish(const std::string& path) const;

 private:
  [[nodiscard]] bool isDamaged(std::int64_t index) const;
  [[nodiscard]] Captions captionsAt(std::int64_t index, Captions own);

  const Job& job_;
  OverlaySession session_;
  std::optional<MeterFeed> meters_;
  std::int64_t next_ = 0;  // the first frame whose captions from a file are not yet processed
  bool hadCaptions_ = false;
};

/// The captions in a frame, or in a packet that is a frame.
[[nodiscard]] Captions captionsOf(const AVFrame& frame);
[[nodiscard]] Captions captionsOf(const AVPacket& packet);

}  // namespace nkdraw::tool
