// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes that copy whole rows and whole frames.
#include "wipe_frames.h"
#include "wipe_kernels.h"

#include <nkdraw/constants.h>

#include <algorithm>

namespace nkdraw {
namespace {

/// Copies a row. Deliberate: callers rely on the picture. The pitch follows from the place,
/// whichever input the row comes from.
std::uint32_t drawEdgeVert(const WipeTask& task) {
  if (!pixelParts(task.pixelType).known() || rangeOf(task) == 0 || task.left != 0)
    return 0;
  const std::uint32_t edge = scale(task, task.height);
  for (std::uint32_t y = task.top; y < task.bottom; ++y) {
    const WipeRow row = rowOf(task, y);
    if (y < edge)
      copyBlock(row.output, row.incoming, task.pitchA);
    else
      copyBlock(row.output, row.outgoing, task.pitchB);
  }
  return 0;
}

WipeRuns runsOfEdgeVert(const WipeTask& task, std::uint32_t y) {
  WipeRuns runs;
  runs.add({y < scale(task, task.height), 0, task.width, y});
  return runs;
}

/// How far a slide has moved.
std::uint32_t rowsPassed(const WipeTask& task) {
  return std::min(scale(task, task.height), task.height);
}
std::uint32_t columnsPassed(const WipeTask& task) {
  return std::min(scale(task, task.width), task.width);
}

/// The packed frames of a slide; `stride` is the bytes of a row in all of them. Products wrap at 32
/// bits.
struct Slide {
  const WipeTask& task;
  std::uint32_t pixelBytes;
  std::uint32_t stride;

  void copyRows(const std::uint8_t* source, std::uint32_t fromRow, std::uint32_t toRow,
                std::uint32_t rows) const {
    CopyMemoryFast(task.dst + toRow * stride, source + fromRow * stride, rows * stride);
  }
  /// The same columns of every row of `srcA`.
  void copyColumns(std::uint32_t fromColumn, std::uint32_t toColumn, std::uint32_t columns) const {
    for (std::uint32_t y = 0; y < task.height; ++y)
      CopyMemoryFast(task.dst + (y * stride + toColumn * pixelBytes),
                     task.srcA + (y * stride + fromColumn * pixelBytes), columns * pixelBytes);
  }
};

void slideUp(const Slide& slide) {
  const std::uint32_t passed = rowsPassed(slide.task), left = slide.task.height - passed;
  slide.copyRows(slide.task.srcB, left, left, passed);
  slide.copyRows(slide.task.srcA, passed, 0, left);
}
void slideDown(const Slide& slide) {
  const std::uint32_t passed = rowsPassed(slide.task);
  slide.copyRows(slide.task.srcB, 0, 0, passed);
  slide.copyRows(slide.task.srcA, 0, passed, slide.task.height - passed);
}
void slideLeft(const Slide& slide) {
  const std::uint32_t passed = columnsPassed(slide.task);
  slide.copyRows(slide.task.srcB, 0, 0, slide.task.height);
  slide.copyColumns(passed, 0, slide.task.width - passed);
}
void slideRight(const Slide& slide) {
  const std::uint32_t passed = columnsPassed(slide.task);
  slide.copyRows(slide.task.srcB, 0, 0, slide.task.height);
  slide.copyColumns(0, passed, slide.task.width - passed);
}

// The same as runs. Slides never have their inputs exchanged, so `srcA` is outgoing.

WipeRuns runsUp(const WipeTask& task, std::uint32_t y) {
  const std::uint32_t passed = rowsPassed(task);
  const bool incoming = y >= task.height - passed;
  WipeRuns runs;
  runs.add({incoming, 0, task.width, incoming ? y : y + passed});
  return runs;
}
WipeRuns runsDown(const WipeTask& task, std::uint32_t y) {
  const std::uint32_t passed = rowsPassed(task);
  const bool incoming = y < passed;
  WipeRuns runs;
  runs.add({incoming, 0, task.width, incoming ? y : y - passed});
  return runs;
}
WipeRuns runsLeft(const WipeTask& task, std::uint32_t y) {
  const std::uint32_t passed = columnsPassed(task), left = task.width - passed;
  WipeRuns runs;
  runs.add({false, 0, left, y, passed});
  runs.add({true, left, task.width, y});
  return runs;
}
WipeRuns runsRight(const WipeTask& task, std::uint32_t y) {
  const std::uint32_t passed = columnsPassed(task);
  WipeRuns runs;
  runs.add({true, 0, passed, y});
  runs.add({false, passed, task.width, y, -std::int64_t{passed}});
  return runs;
}

struct SlideWay {
  void (*draw)(const Slide& slide);
  RunsOfRow runs;
};
constexpr SlideWay kUp = {slideUp, runsUp}, kLeft = {slideLeft, runsLeft},
                   kDown = {slideDown, runsDown}, kRight = {slideRight, runsRight};

/// Indexed by the number, from NKWipeFirstSlide on. Deliberate: callers rely on it. The last four
/// repeat the third, and all other numbers draw nothing.
constexpr SlideWay kSlides[] = {kUp, kLeft, kDown, kRight, kDown, kDown, kDown, kDown};

/// Compares the whole word, so a slide with exchanged inputs draws nothing. Layouts that the wipes
/// don't know are taken as four bytes a pixel.
std::uint32_t drawSlide(const WipeTask& task) {
  const std::uint32_t number = task.wipe - NKWipeFirstSlide;
  if (task.left != 0 || task.top != 0 || number >= std::size(kSlides) || rangeOf(task) == 0)
    return 0;
  const PixelParts parts = pixelParts(task.pixelType);
  const std::uint32_t pixelBytes = parts.known() ? parts.bytes() : 4;
  kSlides[number].draw({task, pixelBytes, task.width * pixelBytes});
  return 0;
}

WipeRuns runsOfSlide(const WipeTask& task, std::uint32_t y) {
  const std::uint32_t number = task.wipe - NKWipeFirstSlide;
  return number < std::size(kSlides) ? kSlides[number].runs(task, y) : WipeRuns();
}

}  // namespace

constexpr WipeKernel WipeEdgeVert{drawEdgeVert, WipeQuarters::kLeft, runsOfEdgeVert};
constexpr WipeKernel WipeSlide{drawSlide, WipeQuarters::kUpperLeft, runsOfSlide};

}  // namespace nkdraw
