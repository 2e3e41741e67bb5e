// SPDX-License-Identifier: BSD-2-Clause
//
// What a wipe leaves out of its inputs.
#pragma once

#include "cli/using_media.h"
#include "media/media_input.h"

#include <string>
#include <vector>

namespace nkdraw::tool {

struct WipePlan;
struct WipeOptions;

/// The streams of a clip that the output does not have.
[[nodiscard]] std::vector<const AVStream*> leftOutOf(MediaInput& clip, const WipePlan& plan);

/// Names on standard error what each clip loses without being asked to: a line for each.
void noteLeftOut(const std::vector<MediaInput*>& clips, const WipePlan& plan,
                 const WipeOptions& options);

}  // namespace nkdraw::tool
