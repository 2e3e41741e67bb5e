// SPDX-License-Identifier: BSD-2-Clause
//
// The library's overlay, set up for one clip.
#pragma once

#include "burnin/overlay_plan.h"
#include "cli/using_media.h"
#include "media/layouts.h"

#include <nkdraw/overlay/overlay.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace nkdraw::tool {

/// A frame's cc_data triplets.
using Captions = std::span<const std::uint8_t>;

/// What comes with a frame besides its pixels. Levels and peaks are four words each, two channels a
/// word, or null.
struct FrameExtras {
  Captions captions;
  const std::uint32_t *levels = nullptr, *peaks = nullptr;
  bool damaged = false;
};

/// Burns a plan into the frames of one clip.
class OverlaySession : private CNkOverlay {
 public:
  OverlaySession(const OverlayPlan& plan, const FrameKind& frames, const TimecodeStart& timecode,
                 const Layout& canvas);
  OverlaySession(const OverlaySession&) = delete;
  OverlaySession& operator=(const OverlaySession&) = delete;
  ~OverlaySession() override;

  /// Draws on a packed frame in the canvas layout, `index` frames after the first.
  void burn(std::uint8_t* canvas, std::int64_t index, const FrameExtras& extras);
  /// The parts of that frame that burn() may touch, all but captions: valid until the next call.
  [[nodiscard]] std::span<const tagRECT> touched(std::int64_t index, bool damaged);
  /// Processes the captions of a frame that is not drawn on.
  void pass(Captions captions);

 private:
  void place(const OverlayPlan& plan);
  void placeTexts();
  [[nodiscard]] bool draws(const std::string& what) const;
  [[nodiscard]] QFRAME recordOf(std::int64_t index) const;
  template <class Take>
  void eachOwnText(std::int64_t index, bool damaged, Take take) const;
  void placeLayers(const OverlayRequest& request);
  void openCaptions(const HZWVIDEO& header, const CaptionRequest& request);

  OverlayPlan plan_;
  int width_;  // of the frame
  int height_;
  TimecodeStart timecode_;
  std::vector<tagRECT> touched_;
};

}  // namespace nkdraw::tool
