// SPDX-License-Identifier: BSD-2-Clause
//
// The command line as a whole: the sub-commands, and a run of one of them.
#pragma once

#include "cli/command.h"
#include "media/failure.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::tool {

/// One line on standard error: "nkdraw: LINE".
void report(std::string line);

/// A command line with all sub-commands, for one run.
class Program {
 public:
  Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Parses the arguments behind the program's name. Returns the exit code if there is nothing to
  /// run: after the help, or after a line that says what is wrong; `where` stands in front of it.
  [[nodiscard]] std::optional<int> parse(std::vector<std::string> arguments,
                                         const std::string& where = "");

  /// The list of runs that the user gave with --batch; empty if there is none.
  [[nodiscard]] const std::string& batch() const { return batch_; }

  /// Runs the sub-command, and reports what it throws; `where` stands in front of the line. Returns
  /// the exit code.
  [[nodiscard]] int run(const std::string& where = "");

  [[nodiscard]] const CLI::App& app() const { return app_; }

 private:
  void add(std::unique_ptr<Command> command);
  [[nodiscard]] int explain(const CLI::ParseError& error, const std::string& where);

  CLI::App app_;
  std::vector<std::unique_ptr<Command>> commands_;
  std::string batch_;
};

}  // namespace nkdraw::tool
