// SPDX-License-Identifier: BSD-2-Clause
//
// A configuration that can't be written, or that something has damaged.
#include "child.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace nkdraw::test;
namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr char kFailed[] = "4294967295";

class FailingConfig : public testing::Test {
 protected:
  StoreFolder folder_;
};

/// Permissions do not restrict root.
void becomeNobody() {
  if (geteuid() == 0 && setuid(65534) != 0)
    _exit(2);
}

/// Saving fails, with one line in the log, and the values stay in this process.
void expectOneMessage(const std::function<void()>& first, const std::string& words) {
  const ChildOutcome outcome = Child([&] {
                                 first();
                                 put("key", "new");
                                 const std::string status = std::to_string(save());
                                 return status + get("key");
                               }).wait();
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.answer, std::string(kFailed) + "new");
  ASSERT_EQ(outcome.messages.size(), 1U);
  EXPECT_NE(outcome.messages[0].find(words), std::string::npos) << outcome.messages[0];
}

TEST_F(FailingConfig, TellsOfAPlaceWhereNoFileCanBe) {
  std::ofstream(folder_.path() / "file") << "text";
  for (const std::string& place :
       {(folder_.path() / "file" / "config.db").string(),
        (folder_.path() / "file" / "deep" / "config.db").string(),
        std::string("/proc/nkdraw/config.db"), folder_.path().string()}) {
    setenv("NKDRAW_CONFIG", place.c_str(), 1);
    expectOneMessage([] {}, "Error: The configuration can't be saved: " + place);
  }
}

/// For a user without rights, who may still read.
void expectSavesToFailAndTheOldValueToStay() {
  expectOneMessage(becomeNobody, "can't be saved");
  EXPECT_EQ(inChild([] {
              becomeNobody();
              return get("key");
            }),
            "old");
  EXPECT_EQ(getInChild("key"), "old");
}

TEST_F(FailingConfig, KeepsTheValuesOfAFileThatMayNotBeWritten) {
  putInChild("key", "old");
  fs::permissions(folder_.path(), fs::perms(0755));
  fs::permissions(folder_.file(), fs::perms(0444));
  expectSavesToFailAndTheOldValueToStay();
}

TEST_F(FailingConfig, KeepsTheValuesInAFolderThatMayNotBeWritten) {
  putInChild("key", "old");
  fs::permissions(folder_.file(), fs::perms(0666));
  fs::permissions(folder_.path(), fs::perms(0555));
  expectSavesToFailAndTheOldValueToStay();
  fs::permissions(folder_.path(), fs::perms(0755));
}

TEST_F(FailingConfig, TellsOfAFileThatMayNotBeRead) {
  putInChild("key", "old");
  fs::permissions(folder_.path(), fs::perms(0755));
  fs::permissions(folder_.file(), fs::perms(0));
  const ChildOutcome outcome = Child([] {
                                 becomeNobody();
                                 return get("key");
                               }).wait();
  EXPECT_EQ(outcome.answer, "");
  ASSERT_EQ(outcome.messages.size(), 1U);
  EXPECT_NE(outcome.messages[0].find("can't be read"), std::string::npos);
}

TEST_F(FailingConfig, KeepsTheOldValuesWholeOnAFullDisk) {
  EXPECT_EQ(inChild([] {
              for (int key = 0; key < 100; ++key)
                put("key " + std::to_string(key), "old");
              return std::to_string(save());
            }),
            "0");
  const auto before = fs::file_size(folder_.file());
  for (const rlim_t room : {0U, 700U, 4096U, 5000U, 20000U}) {
    const ChildOutcome outcome = Child([&] {
                                   std::signal(SIGXFSZ, SIG_IGN);
                                   const rlimit limit = {before + room, before + room};
                                   setrlimit(RLIMIT_FSIZE, &limit);
                                   for (int key = 0; key < 100; ++key)
                                     put("key " + std::to_string(key), std::string(1000, 'n'));
                                   return std::to_string(save());
                                 }).wait();
    EXPECT_EQ(outcome.answer, kFailed);
    EXPECT_EQ(outcome.messages.size(), 1U);
    EXPECT_EQ(inChild([] {
                int old = 0;
                for (int key = 0; key < 100; ++key)
                  old += get("key " + std::to_string(key)) == "old" ? 1 : 0;
                return std::to_string(old);
              }),
              "100");
  }
}

TEST_F(FailingConfig, SavesWhatItCouldNotSaveOnceItCan) {
  const fs::path blocked = folder_.path() / "later";
  std::ofstream(blocked) << "a file where a folder is wanted";
  const std::string file = (blocked / "config.db").string();
  setenv("NKDRAW_CONFIG", file.c_str(), 1);
  const ChildOutcome outcome = Child([&] {
                                 put("key", "value");
                                 const std::string first = std::to_string(save());
                                 fs::remove(blocked);
                                 return first + " " + std::to_string(save());
                               }).wait();
  EXPECT_EQ(outcome.answer, std::string(kFailed) + " 0");
  EXPECT_EQ(getInChild("key"), "value");
}

std::string contents(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

std::string noise(std::size_t bytes) {
  std::mt19937 random(17);
  std::string text(bytes, '\0');
  for (char& byte : text)
    byte = static_cast<char>(random() >> 24);
  return text;
}

struct Damage {
  const char* name;
  std::string (*change)(const std::string&);
};

void PrintTo(const Damage& damage, std::ostream* out) {
  *out << damage.name;
}

const Damage kDamages[] = {
    {"RandomBytes", [](const std::string&) { return noise(9000); }},
    {"FewRandomBytes", [](const std::string&) { return noise(30); }},
    {"GarbageBehindTheHeader",
     [](const std::string& good) { return good.substr(0, 100) + noise(good.size() - 100); }},
    {"GarbageInsideTheTable",
     [](const std::string& good) { return good.substr(0, 4096) + noise(good.size() - 4096); }},
    {"CutInThePage", [](const std::string& good) { return good.substr(0, 1000); }},
    {"CutBehindThePage", [](const std::string& good) { return good.substr(0, 4096); }},
    {"HalfTheFile", [](const std::string& good) { return good.substr(0, good.size() / 2); }},
    {"AnotherKindOfFile",
     [](const std::string&) { return std::string("[nkoverlay]\nEnabled = 1\n"); }},
};

class DamagedConfig : public testing::TestWithParam<Damage> {
 protected:
  /// A configuration of several pages, damaged; its bytes.
  [[nodiscard]] std::string damage() const {
    inChild([] {
      for (int key = 0; key < 200; ++key)
        put("key " + std::to_string(key), std::string(100, 'o'));
      return std::to_string(save());
    });
    const std::string bad = GetParam().change(contents(folder_.file()));
    std::ofstream(folder_.file(), std::ios::binary | std::ios::trunc) << bad;
    return bad;
  }
  void expectSetAside(const ChildOutcome& outcome, const std::string& name,
                      const std::string& bad) const {
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.messages,
              Lines{"Error: The configuration " + folder_.file().string() +
                    " is damaged; it was set aside as " + name + " and a fresh one begun"});
    EXPECT_TRUE(contents(folder_.path() / name) == bad);
  }

  StoreFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Kinds, DamagedConfig, testing::ValuesIn(kDamages),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(DamagedConfig, IsSetAsideByAReaderWithAMessage) {
  const std::string bad = damage();
  const ChildOutcome outcome = Child([] {
                                 char value[8] = "??";
                                 std::uint32_t length = sizeof value;
                                 const auto status = nkCFGValueString(
                                     kDefaultStore, kRoot, "key 199", value, &length, kConfigRead);
                                 return std::to_string(status) + value;
                               }).wait();
  EXPECT_EQ(outcome.answer, "0");
  expectSetAside(outcome, "config.db.damaged", bad);
  putInChild("key", "value");
  EXPECT_EQ(getInChild("key"), "value");
  EXPECT_EQ(getInChild("key 3"), "");
}

TEST_P(DamagedConfig, IsSetAsideByASaverAndAnotherTimeUnderAnotherName) {
  for (const char* const name : {"config.db.damaged", "config.db.damaged2", "config.db.damaged3"}) {
    const std::string bad = damage();
    const ChildOutcome outcome = Child([] {
                                   for (int key = 0; key < 200; ++key)
                                     put("key " + std::to_string(key), "new");
                                   return std::to_string(save());
                                 }).wait();
    EXPECT_EQ(outcome.answer, "0");
    expectSetAside(outcome, name, bad);
    EXPECT_EQ(getInChild("key 0") + getInChild("key 199"), "newnew");
  }
}

TEST_P(DamagedConfig, ThatManyProcessesMeetAtOnceIsSetAsideOnceAndLosesNoSave) {
  constexpr int kProcesses = 4;
  const std::string bad = damage();
  SharedNumber ready;
  std::vector<Child> children;
  for (int process = 0; process < kProcesses; ++process) {
    children.emplace_back([&ready, process] {
      ready.add();
      ready.waitFor(kProcesses);
      const std::string key = "of " + std::to_string(process);
      if (process % 2 == 0)
        static_cast<void>(get(key));
      put(key, "value");
      return std::to_string(save());
    });
  }
  ChildOutcome all;
  all.exitCode = 0;
  for (const Child& child : children) {
    const ChildOutcome outcome = child.wait();
    EXPECT_EQ(outcome.answer, "0");
    all.messages.insert(all.messages.end(), outcome.messages.begin(), outcome.messages.end());
  }
  expectSetAside(all, "config.db.damaged", bad);
  EXPECT_EQ(folder_.names(), (Lines{"config.db", "config.db.damaged", "config.db.lock"}));
  for (int process = 0; process < kProcesses; ++process)
    EXPECT_EQ(getInChild("of " + std::to_string(process)), "value");
}

TEST_F(FailingConfig, ThatIsDamagedAndCanNotBeSetAsideIsToldAndLeft) {
  const std::string bad = noise(3000);
  std::ofstream(folder_.file(), std::ios::binary) << bad;
  fs::permissions(folder_.path(), fs::perms(0555));
  const ChildOutcome outcome = Child([] {
                                 becomeNobody();
                                 return get("key");
                               }).wait();
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.answer, "");
  EXPECT_EQ(outcome.messages.size(), 1U);
  EXPECT_TRUE(contents(folder_.file()) == bad);
  fs::permissions(folder_.path(), fs::perms(0755));
}

}  // namespace
