// SPDX-License-Identifier: BSD-2-Clause
//
// The line on a terminal that says how far the run is.
#pragma once

#include <chrono>
#include <cstdint>

namespace nkdraw::tool {

/// Shows frames, frames a second and the time left on standard error, when that is a terminal.
class Progress {
 public:
  /// `total` frames, 0 when that is not known.
  explicit Progress(std::int64_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Takes the line away.
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
