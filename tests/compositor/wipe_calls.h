// SPDX-License-Identifier: BSD-2-Clause
//
// Passes a task to the wipes' entry points.
#pragma once

#include <nkdraw/compositor/wipe_band.h>
#include <nkdraw/nkdraw_c.h>

namespace nkdraw::test {

using Entry = decltype(&NKDraw_DisplayWipe);

inline std::uint32_t call(Entry entry, const WipeTask& t) {
  return entry(t.srcA, t.pitchA, t.srcB, t.pitchB, t.dst, t.pitchDst, t.wipe, t.pixelType, t.width,
               t.height, t.spare1, t.spare2, t.spare3, t.spare4, t.spare5, t.rangeStart, t.rangeEnd,
               t.position);
}

inline std::uint32_t callComplete(const WipeTask& t) {
  const NKWipe wipe = {t.srcA,  t.pitchA,   t.srcB,     t.pitchB,
                       t.dst,   t.pitchDst, t.wipe,     t.pixelType,
                       t.width, t.height,   t.position, t.rangeEnd - t.rangeStart};
  return NKDraw_CompleteWipe(&wipe);
}

}  // namespace nkdraw::test
