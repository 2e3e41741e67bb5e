// SPDX-License-Identifier: BSD-2-Clause
#include "cli/commands.h"
#include "cli/sub_command.h"
#include "compare/clip_compare.h"
#include "compare/compare_options.h"
#include "compare/mux_modes.h"

namespace nkdraw::tool {
namespace {

void compare(const CompareOptions& options) {
  if (options.list)
    listMuxModes();
  else
    compareClips(options);
}

}  // namespace

std::unique_ptr<Command> addCompare(CLI::App& app) {
  return std::make_unique<SubCommand<CompareArguments, compare>>(app, "compare");
}

}  // namespace nkdraw::tool
