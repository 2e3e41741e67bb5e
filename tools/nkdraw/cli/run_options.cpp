// SPDX-License-Identifier: BSD-2-Clause
#include "cli/run_options.h"

#include "cli/description.h"
#include "cli/option_group.h"
#include "cli/using_media.h"
#include "media/failure.h"
#include "media/output_file.h"

#include <cstdio>

namespace nkdraw::tool {

void addProgress(const OptionGroup& group, RunOptions& options) {
  group.add("--progress", options.progress, "FORM",
            "How to tell how far it is, on standard error: line (on\n"
            "a terminal), json or none");
}

void addDryRun(const OptionGroup& group, RunOptions& options) {
  group.addFlag("--dry-run", options.dryRun, "Say what would be done and write nothing");
  group.addFlag("--json", options.json, "With --dry-run: say it as a JSON object, for programs");
}

void checkRun(const RunOptions& options) {
  if (options.json && !options.dryRun)
    throw Failure(ExitCode::kUsage, "only a dry run is told as JSON", "--json",
                  "give --dry-run, too");
}

void checkOutput(const std::string& path, const RunOptions& options) {
  checkOutputName(path, options.overwrite, "choose another name or give --overwrite");
}

void checkIsAnother(const std::string& output, const std::string& other, const std::string& what) {
  if (isSameFile(output, other))
    throw Failure(ExitCode::kUsage, what, output, "choose another name");
}

bool announce(const RunOptions& options, const std::function<void(Description&)>& describe) {
  if (options.dryRun || options.verbose) {
    Description description;
    describe(description);
    if (options.json)
      description.printJson(stdout);
    else
      description.print(options.dryRun ? stdout : stderr);
  }
  return !options.dryRun;
}

}  // namespace nkdraw::tool
