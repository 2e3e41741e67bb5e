// SPDX-License-Identifier: BSD-2-Clause
//
// Burns into a clip from a file, or into the test pattern.
#pragma once

#include "burnin/burnin_options.h"

namespace nkdraw::tool {

/// Both throw Failure or Interrupted, and then leave no output behind.
void burnClip(const BurninOptions& options);
void burnPattern(const BurninOptions& options);

}  // namespace nkdraw::tool
