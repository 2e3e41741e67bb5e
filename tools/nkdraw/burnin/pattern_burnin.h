// SPDX-License-Identifier: BSD-2-Clause
//
// Burning into the test pattern.
#pragma once

#include "burnin/burnin_options.h"

namespace nkdraw::tool {

/// Throws Failure or Interrupted, and then leaves no output behind.
void burnPattern(const BurninOptions& options);

}  // namespace nkdraw::tool
