// SPDX-License-Identifier: BSD-2-Clause
//
// Rows of packed 4:2:2 that a wipe makes of runs. Groups within a run are copied; where a run
// begins within a group, its pixels are laid over those of the run before.
#pragma once

#include "wipe_frames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nkdraw {

/// Runs with their edges on whole pairs of pixels. A run that is moved ends where its pixels do.
[[nodiscard]] inline WipeRuns inWholePairs(const WipeRuns& runs, std::uint32_t width) {
  WipeRuns even;
  std::uint32_t first = 0;
  for (WipeRun run : runs) {
    const std::int64_t shift = run.shift / 2 * 2;
    const auto last = run.shift > 0 ? static_cast<std::uint32_t>(width - shift) : run.last;
    run.shift = shift;
    run.first = first;
    first = run.last = last == width ? last : last / 2 * 2;
    even.add(run);
  }
  return even;
}

/// A layout has groups of `kPixels` pixels in `kBytes` bytes, says whether it `kKeepsPairs`, and
/// can `copy` groups, `move` them by pixels, and tell which bits an `overlay` of the pixels from
/// one on replaces.
template <class Layout>
class RunRows {
 public:
  RunRows(const WipeTask& task, RunsOfRow runs)
      : task_(task), runs_(runs), rowGroups_((task.width + Layout::kPixels - 1) / Layout::kPixels) {
    for (std::size_t k = 0; k < Layout::kPixels; ++k)
      overlays_[k] = Layout::overlay(k);
  }

  /// Row `y` in whole groups.
  void draw(std::uint32_t y, std::uint8_t* output) const {
    Group shared;  // by runs that meet within it; reading it back from the output would wait
    for (const WipeRun& run : runsOf(y))
      draw(run, output, shared);
    if (const std::size_t within = task_.width % Layout::kPixels; within != 0)
      std::memcpy(output + (rowGroups_ - 1) * Layout::kBytes, shared.data(), shared.size());
  }

  /// Pixel `x` of row `y`.
  [[nodiscard]] auto pixel(std::uint32_t y, std::uint32_t x) const {
    const WipeRuns runs = runsOf(y);
    const WipeRun* run = runs.begin();
    while (x >= run->last)
      ++run;
    return Layout::pixelOf(rowOf(*run), static_cast<std::size_t>(x + run->shift));
  }

 private:
  static constexpr auto kPixels = static_cast<std::int64_t>(Layout::kPixels);
  static constexpr int kMoveGroups = 1;  ///< that a move of one group reads past its first
  using Group = std::array<std::uint8_t, Layout::kBytes>;

  [[nodiscard]] WipeRuns runsOf(std::uint32_t y) const {
    if constexpr (Layout::kKeepsPairs)
      return inWholePairs(runs_(task_, y), task_.width);
    else
      return runs_(task_, y);
  }

  [[nodiscard]] const std::uint8_t* rowOf(const WipeRun& run) const {
    const bool second = run.incoming != ((task_.wipe & NKWipeSwap) != 0);
    return second ? task_.srcB + task_.pitchB * run.row : task_.srcA + task_.pitchA * run.row;
  }

  void draw(const WipeRun& run, std::uint8_t* output, Group& shared) const {
    std::size_t group = run.first / Layout::kPixels;
    const std::size_t end = run.last / Layout::kPixels;
    if (const std::size_t within = run.first % Layout::kPixels; within != 0) {
      Group pixels;
      fill(run, group, 1, pixels.data());
      overlay(shared, pixels, overlays_[within]);
      if (group == end)
        return;
      std::memcpy(output + group * Layout::kBytes, shared.data(), shared.size());
      ++group;
    }
    if (group < end)
      fill(run, group, end - group, output + group * Layout::kBytes);
    if (run.last % Layout::kPixels != 0)
      fill(run, end, 1, shared.data());
  }

  static void overlay(Group& shared, const Group& pixels, const Group& bits) {
    for (std::size_t i = 0; i < Layout::kBytes; ++i)
      shared[i] = static_cast<std::uint8_t>((shared[i] & ~bits[i]) | (pixels[i] & bits[i]));
  }

  /// The run's pixels for `count` groups of the output; those outside the run mean nothing.
  void fill(const WipeRun& run, std::size_t first, std::size_t count, std::uint8_t* output) const {
    const std::uint8_t* const row = rowOf(run);
    if (run.shift == 0)
      return Layout::copy(row + first * Layout::kBytes, output, count);
    const std::int64_t pixel = static_cast<std::int64_t>(first * Layout::kPixels) + run.shift;
    const std::int64_t group = (pixel + kPixels) / kPixels - 1;  // -1 before the row
    const auto within = static_cast<std::size_t>(pixel - group * kPixels);
    std::size_t done = 0;
    for (; done < count && group + static_cast<std::int64_t>(done) < 0; ++done)
      moveClipped(row, group + static_cast<std::int64_t>(done), within, output);
    const std::int64_t inside = static_cast<std::int64_t>(rowGroups_) - kMoveGroups - group;
    if (const auto end = std::min(static_cast<std::int64_t>(count), inside);
        end > static_cast<std::int64_t>(done)) {
      const auto from = static_cast<std::size_t>(group + static_cast<std::int64_t>(done));
      Layout::move(row + from * Layout::kBytes, within, output + done * Layout::kBytes,
                   static_cast<std::size_t>(end) - done);
      done = static_cast<std::size_t>(end);
    }
    for (; done < count; ++done)
      moveClipped(row, group + static_cast<std::int64_t>(done), within,
                  output + done * Layout::kBytes);
  }

  /// One group of pixels from pixel `within` of a group on; zeros stand for groups outside the row.
  void moveClipped(const std::uint8_t* row, std::int64_t group, std::size_t within,
                   std::uint8_t* output) const {
    std::array<std::uint8_t, (kMoveGroups + 1) * Layout::kBytes> groups{};
    for (std::size_t i = 0; i <= kMoveGroups; ++i, ++group) {
      if (group >= 0 && group < static_cast<std::int64_t>(rowGroups_))
        std::memcpy(groups.data() + i * Layout::kBytes,
                    row + static_cast<std::size_t>(group) * Layout::kBytes, Layout::kBytes);
    }
    Layout::move(groups.data(), within, output, 1);
  }

  const WipeTask& task_;
  const RunsOfRow runs_;
  const std::size_t rowGroups_;
  std::array<Group, Layout::kPixels> overlays_;  ///< the bits of the pixels from the index on
};

}  // namespace nkdraw
