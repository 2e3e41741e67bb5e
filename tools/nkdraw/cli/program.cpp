// SPDX-License-Identifier: BSD-2-Clause
#include "cli/program.h"

#include "media/interrupt.h"
#include "media/pipe_name.h"

#include <nkdraw/version.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <new>

namespace nkdraw::tool {
namespace {

constexpr int kSignalBase = 128;

/// In the order of the help.
constexpr std::unique_ptr<Command> (*kCommands[])(CLI::App&) = {
    addBurnin, addWipe, addCompare, addDraw, addSheet, addConfig, addCompletion};

/// Which take lists of runs.
constexpr const char* kBatchCommands[] = {"burnin", "wipe", "compare", "draw"};

int reported(ExitCode code, const std::string& line) {
  report(line);
  return static_cast<int>(code);
}

/// The first of the words that nothing took which looks like an option.
std::string unknownOption(const CLI::App& app) {
  const std::vector<std::string> words = app.remaining(true);
  const auto found =
      std::ranges::find_if(words, [](const std::string& word) { return word.starts_with('-'); });
  return found != words.end() ? *found : "";
}

}  // namespace

void report(std::string line) {
  std::ranges::replace(line, '\n', ' ');
  std::fprintf(stderr, "nkdraw: %s\n", line.c_str());
}

Program::Program() : app_("Draws into video frames in their native layout.", "nkdraw") {
  app_.set_version_flag("--version", std::string("nkdraw ") + nkdraw_version());
  app_.require_subcommand(1);
  for (const auto add : kCommands)
    commands_.push_back(add(app_));
  for (const char* const name : kBatchCommands)
    app_.get_subcommand(name)
        ->add_option("--batch", batch_,
                     "Run once for each row of this list, whose first row\n"
                     "names the columns; see nkdraw(1)")
        ->type_name("LIST.csv");
}

int Program::explain(const CLI::ParseError& error, const std::string& where) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
    return app_.exit(error);  // help or version
  if (const auto unknown = app_.remaining(); !unknown.empty() && app_.get_subcommands().empty())
    return reported(ExitCode::kUsage,
                    where + "no such command: " + unknown.front() + "; see nkdraw --help");
  if (const std::string option = unknownOption(app_); !option.empty())
    return reported(ExitCode::kUsage, where + "no such option: " + option +
                                          "; see nkdraw COMMAND --help, or write ./" + option +
                                          " for a file of this name");
  return reported(ExitCode::kUsage, where + "bad arguments: " + error.what() +
                                        "; see nkdraw --help or nkdraw COMMAND --help");
}

std::optional<int> Program::parse(std::vector<std::string> arguments, const std::string& where) {
  std::ranges::reverse(arguments);  // as CLI11 takes them
  try {
    app_.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return explain(error, where);
  }
  return std::nullopt;
}

int Program::run(const std::string& where) {
  try {
    (*std::ranges::find_if(commands_, &Command::asked))->run();
    return static_cast<int>(ExitCode::kOk);
  } catch (const Failure& failure) {
    return reported(failure.code(), where + failure.what());
  } catch (const ReaderGone&) {
    return kSignalBase + SIGPIPE;
  } catch (const Interrupted& interrupted) {
    report(where + "interrupted: signal " + std::to_string(interrupted.signal()) +
           "; nothing was written");
    return kSignalBase + interrupted.signal();
  } catch (const std::bad_alloc&) {
    return reported(ExitCode::kProcessing, where + "out of memory: nkdraw; nothing was written");
  } catch (const std::exception& error) {
    return reported(ExitCode::kProcessing,
                    where + "unexpected: " + error.what() + "; nothing was written");
  }
}

}  // namespace nkdraw::tool
