// SPDX-License-Identifier: BSD-2-Clause
//
// Several processes at one configuration, and processes that are killed.
#include "child.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>

#include <sqlite3.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

using namespace nkdraw::test;
namespace fs = std::filesystem;

class SharedConfig : public testing::Test {
 protected:
  StoreFolder folder_;
};

TEST_F(SharedConfig, ShowsOthersWhatWasSavedAndNothingElse) {
  putInChild("key", "old");
  SharedNumber step;
  const Child writer([&] {
    put("key", "new");
    std::string seen = get("key");
    step.add();
    step.waitFor(2);
    save();
    seen += get("key");
    step.add();
    return seen;
  });
  step.waitFor(1);
  EXPECT_EQ(getInChild("key"), "old");
  step.add();
  step.waitFor(3);
  EXPECT_EQ(getInChild("key"), "new");
  const ChildOutcome outcome = writer.wait();
  EXPECT_EQ(outcome.answer, "newnew");
  EXPECT_EQ(outcome.messages, std::vector<std::string>());
}

TEST_F(SharedConfig, AProcessSeesWhatAnotherHasSavedSince) {
  putInChild("key", "old");
  SharedNumber step;
  const Child reader([&] {
    const std::string first = get("key");
    step.add();
    step.waitFor(2);
    return first + get("key");
  });
  step.waitFor(1);
  putInChild("key", "new");
  step.add();
  EXPECT_EQ(reader.wait().answer, "oldnew");
}

TEST_F(SharedConfig, AProcessThatHasSavedSeesAndKeepsWhatAnotherSavesLater) {
  SharedNumber step;
  const Child first([&] {
    put("key", "first");
    save();
    step.add();
    step.waitFor(2);
    const std::string seen = get("key");
    put("other", "value");
    save();
    return seen;
  });
  step.waitFor(1);
  putInChild("key", "second");
  step.add();
  EXPECT_EQ(first.wait().answer, "second");
  EXPECT_EQ(getInChild("key"), "second");
}

/// Runs `work` in a process while this one holds the store exclusively. Returns whether it waits
/// for the lock; `after` gets its outcome once the lock is free.
bool waitsForTheLock(const fs::path& file, const std::function<std::string()>& work,
                     ChildOutcome& after) {
  const int lock = open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  EXPECT_EQ(flock(lock, LOCK_EX), 0);
  const Child child([&] {
    close(lock);
    return work();
  });
  std::ostringstream id;
  id << " " << child.id() << " ";
  bool waits = false;
  while (!waits && !child.ended()) {
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);)
      waits = waits || (line.find("-> FLOCK") != std::string::npos &&
                        line.find(id.str()) != std::string::npos);
  }
  close(lock);
  after = child.wait();
  return waits;
}

TEST_F(SharedConfig, ReadersAndSaversWaitWhileTheFileIsSetAside) {
  putInChild("key", "old");
  ChildOutcome outcome;
  EXPECT_TRUE(waitsForTheLock(
      folder_.file(), [] { return get("key"); }, outcome));
  EXPECT_EQ(outcome.answer, "old");
  EXPECT_TRUE(waitsForTheLock(
      folder_.file(),
      [] {
        put("key", "new");
        return std::to_string(save());
      },
      outcome));
  EXPECT_EQ(outcome.answer, "0");
  EXPECT_EQ(getInChild("key"), "new");
}

TEST_F(SharedConfig, LosesNothingAndLocksNobodyOutWhileManySave) {
  constexpr int kProcesses = 6, kRounds = 15;
  SharedNumber ready;
  std::vector<Child> children;
  for (int process = 0; process < kProcesses; ++process) {
    children.emplace_back([&ready, process] {
      ready.add();
      ready.waitFor(kProcesses);
      for (int round = 1; round <= kRounds; ++round) {
        const std::string number = std::to_string(round);
        put("last of " + std::to_string(process), number);
        put("key " + std::to_string(process) + " " + number, number);
        if (save() != 0)
          return "not saved in round " + number;
        for (int other = 0; other < kProcesses; ++other) {
          const std::string last = get("last of " + std::to_string(other));
          if (last.empty())
            continue;
          if (get("key " + std::to_string(other) + " " + last) != last)
            return "a save came in parts in round " + number;
        }
      }
      return std::string("done");
    });
  }
  for (const Child& child : children) {
    const ChildOutcome outcome = child.wait();
    EXPECT_EQ(outcome.answer, "done");
    EXPECT_EQ(outcome.messages, std::vector<std::string>());
  }
  EXPECT_EQ(inChild([] {
              int found = 0;
              for (int process = 0; process < kProcesses; ++process) {
                for (int round = 1; round <= kRounds; ++round) {
                  const std::string number = std::to_string(round);
                  found += get("key " + std::to_string(process) + " " + number) == number ? 1 : 0;
                }
              }
              return std::to_string(found);
            }),
            std::to_string(kProcesses * kRounds));
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"config.db", "config.db.lock"}));
}

TEST_F(SharedConfig, MayBeUsedByManyThreads) {
  EXPECT_EQ(inChild([] {
              std::vector<std::thread> threads;
              std::vector<int> bad(4);
              for (std::size_t thread = 0; thread < bad.size(); ++thread) {
                threads.emplace_back([&bad, thread] {
                  for (int round = 0; round < 10; ++round) {
                    const std::string key = "of thread " + std::to_string(thread);
                    put(key, std::to_string(round));
                    bad[thread] += get(key) != std::to_string(round) ? 1 : 0;
                    bad[thread] += save() != 0 ? 1 : 0;
                  }
                });
              }
              for (std::thread& thread : threads)
                thread.join();
              return std::to_string(bad[0] + bad[1] + bad[2] + bad[3]);
            }),
            "0");
  for (int thread = 0; thread < 4; ++thread)
    EXPECT_EQ(getInChild("of thread " + std::to_string(thread)), "9");
}

TEST_F(SharedConfig, KeepsTheOldValuesOfAProcessKilledBeforeItSaves) {
  putInChild("a", "old");
  putInChild("b", "old");
  const ChildOutcome outcome = Child([]() -> std::string {
                                 put("a", "new");
                                 put("b", "new");
                                 std::raise(SIGKILL);
                                 return "";
                               }).wait();
  EXPECT_EQ(outcome.exitCode, 128 + SIGKILL);
  EXPECT_EQ(getInChild("a") + getInChild("b"), "oldold");
}

TEST_F(SharedConfig, KeepsTheNewValuesOfAProcessKilledAfterItHasSaved) {
  putInChild("a", "old");
  const ChildOutcome outcome = Child([]() -> std::string {
                                 put("a", "new");
                                 put("b", "new");
                                 save();
                                 std::raise(SIGKILL);
                                 return "";
                               }).wait();
  EXPECT_EQ(outcome.exitCode, 128 + SIGKILL);
  EXPECT_EQ(getInChild("a") + getInChild("b"), "newnew");
}

/// Killed wherever it happens to be, among saves of the same number under many keys.
TEST_F(SharedConfig, KeepsEverySaveWholeHoweverItsProcessIsKilled) {
  constexpr int kKeys = 40;
  std::mt19937 random(5);
  int least = 0;
  for (int round = 0; round < 12; ++round) {
    SharedNumber saves;
    const Child child([&]() -> std::string {
      for (int number = least + 1;; ++number) {
        for (int key = 0; key < kKeys; ++key)
          put("key " + std::to_string(key), std::to_string(number));
        if (save() != 0)
          return "not saved";
        saves.add();
      }
    });
    const int wanted = 1 + static_cast<int>(random() % 3);
    saves.waitFor(wanted);
    for (auto spin = random() % 2000; spin > 0; --spin)
      sched_yield();
    child.kill(SIGKILL);
    EXPECT_EQ(child.wait().exitCode, 128 + SIGKILL);
    const std::string number = getInChild("key 0");
    ASSERT_GE(std::stoi(number), least + wanted);
    EXPECT_EQ(inChild([&] {
                int same = 0;
                for (int key = 0; key < kKeys; ++key)
                  same += get("key " + std::to_string(key)) == number ? 1 : 0;
                return std::to_string(same);
              }),
              std::to_string(kKeys));
    least = std::stoi(number);
  }
}

/// Ends as a process does that is killed with half of a save in the file.
void leaveHalfASave(const fs::path& file) {
  const ChildOutcome outcome = Child([&]() -> std::string {
                                 sqlite3* database = nullptr;
                                 sqlite3_open(file.c_str(), &database);
                                 sqlite3_exec(database,
                                              "PRAGMA cache_size = 1; BEGIN IMMEDIATE;"
                                              "UPDATE setting SET value = 'half' || value",
                                              nullptr, nullptr, nullptr);
                                 std::raise(SIGKILL);
                                 return "";
                               }).wait();
  EXPECT_EQ(outcome.exitCode, 128 + SIGKILL);
  EXPECT_GT(fs::file_size(file.string() + "-journal"), 0U);
}

TEST_F(SharedConfig, ReadersUndoAHalfSave) {
  const std::string old(300, 'o');
  EXPECT_EQ(inChild([&] {
              for (int key = 0; key < 500; ++key)
                put("key " + std::to_string(key), old);
              return std::to_string(save());
            }),
            "0");
  leaveHalfASave(folder_.file());
  EXPECT_EQ(inChild([] { return std::string(nkCFGKeyExists(kDefaultStore, kRoot) ? "1" : "0"); }),
            "1");
  leaveHalfASave(folder_.file());
  EXPECT_EQ(inChild([&] {
              int same = 0;
              for (int key = 0; key < 500; ++key)
                same += get("key " + std::to_string(key)) == old ? 1 : 0;
              return std::to_string(same);
            }),
            "500");
}

TEST_F(SharedConfig, SaversUndoAHalfSave) {
  EXPECT_EQ(inChild([&] {
              for (int key = 0; key < 500; ++key)
                put("key " + std::to_string(key), std::string(300, 'o'));
              return std::to_string(save());
            }),
            "0");
  leaveHalfASave(folder_.file());
  putInChild("key 0", "new");
  EXPECT_EQ(getInChild("key 0"), "new");
  EXPECT_EQ(getInChild("key 499"), std::string(300, 'o'));
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"config.db", "config.db.lock"}));
}

}  // namespace
