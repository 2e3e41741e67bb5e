// SPDX-License-Identifier: BSD-2-Clause
//
// The host's commands, which set and report the overlay's settings by groups.
#include "access.h"

#include <nkdraw/constants.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr std::uint32_t kReports[] = {NKCommandReport, NKCommandReportToo};

bool has(const STREAMCMD& command, std::uint32_t bits) {
  return (command.validMask & bits) != 0;
}

/// Reports a text, cut to the room in the record.
void report(STREAMCMD& command, const char* text) {
  const std::size_t length =
      text == nullptr ? 0 : std::min(std::strlen(text), sizeof command.textValue - 1);
  if (length != 0)
    std::memcpy(command.textValue, text, length);
  command.textValue[length] = '\0';
}

}  // namespace

/// The groups that are plain numbers, and the numbers of the other groups.
struct CNkOverlay::Commands {
  using Field = Access::Field;
  struct Group {
    std::uint32_t subCommand;
    Field value1, value2, value3, smallValue, extraValue;
    std::uint32_t reported;  ///< fields that a report fills; the master group omits one
  };
  static constexpr std::uint32_t kPlace = NKMaskValue1 | NKMaskValue2 | NKMaskValue3;
  static constexpr Group kGroups[] = {
      {NKGroupMaster, &CNkOverlay::Enabled, &CNkOverlay::FillBackground, {}, {}, {}, NKMaskValue1},
      {NKGroupAudio,
       &CNkOverlay::AudioEnable,
       &CNkOverlay::AudioX,
       &CNkOverlay::AudioY,
       {},
       &CNkOverlay::AudioChannels,
       kPlace | NKMaskExtraValue},
      {NKGroupVChip, &CNkOverlay::VChipEnable, {}, {}, {}, {}, NKMaskValue1},
      {NKGroupCaptions,
       &CNkOverlay::CaptionsEnable,
       &CNkOverlay::CaptionSource,
       {},
       {},
       {},
       NKMaskValue1 | NKMaskValue2},
      {NKGroupTimecode,
       {},
       &CNkOverlay::TimeCodeX,
       &CNkOverlay::TimeCodeY,
       &CNkOverlay::TimeCodeSize,
       {},
       NKMaskSmallValue | kPlace},
      {NKGroupWatermark,
       &CNkOverlay::WatermarkEnable,
       &CNkOverlay::WatermarkX,
       &CNkOverlay::WatermarkY,
       &CNkOverlay::WatermarkOpacity,
       {},
       NKMaskSmallValue | kPlace | NKMaskText},
      {NKGroupSourceFormat,
       &CNkOverlay::SourceFormatEnable,
       &CNkOverlay::SourceFormatX,
       &CNkOverlay::SourceFormatY,
       {},
       {},
       kPlace},
  };

  CNkOverlay& overlay;
  STREAMCMD& command;

  void setGroup(const Group& group) const {
    const auto take = [&](std::uint32_t bit, Field field, std::uint32_t value) {
      if (field && has(command, bit))
        field.set(overlay, value);
    };
    take(NKMaskSmallValue, group.smallValue, static_cast<std::uint8_t>(command.smallValue));
    take(NKMaskExtraValue, group.extraValue, command.extraValue);
    take(NKMaskValue1, group.value1, command.value1);
    take(NKMaskValue2, group.value2, command.value2);
    take(NKMaskValue3, group.value3, command.value3);
    if (group.subCommand == NKGroupTimecode && has(command, NKMaskValue1))
      setTimecodeRows();
  }

  void reportGroup(const Group& group) const {
    const auto give = [&](std::uint32_t bit, Field field, auto& value) {
      if (field && (group.reported & bit) != 0)
        value = static_cast<std::remove_reference_t<decltype(value)>>(field.get(overlay));
    };
    give(NKMaskSmallValue, group.smallValue, command.smallValue);
    give(NKMaskExtraValue, group.extraValue, command.extraValue);
    give(NKMaskValue1, group.value1, command.value1);
    give(NKMaskValue2, group.value2, command.value2);
    give(NKMaskValue3, group.value3, command.value3);
    if (group.subCommand == NKGroupTimecode)
      reportTimecode();
    if (group.subCommand == NKGroupWatermark)
      report(command, overlay.watermarkPath);
    command.validMask |= group.reported;
  }

  void setTimecodeRows() const {
    overlay.TimeCodeLTCEnable = command.value1 & NKRowLtc;
    overlay.TimeCodeVITCEnable = (command.value1 & NKRowVitc) / NKRowVitc;
    overlay.TimeCodeVsyncEnable = (command.value1 & NKRowClock) / NKRowClock;
  }

  /// Deliberate: callers rely on getting one row. Reports the first one that is on, even if others
  /// are on too.
  void reportTimecode() const {
    command.value1 = overlay.TimeCodeLTCEnable != 0     ? NKRowLtc
                     : overlay.TimeCodeVITCEnable != 0  ? NKRowVitc
                     : overlay.TimeCodeVsyncEnable != 0 ? NKRowClock
                                                        : NKRowNone;
    command.smallValue =
        static_cast<std::int32_t>(overlay.timeCodeType << 8 | overlay.TimeCodeSize);
  }

  /// Deliberate: callers rely on it. Whether the command names a slot depends on value1, although
  /// the slot itself is in smallValue. A slot that doesn't exist is ignored.
  void setCustomText() const {
    const bool named = has(command, NKMaskSmallValue) && command.value1 < kCustomTexts;
    const std::int32_t slot = named ? command.smallValue : 0;
    if (slot < 0 || slot >= kCustomTexts)
      return;
    if (has(command, NKMaskValue1))
      overlay.CustomTextEnabled[slot] = command.value1;
    if (has(command, NKMaskValue2))
      overlay.CustomTextX[slot] = static_cast<std::int32_t>(command.value2);
    if (has(command, NKMaskValue3))
      overlay.CustomTextY[slot] = static_cast<std::int32_t>(command.value3);
    if (has(command, NKMaskText))
      Access::setText(overlay, slot, command.textValue,
                      strnlen(command.textValue, sizeof command.textValue));
  }

  void reportCustomText() const {
    const bool named = has(command, NKMaskValue1) && command.value1 < kCustomTexts;
    const std::uint32_t slot = named ? command.value1 : 0;
    command.value1 = overlay.CustomTextEnabled[slot];
    command.value2 = static_cast<std::uint32_t>(overlay.CustomTextX[slot]);
    command.value3 = static_cast<std::uint32_t>(overlay.CustomTextY[slot]);
    report(command, overlay.CustomText[slot]);
    command.validMask |= kPlace | NKMaskText;
  }

  void reportNothing() const {
    command.value1 = 0;
    command.validMask |= NKMaskValue1;
  }
};

std::uint32_t CNkOverlay::SetMode(STREAMCMD* command) {
  if (command == nullptr)
    return 0;
  const std::uint32_t value1 = command->value1, group = command->subCommand;
  const Commands commands{*this, *command};
  const auto* const row = std::ranges::find(Commands::kGroups, group, &Commands::Group::subCommand);
  const bool plain = row != std::end(Commands::kGroups);
  if (command->commandKind == NKCommandSet) {
    if (plain)
      commands.setGroup(*row);
    else if (group == NKGroupCustomText)
      commands.setCustomText();
  } else if (std::ranges::count(kReports, command->commandKind) != 0) {
    if (plain)
      commands.reportGroup(*row);
    else if (group == NKGroupCustomText)
      commands.reportCustomText();
    else if (group >= NKGroupFirstEmpty && group <= NKGroupLastEmpty)
      commands.reportNothing();
  }
  return value1;
}
