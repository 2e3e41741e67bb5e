// SPDX-License-Identifier: BSD-2-Clause
//
// The modes of the display that shows two frames in one: names, values, and options.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace nkdraw::tool {

/// The options that a mode may take, as bits.
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

/// The default direction of a mode.
enum class MuxRuns { kOneWay, kHorizontally, kVertically };

struct MuxMode {
  std::string_view name;
  std::uint32_t value;
  MuxRuns runs;
  unsigned takes;  // MuxTakes
  std::string_view description;
};

/// In the order of their values. Channels are named as in BGRA.
[[nodiscard]] std::span<const MuxMode> muxModes();

/// Throws Failure for an unknown name.
[[nodiscard]] const MuxMode& muxModeNamed(const std::string& name);

/// Prints names, values, descriptions and options.
void listMuxModes();

}  // namespace nkdraw::tool
