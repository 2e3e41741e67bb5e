// SPDX-License-Identifier: BSD-2-Clause
//
// The queue of rows, and the way back from a drawing that must not be.
#include "row_queue.h"

#include <algorithm>
#include <cstring>

namespace nkdraw {
namespace {

constexpr std::uint32_t kClaims = 64;

}  // namespace

RowQueue::RowQueue(const WipeTask& task, DrawRows draw, const KeptRows& kept)
    : task_(task),
      draw_(draw),
      kept_(kept),
      step_(std::max((task.bottom - task.top) / kClaims, std::uint32_t{1})),
      next_(task.top) {}

RowQueue::Rows RowQueue::claim() {
  const std::uint64_t first = next_.fetch_add(step_);
  const std::uint64_t end = task_.bottom;
  const Rows rows = {static_cast<std::uint32_t>(std::min(first, end)),
                     static_cast<std::uint32_t>(std::min(first + step_, end))};
  if (kept_.memory != nullptr && !isSure_.load(std::memory_order_relaxed)) {
    for (std::uint32_t y = rows.first; y < rows.last; ++y)
      std::memcpy(keptRow(y), task_.dst + task_.pitchDst * y, kept_.rowBytes);
  }
  return rows;
}

/// A thread counts itself before it claims, and stop() looks at the count after it has taken all
/// rows away: so it either sees the thread, or the thread finds no rows.
void RowQueue::draw() {
  ++busy_;
  draw_(task_, *this);
  if (--busy_ == 0)
    busy_.notify_all();
}

void RowQueue::stop() {
  const std::uint64_t end = task_.bottom;
  const auto at = static_cast<std::uint32_t>(std::min(next_.exchange(end), end));
  if (!stoppedAt_)
    stoppedAt_ = at;
  for (std::uint32_t busy = busy_; busy != 0; busy = busy_)
    busy_.wait(busy);
}

void RowQueue::undo() const {
  for (std::uint32_t y = task_.top; kept_.memory != nullptr && !isSure_ && y < *stoppedAt_; ++y)
    std::memcpy(task_.dst + task_.pitchDst * y, keptRow(y), kept_.rowBytes);
}

}  // namespace nkdraw
