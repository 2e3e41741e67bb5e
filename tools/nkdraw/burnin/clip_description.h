// SPDX-License-Identifier: BSD-2-Clause
//
// What a burn-in would do, for a user and for programs.
#pragma once

#include "burnin/clip_plan.h"
#include "cli/description.h"
#include "cli/using_media.h"

#include <cstdint>

namespace nkdraw::tool {

/// Of a clip with this many frames, 0 if that is unknown.
void describe(Description& to, const Job& job, std::int64_t frames);
void describe(Description& to, MediaInput& input, const ClipPlan& plan);

}  // namespace nkdraw::tool
