// SPDX-License-Identifier: BSD-2-Clause
//
// Options under one heading in a sub-command's help.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace nkdraw::tool {

class OptionGroup {
 public:
  /// Without a heading they are listed under the help's default one.
  explicit OptionGroup(CLI::App& command, const char* heading = nullptr)
      : command_(command), heading_(heading) {}

  /// Adds an option whose value, shown as `type` in the help, is stored in `value`. `value` and the
  /// result are as in CLI11; both must outlive the command line.
  template <class Value>
  CLI::Option& add(const char* name, Value& value, const char* type, const char* meaning) const {
    return placed(*command_.add_option(name, value, meaning)->type_name(type));
  }
  /// Adds a name that an option had in the version before: it works, but the help doesn't list it.
  template <class Value>
  void addOldName(const char* name, Value& value) const {
    command_.add_option(name, value)->group("");
  }
  void addFlag(const char* name, bool& value, const char* meaning) const {
    placed(*command_.add_flag(name, value, meaning));
  }

 private:
  CLI::Option& placed(CLI::Option& option) const {
    return heading_ != nullptr ? *option.group(heading_) : option;
  }

  CLI::App& command_;
  const char* heading_;
};

}  // namespace nkdraw::tool
