// SPDX-License-Identifier: BSD-2-Clause
#include "config/config_store.h"

#include "cli/using_media.h"
#include "media/failure.h"

#include <host/store_path.h>
#include <nkdraw/platform/config.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace nkdraw::tool {
namespace {

namespace fs = std::filesystem;

constexpr char kRoot[] = "HZW\\Advanced\\Overlay";

/// Lets one process at a time look for a store and create one; otherwise a second process's
/// defaults could overwrite a new value. The lock is on the folder, and leaves no file.
class FolderLock {
 public:
  explicit FolderLock(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    descriptor_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor_ < 0 || flock(descriptor_, LOCK_EX) != 0)
      throw Failure(ExitCode::kOutput, "the settings can't be saved", folder.string(),
                    std::string(std::strerror(errno)) + "; name another store in NKDRAW_CONFIG");
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock() { close(descriptor_); }

 private:
  int descriptor_ = -1;
};

/// Reads a number as the library does.
std::string numberIn(const std::string& text) {
  std::int32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return std::to_string(number);
}

}  // namespace

std::string ConfigStore::path() {
  return storePath().string();
}

bool ConfigStore::exists() {
  const bool found = nkCFGKeyExists(kDefaultStore, kRoot);
  if (!log_.last().empty())
    throw Failure(ExitCode::kInput, "the settings can't be read", log_.last(),
                  "see nkdraw config path");
  return found;
}

std::string ConfigStore::read(const Setting& setting) {
  if (!exists())
    return setting.standard;
  std::array<char, 256> text{};
  std::uint32_t length = text.size();
  if (nkCFGValueString(kDefaultStore, kRoot, setting.key.c_str(), text.data(), &length,
                       kConfigRead) != 0)
    throw Failure(ExitCode::kInput, "the settings can't be read", log_.last(),
                  "see nkdraw config path");
  return setting.isText() ? text.data() : numberIn(text.data());
}

void ConfigStore::put(const Setting& setting, const std::string& value) {
  std::string text = value;
  auto length = static_cast<std::uint32_t>(text.size());
  nkCFGValueString(kDefaultStore, kRoot, setting.key.c_str(), text.data(), &length, kConfigWrite);
}

void ConfigStore::putDefaults() {
  for (const Setting& each : settingTable())
    put(each, each.standard);
}

void ConfigStore::save() {
  if (nkCFGSave(kDefaultStore, 0, 0) != 0)
    throw Failure(ExitCode::kOutput, "the settings can't be saved", log_.last(),
                  "see nkdraw config path");
}

void ConfigStore::write(const Setting& setting, const std::string& value) {
  const fs::path folder = storePath().parent_path();
  const FolderLock lock(folder.empty() ? "." : folder);
  if (!exists())
    putDefaults();
  put(setting, value);
  save();
}

void ConfigStore::reset() {
  if (!exists())
    return;
  putDefaults();
  save();
}

}  // namespace nkdraw::tool
