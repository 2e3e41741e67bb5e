// SPDX-License-Identifier: BSD-2-Clause
#include "burnin/burnin.h"
#include "burnin/burnin_options.h"
#include "cli/command.h"
#include "media/layouts.h"

#include <cstdio>
#include <string>

namespace nkdraw::tool {
namespace {

void listLayouts() {
  for (const Layout& layout : layouts())
    std::printf("%-6s %-46s %s\n", std::string(layout.name).c_str(),
                std::string(layout.description).c_str(), containerNames(layout.containers).c_str());
}

void burn(const BurninOptions& options) {
  if (options.listLayouts)
    listLayouts();
  else if (options.input)
    burnClip(options);
  else
    burnPattern(options);
}

}  // namespace

std::unique_ptr<Command> addBurnin(CLI::App& app) {
  return std::make_unique<SubCommand<BurninArguments, burn>>(app, "burnin");
}

}  // namespace nkdraw::tool
