// SPDX-License-Identifier: BSD-2-Clause
//
// Transitions that keep every bit: what they take, and how their rows are drawn.
#include "exact.h"
#include "exact_layouts.h"
#include "exact_mix.h"
#include "output_apart.h"
#include "run_rows.h"
#include "wipe_bands.h"
#include "wipe_kernels.h"

#include <nkdraw/constants.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <thread>

namespace nkdraw {
namespace {

template <class Draw>
void forRows(const WipeTask& task, RowQueue& queue, Draw draw) {
  for (RowQueue::Rows rows = queue.claim(); !rows.empty(); rows = queue.claim()) {
    for (std::uint32_t y = rows.first; y < rows.last; ++y)
      draw(y, task.dst + task.pitchDst * y);
  }
}

template <class Layout>
void drawRuns(const WipeTask& task, RowQueue& queue) {
  const RunRows<Layout> rows(task, runsOfWipe(task));
  forRows(task, queue, [&](std::uint32_t y, std::uint8_t* output) { rows.draw(y, output); });
}

template <class Layout>
std::size_t rowBytesOf(std::uint32_t width) {
  return (std::size_t{width} + Layout::kPixels - 1) / Layout::kPixels * Layout::kBytes;
}

/// `mixRow` counts units of `unitBytes`.
template <class Layout, ExactMixKernels::MixRow ExactMixKernels::*mixRow, std::size_t unitBytes>
void drawMixed(const WipeTask& task, RowQueue& queue) {
  const ExactMix mix = exactMix(task.position, rangeOf(task));
  const std::size_t units = rowBytesOf<Layout>(task.width) / unitBytes;
  forRows(task, queue, [&](std::uint32_t y, std::uint8_t* output) {
    const WipeRow row = rowOf(task, y);
    (bestExactMix().*mixRow)(mix, row.outgoing, row.incoming, output, units);
  });
}

struct ExactLayout {
  std::size_t (*rowBytes)(std::uint32_t width);
  DrawRows runs, mixed;
};

template <class Layout, ExactMixKernels::MixRow ExactMixKernels::*mixRow, std::size_t unitBytes>
constexpr ExactLayout exactLayout() {
  return {rowBytesOf<Layout>, drawRuns<Layout>, drawMixed<Layout, mixRow, unitBytes>};
}

constexpr ExactLayout kV210 = exactLayout<ExactV210, &ExactMixKernels::v210, 4>();
constexpr ExactLayout kPairs = exactLayout<ExactPairs, &ExactMixKernels::bytes, 1>();
constexpr ExactLayout kThreeBytes = exactLayout<ExactPixels<3>, &ExactMixKernels::bytes, 1>();
constexpr ExactLayout kFourBytes = exactLayout<ExactPixels<4>, &ExactMixKernels::bytes, 1>();
constexpr ExactLayout kThreeWords = exactLayout<ExactPixels<6>, &ExactMixKernels::words, 2>();
constexpr ExactLayout kFourWords = exactLayout<ExactPixels<8>, &ExactMixKernels::words, 2>();

/// Null if exact wipes don't know the layout.
const ExactLayout* exactLayoutOf(std::int32_t type) {
  if (type == ptV210)
    return &kV210;
  if (type >= ptYUYV && type <= ptVYUY)
    return &kPairs;
  const PixelParts parts = pixelParts(type);
  if (parts.kind == PartKind::kByte)
    return parts.count == 3 ? &kThreeBytes : &kFourBytes;
  if (parts.kind == PartKind::kWord)
    return parts.count == 3 ? &kThreeWords : &kFourWords;
  return nullptr;
}

WipeTask taskOf(const NKWipe& wipe) {
  WipeTask task{};
  task.srcA = wipe.srcA;
  task.pitchA = wipe.pitchA;
  task.srcB = wipe.srcB;
  task.pitchB = wipe.pitchB;
  task.dst = wipe.dst;
  task.pitchDst = wipe.pitchDst;
  task.wipe = wipe.wipe;
  task.pixelType = wipe.pixelType;
  task.width = task.right = wipe.width;
  task.height = task.bottom = wipe.height;
  task.rangeEnd = wipe.range;
  task.position = wipe.position;
  return task;
}

bool framesAreRight(const WipeTask& task, const ExactLayout& layout) {
  if (task.srcA == nullptr || task.srcB == nullptr || task.dst == nullptr || task.width == 0 ||
      task.height == 0)
    return false;
  const std::size_t rowBytes = layout.rowBytes(task.width);
  return std::min({task.pitchA, task.pitchB, task.pitchDst}) >= rowBytes &&
         outputIsApart(task, rowBytes);
}

bool progressIsRight(const WipeTask& task) {
  if (task.rangeEnd == 0 || task.position > task.rangeEnd || !drawsAnything(task))
    return false;
  const std::uint64_t largest = std::max(task.width, task.height);
  return kernelOfWipe(task.wipe).runs == nullptr ||
         largest * task.position <= std::numeric_limits<std::uint32_t>::max();
}

/// With fewer bytes, a frame is drawn before threads are started. Copies of a frame in the caches
/// run as fast on one thread.
constexpr std::size_t kManyToMix = 1 << 19, kManyToCopy = 1 << 23;

/// One for every processor but the caller's.
std::size_t workersFor(std::size_t bytes, bool mixes) {
  const bool many = bytes >= (mixes ? kManyToMix : kManyToCopy);
  const std::size_t processors = many ? std::thread::hardware_concurrency() : 1;
  return std::clamp<std::size_t>(processors, 1, kWipeWorkers + 1) - 1;
}

void draw(const WipeTask& task, const ExactLayout& layout) {
  const bool mixes = runsOfWipe(task) == nullptr;
  const DrawRows rows = mixes ? layout.mixed : layout.runs;
  const std::size_t workers = workersFor(layout.rowBytes(task.width) * task.height, mixes);
  if (workers != 0)
    RunWipeRows(task, rows, WipeWait::kComplete, nullptr, {}, workers);
  else
    RowQueue(task, rows).draw();
}

}  // namespace
}  // namespace nkdraw

std::uint32_t NKDraw_ExactWipe(const NKWipe* wipe) {
  const nkdraw::ExactLayout* const layout =
      wipe == nullptr ? nullptr : nkdraw::exactLayoutOf(wipe->pixelType);
  if (layout == nullptr)
    return NKStatusRefused;
  const nkdraw::WipeTask task = nkdraw::taskOf(*wipe);
  if (!nkdraw::framesAreRight(task, *layout) || !nkdraw::progressIsRight(task))
    return NKStatusRefused;
  nkdraw::draw(task, *layout);
  return NKStatusOk;
}
