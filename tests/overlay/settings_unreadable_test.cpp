// SPDX-License-Identifier: BSD-2-Clause
//
// Settings in a store that can't be read: locked by another process, forbidden or damaged.
#include "exposed_overlay.h"

#include <tests/host/child.h>

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include <sqlite3.h>

#include <unistd.h>

/// Takes the place of the library's: nobody waits for a lock here.
extern "C" __attribute__((visibility("default"))) int sqlite3_busy_timeout(sqlite3* /*database*/,
                                                                           int /*milliseconds*/) {
  return SQLITE_OK;
}

namespace {

using namespace nkdraw::test;
namespace fs = std::filesystem;

constexpr char kOverlayRoot[] = "HZW\\Advanced\\Overlay";

std::string contents(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

/// Holds the store's lock during its lifetime.
class StoreLock {
 public:
  explicit StoreLock(const fs::path& file) {
    sqlite3_open(file.c_str(), &database_);
    locked_ = sqlite3_exec(database_, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) == SQLITE_OK;
  }
  StoreLock(const StoreLock&) = delete;
  StoreLock& operator=(const StoreLock&) = delete;
  ~StoreLock() { sqlite3_close(database_); }
  [[nodiscard]] bool locked() const { return locked_; }

 private:
  sqlite3* database_ = nullptr;
  bool locked_ = false;
};

/// Permissions bind everyone but root.
void becomeNobody() {
  if (geteuid() == 0 && setuid(65534) != 0)
    _exit(2);
}

class UnreadableSettings : public testing::Test {
 protected:
  UnreadableSettings() {
    EXPECT_EQ(inChild([] {
                Overlay saved;
                saved.TimeCodeX = 77;
                saved.CustomTextX[9] = 99;
                saved.setText(3, "saved");
                return std::to_string(saved.SaveConfig());
              }),
              "0");
    stored_ = contents(folder_.file());
  }

  /// Fields of a loaded overlay that was at 5, "mine" and 6 before.
  static std::string load() {
    Overlay overlay;
    overlay.TimeCodeX = 5;
    overlay.setText(3, "mine");
    overlay.CustomTextX[9] = 6;
    overlay.LoadConfig();
    nkCFGSave(kDefaultStore, 0, 0);  // nothing may be waiting to be saved
    return std::to_string(overlay.TimeCodeX) + " " +
           static_cast<const char*>(overlay.CustomText[3]) + " " +
           std::to_string(overlay.CustomTextX[9]);
  }
  static ChildOutcome loadAsNobody() {
    return Child([] {
             becomeNobody();
             return load();
           })
        .wait();
  }
  void expectNothingLoadedAndNothingWritten(const ChildOutcome& outcome) const {
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.answer, "5 mine 6");
    ASSERT_EQ(outcome.messages.size(), 1U);
    EXPECT_NE(outcome.messages[0].find("Error: The configuration can't be read"), std::string::npos)
        << outcome.messages[0];
    EXPECT_TRUE(contents(folder_.file()) == stored_);
  }

  StoreFolder folder_;
  std::string stored_;
};

TEST_F(UnreadableSettings, InAStoreThatAnotherProcessHasLockedAreNeitherLostNorTakenForAFirstRun) {
  SharedNumber step;
  const Child locker([&] {
    const StoreLock lock(folder_.file());
    step.add();
    step.waitFor(2);
    return std::string(lock.locked() ? "locked" : "");
  });
  step.waitFor(1);
  expectNothingLoadedAndNothingWritten(Child(load).wait());
  step.add();
  EXPECT_EQ(locker.wait().answer, "locked");
  EXPECT_EQ(inChild(load), "77 saved 99");
}

TEST_F(UnreadableSettings, AreLoadedByTheSameProcessOnceTheLockIsGone) {
  EXPECT_EQ(Child([&] {
              std::string first;
              {
                const StoreLock lock(folder_.file());
                first = load();
              }
              return first + ", " + load();
            })
                .wait()
                .answer,
            "5 mine 6, 77 saved 99");
}

/// Lets another have the lock when it comes to one of its settings.
class LockedOnTheWay : public Overlay {
 public:
  using Overlay::LoadSetting;
  LockedOnTheWay(const char* key, fs::path file) : key_(key), file_(std::move(file)) {}
  std::uint32_t LoadSetting(const char* key, std::uint32_t& value) override {
    lockAt(key);
    return Overlay::LoadSetting(key, value);
  }
  std::uint32_t LoadSetting(const char* key, char* value) override {
    lockAt(key);
    return Overlay::LoadSetting(key, value);
  }

 private:
  void lockAt(const char* key) {
    if (key == key_ && !lock_)
      lock_.emplace(file_);
  }

  std::string key_;
  fs::path file_;
  std::optional<StoreLock> lock_;
};

TEST_F(UnreadableSettings, ThatAreLockedOnTheWayStayAsTheyAreFromThereOn) {
  const std::pair<const char*, const char*> kCases[] = {{"WatermarkX", "77 8 mine 6"},
                                                        {"CustomText3", "77 400 mine 6"},
                                                        {"CustomTextX9", "77 400 saved 6"}};
  for (const auto& [key, loaded] : kCases) {
    const ChildOutcome outcome = Child([&, setting = key] {
                                   LockedOnTheWay overlay(setting, folder_.file());
                                   overlay.TimeCodeX = 5;
                                   overlay.WatermarkX = 8;
                                   overlay.setText(3, "mine");
                                   overlay.CustomTextX[9] = 6;
                                   overlay.LoadConfig();
                                   return std::to_string(overlay.TimeCodeX) + " " +
                                          std::to_string(overlay.WatermarkX) + " " +
                                          static_cast<const char*>(overlay.CustomText[3]) + " " +
                                          std::to_string(overlay.CustomTextX[9]);
                                 }).wait();
    EXPECT_EQ(outcome.answer, loaded) << key;
    EXPECT_EQ(outcome.messages.size(), 1U);
    EXPECT_TRUE(contents(folder_.file()) == stored_);
  }
}

TEST_F(UnreadableSettings, InAFileThatMayNotBeReadStay) {
  fs::permissions(folder_.path(), fs::perms(0777));
  fs::permissions(folder_.file(), fs::perms(0));
  expectNothingLoadedAndNothingWritten(loadAsNobody());
}

TEST_F(UnreadableSettings, InAFolderThatMayNotBeSearchedAreNotTakenForMissing) {
  fs::permissions(folder_.path(), fs::perms(0));
  const ChildOutcome outcome = loadAsNobody();
  fs::permissions(folder_.path(), fs::perms(0777));
  expectNothingLoadedAndNothingWritten(outcome);
  EXPECT_EQ(inChild(load), "77 saved 99");
}

TEST_F(UnreadableSettings, InADamagedFileThatCanNotBeSetAsideStay) {
  stored_.resize(1000);
  std::ofstream(folder_.file(), std::ios::binary | std::ios::trunc) << stored_;
  fs::permissions(folder_.path(), fs::perms(0555));
  expectNothingLoadedAndNothingWritten(loadAsNobody());
  fs::permissions(folder_.path(), fs::perms(0755));
}

TEST_F(UnreadableSettings, InADamagedFileAreSetAsideToTheByteAndAFreshStoreBegun) {
  stored_.resize(1000);
  std::ofstream(folder_.file(), std::ios::binary | std::ios::trunc) << stored_;
  const ChildOutcome outcome = Child(load).wait();
  EXPECT_EQ(outcome.answer, "5 mine 6");
  ASSERT_EQ(outcome.messages.size(), 1U);
  EXPECT_NE(outcome.messages[0].find("set aside"), std::string::npos);
  EXPECT_TRUE(contents(folder_.path() / "config.db.damaged") == stored_);
  EXPECT_EQ(inChild([] { return get("TimeCodeX", kOverlayRoot); }), "5");
}

TEST_F(UnreadableSettings, AreToldFromMissingOnes) {
  EXPECT_EQ(Child([&] {
              std::string answers;
              const auto ask = [&](const char* root) {
                answers += nkCFGKeyExists(kDefaultStore, root) ? '1' : '0';
                answers += nkCFGWasRead(kDefaultStore) ? '1' : '0';
              };
              answers += nkCFGWasRead(kDefaultStore) ? '1' : '0';
              ask(kOverlayRoot);
              ask("HZW\\Missing");
              {
                const StoreLock lock(folder_.file());
                ask(kOverlayRoot);
              }
              ask(kOverlayRoot);
              return answers;
            })
                .wait()
                .answer,
            "1"
            "11"
            "01"
            "00"
            "11");
}

}  // namespace
