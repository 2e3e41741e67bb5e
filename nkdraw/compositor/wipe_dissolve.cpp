// SPDX-License-Identifier: BSD-2-Clause
//
// The cross-fade.
#include <nkdraw/simd/vector_targets.h>
#include "wipe_frames.h"
#include "wipe_kernels.h"
#include "wipe_mix.h"

namespace nkdraw {
namespace {

std::uint32_t drawDissolve(const WipeTask& task) {
  const PixelParts parts = pixelParts(task.pixelType);
  if (!parts.known() || task.left >= task.right || task.top >= task.bottom)
    return 0;
  const std::size_t first = std::size_t{task.left} * parts.bytes();
  const std::size_t count = std::size_t{task.right - task.left} * parts.count;
  // ptYCbCr24 frames are expanded 4:2:2, and will be packed again at once.
  const RowMixer mix(parts.kind, task.position, rangeOf(task),
                     std::uint64_t{count} * (task.bottom - task.top), task.pixelType == ptYCbCr24);
  for (std::uint32_t y = task.top; y < task.bottom; ++y) {
    const WipeRow row = rowOf(task, y);
    mix(row.outgoing + first, row.incoming + first, row.output + first, count);
  }
  finishStreamedRows();
  return 0;
}

}  // namespace

constexpr WipeKernel WipeDissolve{drawDissolve};

}  // namespace nkdraw
