// SPDX-License-Identifier: BSD-2-Clause
//
// What a user should know of a run that was done.
#pragma once

#include <string>

namespace nkdraw::tool {

/// One line on standard error, unless there is nothing to say.
void printNote(const std::string& note);

}  // namespace nkdraw::tool
