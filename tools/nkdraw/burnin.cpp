// SPDX-License-Identifier: BSD-2-Clause
#include "burnin.h"

#include "burnin_options.h"
#include "clip_burnin.h"
#include "layouts.h"
#include "libav_log.h"
#include "pattern_burnin.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>

namespace nkdraw::tool {
namespace {

void listLayouts() {
  for (const Layout& layout : layouts())
    std::printf("%-6s %-46s %s\n", std::string(layout.name).c_str(),
                std::string(layout.description).c_str(), containerNames(layout.containers).c_str());
}

class Burnin : public Command {
 public:
  explicit Burnin(CLI::App& app) : command_(*app.add_subcommand("burnin")) {
    arguments_.addTo(command_);
  }

  [[nodiscard]] bool asked() const override { return command_.parsed(); }

  void run() override {
    const BurninOptions options = arguments_.read();
    showLibavMessages(options.verbose);
    if (options.listLayouts)
      listLayouts();
    else if (options.input)
      burnClip(options);
    else
      burnPattern(options);
  }

 private:
  CLI::App& command_;
  BurninArguments arguments_;
};

}  // namespace

std::unique_ptr<Command> addBurnin(CLI::App& app) {
  return std::make_unique<Burnin>(app);
}

}  // namespace nkdraw::tool
