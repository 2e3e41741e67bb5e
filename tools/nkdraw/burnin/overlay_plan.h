// SPDX-License-Identifier: BSD-2-Clause
//
// What is burnt in, and where: the user's request, the defaults for the frame, and the check that
// everything lies inside the frame.
#pragma once

#include "burnin/text_boxes.h"
#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/canvas_stage.h"
#include "media/frame_canvas.h"
#include "media/frame_kind.h"
#include "media/libav.h"
#include "media/timecode_source.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::tool {

struct PlacedText {
  Point at;
  std::string text;
};

struct WatermarkRequest {
  std::string path;
  Point at;
  Point size;  // of the picture
};

/// The caption channels, numbered as in CaptionSource, from 1.
inline constexpr const char* kCaptionChannels[] = {"CC1", "CC2", "CC3", "CC4",
                                                   "T1",  "T2",  "T3",  "T4"};

struct CaptionRequest {
  std::optional<std::string> file;  // none: the clip's own captions
  unsigned source = 1;              // the overlay's CaptionSource
  bool boxes = true;
};

/// The user's request. Anything not set is derived from the frame.
struct OverlayRequest {
  bool ltc = true, vitc = false, clock = false, frameNumber = false, formatLine = false,
       fill = true, markDamage = false;
  std::optional<Point> position, formatAt;
  std::optional<unsigned> size;      // magnification of the timecode rows, 1 to 20
  std::optional<unsigned> textSize;  // and of the format line and the texts
  std::vector<PlacedText> texts;
  std::optional<WatermarkRequest> watermark;
  std::optional<CaptionRequest> captions;
  std::optional<Point> meters;  // the panel's upper left corner
};

/// A part of the frame that is not text.
struct LayerBox {
  std::string what;  // "watermark"
  std::string source;
  Point at, size;
};

struct OverlayPlan {
  OverlayRequest request;
  Point timecodeAt, formatAt;
  unsigned timecodeSize = 0;
  std::optional<TimecodeStart> record;
  std::vector<TextBox> boxes;  // in drawing order
  std::vector<LayerBox> layers;

  /// The rows that the boxes cover, from top to bottom, without overlaps.
  [[nodiscard]] std::vector<RowSpan> rows() const;
  [[nodiscard]] CanvasUse canvasUse() const;
  /// The part of the frame that a watermark is blended with.
  [[nodiscard]] std::optional<Area> blended() const;
};

/// At most this many texts, of at most this many characters.
inline constexpr std::size_t kMostTexts = 10;
inline constexpr std::size_t kLongestText = 511;

/// Throws Failure if something would leave the frame. In interlaced frames rows and sizes become
/// even; in 4:2:2 a watermark gets an even column. `record` takes the place of the source's
/// timecode in the VITC row.
[[nodiscard]] OverlayPlan planOverlay(const OverlayRequest& request, const FrameKind& frames,
                                      const TimecodeStart& timecode,
                                      const std::optional<TimecodeStart>& record = {});

}  // namespace nkdraw::tool
