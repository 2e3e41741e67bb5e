// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Timecode after SMPTE ST 12-1, and at further frame rates as editing systems count them: frames
/// counted from midnight, and their text. Every frame of a second has a number of its own. SMPTE ST
/// 12-3 numbers frames above 60 a second in super-frames of several frames instead.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace nkdraw {

/// How timecode counts frames. The values are the type codes of hzwGetTCType and TcForm.
enum class TimecodeType : std::uint8_t {
  k24 = 0,           ///< 24 frames a second
  k25 = 1,           ///< 25 frames a second
  k30 = 2,           ///< 30 frames a second
  k23_98 = 3,        ///< counts like k24
  k29_97Drop = 4,    ///< drop-frame: every minute but each tenth has no frames 0 and 1
  k29_97 = 5,        ///< counts like k30
  k50 = 6,           ///< 50 frames a second
  k60 = 7,           ///< 60 frames a second
  k59_94Drop = 8,    ///< drop-frame: every minute but each tenth has no frames 0 to 3
  k59_94 = 9,        ///< counts like k60
  k5 = 10,           ///< 5 frames a second
  k12 = 11,          ///< 12 frames a second
  k15 = 12,          ///< 15 frames a second
  k48 = 13,          ///< 48 frames a second
  k47_95 = 14,       ///< counts like k48
  k72 = 15,          ///< 72 frames a second
  k96 = 16,          ///< 96 frames a second
  k95_9 = 17,        ///< counts like k96
  k100 = 18,         ///< 100 frames a second
  k120 = 19,         ///< 120 frames a second
  k119_88Drop = 20,  ///< drop-frame: every minute but each tenth has no frames 0 to 7
  k119_88 = 21,      ///< counts like k120
};

/// Frames in 24 hours of timecode.
[[nodiscard]] NKDRAW_API std::uint32_t framesPerDay(TimecodeType type);

/// Parses a timecode into frames counted from midnight. `text` is "HH:MM:SS:FF", two digits each,
/// with ':', ';' or '.' in front of the frames, whatever the type. Types with more than 100 frames
/// a second take frames of two or three digits, those with at most 10 also of one. Empty for any
/// other text, for a field that is too large, and for a frame that drop-frame counting leaves out.
[[nodiscard]] NKDRAW_API std::optional<std::uint32_t> parseTimecode(std::string_view text,
                                                                    TimecodeType type);

}  // namespace nkdraw

/// The type code whose rate is nearest to `frameRate`, in frames a second; 29.97, 59.94 and 119.88
/// give the drop-frame types. A rate that is not finite, or not above 0, gives k30.
[[nodiscard]] NKDRAW_API std::uint32_t hzwGetTCType(double frameRate);

/// Writes a timecode as text, "HH:MM:SS:FF", with ';' before the frames for a drop-frame type, to
/// `text`, which has room for 12 bytes. Types with more than 100 frames a second write three digits
/// of frames, and need 13. `timecode` counts frames from midnight; it is taken as
/// signed and wraps at 24 hours both ways, so -1 is the last frame of the day. The low byte of
/// `flags` is the type code (an unknown one counts like k30); the other bits are not read. Returns
/// 0.
NKDRAW_API std::uint32_t TcForm(std::uint32_t timecode, std::uint32_t flags, char* text);
