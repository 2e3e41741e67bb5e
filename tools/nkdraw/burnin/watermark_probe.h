// SPDX-License-Identifier: BSD-2-Clause
//
// Reads a watermark once before the first frame, the way the overlay does.
#pragma once

#include "burnin/overlay_plan.h"

#include <string>

namespace nkdraw::tool {

/// The size of the picture in pixels. Throws Failure for a file that gives none.
[[nodiscard]] Point watermarkSize(const std::string& path);

}  // namespace nkdraw::tool
