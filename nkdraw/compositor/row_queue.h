// SPDX-License-Identifier: BSD-2-Clause
//
// Rows of a frame that the calling thread and its workers draw together, a few at a time.
#pragma once

#include "wipe_band.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace nkdraw {

class RowQueue;

/// Draws the rows that it claims from the queue until none are left.
using DrawRows = void (*)(const WipeTask& task, RowQueue& rows);

/// Memory for what the output's rows held before; none if nobody needs that.
struct KeptRows {
  std::uint8_t* memory = nullptr;
  std::size_t rowBytes = 0;
};

/// A thread that comes after stop() finds no rows, and touches no frame.
class RowQueue {
 public:
  /// The rows of the task from `top` up to, but not including, `bottom`.
  RowQueue(const WipeTask& task, DrawRows draw, const KeptRows& kept = {});

  /// Rows `first` up to, but not including, `last`; empty if none are left.
  struct Rows {
    std::uint32_t first, last;
    [[nodiscard]] bool empty() const { return first >= last; }
  };
  /// Until the drawing is confirmed, keeps what the rows hold.
  [[nodiscard]] Rows claim();

  /// Claims rows and draws them until none are left.
  void draw();

  void confirm() { isSure_.store(true, std::memory_order_relaxed); }
  /// No further row can be claimed. Returns when no thread is drawing the rows that it has claimed.
  void stop();
  /// After `stop`, if the drawing was never confirmed: gives rows already drawn their old contents.
  void undo() const;

 private:
  [[nodiscard]] std::uint8_t* keptRow(std::uint32_t y) const {
    return kept_.memory + (y - task_.top) * kept_.rowBytes;
  }

  const WipeTask task_;
  const DrawRows draw_;
  const KeptRows kept_;
  const std::uint32_t step_;
  std::atomic<std::uint64_t> next_;
  std::atomic<bool> isSure_ = false;
  std::atomic<std::uint32_t> busy_ = 0;  // threads in draw()
  std::optional<std::uint32_t> stoppedAt_;
};

}  // namespace nkdraw
