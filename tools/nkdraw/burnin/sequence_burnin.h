// SPDX-License-Identifier: BSD-2-Clause
//
// Burns a clip into an image sequence.
#pragma once

#include "burnin/burnin_options.h"
#include "burnin/clip_plan.h"
#include "media/media_input.h"

#include <string>
#include <vector>

namespace nkdraw::tool {

/// Whether the output is an image sequence.
[[nodiscard]] bool writesSequence(const OutputRequest& output);

/// What a user should know about an input that is an image sequence.
[[nodiscard]] std::vector<std::string> sequenceNotes(const MediaInput& input);

/// What a user should know of the timecode that the pictures don't tell; empty for nothing.
[[nodiscard]] std::string lostPictureTimecode(const OutputPlan& output);

/// Throws Failure if the pictures can't be written there. Touches no file.
void checkSequenceOutput(MediaInput& input, const ClipPlan& plan, const BurninOptions& options);

/// Writes the frames of the range. Throws Failure, and leaves nothing behind.
void writeSequence(MediaInput& input, const ClipPlan& plan, const BurninOptions& options);

}  // namespace nkdraw::tool
