// SPDX-License-Identifier: BSD-2-Clause
//
// The host's commands.
#include "exposed_overlay.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace nkdraw::test;

constexpr std::uint32_t kSet = 15;
constexpr std::uint32_t kSmall = 0x10, kExtra = 0x20, kValue1 = 0x40, kValue2 = 0x100,
                        kValue3 = 0x400, kText = 0x2000;
constexpr std::uint32_t kAll = kSmall | kExtra | kValue1 | kValue2 | kValue3 | kText;

STREAMCMD commandOf(std::uint32_t kind, std::uint32_t group, std::uint32_t mask) {
  STREAMCMD command{};
  command.commandKind = kind;
  command.subCommand = group;
  command.validMask = mask;
  command.smallValue = 0x1A7;
  command.extraValue = 600;
  command.value1 = 3;
  command.value2 = 0xFFFFFFF0;
  command.value3 = 77;
  std::strcpy(command.textValue, "on air");
  return command;
}

/// Every number among the settings, in one line.
std::vector<std::uint32_t> numbersOf(const Overlay& o) {
  const auto number = [](auto value) { return static_cast<std::uint32_t>(value); };
  std::vector<std::uint32_t> numbers = {o.Enabled,
                                        o.FillBackground,
                                        o.AudioEnable,
                                        number(o.AudioX),
                                        number(o.AudioY),
                                        o.AudioChannels,
                                        o.VChipEnable,
                                        o.CaptionsEnable,
                                        o.CaptionSource,
                                        o.TimeCodeLTCEnable,
                                        o.TimeCodeLUBEnable,
                                        o.TimeCodeVITCEnable,
                                        o.TimeCodeVUBEnable,
                                        o.TimeCodeVsyncEnable,
                                        o.TimeCodeLTCFrameEnable,
                                        o.TimeCodeVITCFrameEnable,
                                        o.timeCodeType,
                                        number(o.TimeCodeX),
                                        number(o.TimeCodeY),
                                        o.TimeCodeSize,
                                        o.WatermarkEnable,
                                        number(o.WatermarkX),
                                        number(o.WatermarkY),
                                        o.WatermarkOpacity,
                                        o.SourceFormatEnable,
                                        number(o.SourceFormatX),
                                        number(o.SourceFormatY)};
  for (int slot = 0; slot < 10; ++slot) {
    numbers.push_back(o.CustomTextEnabled[slot]);
    numbers.push_back(number(o.CustomTextX[slot]));
    numbers.push_back(number(o.CustomTextY[slot]));
  }
  return numbers;
}

/// What a set of one field, or of the fields `mask`, changes.
struct SetRow {
  std::uint32_t group, mask;
  std::function<void(Overlay&)> change;
};

const std::vector<SetRow>& setRows() {
  static const std::vector<SetRow> rows = {
      {111000, kValue1, [](Overlay& o) { o.Enabled = 3; }},
      {111000, kValue2, [](Overlay& o) { o.FillBackground = 0xFFFFFFF0; }},
      {111000, kValue3 | kSmall | kExtra | kText, [](Overlay&) {}},
      {111001, kValue1, [](Overlay& o) { o.AudioEnable = 3; }},
      {111001, kValue2, [](Overlay& o) { o.AudioX = -16; }},
      {111001, kValue3, [](Overlay& o) { o.AudioY = 77; }},
      {111001, kExtra, [](Overlay& o) { o.AudioChannels = 600; }},
      {111001, kSmall | kText, [](Overlay&) {}},
      {111002, kValue1, [](Overlay& o) { o.VChipEnable = 3; }},
      {111002, kAll & ~kValue1, [](Overlay&) {}},
      {111003, kValue1, [](Overlay& o) { o.CaptionsEnable = 3; }},
      {111003, kValue2, [](Overlay& o) { o.CaptionSource = 0xFFFFFFF0; }},
      {111003, kValue3 | kSmall | kExtra | kText, [](Overlay&) {}},
      {111004, kValue1,
       [](Overlay& o) {
         o.TimeCodeLTCEnable = 1;
         o.TimeCodeVITCEnable = 1;
         o.TimeCodeVsyncEnable = 0;
       }},
      {111004, kValue2, [](Overlay& o) { o.TimeCodeX = -16; }},
      {111004, kValue3, [](Overlay& o) { o.TimeCodeY = 77; }},
      {111004, kSmall, [](Overlay& o) { o.TimeCodeSize = 0xA7; }},
      {111005, kValue1, [](Overlay& o) { o.WatermarkEnable = 3; }},
      {111005, kValue2, [](Overlay& o) { o.WatermarkX = -16; }},
      {111005, kValue3, [](Overlay& o) { o.WatermarkY = 77; }},
      {111005, kSmall, [](Overlay& o) { o.WatermarkOpacity = 0xA7; }},
      {111005, kExtra | kText, [](Overlay&) {}},
      {111006, kValue1, [](Overlay& o) { o.SourceFormatEnable = 3; }},
      {111006, kValue2, [](Overlay& o) { o.SourceFormatX = -16; }},
      {111006, kValue3, [](Overlay& o) { o.SourceFormatY = 77; }},
      {111006, kSmall | kExtra | kText, [](Overlay&) {}},
      {111007, kValue1, [](Overlay& o) { o.CustomTextEnabled[0] = 3; }},
      {111007, kValue2, [](Overlay& o) { o.CustomTextX[0] = -16; }},
      {111007, kValue3, [](Overlay& o) { o.CustomTextY[0] = 77; }},
      {111008, kAll, [](Overlay&) {}},
      {111010, kAll, [](Overlay&) {}},
      {110999, kAll, [](Overlay&) {}},
      {0, kAll, [](Overlay&) {}},
  };
  return rows;
}

TEST(OverlaySet, ChangesTheFieldsThatTheMaskNamesAndNoOthers) {
  for (const SetRow& row : setRows()) {
    Overlay got, wanted;
    STREAMCMD command = commandOf(kSet, row.group, row.mask);
    const STREAMCMD before = command;
    EXPECT_EQ(got.SetMode(&command), 3U);
    row.change(wanted);
    EXPECT_EQ(numbersOf(got), numbersOf(wanted)) << row.group << " mask " << row.mask;
    EXPECT_EQ(std::memcmp(&command, &before, sizeof command), 0) << row.group;
  }
}

TEST(OverlaySet, WithoutAMaskChangesNothingAndReturnsTheFirstValue) {
  for (std::uint32_t group = 111000; group <= 111010; ++group) {
    Overlay o;
    STREAMCMD command = commandOf(kSet, group, 0);
    EXPECT_EQ(o.SetMode(&command), 3U);
    EXPECT_EQ(numbersOf(o), numbersOf(Overlay())) << group;
  }
}

TEST(OverlayCommand, OfAnotherKindIsPassedOver) {
  for (const std::uint32_t kind : {0U, 13U, 17U, 0xFFFFFFFFU}) {
    Overlay o;
    STREAMCMD command = commandOf(kind, 111000, kAll);
    const STREAMCMD before = command;
    EXPECT_EQ(o.SetMode(&command), 3U);
    EXPECT_EQ(numbersOf(o), numbersOf(Overlay()));
    EXPECT_EQ(std::memcmp(&command, &before, sizeof command), 0);
  }
}

TEST(OverlayCommand, MayBeNull) {
  Overlay o;
  EXPECT_EQ(o.SetMode(nullptr), 0U);
}

TEST(OverlaySet, OfTheTimecodeTakesThreeFlagsAndWritesAllRows) {
  for (std::uint32_t flags = 0; flags < 64; ++flags) {
    Overlay o;
    o.TimeCodeLTCEnable = o.TimeCodeVITCEnable = o.TimeCodeVsyncEnable = 9;
    STREAMCMD command = commandOf(kSet, 111004, kValue1);
    command.value1 = flags;
    o.SetMode(&command);
    EXPECT_EQ(o.TimeCodeLTCEnable, flags & 1);
    EXPECT_EQ(o.TimeCodeVITCEnable, flags >> 1 & 1);
    EXPECT_EQ(o.TimeCodeVsyncEnable, flags >> 4 & 1);
    EXPECT_EQ(o.TimeCodeX, 20);
    EXPECT_EQ(o.TimeCodeY, 300);
    EXPECT_EQ(o.TimeCodeSize, 2U);
  }
}

TEST(OverlaySet, OfATextTakesItsSlotFromTheSmallValueWhileTheFirstValueIsBelowTen) {
  struct Row {
    std::uint32_t mask, value1;
    int slot;
  };
  for (const Row row : {Row{kSmall, 0, 7}, {kSmall, 9, 7}, {kSmall, 10, 0}, {0, 9, 0}}) {
    Overlay o;
    STREAMCMD command = commandOf(kSet, 111007, row.mask | kValue1 | kValue2 | kText);
    command.smallValue = 7;
    command.value1 = row.value1;
    EXPECT_EQ(o.SetMode(&command), row.value1);
    for (int slot = 0; slot < 10; ++slot) {
      const bool meant = slot == row.slot;
      EXPECT_EQ(o.CustomTextEnabled[slot], meant ? row.value1 : 0U);
      EXPECT_EQ(o.CustomTextX[slot], meant ? -16 : 500);
      EXPECT_EQ(o.CustomText[slot] != nullptr, meant);
      if (meant) {
        EXPECT_STREQ(o.CustomText[slot], "on air");
      }
    }
  }
}

TEST(OverlaySet, OfATextThatHasNoSlotIsPassedOver) {
  for (const std::int32_t slot : {10, 1000, -1, -2147483647}) {
    Overlay o;
    STREAMCMD command = commandOf(kSet, 111007, kAll);
    command.smallValue = slot;
    EXPECT_EQ(o.SetMode(&command), 3U);
    EXPECT_EQ(numbersOf(o), numbersOf(Overlay()));
  }
}

TEST(OverlaySet, OfATextReplacesTheOldOneAndMayBeEmptyOrUnended) {
  Overlay o;
  o.setText(0, "old");
  STREAMCMD command = commandOf(kSet, 111007, kText);
  command.textValue[0] = '\0';
  o.SetMode(&command);
  ASSERT_NE(o.CustomText[0], nullptr);
  EXPECT_STREQ(o.CustomText[0], "");
  std::memset(command.textValue, 'x', sizeof command.textValue);
  o.SetMode(&command);
  EXPECT_EQ(std::strlen(o.CustomText[0]), sizeof command.textValue);
}

TEST(OverlaySet, LeavesRoomInATextForWhatTheStoreMayWrite) {
  Overlay o;
  STREAMCMD command = commandOf(kSet, 111007, kText);
  o.SetMode(&command);
  expectRoomForStoredText(o.CustomText[0]);
}

/// Settings that all differ.
void setApart(Overlay& o) {
  std::uint32_t next = 1000;
  for (auto* const field :
       {&o.Enabled, &o.FillBackground, &o.AudioEnable, &o.AudioChannels, &o.VChipEnable,
        &o.CaptionsEnable, &o.CaptionSource, &o.TimeCodeLTCEnable, &o.TimeCodeVITCEnable,
        &o.TimeCodeVsyncEnable, &o.WatermarkEnable, &o.WatermarkOpacity, &o.SourceFormatEnable})
    *field = next++;
  for (auto* const field : {&o.AudioX, &o.AudioY, &o.TimeCodeX, &o.TimeCodeY, &o.WatermarkX,
                            &o.WatermarkY, &o.SourceFormatX, &o.SourceFormatY})
    *field = -static_cast<std::int32_t>(next++);
  for (int slot = 0; slot < 10; ++slot) {
    o.CustomTextEnabled[slot] = next++;
    o.CustomTextX[slot] = static_cast<std::int32_t>(next++);
    o.CustomTextY[slot] = static_cast<std::int32_t>(next++);
    o.setText(slot, "text " + std::to_string(slot));
    o.CustomTextEnabled[slot] = next++;
  }
}

/// What a report writes, into a record as it came.
struct ReportRow {
  std::uint32_t group, mask;
  std::function<void(const Overlay&, STREAMCMD&)> written;
};

std::uint32_t bits(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}

const std::vector<ReportRow>& reportRows() {
  static const auto nothing = [](const Overlay&, STREAMCMD& c) { c.value1 = 0; };
  static const std::vector<ReportRow> rows = {
      {111000, 0x40, [](const Overlay& o, STREAMCMD& c) { c.value1 = o.Enabled; }},
      {111001, 0x560,
       [](const Overlay& o, STREAMCMD& c) {
         c.value1 = o.AudioEnable;
         c.value2 = bits(o.AudioX);
         c.value3 = bits(o.AudioY);
         c.extraValue = o.AudioChannels;
       }},
      {111002, 0x40, [](const Overlay& o, STREAMCMD& c) { c.value1 = o.VChipEnable; }},
      {111003, 0x140,
       [](const Overlay& o, STREAMCMD& c) {
         c.value1 = o.CaptionsEnable;
         c.value2 = o.CaptionSource;
       }},
      {111004, 0x550,
       [](const Overlay& o, STREAMCMD& c) {
         c.value1 = 1;
         c.value2 = bits(o.TimeCodeX);
         c.value3 = bits(o.TimeCodeY);
         c.smallValue = 0x402;
       }},
      {111005, 0x2550,
       [](const Overlay& o, STREAMCMD& c) {
         c.value1 = o.WatermarkEnable;
         c.value2 = bits(o.WatermarkX);
         c.value3 = bits(o.WatermarkY);
         c.smallValue = static_cast<std::int32_t>(o.WatermarkOpacity);
         std::strcpy(c.textValue, "logo.png");
       }},
      {111006, 0x540,
       [](const Overlay& o, STREAMCMD& c) {
         c.value1 = o.SourceFormatEnable;
         c.value2 = bits(o.SourceFormatX);
         c.value3 = bits(o.SourceFormatY);
       }},
      {111008, 0x40, nothing},
      {111009, 0x40, nothing},
      {111010, 0x40, nothing},
  };
  return rows;
}

TEST(OverlayReport, WritesItsGroupAndAddsItsBitsToTheMask) {
  Overlay o;
  setApart(o);
  o.SetWatermarkPath("logo.png");
  const auto before = numbersOf(o);
  for (const std::uint32_t kind : {14U, 16U}) {
    for (const std::uint32_t mask : {0U, 0x80000001U, kAll}) {
      for (const ReportRow& row : reportRows()) {
        STREAMCMD got = commandOf(kind, row.group, mask), wanted = got;
        EXPECT_EQ(o.SetMode(&got), 3U);
        row.written(o, wanted);
        wanted.validMask = mask | row.mask;
        EXPECT_EQ(got.value1, wanted.value1) << row.group;
        EXPECT_EQ(got.value2, wanted.value2) << row.group;
        EXPECT_EQ(got.value3, wanted.value3) << row.group;
        EXPECT_EQ(got.smallValue, wanted.smallValue) << row.group;
        EXPECT_EQ(got.extraValue, wanted.extraValue) << row.group;
        EXPECT_EQ(got.validMask, wanted.validMask) << row.group;
        EXPECT_STREQ(got.textValue, wanted.textValue) << row.group;
      }
    }
  }
  EXPECT_EQ(numbersOf(o), before);
}

TEST(OverlayReport, OfAnUnknownGroupWritesNothing) {
  for (const std::uint32_t group : {110999U, 111011U, 0U}) {
    Overlay o;
    STREAMCMD command = commandOf(14, group, 1);
    const STREAMCMD before = command;
    EXPECT_EQ(o.SetMode(&command), 3U);
    EXPECT_EQ(std::memcmp(&command, &before, sizeof command), 0);
  }
}

TEST(OverlayReport, OfTheTimecodeNamesTheFirstRowThatIsOn) {
  for (unsigned on = 0; on < 8; ++on) {
    Overlay o;
    o.TimeCodeLTCEnable = on & 1 ? 5 : 0;
    o.TimeCodeVITCEnable = on & 2 ? 6 : 0;
    o.TimeCodeVsyncEnable = on & 4 ? 7 : 0;
    STREAMCMD command = commandOf(14, 111004, 0);
    o.SetMode(&command);
    EXPECT_EQ(command.value1, on & 1 ? 1U : on & 2 ? 2U : on & 4 ? 16U : 0U);
  }
}

TEST(OverlayReport, OfTheTimecodeSetBackSwitchesTheOtherRowsOff) {
  Overlay o;
  o.TimeCodeLTCEnable = o.TimeCodeVITCEnable = 1;
  STREAMCMD command = commandOf(14, 111004, 0);
  o.SetMode(&command);
  command.commandKind = kSet;
  o.SetMode(&command);
  EXPECT_EQ(o.TimeCodeLTCEnable, 1U);
  EXPECT_EQ(o.TimeCodeVITCEnable, 0U);
}

TEST(OverlayReport, OfTheTimecodeJoinsTypeAndSizeBitByBit) {
  Overlay o;
  o.timeCodeType = 0x1FF;
  o.TimeCodeSize = 0x123;
  STREAMCMD command = commandOf(14, 111004, 0);
  o.SetMode(&command);
  EXPECT_EQ(command.smallValue, 0x1FF00 | 0x123);
}

TEST(OverlayReport, OfATextTakesItsSlotFromTheFirstValueWhenTheMaskHasIt) {
  Overlay o;
  setApart(o);
  struct Row {
    std::uint32_t mask, value1;
    int slot;
  };
  for (const Row row : {Row{kValue1, 9, 9}, {kValue1, 10, 0}, {0, 9, 0}, {kSmall, 4, 0}}) {
    STREAMCMD command = commandOf(16, 111007, row.mask);
    command.value1 = row.value1;
    EXPECT_EQ(o.SetMode(&command), row.value1);
    EXPECT_EQ(command.value1, o.CustomTextEnabled[row.slot]);
    EXPECT_EQ(command.value2, bits(o.CustomTextX[row.slot]));
    EXPECT_EQ(command.value3, bits(o.CustomTextY[row.slot]));
    EXPECT_STREQ(command.textValue, o.CustomText[row.slot]);
    EXPECT_EQ(command.validMask, row.mask | 0x2540);
  }
}

TEST(OverlayReport, OfAMissingTextIsEmptyAndOfALongPathCut) {
  Overlay o;
  STREAMCMD command = commandOf(14, 111007, 0);
  o.SetMode(&command);
  EXPECT_STREQ(command.textValue, "");
  const std::string path(5000, 'p');
  o.SetWatermarkPath(path.c_str());
  command = commandOf(14, 111005, 0);
  o.SetMode(&command);
  EXPECT_EQ(std::strlen(command.textValue), sizeof command.textValue - 1);
}

TEST(OverlayAppName, IsDropped) {
  Overlay o;
  EXPECT_EQ(o.SetAppName("player"), 0U);
  EXPECT_EQ(o.SetAppName(nullptr), 0U);
}

}  // namespace
