// SPDX-License-Identifier: BSD-2-Clause
#include "cli/time_value.h"

#include "cli/option_values.h"
#include "media/failure.h"
#include "media/timecode_source.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

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

bool isTimecode(std::string_view text) {
  return std::ranges::count(text, ':') == 3 || text.find(';') != std::string_view::npos;
}

}  // namespace

std::int64_t framesIn(const std::string& text, AVRational rate, const std::string& option) {
  if (text.ends_with('f')) {
    const auto frames =
        wholeNumber<std::uint32_t>(std::string_view(text).substr(0, text.size() - 1));
    if (!frames)
      badValue(option, text, kForms);
    return *frames;
  }
  if (isTimecode(text))
    return timecodeFromOption(text, rate).frame;
  const auto seconds = text.find(':') != std::string::npos ? takeClock(text) : takeSeconds(text);
  if (!seconds)
    badValue(option, text, kForms);
  return std::llround(*seconds * rate.num / rate.den);
}

std::string frameText(std::int64_t frame, AVRational rate) {
  char text[64];
  std::snprintf(text, sizeof text, "frame %lld (%.3f s)", static_cast<long long>(frame),
                static_cast<double>(frame) * rate.den / rate.num);
  return text;
}

}  // namespace nkdraw::tool
