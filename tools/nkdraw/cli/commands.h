// SPDX-License-Identifier: BSD-2-Clause
//
// The sub-commands.
#pragma once

#include "cli/command.h"

#include <memory>

namespace nkdraw::tool {

/// Each adds its sub-command to the command line.
[[nodiscard]] std::unique_ptr<Command> addBurnin(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addCompare(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addConfig(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addDraw(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addSheet(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addWipe(CLI::App& app);

}  // namespace nkdraw::tool
