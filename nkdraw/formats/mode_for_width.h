// SPDX-License-Identifier: BSD-2-Clause
//
// Which matrix goes with a picture's width.
#pragma once

#include <nkdraw/surface/pixel.h>

namespace nkdraw {

/// BT.709 for pictures wider than standard definition's 720 pixels, else BT.601. Returns `mode` if
/// it is one of that matrix's two, otherwise the studio mode.
[[nodiscard]] constexpr NKPixel::cmYCbCr modeForWidth(NKPixel::cmYCbCr mode, int width) {
  if (width > 720)
    return mode == NKPixel::mode709Full ? mode : NKPixel::mode709Studio;
  return mode == NKPixel::mode601Full ? mode : NKPixel::mode601Studio;
}

}  // namespace nkdraw
