// SPDX-License-Identifier: BSD-2-Clause
//
// Where the default host keeps the configuration store.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace nkdraw {

[[nodiscard]] inline std::filesystem::path storePath() {
  const auto environment = [](const char* name) {
    const char* const value = std::getenv(name);
    return std::filesystem::path(value == nullptr ? "" : value);
  };
  if (auto named = environment("NKDRAW_CONFIG"); !named.empty())
    return named;
  const auto folder = environment("XDG_CONFIG_HOME");
  return (folder.empty() ? environment("HOME") / ".config" : folder) / "nkdraw" / "config.db";
}

}  // namespace nkdraw
