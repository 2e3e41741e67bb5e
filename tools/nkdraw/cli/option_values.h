// SPDX-License-Identifier: BSD-2-Clause
//
// The values of options, taken apart from the left.
#pragma once

#include "cli/point.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nkdraw::tool {

/// Throws the Failure for a value that an option can't have.
[[noreturn]] void badValue(const std::string& option, const std::string& value,
                           const std::string& advice);

/// Takes a number off the front of `text`.
template <class Number>
std::optional<Number> takeNumber(std::string_view& text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc())
    return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

/// The number that all of `text` is.
template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
  const auto number = takeNumber<Number>(text);
  return text.empty() ? number : std::nullopt;
}

/// The decimal number that is all of `text`, which is an option's value. Throws the Failure of
/// badValue for one that is not from `least` to `most`.
[[nodiscard]] std::int64_t readNumber(const std::string& option, const std::string& text,
                                      std::int64_t least, std::int64_t most,
                                      const std::string& advice);

/// Takes one character off the front of `text`, if it is that one.
bool take(std::string_view& text, char character);

/// Takes "A,B", with any character for the comma.
std::optional<Point> takePair(std::string_view& text, char between);

/// Whether both are the same but for small and capital letters.
[[nodiscard]] bool isSameName(std::string_view a, std::string_view b);

}  // namespace nkdraw::tool
