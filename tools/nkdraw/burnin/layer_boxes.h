// SPDX-License-Identifier: BSD-2-Clause
//
// The places of watermark, meters and captions.
#pragma once

#include "burnin/overlay_plan.h"

namespace nkdraw::tool {

/// Adds the layers of the plan's request. Throws Failure if one would leave the frame.
void planLayers(OverlayPlan& plan, const FrameKind& frames);

}  // namespace nkdraw::tool
