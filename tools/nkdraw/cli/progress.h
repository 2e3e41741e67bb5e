// SPDX-License-Identifier: BSD-2-Clause
//
// The progress line on a terminal.
#pragma once

#include <chrono>
#include <cstdint>

namespace nkdraw::tool {

/// Shows frames, frames a second and the time left on standard error, if that is a terminal.
class Progress {
 public:
  /// `total` frames, or 0 if unknown.
  explicit Progress(std::int64_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Removes the line.
  ~Progress();

  /// One more frame is done.
  void advance();

 private:
  using Clock = std::chrono::steady_clock;
  void show(Clock::time_point now);

  bool shown_;
  std::int64_t total_;
  std::int64_t done_ = 0;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastShown_ = start_;
};

}  // namespace nkdraw::tool
