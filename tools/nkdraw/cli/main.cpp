// SPDX-License-Identifier: BSD-2-Clause
//
// The program `nkdraw`: finds the sub-command, and turns exceptions into a line and an exit code.
#include "cli/command.h"
#include "media/failure.h"
#include "media/interrupt.h"
#include "media/libav_log.h"
#include "media/pipe_name.h"

#include <nkdraw/version.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace nkdraw::tool {
namespace {

constexpr int kSignalBase = 128;

/// In the order of the help.
constexpr std::unique_ptr<Command> (*kCommands[])(CLI::App&) = {addBurnin, addWipe,  addCompare,
                                                                addDraw,   addSheet, addConfig};

int report(ExitCode code, std::string line) {
  std::ranges::replace(line, '\n', ' ');
  std::fprintf(stderr, "nkdraw: %s\n", line.c_str());
  return static_cast<int>(code);
}

int usage(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
    return app.exit(error);  // help or version
  if (const auto unknown = app.remaining(); !unknown.empty() && app.get_subcommands().empty())
    return report(ExitCode::kUsage, "no such command: " + unknown.front() + "; see nkdraw --help");
  return report(ExitCode::kUsage, std::string("bad arguments: ") + error.what() +
                                      "; see nkdraw --help or nkdraw COMMAND --help");
}

/// Runs the command, and reports exceptions.
int execute(Command& command) {
  try {
    command.run();
    return static_cast<int>(ExitCode::kOk);
  } catch (const Failure& failure) {
    return report(failure.code(), failure.what());
  } catch (const ReaderGone&) {
    return kSignalBase + SIGPIPE;
  } catch (const Interrupted& interrupted) {
    report(ExitCode::kOk,
           "interrupted: signal " + std::to_string(interrupted.signal()) + "; nothing was written");
    return kSignalBase + interrupted.signal();
  } catch (const std::bad_alloc&) {
    return report(ExitCode::kProcessing, "out of memory: nkdraw; nothing was written");
  } catch (const std::exception& error) {
    return report(ExitCode::kProcessing,
                  std::string("unexpected: ") + error.what() + "; nothing was written");
  }
}

int run(int argc, char** argv) {
  CLI::App app("Draws into video frames in their native layout.", "nkdraw");
  app.set_version_flag("--version", std::string("nkdraw ") + nkdraw_version());
  app.require_subcommand(1);
  std::vector<std::unique_ptr<Command>> commands;
  for (const auto add : kCommands)
    commands.push_back(add(app));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return usage(app, error);
  }
  catchInterrupts();
  showLibavMessages(false);
  return execute(**std::ranges::find_if(commands, &Command::asked));
}

/// Checks that all standard output was written.
int finish(int code) {
  std::cout.flush();
  const bool arrived = std::fflush(stdout) == 0 && std::ferror(stdout) == 0 && std::cout.good();
  if (arrived || code != static_cast<int>(ExitCode::kOk))
    return code;
  return report(ExitCode::kOutput, "cannot write: standard output; is the disk full?");
}

}  // namespace
}  // namespace nkdraw::tool

int main(int argc, char** argv) {
  return nkdraw::tool::finish(nkdraw::tool::run(argc, argv));
}
