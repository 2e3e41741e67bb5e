// SPDX-License-Identifier: BSD-2-Clause
//
// Burning into a clip from a file.
#pragma once

#include "burnin/burnin_options.h"

namespace nkdraw::tool {

/// Throws Failure or Interrupted, and then leaves no output behind.
void burnClip(const BurninOptions& options);

}  // namespace nkdraw::tool
