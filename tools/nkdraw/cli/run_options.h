// SPDX-License-Identifier: BSD-2-Clause
//
// Options shared by every sub-command that writes a file.
#pragma once

#include <cstdio>
#include <string>

namespace nkdraw::tool {

struct RunOptions {
  bool overwrite = false, dryRun = false, verbose = false;
};

/// Throws the Failure for an output that can't be written, without touching any file.
void checkOutput(const std::string& path, const RunOptions& options);

/// Throws the Failure `what` if `output` is the same file as `other`.
void checkIsAnother(const std::string& output, const std::string& other, const std::string& what);

/// Calls `describe` to tell the user what the run does, if that was requested. Returns whether the
/// run continues.
template <class Describe>
[[nodiscard]] bool announce(const RunOptions& options, Describe describe) {
  if (options.dryRun || options.verbose)
    describe(options.dryRun ? stdout : stderr);
  return !options.dryRun;
}

}  // namespace nkdraw::tool
