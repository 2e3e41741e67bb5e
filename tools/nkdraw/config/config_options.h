// SPDX-License-Identifier: BSD-2-Clause
//
// The command line of `nkdraw config`.
#pragma once

#include "config/setting_table.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

struct ConfigOptions {
  const struct ConfigAction* action = nullptr;
  const Setting* setting = nullptr;  // for actions that take one
  std::string value;
  bool verbose = false;
};

/// What `nkdraw config` can do, by name.
struct ConfigAction {
  const char* name;
  bool takesKey, takesValue;
  void (*run)(const ConfigOptions& options);
};

/// The options on the command line.
class ConfigArguments {
 public:
  /// Adds them to the command line of a sub-command, which they must outlive.
  void addTo(CLI::App& command);

  /// The request that they make. Throws Failure for impossible values.
  [[nodiscard]] ConfigOptions read() const;

 private:
  std::optional<std::string> action_, key_, value_;
  bool verbose_ = false;
};

/// The action with this name; null if there is none.
[[nodiscard]] const ConfigAction* configActionNamed(const std::string& name);

}  // namespace nkdraw::tool
