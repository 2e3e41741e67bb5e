// SPDX-License-Identifier: BSD-2-Clause
#include <gtest/gtest.h>
#include <nkdraw/platform/timecode.h>

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <ostream>
#include <random>
#include <string>

namespace {

using nkdraw::framesPerDay;
using nkdraw::parseTimecode;
using nkdraw::TimecodeType;

struct TypeFacts {
  TimecodeType type;
  std::uint32_t code;
  int nominal, dropped;
  std::uint32_t framesPerDay;
  const char* name;
};

void PrintTo(const TypeFacts& facts, std::ostream* out) {
  *out << facts.name;
}

constexpr TypeFacts kTypes[] = {
    {TimecodeType::k24, 0, 24, 0, 2073600, "k24"},
    {TimecodeType::k25, 1, 25, 0, 2160000, "k25"},
    {TimecodeType::k30, 2, 30, 0, 2592000, "k30"},
    {TimecodeType::k23_98, 3, 24, 0, 2073600, "k23_98"},
    {TimecodeType::k29_97Drop, 4, 30, 2, 2589408, "k29_97Drop"},
    {TimecodeType::k29_97, 5, 30, 0, 2592000, "k29_97"},
    {TimecodeType::k50, 6, 50, 0, 4320000, "k50"},
    {TimecodeType::k60, 7, 60, 0, 5184000, "k60"},
    {TimecodeType::k59_94Drop, 8, 60, 4, 5178816, "k59_94Drop"},
    {TimecodeType::k59_94, 9, 60, 0, 5184000, "k59_94"},
    {TimecodeType::k5, 10, 5, 0, 432000, "k5"},
    {TimecodeType::k12, 11, 12, 0, 1036800, "k12"},
    {TimecodeType::k15, 12, 15, 0, 1296000, "k15"},
    {TimecodeType::k48, 13, 48, 0, 4147200, "k48"},
    {TimecodeType::k47_95, 14, 48, 0, 4147200, "k47_95"},
    {TimecodeType::k72, 15, 72, 0, 6220800, "k72"},
    {TimecodeType::k96, 16, 96, 0, 8294400, "k96"},
    {TimecodeType::k95_9, 17, 96, 0, 8294400, "k95_9"},
    {TimecodeType::k100, 18, 100, 0, 8640000, "k100"},
    {TimecodeType::k120, 19, 120, 0, 10368000, "k120"},
    {TimecodeType::k119_88Drop, 20, 120, 8, 10357632, "k119_88Drop"},
    {TimecodeType::k119_88, 21, 120, 0, 10368000, "k119_88"},
};

constexpr std::uint32_t kUnreadFlags = 0x30100;

std::string textOf(std::uint32_t timecode, std::uint32_t code) {
  std::array<char, 15> text;
  text.fill('#');
  EXPECT_EQ(TcForm(timecode, code | kUnreadFlags, text.data() + 1), 0u);
  EXPECT_EQ(text.front(), '#');
  EXPECT_EQ(text.back(), '#');
  return text.data() + 1;
}

std::string textOf(std::int64_t timecode, TimecodeType type) {
  return textOf(static_cast<std::uint32_t>(timecode), static_cast<std::uint32_t>(type));
}

/// Counts as a clock does, one frame after the other, stepping over the numbers left out.
class PlainCounter {
 public:
  explicit PlainCounter(const TypeFacts& facts) : type(facts) {}

  void next() {
    if (++frames < type.nominal)
      return;
    frames = 0;
    if (++seconds == 60) {
      seconds = 0;
      if (++minutes == 60) {
        minutes = 0;
        ++hours;
      }
    }
    if (seconds == 0 && minutes % 10 != 0)
      frames = type.dropped;
  }

  [[nodiscard]] bool isMidnight() const { return hours == 24; }

  /// "HH:MM:SS:FF", or "HH:MM:SS:FFF", with its zero.
  [[nodiscard]] std::array<char, 13> text() const {
    const auto digit = [](int value) { return static_cast<char>('0' + value); };
    std::array<char, 13> text = {
        digit(hours / 10),   digit(hours % 10),   ':',
        digit(minutes / 10), digit(minutes % 10), ':',
        digit(seconds / 10), digit(seconds % 10), type.dropped > 0 ? ';' : ':'};
    std::size_t at = 9;
    if (type.nominal > 100)
      text[at++] = digit(frames / 100);
    text[at++] = digit(frames / 10 % 10);
    text[at] = digit(frames % 10);
    return text;
  }

 private:
  const TypeFacts& type;
  int hours = 0, minutes = 0, seconds = 0, frames = 0;
};

class TimecodeOfType : public testing::TestWithParam<TypeFacts> {};

INSTANTIATE_TEST_SUITE_P(All, TimecodeOfType, testing::ValuesIn(kTypes),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(TimecodeOfType, EqualsAPlainCountThroughTheWholeDayThereAndBack) {
  const TypeFacts& facts = GetParam();
  std::uint32_t frame = 0;
  for (PlainCounter counter(facts); !counter.isMidnight(); counter.next(), ++frame) {
    const std::array<char, 13> expected = counter.text();
    std::array<char, 13> text{};
    TcForm(frame, facts.code | kUnreadFlags, text.data());
    ASSERT_EQ(text, expected) << frame << ": " << text.data();
    ASSERT_EQ(parseTimecode(text.data(), facts.type), frame) << text.data();
  }
  EXPECT_EQ(frame, facts.framesPerDay);
  EXPECT_EQ(framesPerDay(facts.type), facts.framesPerDay);
}

TEST_P(TimecodeOfType, ReadsExactlyTheNumbersThatItCounts) {
  const TypeFacts& facts = GetParam();
  std::uint32_t read = 0;
  const int digits = facts.nominal > 100 ? 3 : 2;
  std::string text = digits == 3 ? "00:00:00:000" : "00:00:00:00";
  const auto put = [&](std::size_t at, int value, int count = 2) {
    for (; count > 0; --count, value /= 10)
      text[at + static_cast<std::size_t>(count) - 1] = static_cast<char>('0' + value % 10);
  };
  const int most = digits == 3 ? 200 : 100;
  for (int minutes = 0; minutes < 100; ++minutes)
    for (int seconds = 0; seconds < 100; ++seconds)
      for (int frames = 0; frames < most; ++frames) {
        put(3, minutes);
        put(6, seconds);
        put(9, frames, digits);
        read += parseTimecode(text, facts.type).has_value();
      }
  EXPECT_EQ(read, facts.framesPerDay / 24);
}

TEST_P(TimecodeOfType, WrapsAtMidnightBothWays) {
  const TypeFacts& facts = GetParam();
  const std::int64_t day = facts.framesPerDay;
  EXPECT_EQ(textOf(day, facts.type), textOf(0, facts.type));
  EXPECT_EQ(textOf(day + 1, facts.type), textOf(1, facts.type));
  EXPECT_EQ(textOf(-1, facts.type), textOf(day - 1, facts.type));
  EXPECT_EQ(textOf(-day, facts.type), textOf(0, facts.type));
  EXPECT_EQ(textOf(-day - 1, facts.type), textOf(day - 1, facts.type));
}

TEST_P(TimecodeOfType, TakesItsCountAsASignedNumber) {
  const TypeFacts& facts = GetParam();
  std::mt19937 random(3);
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
  std::uniform_int_distribution<std::int32_t> anyCount(kLowest, kHighest);
  for (int round = 0; round < 1000; ++round) {
    const std::int64_t count = round == 0 ? kLowest : round == 1 ? kHighest : anyCount(random);
    const std::int64_t day = facts.framesPerDay;
    const std::int64_t ofDay = (count % day + day) % day;
    ASSERT_EQ(textOf(count, facts.type), textOf(ofDay, facts.type)) << count;
  }
}

TEST_P(TimecodeOfType, ReadsAnySeparatorBeforeTheFrames) {
  const TypeFacts& facts = GetParam();
  const auto frame = parseTimecode("10:20:30:04", facts.type);
  ASSERT_TRUE(frame.has_value());
  EXPECT_EQ(parseTimecode("10:20:30;04", facts.type), frame);
  EXPECT_EQ(parseTimecode("10:20:30.04", facts.type), frame);
}

TEST_P(TimecodeOfType, ReadsOneDigitWhereItIsEnough) {
  const TypeFacts& facts = GetParam();
  EXPECT_EQ(parseTimecode("10:20:30:1", facts.type).has_value(), facts.nominal <= 10);
}

TEST_P(TimecodeOfType, ReadsNothingFromAnyOtherText) {
  for (const char* const text : {"",
                                 "1",
                                 "10:20:30",
                                 "10:20:30:120",
                                 "10:20:30:00:",
                                 "10:20:30:0010",
                                 " 0:20:30:10",
                                 "10:20:30:1 ",
                                 "10;20:30:10",
                                 "10:20;30:10",
                                 "10:20.30:10",
                                 "10:20:30,10",
                                 "10:20:30 10",
                                 "+1:20:30:10",
                                 "10:-1:30:10",
                                 "1a:20:30:10",
                                 "10:2/:30:10",
                                 "10:20:3::10",
                                 "10:20:30:1:",
                                 "24:00:00:00",
                                 "99:00:00:00",
                                 "10:60:30:10",
                                 "10:20:60:10",
                                 "10:20:30:x0"})
    EXPECT_EQ(parseTimecode(text, GetParam().type), std::nullopt) << text;
  EXPECT_EQ(parseTimecode(std::string_view("10:20:30:1\0", 11), GetParam().type), std::nullopt);
}

TEST(Timecode, DropsTheFirstNumbersOfEachMinuteButEveryTenth) {
  EXPECT_EQ(textOf(1799, TimecodeType::k29_97Drop), "00:00:59;29");
  EXPECT_EQ(textOf(1800, TimecodeType::k29_97Drop), "00:01:00;02");
  EXPECT_EQ(textOf(17982, TimecodeType::k29_97Drop), "00:10:00;00");
  EXPECT_EQ(textOf(-1, TimecodeType::k29_97Drop), "23:59:59;29");
  EXPECT_EQ(textOf(3599, TimecodeType::k59_94Drop), "00:00:59;59");
  EXPECT_EQ(textOf(3600, TimecodeType::k59_94Drop), "00:01:00;04");
  EXPECT_EQ(textOf(35964, TimecodeType::k59_94Drop), "00:10:00;00");
  EXPECT_EQ(parseTimecode("00:01:00;01", TimecodeType::k29_97Drop), std::nullopt);
  EXPECT_EQ(parseTimecode("00:01:00;03", TimecodeType::k59_94Drop), std::nullopt);
  EXPECT_EQ(parseTimecode("00:01:00;01", TimecodeType::k29_97), 1801u);
  EXPECT_EQ(textOf(7199, TimecodeType::k119_88Drop), "00:00:59;119");
  EXPECT_EQ(textOf(7200, TimecodeType::k119_88Drop), "00:01:00;008");
  EXPECT_EQ(parseTimecode("00:01:00;08", TimecodeType::k119_88Drop), 7200u);
}

TEST(Timecode, ACodeThatIsNotInTheTableCountsLikeK30) {
  for (std::uint32_t code = 22; code < 256; ++code)
    ASSERT_EQ(textOf(1799, code), "00:00:59:29") << code;
  EXPECT_EQ(framesPerDay(static_cast<TimecodeType>(22)), 2592000u);
  EXPECT_EQ(parseTimecode("00:00:59:29", static_cast<TimecodeType>(255)), 1799u);
}

TimecodeType typeFor(double frameRate) {
  return TimecodeType{static_cast<std::uint8_t>(hzwGetTCType(frameRate))};
}

TEST(TimecodeType, IsThatOfTheRate) {
  EXPECT_EQ(typeFor(24000.0 / 1001), TimecodeType::k23_98);
  EXPECT_EQ(typeFor(23.976), TimecodeType::k23_98);
  EXPECT_EQ(typeFor(23.98), TimecodeType::k23_98);
  EXPECT_EQ(typeFor(24), TimecodeType::k24);
  EXPECT_EQ(typeFor(25), TimecodeType::k25);
  EXPECT_EQ(typeFor(30000.0 / 1001), TimecodeType::k29_97Drop);
  EXPECT_EQ(typeFor(29.97), TimecodeType::k29_97Drop);
  EXPECT_EQ(typeFor(30), TimecodeType::k30);
  EXPECT_EQ(typeFor(50), TimecodeType::k50);
  EXPECT_EQ(typeFor(60000.0 / 1001), TimecodeType::k59_94Drop);
  EXPECT_EQ(typeFor(59.94), TimecodeType::k59_94Drop);
  EXPECT_EQ(typeFor(60), TimecodeType::k60);
  EXPECT_EQ(typeFor(5), TimecodeType::k5);
  EXPECT_EQ(typeFor(12), TimecodeType::k12);
  EXPECT_EQ(typeFor(15), TimecodeType::k15);
  EXPECT_EQ(typeFor(47.95), TimecodeType::k47_95);
  EXPECT_EQ(typeFor(48), TimecodeType::k48);
  EXPECT_EQ(typeFor(72), TimecodeType::k72);
  EXPECT_EQ(typeFor(95.9), TimecodeType::k95_9);
  EXPECT_EQ(typeFor(96), TimecodeType::k96);
  EXPECT_EQ(typeFor(100), TimecodeType::k100);
  EXPECT_EQ(typeFor(119.88), TimecodeType::k119_88Drop);
  EXPECT_EQ(typeFor(120), TimecodeType::k120);
}

TEST(TimecodeType, IsThatOfTheNearestRate) {
  EXPECT_EQ(typeFor(1e-300), TimecodeType::k5);
  EXPECT_EQ(typeFor(14), TimecodeType::k15);
  EXPECT_EQ(typeFor(24.4), TimecodeType::k24);
  EXPECT_EQ(typeFor(24.6), TimecodeType::k25);
  EXPECT_EQ(typeFor(38.9), TimecodeType::k30);
  EXPECT_EQ(typeFor(45), TimecodeType::k47_95);
  EXPECT_EQ(typeFor(49.1), TimecodeType::k50);
  EXPECT_EQ(typeFor(59.96), TimecodeType::k59_94Drop);
  EXPECT_EQ(typeFor(59.98), TimecodeType::k60);
  EXPECT_EQ(typeFor(240), TimecodeType::k120);
  EXPECT_EQ(typeFor(std::numeric_limits<double>::max()), TimecodeType::k120);
}

TEST(TimecodeType, IsK30ForWhatIsNoRate) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double rate :
       {0.0, -0.0, -25.0, infinity, -infinity, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_EQ(typeFor(rate), TimecodeType::k30) << rate;
}

}  // namespace
