// SPDX-License-Identifier: BSD-2-Clause
//
// The numbered wipes' entry.
#include "wipe_bands.h"
#include "wipe_kernels.h"

#include <nkdraw/nkdraw_c.h>

std::uint32_t NKDraw_DisplayWipe(const std::uint8_t* srcA, std::uint32_t pitchA,
                                 const std::uint8_t* srcB, std::uint32_t pitchB, std::uint8_t* dst,
                                 std::uint32_t pitchDst, std::uint32_t wipe, std::int32_t pixelType,
                                 std::uint32_t width, std::uint32_t height, std::uint32_t spare1,
                                 std::uint32_t spare2, std::uint32_t spare3, std::uint32_t spare4,
                                 std::uint32_t spare5, std::uint32_t rangeStart,
                                 std::uint32_t rangeEnd, std::uint32_t position) {
  return nkdraw::RunWipeBands(
      {srcA,     pitchA,   srcB,   pitchB, dst,    pitchDst, wipe,   pixelType,
       width,    height,   spare1, spare2, spare3, spare4,   spare5, rangeStart,
       rangeEnd, position, 0,      0,      0,      0},
      nkdraw::kernelOfWipe(wipe));
}
