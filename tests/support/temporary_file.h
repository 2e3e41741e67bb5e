// SPDX-License-Identifier: BSD-2-Clause
//
// Files that are removed with their test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <unistd.h>

namespace nkdraw::test {

class TemporaryFile {
 public:
  explicit TemporaryFile(const std::vector<std::uint8_t>& bytes)
      : TemporaryFile(testing::TempDir() + "nkdraw_" + std::to_string(getpid()) + "_" +
                          std::to_string(++count_),
                      bytes) {}
  TemporaryFile(std::string path, const std::vector<std::uint8_t>& bytes) : path_(std::move(path)) {
    write(bytes);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::remove(path_.c_str()); }

  [[nodiscard]] const char* path() const { return path_.c_str(); }

  /// Replaces the contents.
  void write(const std::vector<std::uint8_t>& bytes) const {
    std::ofstream(path_, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
  }

  /// How many descriptors of this process are open on it.
  [[nodiscard]] int openDescriptors() const {
    namespace fs = std::filesystem;
    int open = 0;
    for (const auto& each : fs::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      open += fs::equivalent(each.path(), path_, gone) && !gone ? 1 : 0;
    }
    return open;
  }

 private:
  static inline int count_ = 0;
  std::string path_;
};

}  // namespace nkdraw::test
