// SPDX-License-Identifier: BSD-2-Clause
//
// What is decided about one output before the first frame: the kind of file, whether it holds the
// file's own frames or encoded ones, and what becomes of the streams.
#pragma once

#include "burnin/burnin_options.h"
#include "cli/using_media.h"
#include "media/delivery.h"
#include "media/kept_timecode.h"
#include "media/media_input.h"
#include "media/stream_plan.h"

#include <optional>
#include <string>
#include <vector>

namespace nkdraw::tool {

struct ClipPlan;

struct OutputPlan {
  OutputRequest request;
  const AVOutputFormat* format = nullptr;  // null for a still
  bool inPlace = false;                    // it holds the file's own frames, or shows one
  std::optional<CodecChoice> codec;        // if frames are encoded
  OutputTimecode timecode;                 // that it should tell
  std::vector<StreamPlan> streams;         // empty for a still
  std::vector<std::string> notes;          // what a user should know of this output
};

/// The outputs of a run, each with its kind of file and whether it can hold the frames as they are
/// stored: in the layout `own`, null for all but uncompressed clips. Throws Failure.
[[nodiscard]] std::vector<OutputPlan> beginOutputs(MediaInput& input, const Layout* own,
                                                   const BurninOptions& options);

/// Completes an output, of what else is decided about the clip. Throws Failure.
void planOutput(OutputPlan& output, const ClipPlan& plan, MediaInput& input);

}  // namespace nkdraw::tool
