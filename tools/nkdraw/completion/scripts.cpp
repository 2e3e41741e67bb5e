// SPDX-License-Identifier: BSD-2-Clause
#include "completion/scripts.h"

#include <algorithm>
#include <iterator>

namespace nkdraw::tool {
namespace {

using Commands = std::vector<CompletedCommand>;

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words)
    text.append(text.empty() ? "" : " ").append(word);
  return text;
}

std::string joinedNames(const Commands& commands) {
  std::vector<std::string> names;
  std::ranges::transform(commands, std::back_inserter(names), &CompletedCommand::name);
  return joined(names);
}

/// The text with a backslash in front of each of these characters.
std::string escaped(const std::string& text, std::string_view special) {
  std::string result;
  for (const char letter : text) {
    if (special.find(letter) != std::string_view::npos)
      result += '\\';
    result += letter;
  }
  return result;
}

/// In single quotes, for any shell of the three: none of our texts has a backslash at its end.
std::string quoted(const std::string& text) {
  std::string result(1, '\'');
  for (const char letter : text) {
    if (letter == '\'')
      result.append("'\\'");
    result += letter;
  }
  result += '\'';
  return result;
}

/// Values of an option, or of arguments without one.
std::string bashCase(const CompletedCommand& command, const CompletedOption& option) {
  std::string text;
  for (const std::string& name : option.names)
    text += "    " + command.name + "," + name + ") words='" + joined(option.choices) + "' ;;\n";
  return text;
}

std::string bashScript(const Commands& commands) {
  std::string values, options, arguments;
  for (const CompletedCommand& command : commands) {
    std::vector<std::string> names;
    for (const CompletedOption& option : command.options) {
      std::ranges::copy(option.names, std::back_inserter(names));
      if (option.names.empty())
        arguments += "    " + command.name + ") words='" + joined(option.choices) + "' ;;\n";
      else if (option.takesValue)
        values += bashCase(command, option);
    }
    options += "    " + command.name + ") words='" + joined(names) + "' ;;\n";
  }
  return "# Completion of nkdraw in bash.\n"
         "_nkdraw() {\n"
         "  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  local command=${COMP_WORDS[1]} words=''\n"
         "  COMPREPLY=()\n"
         "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
         "    COMPREPLY=($(compgen -W '" +
         joinedNames(commands) +
         " --help --version' -- \"$cur\"))\n"
         "    return\n"
         "  fi\n"
         "  case $command,$prev in\n" +
         values +
         "    *) case $cur,$command in\n"
         "      -*,*) case $command in\n" +
         options +
         "      esac ;;\n"
         "      *) case $command in\n" +
         arguments +
         "      esac ;;\n"
         "    esac ;;\n"
         "  esac\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
         "}\n"
         "complete -o default -F _nkdraw nkdraw\n";
}

/// What zsh's _arguments completes as the value: the choices, or files.
std::string zshValue(const CompletedOption& option) {
  const std::string values = option.choices.empty() ? "_files" : joined(option.choices);
  return std::string(":value:") +
         (option.choices.empty() ? values : std::string("(") + values + ")");
}

std::string zshLine(const CompletedOption& option) {
  if (option.names.empty())
    return "        " + quoted(std::string("*") + zshValue(option)) + " \\\n";
  std::string text;
  for (const std::string& name : option.names)
    text += "        " +
            quoted(std::string("*") + name + "[" + escaped(option.meaning, "[]:\\") + "]" +
                   (option.takesValue ? zshValue(option) : "")) +
            " \\\n";
  return text;
}

std::string zshScript(const Commands& commands) {
  std::string names, cases;
  for (const CompletedCommand& command : commands) {
    names += "    " + quoted(command.name + ":" + escaped(command.meaning, ":")) + "\n";
    cases += "      " + command.name + ")\n      _arguments \\\n";
    bool hasArguments = false;
    for (const CompletedOption& option : command.options) {
      cases += zshLine(option);
      hasArguments = hasArguments || option.names.empty();
    }
    cases += std::string("        ") + (hasArguments ? "" : "'*:file:_files'") + "\n      ;;\n";
  }
  return "#compdef nkdraw\n"
         "# Completion of nkdraw in zsh.\n"
         "_nkdraw() {\n"
         "  local -a commands\n"
         "  commands=(\n" +
         names +
         "  )\n"
         "  if (( CURRENT == 2 )); then\n"
         "    _describe command commands\n"
         "    return\n"
         "  fi\n"
         "  local command=$words[2]\n"
         "  shift words\n"
         "  (( CURRENT-- ))\n"
         "  case $command in\n" +
         cases +
         "  esac\n"
         "}\n"
         "compdef _nkdraw nkdraw\n";
}

std::string fishLine(const CompletedCommand& command, const CompletedOption& option) {
  std::string line = "complete -c nkdraw -n '__fish_seen_subcommand_from " + command.name + "'";
  for (const std::string& name : option.names)
    line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  if (option.takesValue && !option.names.empty())
    line += option.choices.empty() ? " -r" : " -x";
  if (!option.choices.empty())
    line += " -a " + quoted(joined(option.choices));
  return line + (option.meaning.empty() ? "" : " -d " + quoted(option.meaning)) + "\n";
}

std::string fishScript(const Commands& commands) {
  std::string text = "# Completion of nkdraw in fish.\n";
  for (const CompletedCommand& command : commands)
    text += "complete -c nkdraw -f -n __fish_use_subcommand -a " + command.name + " -d " +
            quoted(command.meaning) + "\n";
  for (const CompletedCommand& command : commands) {
    for (const CompletedOption& option : command.options)
      text += fishLine(command, option);
  }
  return text;
}

struct Shell {
  std::string_view name;
  std::string (*script)(const Commands& commands);
};
constexpr Shell kShells[] = {{"bash", bashScript}, {"zsh", zshScript}, {"fish", fishScript}};

}  // namespace

std::string completionScript(std::string_view shell, const Commands& commands) {
  const auto* const found = std::ranges::find(kShells, shell, &Shell::name);
  return found != std::end(kShells) ? found->script(commands) : "";
}

}  // namespace nkdraw::tool
