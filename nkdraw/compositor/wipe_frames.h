// SPDX-License-Identifier: BSD-2-Clause
//
// Shared by the kernels: the parts of a pixel, the rows of the frames, the progress.
#pragma once

#include "copy_block.h"
#include "wipe_band.h"

#include <nkdraw/constants.h>
#include <nkdraw/surface/layout_facts.h>

#include <array>
#include <cstddef>

namespace nkdraw {

enum class PartKind : std::uint8_t { kNone, kByte, kWord, kFloat };

/// A pixel as the compositor sees it: a number of parts of one kind.
struct PixelParts {
  PartKind kind = PartKind::kNone;
  std::uint8_t count = 0;

  [[nodiscard]] constexpr std::uint32_t bytes() const {
    constexpr std::array<std::uint32_t, 4> kPartBytes = {0, 1, 2, 4};
    return kPartBytes[static_cast<std::size_t>(kind)] * count;
  }
  [[nodiscard]] constexpr bool known() const { return kind != PartKind::kNone; }
};

/// The wipes know the layouts in which every pixel has its own colour, in whole bytes of integers
/// or floats.
[[nodiscard]] constexpr PixelParts partsOf(const LayoutFacts& facts) {
  const auto count = static_cast<std::uint8_t>(sampleCount(facts));
  if (facts.groupPixels != 1 || count < 3)
    return {};
  if (facts.kind == SampleKind::kFloat)
    return {PartKind::kFloat, count};
  if (facts.kind == SampleKind::kHalf || facts.depth % 8 != 0)
    return {};
  return {facts.depth == 8 ? PartKind::kByte : PartKind::kWord, count};
}

/// One past the last of those layouts.
inline constexpr std::size_t kTypesEnd = [] {
  std::size_t end = 0;
  for (const LayoutFacts& facts : kLayoutFacts) {
    if (partsOf(facts).known())
      end = static_cast<std::size_t>(facts.type) + 1;
  }
  return end;
}();

inline constexpr auto kPixelParts = [] {
  std::array<PixelParts, kTypesEnd> parts{};
  for (const LayoutFacts& facts : kLayoutFacts) {
    if (partsOf(facts).known())
      parts[static_cast<std::size_t>(facts.type)] = partsOf(facts);
  }
  return parts;
}();

/// The parts of a pixel of layout `type`; none if the wipes don't know the layout.
[[nodiscard]] constexpr PixelParts pixelParts(std::int32_t type) {
  const auto index = static_cast<std::uint32_t>(type);
  return index < kPixelParts.size() ? kPixelParts[index] : PixelParts{};
}

/// One row of the three frames. Deliberate: callers rely on it. The output's rows are as far apart
/// as those of `srcB`, whatever its own pitch. Products wrap at 32 bits.
struct WipeRow {
  const std::uint8_t* outgoing;
  const std::uint8_t* incoming;
  std::uint8_t* output;
};

[[nodiscard]] inline WipeRow rowOf(const WipeTask& task, std::uint32_t y) {
  const std::uint8_t* const rowA = task.srcA + task.pitchA * y;
  const std::uint8_t* const rowB = task.srcB + task.pitchB * y;
  const bool swapped = (task.wipe & NKWipeSwap) != 0;
  return {swapped ? rowB : rowA, swapped ? rowA : rowB, task.dst + task.pitchB * y};
}

[[nodiscard]] constexpr std::uint32_t rangeOf(const WipeTask& task) {
  return task.rangeEnd - task.rangeStart;
}

/// The part of `size` that the progress has reached; the product wraps at 32 bits. The range must
/// not be empty.
[[nodiscard]] constexpr std::uint32_t scale(const WipeTask& task, std::uint32_t size) {
  return size * task.position / rangeOf(task);
}

}  // namespace nkdraw
