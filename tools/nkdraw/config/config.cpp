// SPDX-License-Identifier: BSD-2-Clause
#include "cli/command.h"
#include "config/config_options.h"
#include "config/config_store.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace nkdraw::tool {
namespace {

void printRow(const std::string& key, const std::string& value, const std::string& standard,
              const std::string& range, const std::string& meaning) {
  std::printf("%-24s %-12s %-8s %-38s  %s\n", key.c_str(), value.c_str(), standard.c_str(),
              range.c_str(), meaning.c_str());
}

void list(const ConfigOptions& /*options*/) {
  ConfigStore store;
  printRow("KEY", "VALUE", "DEFAULT", "RANGE", "MEANING");
  for (const Setting& setting : settingTable()) {
    const auto shown = [&](const std::string& value) {
      return setting.isText() ? "\"" + value + "\"" : value;
    };
    printRow(setting.key, shown(store.read(setting)), shown(setting.standard), setting.range(),
             setting.meaning);
  }
}

void get(const ConfigOptions& options) {
  std::printf("%s\n", ConfigStore().read(*options.setting).c_str());
}

void set(const ConfigOptions& options) {
  ConfigStore().write(*options.setting, options.value);
}

/// Without a value the library would read 0.
void unset(const ConfigOptions& options) {
  ConfigStore().write(*options.setting, options.setting->standard);
}

void reset(const ConfigOptions& /*options*/) {
  ConfigStore().reset();
}

void path(const ConfigOptions& /*options*/) {
  std::printf("%s\n", ConfigStore::path().c_str());
}

constexpr ConfigAction kActions[] = {
    {"list", false, false, list},  {"get", true, false, get},      {"set", true, true, set},
    {"unset", true, false, unset}, {"reset", false, false, reset}, {"path", false, false, path},
};

void runAction(const ConfigOptions& options) {
  options.action->run(options);
}

}  // namespace

const ConfigAction* configActionNamed(const std::string& name) {
  const auto* const found = std::ranges::find_if(
      kActions, [&](const ConfigAction& action) { return name == action.name; });
  return found != std::end(kActions) ? found : nullptr;
}

std::unique_ptr<Command> addConfig(CLI::App& app) {
  return std::make_unique<SubCommand<ConfigArguments, runAction>>(app, "config");
}

}  // namespace nkdraw::tool
