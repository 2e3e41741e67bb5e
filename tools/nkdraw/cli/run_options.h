// SPDX-License-Identifier: BSD-2-Clause
//
// Options shared by every sub-command that writes a file.
#pragma once

#include "cli/progress.h"

#include <functional>
#include <string>

namespace nkdraw::tool {

class Description;
class OptionGroup;

struct RunOptions {
  bool overwrite = false, dryRun = false, json = false, verbose = false;
  std::string progress = "line";

  /// Throws Failure for a form that isn't known.
  [[nodiscard]] ProgressForm progressForm() const { return progressNamed(progress); }
};

/// Adds the option for the progress.
void addProgress(const OptionGroup& group, RunOptions& options);

/// Adds the options for a dry run.
void addDryRun(const OptionGroup& group, RunOptions& options);

/// Throws Failure for options that don't go together.
void checkRun(const RunOptions& options);

/// Throws the Failure for an output that can't be written, without touching any file.
void checkOutput(const std::string& path, const RunOptions& options);

/// Throws the Failure `what` if `output` is the same file as `other`.
void checkIsAnother(const std::string& output, const std::string& other, const std::string& what);

/// Tells the user what the run does, as `describe` says it, if that was requested. Returns whether
/// the run continues.
[[nodiscard]] bool announce(const RunOptions& options,
                            const std::function<void(Description&)>& describe);

}  // namespace nkdraw::tool
