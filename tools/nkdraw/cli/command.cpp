// SPDX-License-Identifier: BSD-2-Clause
#include "cli/command.h"

#include <CLI/CLI.hpp>

namespace nkdraw::tool {

CLI::App& addSubCommand(CLI::App& app, const std::string& name) {
  return *app.add_subcommand(name);
}

bool isAsked(const CLI::App& command) {
  return command.parsed();
}

}  // namespace nkdraw::tool
