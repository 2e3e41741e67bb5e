// SPDX-License-Identifier: BSD-2-Clause
//
// A row of a wipe as runs of pixels, each from one of the inputs.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace nkdraw {

struct WipeTask;

/// The pixels from `first` up to, but not including, `last`: those of row `row` of one input,
/// `shift` columns further on there.
struct WipeRun {
  bool incoming = false;
  std::uint32_t first = 0, last = 0;
  std::uint32_t row = 0;
  std::int64_t shift = 0;
};

/// Without gaps, from left to right.
class WipeRuns {
 public:
  constexpr void add(const WipeRun& run) {
    if (run.first < run.last)
      runs_[count_++] = run;
  }
  [[nodiscard]] constexpr const WipeRun* begin() const { return runs_.data(); }
  [[nodiscard]] constexpr const WipeRun* end() const { return runs_.data() + count_; }

 private:
  std::array<WipeRun, 3> runs_{};
  std::size_t count_ = 0;
};

/// The runs of row `y`, of the whole width; none if the wipe draws nothing.
using RunsOfRow = WipeRuns (*)(const WipeTask& task, std::uint32_t y);

}  // namespace nkdraw
