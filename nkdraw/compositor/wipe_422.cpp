// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes of packed 4:2:2 frames: in one pass where that gives the result of the three steps,
// else in three steps.
#include "display_wipe.h"
#include "layouts_422.h"
#include "output_apart.h"
#include "wipe_422_rows.h"
#include "wipe_422_steps.h"
#include "wipe_kernels.h"

#include <nkdraw/constants.h>
#include <nkdraw/platform/log.h>
#include <nkdraw/platform/thread.h>

#include <algorithm>

namespace nkdraw {
namespace {

/// Keeps the calling thread at the time-critical priority while the guard exists. The guard can be
/// told not to restore the old one.
class PriorityGuard {
 public:
  PriorityGuard() : kept_(nkOSGetThreadPriority(nkOSGetCurrentThread())) {
    nkOSSetThreadPriority(nkOSGetCurrentThread(), kThreadTimeCritical);
  }
  PriorityGuard(const PriorityGuard&) = delete;
  PriorityGuard& operator=(const PriorityGuard&) = delete;
  ~PriorityGuard() {
    if (restores_)
      nkOSSetThreadPriority(nkOSGetCurrentThread(), kept_);
  }
  void leaveRaised() { restores_ = false; }

 private:
  int kept_;
  bool restores_ = true;
};

/// A packed layout and its two ways.
struct Ways {
  const PackedLayout& steps;
  const OnePass422& onePass;
  std::size_t groupPixels, groupBytes;
  /// The steps read this many pixels at a time, and those past the first frame's end stay where the
  /// second begins.
  std::size_t overlapPixels;

  [[nodiscard]] std::size_t rowBytes(std::uint32_t width) const {
    return ceilDivide(width, groupPixels) * groupBytes;
  }
};
constexpr Ways kPairs = {kPackedPairs, kPairsInOnePass, PairGroups::kPixels, PairGroups::kBytes, 4};
constexpr Ways kV210 = {kPackedV210, kV210InOnePass, V210Groups::kPixels, V210Groups::kBytes, 1};

/// Makes the expanded frames, or returns why it can't. Deliberate: callers rely on it. If a service
/// throws, the thread keeps its priority, and nothing is reported.
bool allocate(WipeSteps422& wipe, PriorityGuard& priority) {
  try {
    wipe.expanded = ExpandedFrames(wipe.frame.width, wipe.frame.height);
  } catch (...) {
    priority.leaveRaised();
    return false;
  }
  if (wipe.expanded.a == nullptr)
    ErrOut("No Memory NKDraw_DisplayWipeYCbCr");
  return wipe.expanded.a != nullptr;
}

/// Whether the pixels past the end of the first expanded frame leave the second alone.
bool expandsApart(const WipeSteps422& wipe, std::size_t overlapPixels) {
  const std::size_t past =
      ceilDivide(wipe.frame.width, overlapPixels) * overlapPixels - wipe.frame.width;
  const std::size_t frame = std::size_t{wipe.frame.width} * wipe.frame.height;
  return (frame + past) * kExpandedBytes <=
         static_cast<std::size_t>(wipe.expanded.b - wipe.expanded.a);
}

/// Whether a row's pixels past the width all come from the next row.
bool reachesOneRow(const WipeTask& frame, std::size_t groupPixels) {
  return ceilDivide(frame.width, groupPixels) * groupPixels <= std::size_t{frame.width} * 2;
}

/// A wipe that draws nothing shows what the block holds, in three steps.
bool drawsInOnePass(const WipeSteps422& wipe, const Ways& ways) {
  const WipeTask& frame = wipe.frame;
  return frame.width != 0 && frame.height != 0 && drawsAnything(frame) &&
         outputIsApart(frame, ways.rowBytes(frame.width)) &&
         expandsApart(wipe, ways.overlapPixels) && reachesOneRow(frame, ways.groupPixels);
}

/// The frame's last row comes after the others when pixels past its end, in the block, belong to
/// it.
WipeRowsRun drawInOnePass(const WipeSteps422& wipe, const Ways& ways, WipeWait wait,
                          bool mayThrow) {
  const bool endsWithin = wipe.frame.width % ways.groupPixels != 0;
  WipeTask rows = wipe.frame;
  rows.top = 0;
  rows.bottom = rows.height - (endsWithin ? 1 : 0);
  const KeptRows kept = {wipe.expanded.a, ways.rowBytes(rows.width)};
  const WipeRowsRun run =
      RunWipeRows(rows, ways.onePass.draw, wait, wipe.expanded.block, mayThrow ? KeptRows() : kept);
  const std::size_t pixels = std::size_t{rows.width} * rows.height;
  if (run.drawn && endsWithin)
    ways.onePass.drawLast(wipe.frame, wipe.expanded.result + pixels * kExpandedBytes);
  return run;
}

/// False, with the output untouched, if the host threw instead of starting a worker and
/// `mayThrow` is not set.
bool draw(const WipeSteps422& wipe, const Ways& ways, WipeWait wait, bool mayThrow) {
  const auto ended = [&](bool threw) { return threw && !mayThrow; };
  if (drawsInOnePass(wipe, ways)) {
    const WipeRowsRun run = drawInOnePass(wipe, ways, wait, mayThrow);
    if (run.drawn || ended(run.threw))
      return run.drawn;
    wipe.expand();
    wipe.wipe(run.started);
  } else {
    wipe.expand();
    if (ended(wipe.wipe(wait) != NKStatusOk))
      return false;
  }
  wipe.pack();
  return true;
}

}  // namespace

std::uint32_t displayWipeYCbCr(const WipeTask& frame, WipeWait wait) {
  PriorityGuard priority;
  WipeSteps422 wipe{frame, kPackedPairs};
  if (!allocate(wipe, priority))
    return NKStatusRefused;
  try {
    if (draw(wipe, kPairs, wait, false))
      return NKStatusOk;
  } catch (...) {  // reported below
  }
  ErrOut("Exception Error NKDraw_DisplayWipeYCbCr");
  return NKStatusOk;
}

std::uint32_t displayWipeV210(const WipeTask& frame, WipeWait wait) {
  PriorityGuard priority;
  WipeSteps422 wipe{frame, kPackedV210};
  if (!allocate(wipe, priority))
    return NKStatusRefused;
  const std::uint32_t leastPitch = packedPitch(v210::kFacts, frame.width);
  for (std::uint32_t* const pitch : {&wipe.frame.pitchDst, &wipe.frame.pitchA, &wipe.frame.pitchB})
    *pitch = std::max(*pitch, leastPitch);
  try {
    draw(wipe, kV210, wait, true);
  } catch (...) {  // leaves what there is
  }
  return NKStatusOk;
}

}  // namespace nkdraw
