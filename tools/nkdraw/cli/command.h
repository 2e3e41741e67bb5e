// SPDX-License-Identifier: BSD-2-Clause
//
// Sub-commands: what the program needs of one, how to make one from its options and the function
// that does its work, and the list of them.
#pragma once

#include "cli/using_media.h"
#include "media/libav_log.h"

#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace nkdraw::tool {

/// A new sub-command's own part of the command line.
[[nodiscard]] CLI::App& addSubCommand(CLI::App& app, const std::string& name);
/// Whether the user chose it.
[[nodiscard]] bool isAsked(const CLI::App& command);

/// A sub-command, which has added its options to the command line and runs with the parsed values.
class Command {
 public:
  Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  virtual ~Command() = default;

  /// Whether the user chose this one.
  [[nodiscard]] virtual bool asked() const = 0;
  /// Throws Failure or Interrupted.
  virtual void run() = 0;
};

/// `Arguments` adds its options to the command line and interprets them. `work` gets the result,
/// which also tells whether the run is verbose.
template <class Arguments, auto work>
class SubCommand final : public Command {
 public:
  SubCommand(CLI::App& app, const std::string& name) : command_(addSubCommand(app, name)) {
    arguments_.addTo(command_);
  }

  [[nodiscard]] bool asked() const override { return isAsked(command_); }

  void run() override {
    const auto options = arguments_.read();
    showLibavMessages(options.verbose);
    work(options);
  }

 private:
  CLI::App& command_;
  Arguments arguments_;
};

/// Each adds its sub-command to the command line.
[[nodiscard]] std::unique_ptr<Command> addBurnin(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addCompare(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addCompletion(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addConfig(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addDraw(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addSheet(CLI::App& app);
[[nodiscard]] std::unique_ptr<Command> addWipe(CLI::App& app);

}  // namespace nkdraw::tool
