// SPDX-License-Identifier: BSD-2-Clause
//
// Which kernel draws which wipe number.
#include "wipe_frames.h"
#include "wipe_kernels.h"

#include <nkdraw/constants.h>

#include <algorithm>
#include <iterator>

namespace nkdraw {
namespace {

struct Numbers {
  const WipeKernel& kernel;
  std::uint32_t first, last = first;
};

/// In ascending order. A number between the rows cross-fades, so no number is an error. Deliberate:
/// programs rely on it. From 102 to 499 many numbers name wipes of their own, and all of these are
/// drawn as the plain edge.
constexpr Numbers kNumbers[] = {
    {WipeEdgeHorz, NKWipeEdgeHorz},
    {WipeEdgeVert, NKWipeEdgeVert},
    {WipeCornerTL, NKWipeCornerTL},
    {WipeCornerTR, NKWipeCornerTR},
    {WipeCornerBR, NKWipeCornerBR},
    {WipeCornerBL, NKWipeCornerBL},
    {WipeFourCorners, NKWipeFourCorners},
    {WipeBoxIn, NKWipeBoxIn},
    {WipeBarnDoorVert, NKWipeBarnDoorVert},
    {WipeBarnDoorHorz, NKWipeBarnDoorHorz},
    {WipeBoxTop, NKWipeBoxTop},
    {WipeBoxRight, NKWipeBoxRight},
    {WipeBoxBottom, NKWipeBoxBottom},
    {WipeBoxLeft, NKWipeBoxLeft},
    {WipeIris, NKWipeIris, 48},
    {WipeIris, 61, 68},
    {WipeIris, 71, 74},
    {WipeIris, 101},
    {WipeEdgeHorz, 102, 114},
    {WipeEdgeHorz, 119, 125},
    {WipeEdgeHorz, 127, 131},
    {WipeEdgeHorz, 201, 207},
    {WipeEdgeHorz, 211, 214},
    {WipeEdgeHorz, 221, 228},
    {WipeEdgeHorz, 231, 236},
    {WipeEdgeHorz, 241, 246},
    {WipeEdgeHorz, 251, 254},
    {WipeEdgeHorz, 261, 264},
    {WipeEdgeHorz, 301, 306},
    {WipeEdgeHorz, 310, 317},
    {WipeEdgeHorz, 320, 329},
    {WipeEdgeHorz, 340, 345},
    {WipeEdgeHorz, 350, 353},
    {WipeEdgeHorz, 409},
    {WipeSlide, NKWipeFirstSlide, NKWipeLastEmpty},
};
static_assert(std::ranges::is_sorted(kNumbers, {}, &Numbers::first));

/// A cross-fade at the ends of its range.
template <bool incoming>
WipeRuns wholeRow(const WipeTask& task, std::uint32_t y) {
  WipeRuns runs;
  runs.add({incoming, 0, task.width, y});
  return runs;
}

}  // namespace

WipeKernel kernelOfWipe(std::uint32_t wipe) {
  const std::uint32_t number = wipe & NKWipeLastNumber;
  const auto* const row = std::ranges::lower_bound(kNumbers, number, {}, &Numbers::last);
  return row != std::end(kNumbers) && row->first <= number ? row->kernel : WipeDissolve;
}

RunsOfRow runsOfWipe(const WipeTask& task) {
  const std::uint32_t range = rangeOf(task);
  const RunsOfRow runs = kernelOfWipe(task.wipe).runs;
  if (runs != nullptr || range == 0 || (task.position != 0 && task.position != range))
    return runs;
  return task.position == 0 ? wholeRow<false> : wholeRow<true>;
}

bool drawsAnything(const WipeTask& task) {
  const RunsOfRow runs = kernelOfWipe(task.wipe).runs;
  if (runs == nullptr)
    return true;
  const WipeRuns first = rangeOf(task) == 0 ? WipeRuns() : runs(task, 0);
  return first.begin() != first.end();
}

}  // namespace nkdraw
