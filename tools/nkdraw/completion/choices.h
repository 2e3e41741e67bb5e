// SPDX-License-Identifier: BSD-2-Clause
//
// The values that shells complete: of options, and of arguments without one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nkdraw::tool {

/// The values that this option of the sub-command takes, or its arguments if `option` is empty. No
/// words if they can't be listed; files are then completed.
[[nodiscard]] std::vector<std::string> choicesOf(std::string_view command, std::string_view option);

}  // namespace nkdraw::tool
