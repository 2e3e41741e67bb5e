// SPDX-License-Identifier: BSD-2-Clause
#include "wipe.h"

#include "clip_wipe.h"
#include "libav_log.h"
#include "wipe_names.h"
#include "wipe_options.h"

#include <CLI/CLI.hpp>

namespace nkdraw::tool {
namespace {

class Wipe : public Command {
 public:
  explicit Wipe(CLI::App& app) : command_(*app.add_subcommand("wipe")) {
    arguments_.addTo(command_);
  }

  [[nodiscard]] bool asked() const override { return command_.parsed(); }

  void run() override {
    const WipeOptions options = arguments_.read();
    showLibavMessages(options.verbose);
    if (options.list)
      listWipes();
    else
      wipeClips(options);
  }

 private:
  CLI::App& command_;
  WipeArguments arguments_;
};

}  // namespace

std::unique_ptr<Command> addWipe(CLI::App& app) {
  return std::make_unique<Wipe>(app);
}

}  // namespace nkdraw::tool
