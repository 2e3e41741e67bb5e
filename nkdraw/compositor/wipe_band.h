// SPDX-License-Identifier: BSD-2-Clause
//
// What one worker of a wipe is given: the frames, the progress, and the rectangle to draw.
#pragma once

#include <nkdraw/platform/thread.h>

#include <cstdint>

namespace nkdraw {

/// A wipe of whole frames and the rectangle of it to draw. Rows are `pitchA` and `pitchB` bytes
/// apart; the output's follow `pitchB`.
struct WipeTask {
  const std::uint8_t* srcA;
  std::uint32_t pitchA;
  const std::uint8_t* srcB;
  std::uint32_t pitchB;
  std::uint8_t* dst;
  std::uint32_t pitchDst;  ///< no kernel reads it
  std::uint32_t wipe;      ///< the number, and in bit 31 that the inputs change places
  std::int32_t pixelType;  ///< of all three frames
  std::uint32_t width;     ///< of the frames, in pixels
  std::uint32_t height;    ///< of the frames, in rows
  std::uint32_t spare1, spare2, spare3, spare4, spare5;
  std::uint32_t rangeStart, rangeEnd, position;
  std::uint32_t left, right;  ///< first column of the rectangle, one past its last
  std::uint32_t top, bottom;  ///< first row, one past the last
};

/// Draws a rectangle of a transition; the fields of a WipeTask in their order. 0 always.
using WipeKernel = std::uint32_t (*)(
    const std::uint8_t* srcA, std::uint32_t pitchA, const std::uint8_t* srcB, std::uint32_t pitchB,
    std::uint8_t* dst, std::uint32_t pitchDst, std::uint32_t wipe, std::int32_t pixelType,
    std::uint32_t width, std::uint32_t height, std::uint32_t spare1, std::uint32_t spare2,
    std::uint32_t spare3, std::uint32_t spare4, std::uint32_t spare5, std::uint32_t rangeStart,
    std::uint32_t rangeEnd, std::uint32_t position, std::uint32_t left, std::uint32_t right,
    std::uint32_t top, std::uint32_t bottom);

/// The kernel that is a function of the task.
template <void (*draw)(const WipeTask&)>
inline constexpr WipeKernel wipeKernel =
    [](const std::uint8_t* srcA, std::uint32_t pitchA, const std::uint8_t* srcB,
       std::uint32_t pitchB, std::uint8_t* dst, std::uint32_t pitchDst, std::uint32_t wipe,
       std::int32_t pixelType, std::uint32_t width, std::uint32_t height, std::uint32_t spare1,
       std::uint32_t spare2, std::uint32_t spare3, std::uint32_t spare4, std::uint32_t spare5,
       std::uint32_t rangeStart, std::uint32_t rangeEnd, std::uint32_t position, std::uint32_t left,
       std::uint32_t right, std::uint32_t top, std::uint32_t bottom) -> std::uint32_t {
  draw({srcA,     pitchA,   srcB,   pitchB, dst,    pitchDst, wipe,   pixelType,
        width,    height,   spare1, spare2, spare3, spare4,   spare5, rangeStart,
        rangeEnd, position, left,   right,  top,    bottom});
  return 0;
};

/// Calls `kernel` with the fields of `task`.
inline std::uint32_t callKernel(WipeKernel kernel, const WipeTask& task) {
  return kernel(task.srcA, task.pitchA, task.srcB, task.pitchB, task.dst, task.pitchDst, task.wipe,
                task.pixelType, task.width, task.height, task.spare1, task.spare2, task.spare3,
                task.spare4, task.spare5, task.rangeStart, task.rangeEnd, task.position, task.left,
                task.right, task.top, task.bottom);
}

/// A task and the worker that draws it.
struct WipeBand : WipeTask {
  WipeKernel kernel;
  nkHandle threadHandle;
  std::uint32_t threadId;
  std::uint32_t* pending;  ///< the call's count of workers that have not ended
};

}  // namespace nkdraw
