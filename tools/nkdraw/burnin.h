// SPDX-License-Identifier: BSD-2-Clause
//
// The sub-command `burnin`.
#pragma once

#include "command.h"

#include <memory>

namespace nkdraw::tool {

[[nodiscard]] std::unique_ptr<Command> addBurnin(CLI::App& app);

}  // namespace nkdraw::tool
