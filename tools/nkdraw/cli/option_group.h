// SPDX-License-Identifier: BSD-2-Clause
//
// Options under one heading in a sub-command's help. The parser stays behind this header: its own
// takes longer to compile than most of the command.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace nkdraw::tool {

class OptionGroup {
 public:
  /// Without a heading they are listed under the help's default one.
  explicit OptionGroup(CLI::App& command, const char* heading = nullptr)
      : command_(command), heading_(heading) {}

  /// Adds an option whose value, shown as `type` in the help, is stored in `value`, which must
  /// outlive the command line. One that fills a list takes one value each time it is given. A name
  /// without dashes is the place of an argument.
  void add(const char* name, std::string& value, const char* type, const char* meaning) const;
  void add(const char* name, std::optional<std::string>& value, const char* type,
           const char* meaning) const;
  void add(const char* name, std::vector<std::string>& values, const char* type,
           const char* meaning) const;
  /// Adds a name that an option had in the version before: it works, but the help doesn't list it.
  void addOldName(const char* name, std::optional<std::string>& value) const;
  void addFlag(const char* name, bool& value, const char* meaning) const;

 private:
  CLI::Option& placed(CLI::Option& option) const;

  CLI::App& command_;
  const char* heading_;
};

/// Gives a sub-command's help its first line, and what stands below the options.
void describe(CLI::App& command, const char* description, const char* footer);

}  // namespace nkdraw::tool
