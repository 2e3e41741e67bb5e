// SPDX-License-Identifier: BSD-2-Clause
//
// The configuration store: one SQLite file, which several processes may use at once. Changes wait
// in memory until the process saves; a save is one transaction.
#include <nkdraw/platform/config.h>

#include <nkdraw/constants.h>
#include <nkdraw/platform/log.h>

#include "config_status.h"
#include "store_path.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

namespace fs = std::filesystem;
using nkdraw::storePath;

constexpr int kPatienceMilliseconds = 20'000;
constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS setting (root TEXT, key TEXT, value TEXT, PRIMARY KEY (root, key))"
    " WITHOUT ROWID";

/// An error from SQLite.
class StoreError : public std::runtime_error {
 public:
  StoreError(int code, const std::string& text) : std::runtime_error(text), code_(code) {}
  [[nodiscard]] bool damaged() const {
    return (code_ & 0xFF) == SQLITE_CORRUPT || (code_ & 0xFF) == SQLITE_NOTADB;
  }

 private:
  int code_;
};

class Statement;

class Database {
 public:
  Database(const fs::path& path, int flags) {
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
    connection_.reset(opened);
    check(code);
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_busy_timeout(opened, kPatienceMilliseconds);
  }
  void run(const char* sql) {
    check(sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr));
  }
  void check(int code) const {
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
      throw StoreError(code,
                       connection_ ? sqlite3_errmsg(connection_.get()) : sqlite3_errstr(code));
  }
  [[nodiscard]] sqlite3* get() const { return connection_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
  };
  std::unique_ptr<sqlite3, Close> connection_;
};

class Statement {
 public:
  Statement(const Database& database, const char* sql) : database_(database) {
    sqlite3_stmt* prepared = nullptr;
    database.check(sqlite3_prepare_v2(database.get(), sql, -1, &prepared, nullptr));
    statement_.reset(prepared);
  }
  /// Whether there is a row.
  template <class... Texts>
  bool step(const Texts&... texts) {
    sqlite3_reset(statement_.get());
    int place = 0;
    (bind(++place, texts), ...);
    const int code = sqlite3_step(statement_.get());
    database_.check(code);
    return code == SQLITE_ROW;
  }
  [[nodiscard]] std::string text() const {
    const auto* const value = sqlite3_column_text(statement_.get(), 0);
    return value == nullptr ? "" : reinterpret_cast<const char*>(value);
  }

 private:
  void bind(int place, const std::string& text) {
    database_.check(sqlite3_bind_text(statement_.get(), place, text.data(),
                                      static_cast<int>(text.size()), SQLITE_TRANSIENT));
  }
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  const Database& database_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// Stops a store from being set aside while others use it: users share the lock, and whoever sets
/// the store aside holds it exclusively.
class FileLock {
 public:
  enum Kind { kShared = LOCK_SH, kAlone = LOCK_EX };

  FileLock(const fs::path& store, Kind kind) {
    const std::string path = store.string() + ".lock";
    const int access = kind == kAlone ? O_RDWR : O_RDONLY;
    descriptor_ = open(path.c_str(), access | O_CREAT | O_CLOEXEC, 0666);
    // If no lock can be created, nothing can be set aside either.
    if ((descriptor_ < 0 || !taken(kind)) && kind == kAlone)
      throw std::system_error(errno, std::generic_category(), path);
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock() {
    if (descriptor_ >= 0)
      close(descriptor_);
  }

 private:
  [[nodiscard]] bool taken(Kind kind) const {
    int result = -1;
    do
      result = flock(descriptor_, kind);
    while (result != 0 && errno == EINTR);
    return result == 0;
  }
  int descriptor_ = -1;
};

using Key = std::pair<std::string, std::string>;  ///< root and key
using Values = std::map<Key, std::string>;

// Readers may also have to roll back after a process that was killed while saving, so they open for
// writing; a file that can't be written is opened all the same.
constexpr int kReading = SQLITE_OPEN_READWRITE;

std::optional<std::string> readValue(const fs::path& path, const Key& key) {
  const Database database(path, kReading);
  Statement query(database, "SELECT value FROM setting WHERE root = ? AND key = ?");
  return query.step(key.first, key.second) ? std::optional(query.text()) : std::nullopt;
}

bool hasRoot(const fs::path& path, const std::string& root) {
  const Database database(path, kReading);
  return Statement(database, "SELECT 1 FROM setting WHERE root = ? LIMIT 1").step(root);
}

void writeValues(const fs::path& path, const Values& values) {
  if (path.has_parent_path())
    fs::create_directories(path.parent_path());
  const FileLock lock(path, FileLock::kShared);
  Database database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  database.run("PRAGMA synchronous = FULL");
  database.run("BEGIN IMMEDIATE");
  database.run(kSchema);
  Statement insert(database, "INSERT OR REPLACE INTO setting VALUES (?, ?, ?)");
  for (const auto& [key, value] : values)
    insert.step(key.first, key.second, value);
  database.run("COMMIT");
}

/// A name beside `path` that no file has yet.
fs::path asideName(const fs::path& path) {
  fs::path aside = path.string() + ".damaged";
  for (int number = 2; fs::exists(aside); ++number)
    aside = path.string() + ".damaged" + std::to_string(number);
  return aside;
}

bool isDamaged(const fs::path& path) {
  try {
    const Database database(path, kReading);
    Statement check(database, "PRAGMA quick_check");
    return !check.step() || check.text() != "ok";
  } catch (const StoreError& error) {
    return error.damaged();
  }
}

/// Moves the file out of the way, unless another process has just done so.
void setAside(const fs::path& path) {
  const FileLock lock(path, FileLock::kAlone);
  if (!isDamaged(path))
    return;
  const fs::path aside = asideName(path);
  std::error_code ignored;
  fs::remove(path.string() + "-journal", ignored);
  fs::rename(path, aside);
  ErrOut("Error: The configuration %s is damaged; it was set aside as %s and a fresh one begun",
         path.c_str(), aside.filename().c_str());
}

/// Runs `work` on the file, and once more if it was damaged.
template <class Work>
auto mending(const fs::path& path, Work work) {
  try {
    return work();
  } catch (const StoreError& error) {
    if (!error.damaged())
      throw;
  }
  setAside(path);
  return work();
}

/// The store of this process.
class Store {
 public:
  std::string read(const Key& key) {
    const std::scoped_lock lock(mutex_);
    if (const auto found = written_.find(key); found != written_.end())
      return found->second;
    return reading(std::optional<std::string>(),
                   [&](const fs::path& path) { return readValue(path, key); })
        .value_or("");
  }
  bool exists(const std::string& root) {
    const std::scoped_lock lock(mutex_);
    const auto first = written_.lower_bound({root, ""});
    if (first != written_.end() && first->first.first == root)
      return true;
    return reading(false, [&](const fs::path& path) { return hasRoot(path, root); });
  }
  void write(Key key, std::string value) {
    const std::scoped_lock lock(mutex_);
    written_.insert_or_assign(std::move(key), std::move(value));
  }
  void save() {
    const std::scoped_lock lock(mutex_);
    if (written_.empty())
      return;
    const fs::path path = storePath();
    mending(path, [&] { writeValues(path, written_); });
    written_.clear();
  }

 private:
  /// What `read` finds; `nothing` if the file is missing or empty.
  template <class Result, class Read>
  static Result reading(Result nothing, Read read) {
    const fs::path path = storePath();
    const auto empty = [&] {
      std::error_code ignored;  // a folder has no size
      return !fs::exists(path) || fs::file_size(path, ignored) == 0;
    };
    return mending(path, [&]() -> Result {
      if (empty())
        return nothing;
      const FileLock lock(path, FileLock::kShared);
      return empty() ? nothing : read(path);  // it may be another file by now
    });
  }

  std::mutex mutex_;
  Values written_;
};

Store& store() {
  static Store& kept = *new Store;  // other threads may read while the program ends
  return kept;
}

/// Runs `work`, and logs errors.
template <class Work>
bool succeeds(const char* what, Work work) {
  try {
    work();
    return true;
  } catch (const std::exception& error) {
    ErrOut("Error: The configuration can't be %s: %s: %s", what, storePath().c_str(), error.what());
    return false;
  }
}

/// Like `succeeds`, for reads; nkCFGWasRead reports the outcome afterwards.
template <class Work>
bool reads(Work work) {
  return nkdraw::storeWasRead = succeeds("read", work);
}

void copyOut(const std::string& text, char* value, std::uint32_t& length) {
  if (length == 0)
    return;
  const std::size_t count = std::min<std::size_t>(text.size(), length - 1);
  text.copy(value, count);
  value[count] = '\0';
  length = static_cast<std::uint32_t>(count);
}

}  // namespace

bool nkCFGKeyExists(nkStore /*store*/, const char* root) {
  bool exists = false;
  reads([&] { exists = store().exists(root); });
  return exists;
}

std::uint32_t nkCFGValueString(nkStore /*store*/, const char* root, const char* key, char* value,
                               std::uint32_t* length, std::uint32_t mode) {
  if (mode == kConfigWrite) {
    const std::string_view text =
        value == nullptr ? std::string_view() : std::string_view(value, strnlen(value, *length));
    return succeeds("written",
                    [&] {
                      store().write({root, key}, std::string(text));
                    })
               ? 0
               : NKStatusRefused;
  }
  if (value == nullptr)
    return 0;
  std::string text;
  const bool read = reads([&] { text = store().read({root, key}); });
  copyOut(text, value, *length);
  return read ? 0 : NKStatusRefused;
}

std::uint32_t nkCFGSave(nkStore /*store*/, std::uint32_t /*flags*/, std::uint32_t /*reserved*/) {
  return succeeds("saved", [] { store().save(); }) ? 0 : NKStatusRefused;
}
