// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes of whole frames, with a choice of how they wait for their workers. The rectangle of
// `frame` is not read. nkdraw_c.h describes what the wipes do.
#pragma once

#include "wipe_bands.h"

namespace nkdraw {

/// Always returns 0.
std::uint32_t displayWipe(const WipeTask& frame, WipeWait wait);

/// Packed 8-bit 4:2:2. 0, or NKStatusRefused without memory.
std::uint32_t displayWipeYCbCr(const WipeTask& frame, WipeWait wait);

/// v210. 0, or NKStatusRefused without memory.
std::uint32_t displayWipeV210(const WipeTask& frame, WipeWait wait);

}  // namespace nkdraw
