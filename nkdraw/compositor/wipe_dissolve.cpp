// SPDX-License-Identifier: BSD-2-Clause
//
// The cross-fade.
#include <nkdraw/simd/vector_targets.h>
#include "wipe_frames.h"
#include "wipe_kernels.h"
#include "wipe_mix.h"

namespace nkdraw {
namespace {

void drawDissolve(const WipeTask& task) {
  if (pixelParts(task.pixelType).known())
    WipeMix(task.srcA, task.pitchA, task.srcB, task.pitchB, task.dst, task.wipe, task.rangeStart,
            task.rangeEnd, task.position, task.left, task.right, task.top, task.bottom,
            task.pixelType - 1);
}

}  // namespace

constexpr WipeKernel WipeDissolve = wipeKernel<drawDissolve>;

std::uint32_t WipeMix(const std::uint8_t* srcA, std::uint32_t pitchA, const std::uint8_t* srcB,
                      std::uint32_t pitchB, std::uint8_t* dst, std::uint32_t wipe,
                      std::uint32_t rangeStart, std::uint32_t rangeEnd, std::uint32_t position,
                      std::uint32_t left, std::uint32_t right, std::uint32_t top,
                      std::uint32_t bottom, std::int32_t layout) {
  WipeTask task{};
  task.srcA = srcA;
  task.pitchA = pitchA;
  task.srcB = srcB;
  task.pitchB = pitchB;
  task.dst = dst;
  task.wipe = wipe;
  const PixelParts parts = pixelParts(layout + 1);
  if (!parts.known() || left >= right || top >= bottom)
    return 0;
  const std::size_t first = std::size_t{left} * parts.bytes();
  const std::size_t count = std::size_t{right - left} * parts.count;
  // Frames of ptYCbCr24 are 4:2:2 ones, expanded: they are packed again at once.
  const RowMixer mix(parts.kind, position, rangeEnd - rangeStart,
                     std::uint64_t{count} * (bottom - top), layout + 1 == ptYCbCr24);
  for (std::uint32_t y = top; y < bottom; ++y) {
    const WipeRow row = rowOf(task, y);
    mix(row.outgoing + first, row.incoming + first, row.output + first, count);
  }
  finishStreamedRows();
  return 0;
}

}  // namespace nkdraw
