// SPDX-License-Identifier: BSD-2-Clause
//
// Counts and numbers frames as in SMPTE ST 12-1, at more frame rates than that has.
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
    {24.0, 24, 0},              // k24
    {25.0, 25, 0},              // k25
    {30.0, 30, 0},              // k30
    {24000.0 / 1001, 24, 0},    // k23_98
    {30000.0 / 1001, 30, 2},    // k29_97Drop
    {30000.0 / 1001, 30, 0},    // k29_97
    {50.0, 50, 0},              // k50
    {60.0, 60, 0},              // k60
    {60000.0 / 1001, 60, 4},    // k59_94Drop
    {60000.0 / 1001, 60, 0},    // k59_94
    {5.0, 5, 0},                // k5
    {12.0, 12, 0},              // k12
    {15.0, 15, 0},              // k15
    {48.0, 48, 0},              // k48
    {48000.0 / 1001, 48, 0},    // k47_95
    {72.0, 72, 0},              // k72
    {96.0, 96, 0},              // k96
    {96000.0 / 1001, 96, 0},    // k95_9
    {100.0, 100, 0},            // k100
    {120.0, 120, 0},            // k120
    {120000.0 / 1001, 120, 8},  // k119_88Drop
    {120000.0 / 1001, 120, 0},  // k119_88
};
static_assert(std::size(kRules) == static_cast<std::size_t>(TimecodeType::k119_88) + 1);

constexpr std::uint32_t codeOf(TimecodeType type) {
  return static_cast<std::uint32_t>(type);
}

const TimecodeRule& ruleOf(std::uint32_t code) {
  return kRules[code < std::size(kRules) ? code : codeOf(TimecodeType::k30)];
}

/// For every higher rate this is the nearest.
constexpr double kHighestRate = kRules[codeOf(TimecodeType::k120)].frameRate;

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

/// Counting more frames than two digits can show.
constexpr bool hasThreeDigits(const TimecodeRule& rule) {
  return rule.nominal > 100;
}

/// The frames' number that `text` is, if it is one. FFmpeg writes as many digits as the type needs.
std::optional<std::uint32_t> frameDigits(const TimecodeRule& rule, std::string_view text) {
  constexpr std::uint32_t kMostOneDigitFrames = 10;
  if (text.size() == 1 && rule.nominal <= kMostOneDigitFrames && isDigit(text[0]))
    return static_cast<std::uint32_t>(text[0] - '0');
  const auto number = twoDigits(text);
  if (text.size() == 2 || !number)
    return number;
  if (!hasThreeDigits(rule) || text.size() != 3 || !isDigit(text[2]))
    return std::nullopt;
  return *number * 10 + static_cast<std::uint32_t>(text[2] - '0');
}

std::optional<Fields> readFields(const TimecodeRule& rule, std::string_view text) {
  constexpr std::string_view kFramesSeparators = ":;.";
  if (text.size() < std::string_view("HH:MM:SS:F").size() || text[2] != ':' || text[5] != ':' ||
      kFramesSeparators.find(text[8]) == std::string_view::npos)
    return std::nullopt;
  const auto hours = twoDigits(text), minutes = twoDigits(text.substr(3)),
             seconds = twoDigits(text.substr(6)), frames = frameDigits(rule, text.substr(9));
  if (!hours || !minutes || !seconds || !frames)
    return std::nullopt;
  return Fields{*hours, *minutes, *seconds, *frames};
}

char* writeTwoDigits(char* text, std::uint32_t value) {
  *text++ = static_cast<char>('0' + value / 10);
  *text++ = static_cast<char>('0' + value % 10);
  return text;
}

char* writeCharacter(char* text, char character) {
  *text++ = character;
  return text;
}

void writeFields(char* text, const TimecodeRule& rule, const Fields& fields) {
  constexpr std::uint32_t kHundred = 100;
  text = writeCharacter(writeTwoDigits(text, fields.hours), ':');
  text = writeCharacter(writeTwoDigits(text, fields.minutes), ':');
  text = writeCharacter(writeTwoDigits(text, fields.seconds), rule.dropped != 0 ? ';' : ':');
  if (hasThreeDigits(rule))
    text = writeCharacter(text, static_cast<char>('0' + fields.frames / kHundred));
  *writeTwoDigits(text, fields.frames % kHundred) = '\0';
}

}  // namespace

std::uint32_t nkdraw::framesPerDay(TimecodeType type) {
  return framesPerDayOf(ruleOf(type));
}

std::optional<std::uint32_t> nkdraw::parseTimecode(std::string_view text, TimecodeType type) {
  const TimecodeRule& rule = ruleOf(type);
  const auto fields = readFields(rule, text);
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
  writeFields(text, rule, fieldsOf(rule, frame));
  return 0;
}
