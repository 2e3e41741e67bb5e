// SPDX-License-Identifier: BSD-2-Clause
#include "clip_compare.h"
#include "commands.h"
#include "compare_options.h"
#include "mux_modes.h"
#include "sub_command.h"

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
