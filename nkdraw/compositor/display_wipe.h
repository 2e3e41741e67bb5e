// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes of whole frames, by how they wait for their workers. Of `frame` the rectangle is not
// read. What they do is told by the entries of nkdraw_c.h.
#pragma once

#include "wipe_bands.h"

namespace nkdraw {

/// 0 always.
std::uint32_t displayWipe(const WipeTask& frame, WipeWait wait);

/// Packed 8-bit 4:2:2. 0, or NKStatusRefused without memory.
std::uint32_t displayWipeYCbCr(const WipeTask& frame, WipeWait wait);

/// v210. 0, or NKStatusRefused without memory.
std::uint32_t displayWipeV210(const WipeTask& frame, WipeWait wait);

}  // namespace nkdraw
