// SPDX-License-Identifier: BSD-2-Clause
//
// Everything that is decided about a clip before its first frame: whether it is burnt in place, the
// layout, the timecode, the positions of the texts, the codec and the output.
#pragma once

#include "burnin/burnin_options.h"
#include "burnin/job.h"
#include "burnin/output_plan.h"
#include "burnin/picture_formats.h"
#include "cli/using_media.h"
#include "media/media_input.h"
#include "media/stream_copy.h"

#include <optional>
#include <string>
#include <vector>

namespace nkdraw::tool {

struct ClipPlan {
  Job job;
  PictureFormats picture;
  Frame first;  // the first decoded one, if it was looked at
  TimeWindow window;
  std::optional<std::string> timecodeTag;  // the first written frame's; empty to drop the input's
  std::vector<OutputPlan> outputs;         // one or more
  std::vector<std::string> notes;          // what a user should know that is not as asked or usual

  /// The only output, of what is written alone.
  [[nodiscard]] const OutputPlan& output() const { return outputs.front(); }
};

/// The record timecode of the clip's first frame, if asked for. Throws Failure.
[[nodiscard]] std::optional<TimecodeStart> recordTimecode(const BurninOptions& options,
                                                          AVRational rate);

/// Throws Failure for what can't be done.
[[nodiscard]] ClipPlan planClip(MediaInput& input, const BurninOptions& options);

/// "all", "5" or "5 to 9"
[[nodiscard]] std::string rangeText(FrameRange range);

/// Says on standard error which streams are converted or left out.
void reportStreams(MediaInput& input, const ClipPlan& plan);

/// What stands before words about one of several outputs: its name.
[[nodiscard]] std::string prefixOf(const ClipPlan& plan, const OutputPlan& output);

}  // namespace nkdraw::tool
