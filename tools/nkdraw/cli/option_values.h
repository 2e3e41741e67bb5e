// SPDX-License-Identifier: BSD-2-Clause
//
// The values of options in the form users write them: numbers, pairs, names and times.
#pragma once

#include "cli/using_media.h"
#include "media/libav.h"
#include "media/timecode_source.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace nkdraw::tool {

/// A position in the frame, or a size.
struct Point {
  int x = 0, y = 0;
};

/// Throws the Failure for an invalid value of an option.
[[noreturn]] void badValue(const std::string& option, const std::string& value,
                           const std::string& advice);

/// Removes a number from the front of `text`.
template <class Number>
std::optional<Number> takeNumber(std::string_view& text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc())
    return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

/// The number, if all of `text` is one.
template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
  const auto number = takeNumber<Number>(text);
  return text.empty() ? number : std::nullopt;
}

/// The decimal number in `text`, the value of an option. Throws badValue's Failure unless all of
/// `text` is a number from `least` to `most`.
[[nodiscard]] std::int64_t readNumber(const std::string& option, const std::string& text,
                                      std::int64_t least, std::int64_t most,
                                      const std::string& advice);

/// Removes one character from the front of `text`, if it is this one.
bool take(std::string_view& text, char character);

/// Removes "A,B", with any separator in place of the comma.
std::optional<Point> takePair(std::string_view& text, char between);

/// The "X,Y" in `text`, the value of an option. Throws badValue's Failure if it is malformed.
[[nodiscard]] Point readPoint(const std::string& option, const std::string& text);

/// Whether both are equal, ignoring case.
[[nodiscard]] bool isSameName(std::string_view a, std::string_view b);

/// `text`, unless nothing was given.
[[nodiscard]] inline std::optional<std::string> given(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

/// The number of letters to change, insert or delete, ignoring case.
[[nodiscard]] std::size_t nameDistance(std::string_view from, std::string_view to);

/// The index in `table`, which must not be empty, of the entry whose name is nearest to `name`.
template <class Table, class NameOf>
[[nodiscard]] auto nearestName(const Table& table, std::string_view name, NameOf nameOf) {
  return std::ranges::min_element(
      table, {}, [&](const auto& entry) { return nameDistance(name, std::invoke(nameOf, entry)); });
}

/// The number of frames at `rate` in a time given for `option`: "1.5" seconds, "25f" frames,
/// "HH:MM:SS" or "HH:MM:SS.mmm" in real time, "HH:MM:SS:FF" counted in frames (";" before the
/// frames means drop-frame). Seconds are rounded to the nearest frame. Throws Failure.
[[nodiscard]] std::int64_t framesIn(const std::string& text, AVRational rate,
                                    const std::string& option);

/// Whether `text` is written like a timecode: "HH:MM:SS:FF", or with ';' before the frames.
[[nodiscard]] bool isTimecode(std::string_view text);

/// The frame of a clip that `text`, the value of `option`, names: the frame with this timecode, if
/// it is one, counted in the clip's own; otherwise after this time from the first, as in framesIn.
/// `path` is the clip's. Throws Failure.
[[nodiscard]] std::int64_t frameAt(const std::string& text, const TimecodeStart& clip,
                                   AVRational rate, const std::string& path,
                                   const std::string& option);

/// "frame 50 (2.000 s)"
[[nodiscard]] std::string frameText(std::int64_t frame, AVRational rate);

}  // namespace nkdraw::tool
