// SPDX-License-Identifier: BSD-2-Clause
//
// Comparing two clips from files.
#pragma once

#include "compare/compare_options.h"

namespace nkdraw::tool {

/// Throws Failure or Interrupted, and then leaves no output behind.
void compareClips(const CompareOptions& options);

}  // namespace nkdraw::tool
