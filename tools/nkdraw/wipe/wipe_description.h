// SPDX-License-Identifier: BSD-2-Clause
//
// What a wipe of two clips would do, for a user and for programs.
#pragma once

#include "cli/description.h"
#include "cli/using_media.h"
#include "wipe/wipe_plan.h"

namespace nkdraw::tool {

void describe(Description& to, ClipPair& clips, const WipePlan& plan, const WipeOptions& options);

}  // namespace nkdraw::tool
