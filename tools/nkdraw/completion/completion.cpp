// SPDX-License-Identifier: BSD-2-Clause
//
// `nkdraw completion`: prints a script with which a shell completes the command line.
#include "cli/command.h"
#include "cli/option_group.h"
#include "cli/option_values.h"
#include "completion/choices.h"
#include "completion/scripts.h"
#include "media/failure.h"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] = "Print a script that completes nkdraw's options in a shell.";
constexpr char kMore[] =
    "Examples:\n"
    "  nkdraw completion bash > ~/.local/share/bash-completion/completions/nkdraw\n"
    "  nkdraw completion fish > ~/.config/fish/completions/nkdraw.fish\n"
    "Packages install them.";

struct CompletionOptions {
  const CLI::App* program = nullptr;
  std::string shell;
  bool verbose = false;
};

class CompletionArguments {
 public:
  void addTo(CLI::App& command) {
    describe(command, kDescription, kMore);
    OptionGroup(command).add("SHELL", options_.shell, "", "bash, zsh or fish");
    options_.program = command.get_parent();
  }
  [[nodiscard]] CompletionOptions read() const { return options_; }

 private:
  CompletionOptions options_;
};

/// The first line, without its full stop.
std::string firstLine(const std::string& text) {
  std::string line = text.substr(0, text.find('\n'));
  if (line.ends_with('.'))
    line.pop_back();
  return line;
}

std::vector<std::string> namesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_lnames())
    names.push_back("--" + name);
  for (const std::string& name : option.get_snames())
    names.push_back("-" + name);
  return names;
}

CompletedCommand commandOf(const CLI::App& app) {
  CompletedCommand command = {app.get_name(), firstLine(app.get_description()), {}};
  for (const CLI::Option* const option : app.get_options()) {
    const std::vector<std::string> names = namesOf(*option);
    if (names.empty() || option->get_group().empty())
      continue;
    command.options.push_back({names, firstLine(option->get_description()),
                               option->get_items_expected_max() > 0,
                               choicesOf(command.name, names.front())});
  }
  if (const auto words = choicesOf(command.name, ""); !words.empty())
    command.options.push_back({{}, "", true, words});
  return command;
}

void print(const CompletionOptions& options) {
  std::vector<CompletedCommand> commands;
  for (const CLI::App* const app : options.program->get_subcommands({}))
    commands.push_back(commandOf(*app));
  const std::string script = completionScript(options.shell, commands);
  if (script.empty())
    throw Failure(ExitCode::kUsage, "no such shell",
                  options.shell.empty() ? "(none)" : options.shell, "give bash, zsh or fish");
  std::fputs(script.c_str(), stdout);
}

}  // namespace

std::unique_ptr<Command> addCompletion(CLI::App& app) {
  return std::make_unique<SubCommand<CompletionArguments, print>>(app, "completion");
}

}  // namespace nkdraw::tool
