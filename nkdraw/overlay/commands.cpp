// SPDX-License-Identifier: BSD-2-Clause
//
// The host's commands, which set and report the overlay's settings by groups.
#include "access.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr std::uint32_t kSet = 15;
constexpr std::uint32_t kReports[] = {14, 16};

// Which fields of a command count.
constexpr std::uint32_t kSmallValue = 0x10;
constexpr std::uint32_t kExtraValue = 0x20;
constexpr std::uint32_t kValue1 = 0x40;
constexpr std::uint32_t kValue2 = 0x100;
constexpr std::uint32_t kValue3 = 0x400;
constexpr std::uint32_t kTextValue = 0x2000;

constexpr std::uint32_t kTimecode = 111004;
constexpr std::uint32_t kWatermark = 111005;
constexpr std::uint32_t kCustomText = 111007;
constexpr std::uint32_t kFirstEmpty = 111008, kLastEmpty = 111010;

// What the timecode's first value names: flags of a set, the answer of a report.
constexpr std::uint32_t kLtc = 1, kVitc = 2, kVsync = 16;

bool has(const STREAMCMD& command, std::uint32_t bits) {
  return (command.validMask & bits) != 0;
}

/// Reports a text, cut at the record's room.
void report(STREAMCMD& command, const char* text) {
  const std::size_t length =
      text == nullptr ? 0 : std::min(std::strlen(text), sizeof command.textValue - 1);
  if (length != 0)
    std::memcpy(command.textValue, text, length);
  command.textValue[length] = '\0';
}

}  // namespace

/// The groups of plain numbers, and what the other groups have of these.
struct CNkOverlay::Commands {
  using Field = Access::Field;
  struct Group {
    std::uint32_t subCommand;
    Field value1, value2, value3, smallValue, extraValue;
    std::uint32_t reported;  ///< fields that a report fills; the master group keeps one back
  };
  static constexpr Group kGroups[] = {
      {111000, &CNkOverlay::Enabled, &CNkOverlay::FillBackground, {}, {}, {}, 0x40},
      {111001,
       &CNkOverlay::AudioEnable,
       &CNkOverlay::AudioX,
       &CNkOverlay::AudioY,
       {},
       &CNkOverlay::AudioChannels,
       0x560},
      {111002, &CNkOverlay::VChipEnable, {}, {}, {}, {}, 0x40},
      {111003, &CNkOverlay::CaptionsEnable, &CNkOverlay::CaptionSource, {}, {}, {}, 0x140},
      {kTimecode,
       {},
       &CNkOverlay::TimeCodeX,
       &CNkOverlay::TimeCodeY,
       &CNkOverlay::TimeCodeSize,
       {},
       0x550},
      {kWatermark,
       &CNkOverlay::WatermarkEnable,
       &CNkOverlay::WatermarkX,
       &CNkOverlay::WatermarkY,
       &CNkOverlay::WatermarkOpacity,
       {},
       0x2550},
      {111006,
       &CNkOverlay::SourceFormatEnable,
       &CNkOverlay::SourceFormatX,
       &CNkOverlay::SourceFormatY,
       {},
       {},
       0x540},
  };

  CNkOverlay& overlay;
  STREAMCMD& command;

  void setGroup(const Group& group) const {
    const auto take = [&](std::uint32_t bit, Field field, std::uint32_t value) {
      if (field && has(command, bit))
        field.set(overlay, value);
    };
    take(kSmallValue, group.smallValue, static_cast<std::uint8_t>(command.smallValue));
    take(kExtraValue, group.extraValue, command.extraValue);
    take(kValue1, group.value1, command.value1);
    take(kValue2, group.value2, command.value2);
    take(kValue3, group.value3, command.value3);
    if (group.subCommand == kTimecode && has(command, kValue1))
      setTimecodeRows();
  }

  void reportGroup(const Group& group) const {
    const auto give = [&](std::uint32_t bit, Field field, auto& value) {
      if (field && (group.reported & bit) != 0)
        value = static_cast<std::remove_reference_t<decltype(value)>>(field.get(overlay));
    };
    give(kSmallValue, group.smallValue, command.smallValue);
    give(kExtraValue, group.extraValue, command.extraValue);
    give(kValue1, group.value1, command.value1);
    give(kValue2, group.value2, command.value2);
    give(kValue3, group.value3, command.value3);
    if (group.subCommand == kTimecode)
      reportTimecode();
    if (group.subCommand == kWatermark)
      report(command, overlay.watermarkPath);
    command.validMask |= group.reported;
  }

  void setTimecodeRows() const {
    overlay.TimeCodeLTCEnable = command.value1 & kLtc;
    overlay.TimeCodeVITCEnable = (command.value1 & kVitc) / kVitc;
    overlay.TimeCodeVsyncEnable = (command.value1 & kVsync) / kVsync;
  }

  /// Names the first row that is on, not all of them; that is meant.
  void reportTimecode() const {
    command.value1 = overlay.TimeCodeLTCEnable != 0     ? kLtc
                     : overlay.TimeCodeVITCEnable != 0  ? kVitc
                     : overlay.TimeCodeVsyncEnable != 0 ? kVsync
                                                        : 0;
    command.smallValue =
        static_cast<std::int32_t>(overlay.timeCodeType << 8 | overlay.TimeCodeSize);
  }

  /// Whether the slot is named is told by the first value, which the slot has no part in; that is
  /// meant. A slot that isn't there is passed over.
  void setCustomText() const {
    const bool named = has(command, kSmallValue) && command.value1 < kCustomTexts;
    const std::int32_t slot = named ? command.smallValue : 0;
    if (slot < 0 || slot >= kCustomTexts)
      return;
    if (has(command, kValue1))
      overlay.CustomTextEnabled[slot] = command.value1;
    if (has(command, kValue2))
      overlay.CustomTextX[slot] = static_cast<std::int32_t>(command.value2);
    if (has(command, kValue3))
      overlay.CustomTextY[slot] = static_cast<std::int32_t>(command.value3);
    if (has(command, kTextValue))
      Access::setText(overlay, slot, command.textValue,
                      strnlen(command.textValue, sizeof command.textValue));
  }

  void reportCustomText() const {
    const bool named = has(command, kValue1) && command.value1 < kCustomTexts;
    const std::uint32_t slot = named ? command.value1 : 0;
    command.value1 = overlay.CustomTextEnabled[slot];
    command.value2 = static_cast<std::uint32_t>(overlay.CustomTextX[slot]);
    command.value3 = static_cast<std::uint32_t>(overlay.CustomTextY[slot]);
    report(command, overlay.CustomText[slot]);
    command.validMask |= kValue1 | kValue2 | kValue3 | kTextValue;
  }

  void reportNothing() const {
    command.value1 = 0;
    command.validMask |= kValue1;
  }
};

std::uint32_t CNkOverlay::SetMode(STREAMCMD* command) {
  if (command == nullptr)
    return 0;
  const std::uint32_t value1 = command->value1, group = command->subCommand;
  const Commands commands{*this, *command};
  const auto* const row = std::ranges::find(Commands::kGroups, group, &Commands::Group::subCommand);
  const bool plain = row != std::end(Commands::kGroups);
  if (command->commandKind == kSet) {
    if (plain)
      commands.setGroup(*row);
    else if (group == kCustomText)
      commands.setCustomText();
  } else if (std::ranges::count(kReports, command->commandKind) != 0) {
    if (plain)
      commands.reportGroup(*row);
    else if (group == kCustomText)
      commands.reportCustomText();
    else if (group >= kFirstEmpty && group <= kLastEmpty)
      commands.reportNothing();
  }
  return value1;
}
