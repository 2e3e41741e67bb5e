// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes with hard edges. A rule tells which rows and columns are incoming; every row is then
// copied in at most three runs.
#include "wipe_frames.h"
#include "wipe_kernels.h"

#include <algorithm>
#include <limits>

namespace nkdraw {
namespace {

/// Rows or columns from `first` up to, but not including, `last`; or all others.
struct Span {
  std::int64_t first = 0;
  std::int64_t last = std::numeric_limits<std::int64_t>::max();
  bool outside = false;

  [[nodiscard]] constexpr bool contains(std::int64_t place) const {
    return (first <= place && place < last) != outside;
  }
};

constexpr Span kAll{};
constexpr Span kNone{0, 0};

constexpr Span below(std::int64_t end) {
  return {0, end};
}
constexpr Span from(std::int64_t start) {
  return {start};
}
constexpr Span after(std::int64_t place) {
  return from(place + 1);
}
constexpr Span between(std::int64_t low, std::int64_t high) {  // strictly
  return {low + 1, high};
}
constexpr Span upTo(std::int64_t place) {
  return {0, place + 1};
}
/// At most `depth`, or at least `size` - `depth`; that difference wraps.
constexpr Span rim(std::uint32_t depth, std::uint32_t size) {
  return {std::int64_t{depth} + 1, size - depth, true};
}

enum class Joined { kAnd, kOr };

/// A pixel is incoming if its row and (or) its column are in their spans.
struct Pattern {
  Span rows;
  Joined joined;
  Span columns;

  /// The incoming columns of a row.
  [[nodiscard]] constexpr Span columnsOf(std::uint32_t y) const {
    if (joined == Joined::kAnd)
      return rows.contains(y) ? columns : kNone;
    return rows.contains(y) ? kAll : columns;
  }
};

constexpr auto kAnd = Joined::kAnd;
constexpr auto kOr = Joined::kOr;

WipeRuns runsBetween(const Span& incoming, std::uint32_t width, std::uint32_t y) {
  const auto clip = [&](std::int64_t column) {
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(column, 0, width));
  };
  const std::uint32_t first = clip(incoming.first);
  const std::uint32_t last = std::max(first, clip(incoming.last));
  WipeRuns runs;
  runs.add({incoming.outside, 0, first, y});
  runs.add({!incoming.outside, first, last, y});
  runs.add({incoming.outside, last, width, y});
  return runs;
}

/// Copies one row of the rectangle.
void copyRow(const WipeTask& task, std::uint32_t pixelBytes, const WipeRuns& runs,
             const WipeRow& row) {
  for (const WipeRun& run : runs) {
    const std::uint32_t start = std::max(run.first, task.left);
    const std::uint32_t end = std::min(run.last, task.right);
    const std::size_t offset = std::size_t{start} * pixelBytes;
    if (start < end)
      copyBlock(row.output + offset, (run.incoming ? row.incoming : row.outgoing) + offset,
                (end - start) * pixelBytes);
  }
}

template <Pattern (*rule)(const WipeTask&)>
std::uint32_t drawPattern(const WipeTask& task) {
  const std::uint32_t pixelBytes = pixelParts(task.pixelType).bytes();
  if (pixelBytes == 0 || rangeOf(task) == 0)
    return 0;
  const Pattern pattern = rule(task);
  for (std::uint32_t y = task.top; y < task.bottom; ++y)
    copyRow(task, pixelBytes, runsBetween(pattern.columnsOf(y), task.width, y), rowOf(task, y));
  return 0;
}

template <Pattern (*rule)(const WipeTask&)>
WipeRuns runsOf(const WipeTask& task, std::uint32_t y) {
  return runsBetween(rule(task).columnsOf(y), task.width, y);
}

template <Pattern (*rule)(const WipeTask&)>
constexpr WipeKernel kernelOf() {
  return {drawPattern<rule>, WipeQuarters::kAll, runsOf<rule>};
}

// The values of the rules. Differences wrap, which defines the picture for progress beyond the
// range.
std::uint32_t across(const WipeTask& task) {
  return scale(task, task.width);
}
std::uint32_t down(const WipeTask& task) {
  return scale(task, task.height);
}
std::uint32_t acrossHalf(const WipeTask& task) {
  return scale(task, task.width / 2);
}
std::uint32_t downHalf(const WipeTask& task) {
  return scale(task, task.height / 2);
}
Span rimOfRows(const WipeTask& task) {
  return rim(downHalf(task), task.height);
}
Span rimOfColumns(const WipeTask& task) {
  return rim(acrossHalf(task), task.width);
}

// The rules: incoming rows, and (or) incoming columns. Deliberate: callers rely on single rows and
// columns at the ends of the range, which the mix of strict and inclusive tests decides.

Pattern edgeHorz(const WipeTask& t) {
  return {kAll, kAnd, below(across(t))};
}
Pattern cornerTL(const WipeTask& t) {
  return {below(down(t)), kAnd, below(across(t))};
}
Pattern cornerTR(const WipeTask& t) {
  return {below(down(t)), kAnd, from(std::int64_t{t.width} - across(t))};
}
Pattern cornerBR(const WipeTask& t) {
  return {after(t.height - down(t)), kAnd, after(t.width - across(t))};
}
Pattern cornerBL(const WipeTask& t) {
  return {after(std::int64_t{t.height} - down(t)), kAnd, below(across(t))};
}
Pattern fourCorners(const WipeTask& t) {
  return {rimOfRows(t), kAnd, rimOfColumns(t)};
}
Pattern boxIn(const WipeTask& t) {
  return {rimOfRows(t), kOr, rimOfColumns(t)};
}
Pattern barnDoorVert(const WipeTask& t) {
  return {kAll, kAnd, rimOfColumns(t)};
}
Pattern barnDoorHorz(const WipeTask& t) {
  return {rimOfRows(t), kAnd, kAll};
}
Pattern boxTop(const WipeTask& t) {
  return {from(t.height - down(t)), kOr, rimOfColumns(t)};
}
Pattern boxRight(const WipeTask& t) {
  return {rimOfRows(t), kOr, upTo(across(t))};
}
Pattern boxBottom(const WipeTask& t) {
  return {upTo(down(t)), kOr, rimOfColumns(t)};
}
Pattern boxLeft(const WipeTask& t) {
  return {rimOfRows(t), kOr, from(t.width - across(t))};
}
Pattern iris(const WipeTask& t) {
  const std::uint32_t left = t.width / 2 - acrossHalf(t);
  const std::uint32_t top = t.height / 2 - downHalf(t);
  return {between(top, t.height - top), kAnd, {left, std::int64_t{t.width - left} + 1}};
}

}  // namespace

constexpr WipeKernel WipeEdgeHorz = kernelOf<edgeHorz>();
constexpr WipeKernel WipeCornerTL = kernelOf<cornerTL>();
constexpr WipeKernel WipeCornerTR = kernelOf<cornerTR>();
constexpr WipeKernel WipeCornerBR = kernelOf<cornerBR>();
constexpr WipeKernel WipeCornerBL = kernelOf<cornerBL>();
constexpr WipeKernel WipeFourCorners = kernelOf<fourCorners>();
constexpr WipeKernel WipeBoxIn = kernelOf<boxIn>();
constexpr WipeKernel WipeBarnDoorVert = kernelOf<barnDoorVert>();
constexpr WipeKernel WipeBarnDoorHorz = kernelOf<barnDoorHorz>();
constexpr WipeKernel WipeBoxTop = kernelOf<boxTop>();
constexpr WipeKernel WipeBoxRight = kernelOf<boxRight>();
constexpr WipeKernel WipeBoxBottom = kernelOf<boxBottom>();
constexpr WipeKernel WipeBoxLeft = kernelOf<boxLeft>();
constexpr WipeKernel WipeIris = kernelOf<iris>();

}  // namespace nkdraw
