// SPDX-License-Identifier: BSD-2-Clause
#include "cli/option_group.h"

#include <CLI/CLI.hpp>

namespace nkdraw::tool {

void OptionGroup::add(const char* name, std::string& value, const char* type,
                      const char* meaning) const {
  placed(*command_.add_option(name, value, meaning)->type_name(type));
}

void OptionGroup::add(const char* name, std::optional<std::string>& value, const char* type,
                      const char* meaning) const {
  placed(*command_.add_option(name, value, meaning)->type_name(type));
}

void OptionGroup::add(const char* name, std::vector<std::string>& values, const char* type,
                      const char* meaning) const {
  placed(*command_.add_option(name, values, meaning)->type_name(type)->allow_extra_args(false));
}

void OptionGroup::addOldName(const char* name, std::optional<std::string>& value) const {
  command_.add_option(name, value)->group("");
}

void OptionGroup::addFlag(const char* name, bool& value, const char* meaning) const {
  placed(*command_.add_flag(name, value, meaning));
}

CLI::Option& OptionGroup::placed(CLI::Option& option) const {
  return heading_ != nullptr ? *option.group(heading_) : option;
}

void describe(CLI::App& command, const char* description, const char* footer) {
  command.description(description);
  command.footer(footer);
}

}  // namespace nkdraw::tool
