// SPDX-License-Identifier: BSD-2-Clause
#include "config/setting_table.h"

#include "burnin/overlay_plan.h"
#include "cli/option_values.h"
#include "media/failure.h"

#include <nkdraw/overlay/overlay.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

namespace nkdraw::tool {
namespace {

constexpr std::size_t kLongestStored = 127;
constexpr int kFarthest = 16384;  // pixels

struct Row {
  std::string_view key, meaning;
  int least, most;
};
constexpr Row kRows[] = {
    {"Enabled", "whether a host shows the overlay; burnin always does", 0, 1},
    {"FillBackground", "a black box behind texts", 0, 1},
    {"AudioEnable", "level meters", 0, 1},
    {"AudioX", "their left edge", 0, kFarthest},
    {"AudioY", "their upper edge", 0, kFarthest},
    {"AudioChannels", "kept; the meters are always eight", 1, 8},
    {"VChipEnable", "kept, not read", 0, 1},
    {"CaptionsEnable", "captions: 1 with boxes, 2 without", 0, 2},
    {"CaptionSource", "1 to 4: CC1 to CC4; 5 to 8: T1 to T4; 0: CC1", 0, 8},
    {"TimeCodeLTCEnable", "the row with the LTC timecode", 0, 1},
    {"TimeCodeLUBEnable", "kept, not read", 0, 1},
    {"TimeCodeVITCEnable", "the row with the VITC timecode", 0, 1},
    {"TimeCodeVUBEnable", "kept, not read", 0, 1},
    {"TimeCodeVsyncEnable", "the row with the wall clock", 0, 1},
    {"TimeCodeLTCFrameEnable", "kept, not read", 0, 1},
    {"TimeCodeVITCFrameEnable", "kept, not read", 0, 1},
    {"TimeCodeX", "left edge of the timecode rows", 0, kFarthest},
    {"TimeCodeY", "their upper edge", 0, kFarthest},
    {"TimeCodeSize", "their magnification", 1, 20},
    {"WatermarkEnable", "the watermark", 0, 1},
    {"WatermarkX", "its left edge", -kFarthest, kFarthest},
    {"WatermarkY", "its upper edge", -kFarthest, kFarthest},
    {"WatermarkOpacity", "kept, not read", 0, 100},
    {"Watermark", "the picture's path; kept, and never loaded", 0, 0},
    {"SourceFormatEnable", "the line with the source's format", 0, 1},
    {"SourceFormatX", "its left edge", 0, kFarthest},
    {"SourceFormatY", "its upper edge", 0, kFarthest},
};
/// Each stands for ten settings; the slot's number follows the key.
constexpr Row kSlotRows[] = {
    {"CustomTextEnabled", "text ", 0, 1},
    {"CustomTextX", "left edge of text ", 0, kFarthest},
    {"CustomTextY", "upper edge of text ", 0, kFarthest},
    {"CustomText", "the words of text ", 0, 0},
};

/// Asks the library what it would save.
class Defaults : private CNkOverlay {
 public:
  Defaults() { SaveConfig(); }
  [[nodiscard]] std::string of(const Setting& setting) const {
    const auto found = values_.find(setting.key);
    return found != values_.end() ? found->second : setting.isText() ? "" : "0";
  }

 private:
  std::uint32_t SaveSetting(const char* key, std::uint32_t value) override {
    values_[key] = std::to_string(static_cast<std::int32_t>(value));
    return 0;
  }
  std::uint32_t SaveSetting(const char* key, const char* value) override {
    values_[key] = value != nullptr ? value : "";
    return 0;
  }

  std::map<std::string, std::string> values_;
};

std::vector<Setting> makeTable() {
  const Defaults defaults;
  std::vector<Setting> table;
  const auto add = [&](const Row& row, const std::string& slot) {
    Setting setting = {std::string(row.key).append(slot), std::string(row.meaning).append(slot),
                       row.least, row.most, ""};
    setting.standard = defaults.of(setting);
    table.push_back(setting);
  };
  for (const Row& row : kRows)
    add(row, "");
  for (std::size_t slot = 0; slot < kMostTexts; ++slot) {
    for (const Row& row : kSlotRows)
      add(row, std::to_string(slot));
  }
  return table;
}

bool isPrintable(unsigned char letter) {
  return letter >= ' ' && letter <= '~';
}

}  // namespace

std::string Setting::range() const {
  return isText() ? "at most 127 printable ASCII characters"
                  : std::to_string(least).append(" to ").append(std::to_string(most));
}

const std::vector<Setting>& settingTable() {
  static const std::vector<Setting> table = makeTable();
  return table;
}

const Setting& settingNamed(const std::string& key) {
  const std::vector<Setting>& table = settingTable();
  if (const auto found = std::ranges::find(table, key, &Setting::key); found != table.end())
    return *found;
  const auto nearest = nearestName(table, key, &Setting::key);
  throw Failure(ExitCode::kUsage, "no such setting", key.empty() ? "(empty)" : key,
                "the nearest is " + nearest->key + "; see nkdraw config list");
}

std::string checkedValue(const Setting& setting, const std::string& value) {
  const auto refuse = [&]() {
    badValue(setting.key, value.substr(0, kLongestStored), "give " + setting.range());
  };
  if (setting.isText()) {
    if (value.size() > kLongestStored || !std::ranges::all_of(value, isPrintable))
      refuse();
    return value;
  }
  const auto number = wholeNumber<std::int64_t>(value);
  if (!number || *number < setting.least || *number > setting.most)
    refuse();
  return std::to_string(*number);
}

}  // namespace nkdraw::tool
