// SPDX-License-Identifier: BSD-2-Clause
//
// Keeps the library's error log off standard error, where a failure is one line.
#pragma once

#include <string>

namespace nkdraw::tool {

/// Collects what the library logs during its lifetime; only one may exist at a time.
class LibraryLog {
 public:
  LibraryLog();
  LibraryLog(const LibraryLog&) = delete;
  LibraryLog& operator=(const LibraryLog&) = delete;
  ~LibraryLog();

  /// The newest line; empty if there is none.
  [[nodiscard]] const std::string& last() const { return last_; }

 private:
  static void keep(const char* message, void* log);

  std::string last_;
};

}  // namespace nkdraw::tool
