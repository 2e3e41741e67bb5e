// SPDX-License-Identifier: BSD-2-Clause
//
// How far a run is: a line on a terminal, or one JSON object a line for programs.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace nkdraw::tool {

enum class ProgressForm {
  kLine,  ///< a line that is written over, if standard error is a terminal
  kJson,  ///< {"frame":50,"frames":100,"rate":24.8,"left":2.0}, "frames" and "left" if known
  kNone,
};

/// The form with this name, "line", "json" or "none". Throws Failure.
[[nodiscard]] ProgressForm progressNamed(const std::string& name);

/// Shows frames, frames a second and the seconds left on standard error, five times a second; as
/// JSON also after the last frame.
class Progress {
 public:
  /// `total` frames, or 0 if unknown.
  explicit Progress(std::int64_t total, ProgressForm form = ProgressForm::kLine);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Removes the line, or writes the last object.
  ~Progress();

  /// One more frame is done.
  void advance();

 private:
  using Clock = std::chrono::steady_clock;
  void show(Clock::time_point now) const;
  void showLine(double rate) const;
  void showJson(double rate) const;

  ProgressForm form_;
  std::int64_t total_;
  std::int64_t done_ = 0;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastShown_ = start_;
};

}  // namespace nkdraw::tool
