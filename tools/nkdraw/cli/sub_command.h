// SPDX-License-Identifier: BSD-2-Clause
//
// A sub-command made of the options that it takes and the function that does its work.
#pragma once

#include "cli/command.h"
#include "cli/using_media.h"
#include "media/libav_log.h"

#include <CLI/CLI.hpp>

#include <string>

namespace nkdraw::tool {

/// `Arguments` put themselves on the command line and read what they mean; `work` takes what they
/// read, which says whether the run is verbose.
template <class Arguments, auto work>
class SubCommand final : public Command {
 public:
  SubCommand(CLI::App& app, const std::string& name) : command_(*app.add_subcommand(name)) {
    arguments_.addTo(command_);
  }

  [[nodiscard]] bool asked() const override { return command_.parsed(); }

  void run() override {
    const auto options = arguments_.read();
    showLibavMessages(options.verbose);
    work(options);
  }

 private:
  CLI::App& command_;
  Arguments arguments_;
};

}  // namespace nkdraw::tool
