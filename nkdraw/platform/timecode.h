// SPDX-License-Identifier: BSD-2-Clause
//
// Timecode after SMPTE ST 12-1: frames counted from midnight, and their text.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace nkdraw {

/// How frames are counted. The values are the type codes that hzwGetTCType returns and that TcForm
/// reads from the low byte of its flag word.
enum class TimecodeType : std::uint8_t {
  k24 = 0,
  k25 = 1,
  k30 = 2,
  k23_98 = 3,      ///< counts like k24
  k29_97Drop = 4,  ///< leaves out the numbers 0 and 1 of each minute but every tenth
  k29_97 = 5,      ///< counts like k30
  k50 = 6,
  k60 = 7,
  k59_94Drop = 8,  ///< leaves out the numbers 0 to 3 of each minute but every tenth
  k59_94 = 9,      ///< counts like k60
};

/// Frames in 24 hours of timecode.
[[nodiscard]] NKDRAW_API std::uint32_t framesPerDay(TimecodeType type);

/// The frame, counted from midnight, that `text` names: "HH:MM:SS:FF", two digits each, with ':',
/// ';' or '.' before the frames, whichever type is asked for. Nothing for any other text, for a
/// field that is too large, and for a number that the type leaves out.
[[nodiscard]] NKDRAW_API std::optional<std::uint32_t> parseTimecode(std::string_view text,
                                                                    TimecodeType type);

}  // namespace nkdraw

/// The type code for a frame rate in frames a second, the nearest of the table's rates; 29.97 and
/// 59.94 give the dropping types. A rate that is not finite, or not above 0, gives k30.
[[nodiscard]] NKDRAW_API std::uint32_t hzwGetTCType(double frameRate);

/// Writes the text of a timecode, at least 12 bytes with its zero, to `text`: "HH:MM:SS:FF", with
/// ';' before the frames for a dropping type. `timecode` counts frames from midnight, is taken as
/// a signed number and wraps at 24 hours both ways, so that one frame before midnight follows from
/// -1. The low byte of `flags` is the type code (one that is not in the table counts like k30); the
/// other bits are not read. Returns 0.
NKDRAW_API std::uint32_t TcForm(std::uint32_t timecode, std::uint32_t flags, char* text);
