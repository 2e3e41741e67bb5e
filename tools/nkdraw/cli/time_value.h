// SPDX-License-Identifier: BSD-2-Clause
//
// Times as users write them.
#pragma once

#include "cli/using_media.h"
#include "media/libav.h"

#include <cstdint>
#include <string>

namespace nkdraw::tool {

/// The number of frames at `rate` in a time given for `option`: "1.5" seconds, "25f" frames,
/// "HH:MM:SS" or "HH:MM:SS.mmm" by the clock, "HH:MM:SS:FF" counted in frames (";" before the
/// frames counts drop-frame). Seconds go to the nearest frame. Throws Failure.
[[nodiscard]] std::int64_t framesIn(const std::string& text, AVRational rate,
                                    const std::string& option);

/// "frame 50 (2.000 s)"
[[nodiscard]] std::string frameText(std::int64_t frame, AVRational rate);

}  // namespace nkdraw::tool
