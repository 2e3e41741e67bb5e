// SPDX-License-Identifier: BSD-2-Clause
//
// Joining two clips from files by a wipe.
#pragma once

#include "wipe/wipe_options.h"

namespace nkdraw::tool {

/// Throws Failure or Interrupted, and then leaves no output behind.
void wipeClips(const WipeOptions& options);

}  // namespace nkdraw::tool
