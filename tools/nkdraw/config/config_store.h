// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay's settings in the host's configuration store.
#pragma once

#include "cli/library_log.h"
#include "config/setting_table.h"

#include <string>

namespace nkdraw::tool {

/// Keeps the library's log to itself while it lives. All calls throw Failure when the store can't
/// be used.
class ConfigStore {
 public:
  /// The file of the store, which need not be there.
  [[nodiscard]] static std::string path();

  /// What the library would load: the default while there is no store, and 0 for a number that one
  /// does not have.
  [[nodiscard]] std::string read(const Setting& setting);

  /// Writes one value durably; a new store gets all others' defaults with it.
  void write(const Setting& setting, const std::string& value);

 private:
  [[nodiscard]] bool exists();
  void put(const Setting& setting, const std::string& value);

  LibraryLog log_;
};

}  // namespace nkdraw::tool
