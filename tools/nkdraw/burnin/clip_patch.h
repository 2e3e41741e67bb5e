// SPDX-License-Identifier: BSD-2-Clause
//
// Burns into a copy of an uncompressed clip's file, so that all of the file but the pixels under
// the overlay stays as it is.
#pragma once

#include "burnin/burnin_options.h"
#include "burnin/clip_plan.h"
#include "cli/using_media.h"
#include "media/media_input.h"

namespace nkdraw::tool {

/// How to open the input: sparse if the run may do without the contents of the frames.
[[nodiscard]] Reading readingFor(const BurninOptions& options);

/// Whether the run changes nothing in the file but pixels, and the input was opened with
/// Reading::kSparse.
[[nodiscard]] bool canPatch(MediaInput& input, const ClipPlan& plan, const BurninOptions& options);

/// Writes the output. Returns false, and leaves none, if the file turns out to hold frames that
/// can't be patched, or damage; the input is then used up. Throws Failure or Interrupted.
[[nodiscard]] bool writePatched(MediaInput& input, const ClipPlan& plan,
                                const BurninOptions& options);

}  // namespace nkdraw::tool
