// SPDX-License-Identifier: BSD-2-Clause
//
// The modes of the display that shows two frames in one: names, values, and what each takes.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace nkdraw::tool {

/// What a mode may be told beside its name, as bits.
enum MuxTakes : unsigned {
  kTakesSplit = 1,
  kTakesMark = 2,
  kTakesThreshold = 4,
  kTakesGain = 8,
  kTakesAmount = 16,
  kTakesBlock = 32,
  kTakesChannel = 64,
  kTakesWipe = 128,
};

/// Which way a mode runs unless it is told to run the other way.
enum class MuxRuns { kOneWay, kHorizontally, kVertically };

struct MuxMode {
  std::string_view name;
  std::uint32_t value;
  MuxRuns runs;
  unsigned takes;  // MuxTakes
  std::string_view description;
};

/// In the order of their values. Channels are named as they stand in BGRA.
[[nodiscard]] std::span<const MuxMode> muxModes();

/// Throws Failure for a name that is none.
[[nodiscard]] const MuxMode& muxModeNamed(const std::string& name);

/// Prints names, values, descriptions and options.
void listMuxModes();

}  // namespace nkdraw::tool
