// SPDX-License-Identifier: BSD-2-Clause
//
// The sub-command `wipe`.
#pragma once

#include "command.h"

#include <memory>

namespace nkdraw::tool {

[[nodiscard]] std::unique_ptr<Command> addWipe(CLI::App& app);

}  // namespace nkdraw::tool
