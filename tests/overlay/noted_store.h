// SPDX-License-Identifier: BSD-2-Clause
//
// The test's own configuration store, which replaces the host's and records every call.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace nkdraw::test {

struct NotedStore {
  std::vector<std::string> calls;
  std::map<std::string, std::string> values;
  bool rootExists = true;
  bool keepsWrites = false;
  bool fails = false;
};

inline NotedStore notedStore;

using Calls = std::vector<std::string>;

[[nodiscard]] std::string existsCall();
[[nodiscard]] std::string writeCall(const std::string& key, const std::string& text);
/// A read into `buffer`: "buffer" or "null".
[[nodiscard]] std::string readCall(const std::string& key, const std::string& buffer = "buffer");
[[nodiscard]] std::string saveCall();

}  // namespace nkdraw::test
