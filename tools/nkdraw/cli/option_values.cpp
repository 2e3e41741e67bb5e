// SPDX-License-Identifier: BSD-2-Clause
#include "cli/option_values.h"

#include "media/failure.h"
#include "media/timecode_source.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <vector>

namespace nkdraw::tool {
namespace {

constexpr char kForms[] = "write seconds (1.5), frames (25f), HH:MM:SS:FF or HH:MM:SS.mmm";
constexpr double kMostSeconds = 1e6;

/// Plain digits with at most one point: no sign, no exponent.
std::optional<double> takeSeconds(std::string_view text) {
  if (text.empty() || text.find_first_not_of("0123456789.") != std::string_view::npos)
    return std::nullopt;
  const auto seconds = wholeNumber<double>(text);
  return seconds && *seconds <= kMostSeconds ? seconds : std::nullopt;
}

std::optional<double> takeClock(std::string_view text) {
  const auto hours = takeNumber<unsigned>(text);
  if (!hours || !take(text, ':'))
    return std::nullopt;
  const auto minutes = takeNumber<unsigned>(text);
  if (!minutes || *minutes > 59 || !take(text, ':'))
    return std::nullopt;
  const auto seconds = takeSeconds(text);
  if (!seconds || *seconds >= 60.0)
    return std::nullopt;
  const double all = *hours * 3600.0 + *minutes * 60.0 + *seconds;
  return all <= kMostSeconds ? std::optional(all) : std::nullopt;
}

}  // namespace

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

Point readPoint(const std::string& option, const std::string& text) {
  std::string_view left = text;
  const auto point = takePair(left, ',');
  if (!point || !left.empty())
    badValue(option, text, "write X,Y in pixels");
  return *point;
}

bool isSameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](unsigned char left, unsigned char right) {
    return std::tolower(left) == std::tolower(right);
  });
}

std::size_t nameDistance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const bool same = isSameName(from.substr(i - 1, 1), to.substr(j - 1, 1));
      const std::size_t changed = diagonal + (same ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

std::int64_t framesIn(const std::string& text, AVRational rate, const std::string& option) {
  if (text.ends_with('f')) {
    const auto frames =
        wholeNumber<std::uint32_t>(std::string_view(text).substr(0, text.size() - 1));
    if (!frames)
      badValue(option, text, kForms);
    return *frames;
  }
  if (isTimecode(text))
    return timecodeFromText(text, rate, option).frame;
  const auto seconds = text.find(':') != std::string::npos ? takeClock(text) : takeSeconds(text);
  if (!seconds)
    badValue(option, text, kForms);
  return std::llround(*seconds * rate.num / rate.den);
}

bool isTimecode(std::string_view text) {
  return std::ranges::count(text, ':') == 3 || text.find(';') != std::string_view::npos;
}

std::int64_t frameAt(const std::string& text, const TimecodeStart& clip, AVRational rate,
                     const std::string& path, const std::string& option) {
  if (!isTimecode(text))
    return framesIn(text, rate, option);
  const auto asked = parseTimecode(text, clip.type);
  if (!asked)
    throw Failure(ExitCode::kUsage, "not a timecode of the clip", option + " " + text,
                  path + " begins at " + timecodeText(clip, 0));
  const std::int64_t day = framesPerDay(clip.type);
  const std::int64_t index = (std::int64_t{*asked} - clip.frame + day) % day;
  // No clip is longer than half a day: what is later than that lies before the first frame.
  if (index > day / 2)
    throw Failure(ExitCode::kUsage, "a timecode before the clip's first", option + " " + text,
                  path + " begins at " + timecodeText(clip, 0));
  return index;
}

std::string frameText(std::int64_t frame, AVRational rate) {
  char text[64];
  std::snprintf(text, sizeof text, "frame %lld (%.3f s)", static_cast<long long>(frame),
                static_cast<double>(frame) * rate.den / rate.num);
  return text;
}

}  // namespace nkdraw::tool
