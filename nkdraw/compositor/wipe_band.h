// SPDX-License-Identifier: BSD-2-Clause
//
// A worker's part of a wipe: the frames, the progress, and the rectangle to draw.
#pragma once

#include "wipe_runs.h"

#include <nkdraw/platform/thread.h>

#include <cstdint>

namespace nkdraw {

/// A wipe of whole frames, and the rectangle to draw. Rows of the inputs are `pitchA` and `pitchB`
/// bytes apart; the output's rows are `pitchB` bytes apart.
struct WipeTask {
  const std::uint8_t* srcA;
  std::uint32_t pitchA;
  const std::uint8_t* srcB;
  std::uint32_t pitchB;
  std::uint8_t* dst;
  std::uint32_t pitchDst;  ///< no kernel reads it
  std::uint32_t wipe;      ///< the number; bit 31 exchanges the inputs
  std::int32_t pixelType;  ///< of all three frames
  std::uint32_t width;     ///< of the frames, in pixels
  std::uint32_t height;    ///< of the frames, in rows
  std::uint32_t spare1, spare2, spare3, spare4, spare5;
  std::uint32_t rangeStart, rangeEnd, position;
  std::uint32_t left = 0, right = 0;  ///< first column of the rectangle, one past its last
  std::uint32_t top = 0, bottom = 0;  ///< first row, one past the last
};

/// Which of the four quarters of a frame have work: bit 0 is the upper left, 1 the upper right, 2
/// the lower left, 3 the lower right.
enum class WipeQuarters : std::uint8_t { kAll = 0b1111, kLeft = 0b0101, kUpperLeft = 0b0001 };

/// Draws the rectangle of a task. Always returns 0.
struct WipeKernel {
  std::uint32_t (*draw)(const WipeTask& task) = nullptr;
  /// The others have nothing to do, even if a small frame gives several quarters the same corner.
  WipeQuarters quarters = WipeQuarters::kAll;
  /// Where the pixels come from. Null for a cross-fade, which takes them from both inputs. The
  /// range must not be empty.
  RunsOfRow runs = nullptr;

  std::uint32_t operator()(const WipeTask& task) const { return draw(task); }
  bool operator==(const WipeKernel&) const = default;
};

/// A task and the worker that draws it.
struct WipeBand : WipeTask {
  WipeKernel kernel;
  nkHandle threadHandle = nullptr;
  std::uint32_t threadId = 0;
  std::uint32_t* pending = nullptr;  ///< the call's count of workers still running
};

}  // namespace nkdraw
