// SPDX-License-Identifier: BSD-2-Clause
//
// The texts with their places and sizes: timecode rows, format line, the user's texts and the mark
// of damaged frames.
#pragma once

#include "cli/option_values.h"
#include "cli/using_media.h"
#include "media/frame_kind.h"
#include "media/timecode_source.h"

#include <cstdint>
#include <string>

namespace nkdraw::tool {

struct OverlayPlan;

/// Who draws a text, and what it shows.
enum class TextContent {
  kOverlay,      ///< drawn by the library's overlay
  kFixed,        ///< `text` as it is
  kTimecode,     ///< the source's timecode, behind a label
  kRecord,       ///< the record timecode, behind a label if the source's shows
  kDamage,       ///< `text`, in damaged frames alone
  kFrameNumber,  ///< the number of the frame in the clip, from 0
};

/// One line of text in the frame. Cells are 8 by 10 pixels times the magnification, plus one line.
struct TextBox {
  std::string what;  // "LTC row", "text 2"
  std::string text;  // an example, if it changes from frame to frame
  Point at;
  unsigned magnification;
  TextContent content = TextContent::kOverlay;

  // The first column and row past the box, even for a box larger than any frame.
  [[nodiscard]] std::int64_t right() const;
  [[nodiscard]] std::int64_t bottom() const;
};

/// What a timecode row shows of the frame `index` frames after the first.
[[nodiscard]] std::string rowText(TextContent content, const TimecodeStart& timecode,
                                  const OverlayPlan& plan, std::int64_t index);

/// Each adds its boxes to the plan, and throws Failure if one would leave the frame.
void planRows(OverlayPlan& plan, const FrameKind& frames, const TimecodeStart& timecode);
void planFormatLine(OverlayPlan& plan, const FrameKind& frames);
void planTexts(OverlayPlan& plan, const FrameKind& frames);
void planMark(OverlayPlan& plan, const FrameKind& frames);

}  // namespace nkdraw::tool
