// SPDX-License-Identifier: BSD-2-Clause
//
// What every sub-command that writes a file is told about it.
#pragma once

#include <cstdio>
#include <string>

namespace nkdraw::tool {

struct RunOptions {
  bool overwrite = false, dryRun = false, verbose = false;
};

/// Throws the Failure for an output that can't be written, and touches nothing.
void checkOutput(const std::string& path, const RunOptions& options);

/// Throws the Failure `what` where `output` is `other`.
void checkIsAnother(const std::string& output, const std::string& other, const std::string& what);

/// Has `describe` tell a person what the run does, if that is asked for. Whether the run goes on.
template <class Describe>
[[nodiscard]] bool announce(const RunOptions& options, Describe describe) {
  if (options.dryRun || options.verbose)
    describe(options.dryRun ? stdout : stderr);
  return !options.dryRun;
}

}  // namespace nkdraw::tool
