// SPDX-License-Identifier: BSD-2-Clause
#include "config/config_options.h"

#include "cli/option_group.h"
#include "cli/using_media.h"
#include "media/failure.h"

namespace nkdraw::tool {
namespace {

constexpr char kDescription[] = "Show and change the overlay's settings, for burnin --settings.";

constexpr char kMore[] =
    "Examples:\n"
    "  nkdraw config list\n"
    "      Every setting with its value, default, range and meaning.\n"
    "  nkdraw config set TimeCodeLTCEnable 1\n"
    "  nkdraw config set CustomText0 \"Reel 7\"\n"
    "  nkdraw config get CustomText0\n"
    "  nkdraw config unset CustomText0\n"
    "      Its default again.\n"
    "  nkdraw config reset\n"
    "      Every default again.\n"
    "  nkdraw config path\n"
    "      The file that keeps them.";

constexpr char kUsage[] = "write list, get KEY, set KEY VALUE, unset KEY, reset or path";

/// Checks that each argument is given exactly if the action takes it.
void checkTaken(const char* what, bool takes, const std::optional<std::string>& argument,
                const std::string& action) {
  if (takes == argument.has_value())
    return;
  throw Failure(ExitCode::kUsage,
                std::string(takes ? "no " : "too many arguments, beginning with the ") + what,
                "config " + action, kUsage);
}

}  // namespace

void ConfigArguments::addTo(CLI::App& command) {
  describe(command, kDescription, kMore);
  OptionGroup plain(command);
  plain.add("ACTION", action_, "", "list, get, set, unset, reset or path");
  plain.add("KEY", key_, "", "The setting; see nkdraw config list");
  plain.add("VALUE", value_, "", "What it becomes; behind -- if it begins with a dash");
  plain.addFlag("-v,--verbose", verbose_, "Say more");
}

ConfigOptions ConfigArguments::read() const {
  ConfigOptions options;
  const std::string name = action_.value_or("");
  options.action = configActionNamed(name);
  if (options.action == nullptr)
    throw Failure(ExitCode::kUsage, "no such action", name.empty() ? "(none)" : name, kUsage);
  checkTaken("key", options.action->takesKey, key_, name);
  checkTaken("value", options.action->takesValue, value_, name);
  options.verbose = verbose_;
  if (key_)
    options.setting = &settingNamed(*key_);
  if (value_)
    options.value = checkedValue(*options.setting, *value_);
  return options;
}

}  // namespace nkdraw::tool
