// SPDX-License-Identifier: BSD-2-Clause
//
// The entry points of the wipes.
#include "display_wipe.h"
#include "wipe_frames.h"
#include "wipe_kernels.h"

#include <nkdraw/compositor/complete.h>
#include <nkdraw/nkdraw_c.h>

namespace nkdraw {
namespace {

/// Null for a layout that no wipe draws in.
auto displayOf(std::int32_t pixelType) -> std::uint32_t (*)(const WipeTask&, WipeWait) {
  if (pixelType == ptV210)
    return displayWipeV210;
  if (pixelType >= ptYUYV && pixelType <= ptVYUY)
    return displayWipeYCbCr;
  return pixelParts(pixelType).known() ? displayWipe : nullptr;
}

}  // namespace

std::uint32_t displayWipe(const WipeTask& frame, WipeWait wait) {
  RunWipeBands(frame, kernelOfWipe(frame.wipe), wait);
  return NKStatusOk;
}

}  // namespace nkdraw

std::uint32_t NKDraw_DisplayWipe(const std::uint8_t* srcA, std::uint32_t pitchA,
                                 const std::uint8_t* srcB, std::uint32_t pitchB, std::uint8_t* dst,
                                 std::uint32_t pitchDst, std::uint32_t wipe, std::int32_t pixelType,
                                 std::uint32_t width, std::uint32_t height, std::uint32_t spare1,
                                 std::uint32_t spare2, std::uint32_t spare3, std::uint32_t spare4,
                                 std::uint32_t spare5, std::uint32_t rangeStart,
                                 std::uint32_t rangeEnd, std::uint32_t position) {
  return nkdraw::displayWipe(
      {srcA, pitchA, srcB, pitchB, dst, pitchDst, wipe, pixelType, width, height, spare1, spare2,
       spare3, spare4, spare5, rangeStart, rangeEnd, position},
      nkdraw::WipeWait::kBounded);
}

std::uint32_t NKDraw_DisplayWipeYCbCr(
    const std::uint8_t* srcA, std::uint32_t pitchA, const std::uint8_t* srcB, std::uint32_t pitchB,
    std::uint8_t* dst, std::uint32_t pitchDst, std::uint32_t wipe, std::int32_t pixelType,
    std::uint32_t width, std::uint32_t height, std::uint32_t spare1, std::uint32_t spare2,
    std::uint32_t spare3, std::uint32_t spare4, std::uint32_t spare5, std::uint32_t rangeStart,
    std::uint32_t rangeEnd, std::uint32_t position) {
  return nkdraw::displayWipeYCbCr(
      {srcA, pitchA, srcB, pitchB, dst, pitchDst, wipe, pixelType, width, height, spare1, spare2,
       spare3, spare4, spare5, rangeStart, rangeEnd, position},
      nkdraw::WipeWait::kBounded);
}

std::uint32_t NKDraw_DisplayWipeV210(
    const std::uint8_t* srcA, std::uint32_t pitchA, const std::uint8_t* srcB, std::uint32_t pitchB,
    std::uint8_t* dst, std::uint32_t pitchDst, std::uint32_t wipe, std::int32_t pixelType,
    std::uint32_t width, std::uint32_t height, std::uint32_t spare1, std::uint32_t spare2,
    std::uint32_t spare3, std::uint32_t spare4, std::uint32_t spare5, std::uint32_t rangeStart,
    std::uint32_t rangeEnd, std::uint32_t position) {
  return nkdraw::displayWipeV210(
      {srcA, pitchA, srcB, pitchB, dst, pitchDst, wipe, pixelType, width, height, spare1, spare2,
       spare3, spare4, spare5, rangeStart, rangeEnd, position},
      nkdraw::WipeWait::kBounded);
}

std::uint32_t NKDraw_CompleteWipe(const NKWipe* wipe) {
  const auto display = nkdraw::displayOf(wipe->pixelType);
  if (display == nullptr)
    return NKStatusRefused;
  nkdraw::WipeTask frame{};
  frame.srcA = wipe->srcA;
  frame.pitchA = wipe->pitchA;
  frame.srcB = wipe->srcB;
  frame.pitchB = wipe->pitchB;
  frame.dst = wipe->dst;
  frame.pitchDst = wipe->pitchDst;
  frame.wipe = wipe->wipe;
  frame.pixelType = wipe->pixelType;
  frame.width = wipe->width;
  frame.height = wipe->height;
  frame.rangeEnd = wipe->range;
  frame.position = wipe->position;
  return display(frame, nkdraw::WipeWait::kComplete);
}
