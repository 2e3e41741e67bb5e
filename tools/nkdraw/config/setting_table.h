// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay's settings by their keys in the configuration store.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace nkdraw::tool {

struct Setting {
  std::string key;
  std::string meaning;
  int least = 0, most = 0;  // both 0: a text
  std::string standard;     // the library's default

  [[nodiscard]] bool isText() const { return least == most; }
  /// "0 to 20", or what a text may be
  [[nodiscard]] std::string range() const;
};

/// All of them, in the order in which the library saves them.
[[nodiscard]] const std::vector<Setting>& settingTable();

/// The setting with exactly this key. Throws Failure, which names the nearest key.
[[nodiscard]] const Setting& settingNamed(const std::string& key);

/// `value` in the form of the store. Throws Failure, which names the range.
[[nodiscard]] std::string checkedValue(const Setting& setting, const std::string& value);

}  // namespace nkdraw::tool
