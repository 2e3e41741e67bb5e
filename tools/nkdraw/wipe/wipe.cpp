// SPDX-License-Identifier: BSD-2-Clause
#include "cli/commands.h"
#include "cli/sub_command.h"
#include "wipe/clip_wipe.h"
#include "wipe/wipe_names.h"
#include "wipe/wipe_options.h"

namespace nkdraw::tool {
namespace {

void wipe(const WipeOptions& options) {
  if (options.list)
    listWipes();
  else
    wipeClips(options);
}

}  // namespace

std::unique_ptr<Command> addWipe(CLI::App& app) {
  return std::make_unique<SubCommand<WipeArguments, wipe>>(app, "wipe");
}

}  // namespace nkdraw::tool
