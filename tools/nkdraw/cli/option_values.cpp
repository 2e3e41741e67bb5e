// SPDX-License-Identifier: BSD-2-Clause
#include "cli/option_values.h"

#include "cli/using_media.h"
#include "media/failure.h"

#include <algorithm>
#include <cctype>

namespace nkdraw::tool {

void badValue(const std::string& option, const std::string& value, const std::string& advice) {
  throw Failure(ExitCode::kUsage, "not a value of " + option, value.empty() ? "(empty)" : value,
                advice);
}

std::int64_t readNumber(const std::string& option, const std::string& text, std::int64_t least,
                        std::int64_t most, const std::string& advice) {
  const auto number = wholeNumber<std::int64_t>(text);
  if (!number || *number < least || *number > most)
    badValue(option, text, advice);
  return *number;
}

bool take(std::string_view& text, char character) {
  if (!text.starts_with(character))
    return false;
  text.remove_prefix(1);
  return true;
}

std::optional<Point> takePair(std::string_view& text, char between) {
  const auto first = takeNumber<int>(text);
  if (!first || !take(text, between))
    return std::nullopt;
  const auto second = takeNumber<int>(text);
  if (!second)
    return std::nullopt;
  return Point{*first, *second};
}

bool isSameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](unsigned char left, unsigned char right) {
    return std::tolower(left) == std::tolower(right);
  });
}

}  // namespace nkdraw::tool
