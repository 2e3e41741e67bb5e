// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay's settings in the host's configuration store.
#pragma once

#include "cli/library_log.h"
#include "config/setting_table.h"

#include <string>

namespace nkdraw::tool {

/// Hides the library's log during its lifetime. All calls throw Failure if the store can't be used.
class ConfigStore {
 public:
  /// The file of the store, which need not exist.
  [[nodiscard]] static std::string path();

  /// What the library would load: the default if there is no store, and 0 for a number missing from
  /// the store.
  [[nodiscard]] std::string read(const Setting& setting);

  /// Writes one value durably; in a new store all other settings get their defaults.
  void write(const Setting& setting, const std::string& value);
  /// Writes the default of every setting durably. Without a store there is nothing to write.
  void reset();

 private:
  void putDefaults();
  void save();
  [[nodiscard]] bool exists();
  void put(const Setting& setting, const std::string& value);

  LibraryLog log_;
};

}  // namespace nkdraw::tool
