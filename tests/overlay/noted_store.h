// SPDX-License-Identifier: BSD-2-Clause
//
// A configuration store of the test's own, in place of the host's, which notes every call.
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
