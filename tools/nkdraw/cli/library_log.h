// SPDX-License-Identifier: BSD-2-Clause
//
// The library's error log, kept from standard error, where a failure is one line.
#pragma once

#include <string>

namespace nkdraw::tool {

/// Collects what the library logs while it lives; one at a time.
class LibraryLog {
 public:
  LibraryLog();
  LibraryLog(const LibraryLog&) = delete;
  LibraryLog& operator=(const LibraryLog&) = delete;
  ~LibraryLog();

  /// The newest line; empty without one.
  [[nodiscard]] const std::string& last() const { return last_; }

 private:
  static void keep(const char* message, void* log);

  std::string last_;
};

}  // namespace nkdraw::tool
