// SPDX-License-Identifier: BSD-2-Clause
//
// Counts and numbers frames as in SMPTE ST 12-1.
#include <nkdraw/platform/timecode.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace {

using nkdraw::TimecodeType;

constexpr std::uint32_t kMinutesPerDay = 24 * 60;

struct TimecodeRule {
  double frameRate;       ///< frames in a second of real time
  std::uint32_t nominal;  ///< numbers in a second of timecode
  std::uint32_t dropped;  ///< numbers dropped at the start of each minute, except every tenth
};

/// In the order of TimecodeType. If two types share a rate, the first is the usual one.
constexpr TimecodeRule kRules[] = {
    {24.0, 24, 0},            // k24
    {25.0, 25, 0},            // k25
    {30.0, 30, 0},            // k30
    {24000.0 / 1001, 24, 0},  // k23_98
    {30000.0 / 1001, 30, 2},  // k29_97Drop
    {30000.0 / 1001, 30, 0},  // k29_97
    {50.0, 50, 0},            // k50
    {60.0, 60, 0},            // k60
    {60000.0 / 1001, 60, 4},  // k59_94Drop
    {60000.0 / 1001, 60, 0},  // k59_94
};

constexpr std::uint32_t codeOf(TimecodeType type) {
  return static_cast<std::uint32_t>(type);
}

const TimecodeRule& ruleOf(std::uint32_t code) {
  return kRules[code < std::size(kRules) ? code : codeOf(TimecodeType::k30)];
}

/// For every higher rate this is the nearest.
constexpr double kHighestRate = kRules[codeOf(TimecodeType::k60)].frameRate;

const TimecodeRule& ruleOf(TimecodeType type) {
  return ruleOf(codeOf(type));
}

/// Frames in a minute with dropped numbers, and in ten minutes, the first of which drops none.
constexpr std::uint32_t framesPerMinute(const TimecodeRule& rule) {
  return rule.nominal * 60 - rule.dropped;
}
constexpr std::uint32_t framesPerTenMinutes(const TimecodeRule& rule) {
  return framesPerMinute(rule) * 10 + rule.dropped;
}
constexpr std::uint32_t framesPerDayOf(const TimecodeRule& rule) {
  return framesPerTenMinutes(rule) * (kMinutesPerDay / 10);
}

/// The numbers dropped since midnight, up to and including minute `minute` of the day.
constexpr std::uint32_t droppedUpTo(const TimecodeRule& rule, std::uint32_t minute) {
  return rule.dropped * (minute - minute / 10);
}

/// The minute of the day that holds frame `frame` of the day.
constexpr std::uint32_t minuteOf(const TimecodeRule& rule, std::uint32_t frame) {
  const std::uint32_t tens = frame / framesPerTenMinutes(rule);
  const std::uint32_t rest = frame % framesPerTenMinutes(rule);
  const std::uint32_t ones =
      rest < rule.dropped ? 0 : (rest - rule.dropped) / framesPerMinute(rule);
  return tens * 10 + ones;
}

/// The frame of the day for a count from midnight, forwards or backwards.
std::uint32_t frameOfDay(const TimecodeRule& rule, std::int32_t count) {
  const auto day = static_cast<std::int32_t>(framesPerDayOf(rule));
  const std::int32_t rest = count % day;
  return static_cast<std::uint32_t>(rest < 0 ? rest + day : rest);
}

/// The fields of a timecode.
struct Fields {
  std::uint32_t hours, minutes, seconds, frames;

  bool operator==(const Fields&) const = default;

  [[nodiscard]] constexpr std::uint32_t minuteOfDay() const { return hours * 60 + minutes; }
};

Fields fieldsOf(const TimecodeRule& rule, std::uint32_t frame) {
  const std::uint32_t number = frame + droppedUpTo(rule, minuteOf(rule, frame));
  const std::uint32_t second = number / rule.nominal;
  return {second / 3600, second / 60 % 60, second % 60, number % rule.nominal};
}

std::uint32_t frameOf(const TimecodeRule& rule, const Fields& fields) {
  const std::uint32_t second = fields.minuteOfDay() * 60 + fields.seconds;
  return second * rule.nominal + fields.frames - droppedUpTo(rule, fields.minuteOfDay());
}

/// Whether a frame of the day has this number: a dropped number does not survive conversion to a
/// frame and back.
bool isCounted(const TimecodeRule& rule, const Fields& fields) {
  return fields.hours < 24 && fields.minutes < 60 && fields.seconds < 60 &&
         fields.frames < rule.nominal && fieldsOf(rule, frameOf(rule, fields)) == fields;
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

/// The two-digit number at the start of `text`, if there is one.
std::optional<std::uint32_t> twoDigits(std::string_view text) {
  if (text.size() < 2 || !isDigit(text[0]) || !isDigit(text[1]))
    return std::nullopt;
  return static_cast<std::uint32_t>((text[0] - '0') * 10 + (text[1] - '0'));
}

std::optional<Fields> readFields(std::string_view text) {
  constexpr std::string_view kFramesSeparators = ":;.";
  if (text.size() != std::string_view("HH:MM:SS:FF").size() || text[2] != ':' || text[5] != ':' ||
      kFramesSeparators.find(text[8]) == std::string_view::npos)
    return std::nullopt;
  const auto hours = twoDigits(text), minutes = twoDigits(text.substr(3)),
             seconds = twoDigits(text.substr(6)), frames = twoDigits(text.substr(9));
  if (!hours || !minutes || !seconds || !frames)
    return std::nullopt;
  return Fields{*hours, *minutes, *seconds, *frames};
}

char* writeTwoDigits(char* text, std::uint32_t value) {
  *text++ = static_cast<char>('0' + value / 10);
  *text++ = static_cast<char>('0' + value % 10);
  return text;
}

char* writeSeparator(char* text, char separator) {
  *text++ = separator;
  return text;
}

void writeFields(char* text, const Fields& fields, char framesSeparator) {
  text = writeSeparator(writeTwoDigits(text, fields.hours), ':');
  text = writeSeparator(writeTwoDigits(text, fields.minutes), ':');
  text = writeSeparator(writeTwoDigits(text, fields.seconds), framesSeparator);
  *writeTwoDigits(text, fields.frames) = '\0';
}

}  // namespace

std::uint32_t nkdraw::framesPerDay(TimecodeType type) {
  return framesPerDayOf(ruleOf(type));
}

std::optional<std::uint32_t> nkdraw::parseTimecode(std::string_view text, TimecodeType type) {
  const TimecodeRule& rule = ruleOf(type);
  const auto fields = readFields(text);
  if (!fields || !isCounted(rule, *fields))
    return std::nullopt;
  return frameOf(rule, *fields);
}

std::uint32_t hzwGetTCType(double frameRate) {
  if (!std::isfinite(frameRate) || frameRate <= 0)
    return codeOf(TimecodeType::k30);
  const double rate = std::min(frameRate, kHighestRate);
  const auto distance = [=](const TimecodeRule& rule) { return std::abs(rule.frameRate - rate); };
  const auto* const nearest = std::ranges::min_element(kRules, {}, distance);
  return static_cast<std::uint32_t>(nearest - std::begin(kRules));
}

std::uint32_t TcForm(std::uint32_t timecode, std::uint32_t flags, char* text) {
  const TimecodeRule& rule = ruleOf(flags & 0xFF);
  const std::uint32_t frame = frameOfDay(rule, static_cast<std::int32_t>(timecode));
  writeFields(text, fieldsOf(rule, frame), rule.dropped != 0 ? ';' : ':');
  return 0;
}
