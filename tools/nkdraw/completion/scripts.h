// SPDX-License-Identifier: BSD-2-Clause
//
// Scripts with which shells complete the command line, made from the options that it has.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nkdraw::tool {

/// An option, or the arguments without one.
struct CompletedOption {
  std::vector<std::string> names;  // "--verbose", "-v"; none for arguments
  std::string meaning;             // one line
  bool takesValue = false;
  std::vector<std::string> choices;  // of its value; none for files and free text
};

struct CompletedCommand {
  std::string name, meaning;
  std::vector<CompletedOption> options;
};

/// The script for this shell; empty for a shell that is not known.
[[nodiscard]] std::string completionScript(std::string_view shell,
                                           const std::vector<CompletedCommand>& commands);

}  // namespace nkdraw::tool
