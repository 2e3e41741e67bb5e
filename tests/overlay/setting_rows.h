// SPDX-License-Identifier: BSD-2-Clause
//
// The settings by their keys, in the order in which they are saved and loaded.
#pragma once

#include "exposed_overlay.h"

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace nkdraw::test {

enum class Kind { kNumber, kPath, kText };

struct SettingRow {
  std::string key;
  bool saved, loaded;
  std::function<void*(Overlay&)> number;  ///< where it is, 32 bits wide
  Kind kind = Kind::kNumber;
  int slot = 0;  ///< of a text

  [[nodiscard]] std::int32_t get(Overlay& o) const {
    std::int32_t value;
    std::memcpy(&value, number(o), sizeof value);
    return value;
  }
  void set(Overlay& o, std::int32_t value) const { std::memcpy(number(o), &value, sizeof value); }
};

inline const std::vector<SettingRow>& settingRows() {
  static const std::vector<SettingRow> kRows = [] {
    std::vector<SettingRow> rows = {
        {"Enabled", true, true, [](Overlay& o) { return &o.Enabled; }},
        {"FillBackground", true, true, [](Overlay& o) { return &o.FillBackground; }},
        {"AudioEnable", true, true, [](Overlay& o) { return &o.AudioEnable; }},
        {"AudioX", true, true, [](Overlay& o) { return &o.AudioX; }},
        {"AudioY", true, true, [](Overlay& o) { return &o.AudioY; }},
        {"AudioChannels", true, true, [](Overlay& o) { return &o.AudioChannels; }},
        {"VChipEnable", true, true, [](Overlay& o) { return &o.VChipEnable; }},
        {"CaptionsEnable", true, true, [](Overlay& o) { return &o.CaptionsEnable; }},
        {"CaptionSource", true, true, [](Overlay& o) { return &o.CaptionSource; }},
        {"TimeCodeLTCEnable", true, true, [](Overlay& o) { return &o.TimeCodeLTCEnable; }},
        {"TimeCodeLUBEnable", true, true, [](Overlay& o) { return &o.TimeCodeLUBEnable; }},
        {"TimeCodeVITCEnable", true, true, [](Overlay& o) { return &o.TimeCodeVITCEnable; }},
        {"TimeCodeVUBEnable", true, true, [](Overlay& o) { return &o.TimeCodeVUBEnable; }},
        {"TimeCodeVsyncEnable", false, true, [](Overlay& o) { return &o.TimeCodeVsyncEnable; }},
        {"TimeCodeLTCFrameEnable", true, true,
         [](Overlay& o) { return &o.TimeCodeLTCFrameEnable; }},
        {"TimeCodeVITCFrameEnable", true, true,
         [](Overlay& o) { return &o.TimeCodeVITCFrameEnable; }},
        {"TimeCodeX", true, true, [](Overlay& o) { return &o.TimeCodeX; }},
        {"TimeCodeY", true, true, [](Overlay& o) { return &o.TimeCodeY; }},
        {"TimeCodeSize", true, true, [](Overlay& o) { return &o.TimeCodeSize; }},
        {"WatermarkEnable", true, true, [](Overlay& o) { return &o.WatermarkEnable; }},
        {"WatermarkX", true, true, [](Overlay& o) { return &o.WatermarkX; }},
        {"WatermarkY", true, true, [](Overlay& o) { return &o.WatermarkY; }},
        {"WatermarkOpacity", true, true, [](Overlay& o) { return &o.WatermarkOpacity; }},
        {"Watermark", true, false, nullptr, Kind::kPath},
        {"SourceFormatEnable", true, true, [](Overlay& o) { return &o.SourceFormatEnable; }},
        {"SourceFormatX", true, true, [](Overlay& o) { return &o.SourceFormatX; }},
        {"SourceFormatY", true, true, [](Overlay& o) { return &o.SourceFormatY; }},
    };
    for (int slot = 0; slot < 10; ++slot) {
      const std::string n = std::to_string(slot);
      rows.push_back({"CustomTextEnabled" + n, true, true,
                      [slot](Overlay& o) { return &o.CustomTextEnabled[slot]; }});
      rows.push_back(
          {"CustomTextX" + n, true, true, [slot](Overlay& o) { return &o.CustomTextX[slot]; }});
      rows.push_back(
          {"CustomTextY" + n, true, true, [slot](Overlay& o) { return &o.CustomTextY[slot]; }});
      rows.push_back({"CustomText" + n, true, true, nullptr, Kind::kText, slot});
    }
    return rows;
  }();
  return kRows;
}

/// Numbers that all differ, some of them negative, none of them 0.
inline void setNumbersApart(Overlay& o) {
  std::int32_t next = -30;
  for (const SettingRow& row : settingRows()) {
    if (row.kind == Kind::kNumber)
      row.set(o, next += next == -1 ? 2 : 1);
  }
}

[[nodiscard]] inline std::vector<std::int32_t> numbersOf(Overlay& o) {
  std::vector<std::int32_t> numbers;
  for (const SettingRow& row : settingRows()) {
    if (row.kind == Kind::kNumber)
      numbers.push_back(row.get(o));
  }
  return numbers;
}

}  // namespace nkdraw::test
