// SPDX-License-Identifier: BSD-2-Clause
//
// Child processes of the test, each with its own store on the test's one file.
#pragma once

#include <nkdraw/platform/config.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace nkdraw::test {

struct ChildOutcome {
  int exitCode = -1;  ///< 128 plus the signal for one that a signal ended
  std::string answer;
  std::vector<std::string> messages;  ///< the lines of its standard error
};

/// A copy of this process that does some work and ends with the text that it returns.
class Child {
 public:
  explicit Child(const std::function<std::string()>& work);
  Child(Child&&) = default;
  void kill(int signal) const;
  [[nodiscard]] pid_t id() const { return id_; }
  [[nodiscard]] bool ended() const;
  [[nodiscard]] ChildOutcome wait() const;

 private:
  pid_t id_;
  int answer_, messages_;
};

/// Runs it, and expects neither messages nor an early end.
std::string inChild(const std::function<std::string()>& work);

/// The test's own folder, to which NKDRAW_CONFIG points.
class StoreFolder {
 public:
  StoreFolder();
  StoreFolder(const StoreFolder&) = delete;
  StoreFolder& operator=(const StoreFolder&) = delete;
  ~StoreFolder();

  [[nodiscard]] std::filesystem::path file() const { return folder_ / "config.db"; }
  [[nodiscard]] const std::filesystem::path& path() const { return folder_; }
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  std::filesystem::path folder_;
};

inline constexpr char kRoot[] = "HZW\\Test";

void put(const std::string& key, const std::string& text, const char* root = kRoot);
[[nodiscard]] std::string get(const std::string& key, const char* root = kRoot);
/// Saves and returns the status.
std::uint32_t save();
/// Writes and saves one value in a separate process.
void putInChild(const std::string& key, const std::string& text);
[[nodiscard]] std::string getInChild(const std::string& key);

/// A number that all children see.
class SharedNumber {
 public:
  SharedNumber();
  SharedNumber(const SharedNumber&) = delete;
  SharedNumber& operator=(const SharedNumber&) = delete;
  ~SharedNumber();
  void add() const { __atomic_add_fetch(number_, 1, __ATOMIC_SEQ_CST); }
  void waitFor(int number) const;

 private:
  int* number_;
};

}  // namespace nkdraw::test
