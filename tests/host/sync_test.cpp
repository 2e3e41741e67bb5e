// SPDX-License-Identifier: BSD-2-Clause
#include <gtest/gtest.h>
#include <nkdraw/platform/sync.h>
#include <nkdraw/platform/thread.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iterator>
#include <random>
#include <thread>
#include <vector>

#include "failing_new.h"

namespace {

using nkdraw::test::FailingNew;

constexpr std::uint32_t kForever = 0xFFFFFFFF;
constexpr int kAutoReset = 0;
constexpr int kManualReset = 1;

nkHandle newEvent(int manualReset = kAutoReset, int initiallySet = 0) {
  return nkOSCreateEvent(nullptr, manualReset, initiallySet, nullptr);
}

TEST(Event, AnAutoResetEventLetsOneWaitThroughForEachSignal) {
  const nkHandle event = newEvent();
  EXPECT_EQ(nkOSWaitForEvent(event, 0), kWaitTimedOut);
  EXPECT_EQ(nkOSSetEvent(event), 1u);
  EXPECT_EQ(nkOSWaitForEvent(event, kForever), kWaitSignalled);
  EXPECT_EQ(nkOSWaitForEvent(event, 1), kWaitTimedOut);
  nkOSCloseEvent(event);
}

TEST(Event, SignalsDoNotAddUp) {
  const nkHandle event = newEvent();
  nkOSSetEvent(event);
  nkOSSetEvent(event);
  EXPECT_EQ(nkOSWaitForEvent(event, 0), kWaitSignalled);
  EXPECT_EQ(nkOSWaitForEvent(event, 0), kWaitTimedOut);
  nkOSCloseEvent(event);
}

TEST(Event, AManualResetEventStaysSignalled) {
  const nkHandle event = newEvent(kManualReset);
  EXPECT_EQ(nkOSWaitForEvent(event, 0), kWaitTimedOut);
  nkOSSetEvent(event);
  EXPECT_EQ(nkOSWaitForEvent(event, 0), kWaitSignalled);
  EXPECT_EQ(nkOSWaitForEvent(event, kForever), kWaitSignalled);
  nkOSCloseEvent(event);
}

TEST(Event, MayStartSignalled) {
  const nkHandle event = newEvent(kAutoReset, 1);
  EXPECT_EQ(nkOSWaitForEvent(event, 0), kWaitSignalled);
  EXPECT_EQ(nkOSWaitForEvent(event, 0), kWaitTimedOut);
  nkOSCloseEvent(event);
}

TEST(Event, EachSignalGoesToOneOfTheWaitingThreads) {
  constexpr int kThreads = 4, kRounds = 200;
  const nkHandle wake = newEvent(), awake = newEvent();
  std::atomic<int> woken = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
      threads.emplace_back([&] {
        for (int round = 0; round < kRounds; ++round) {
          ASSERT_EQ(nkOSWaitForEvent(wake, kForever), kWaitSignalled);
          ++woken;
          nkOSSetEvent(awake);
        }
      });
    for (int signal = 1; signal <= kThreads * kRounds; ++signal) {
      nkOSSetEvent(wake);
      ASSERT_EQ(nkOSWaitForEvent(awake, kForever), kWaitSignalled);
      ASSERT_EQ(woken, signal);
    }
  }
  nkOSCloseEvent(wake);
  nkOSCloseEvent(awake);
}

TEST(Event, AManualResetEventWakesAllItsWaiters) {
  for (int round = 0; round < 50; ++round) {
    const nkHandle event = newEvent(kManualReset);
    std::atomic<int> arrived = 0, woken = 0;
    {
      std::vector<std::jthread> threads;
      for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&] {
          ++arrived;
          woken += nkOSWaitForEvent(event, kForever) == kWaitSignalled;
        });
      while (arrived < 4)
        std::this_thread::yield();
      nkOSSetEvent(event);
    }
    EXPECT_EQ(woken, 4);
    nkOSCloseEvent(event);
  }
}

TEST(Event, PublishesWhatWasWrittenBeforeTheSignal) {
  const nkHandle event = newEvent();
  int value = 0;
  std::jthread writer([&] {
    value = 7;
    nkOSSetEvent(event);
  });
  EXPECT_EQ(nkOSWaitForEvent(event, kForever), kWaitSignalled);
  EXPECT_EQ(value, 7);
  writer.join();
  nkOSCloseEvent(event);
}

TEST(Event, ClosedUnderAWaiterItStaysUntilTheWaiterIsThrough) {
  const nkHandle event = newEvent();
  std::atomic<std::uint32_t> result = kWaitSignalled;
  std::jthread waiter([&] { result = nkOSWaitForEvent(event, 20); });
  nkOSCloseEvent(event);
  waiter.join();
  EXPECT_TRUE(result == kWaitTimedOut || result == kWaitFailed) << result;
}

TEST(Event, NullAndClosedHandlesAreRefused) {
  const nkHandle event = newEvent(kManualReset, 1);
  EXPECT_EQ(nkOSCloseEvent(event), 1u);
  for (const nkHandle refused : {event, nkHandle{nullptr}}) {
    EXPECT_EQ(nkOSSetEvent(refused), 0u);
    EXPECT_EQ(nkOSWaitForEvent(refused, kForever), kWaitFailed);
    EXPECT_EQ(nkOSCloseEvent(refused), 0u);
  }
}

TEST(Event, AHandleIsNeverUsedAgain) {
  std::vector<nkHandle> handles;
  for (int i = 0; i < 1000; ++i) {
    handles.push_back(newEvent());
    nkOSCloseEvent(handles.back());
  }
  std::ranges::sort(handles);
  EXPECT_EQ(std::ranges::adjacent_find(handles), handles.end());
}

TEST(Event, AHandleOfAnotherKindIsRefused) {
  const auto nothing = [](void*) -> std::uint32_t { return 0; };
  const nkHandle event = newEvent();
  const nkHandle thread = nkOSCreateThread(nullptr, 0, nothing, nullptr, 0, nullptr, nullptr);
  EXPECT_EQ(nkOSCloseEvent(thread), 0u);
  EXPECT_EQ(nkOSCloseEvent(nkOSGetCurrentThread()), 0u);
  EXPECT_EQ(nkOSCloseThread(event, nullptr), 0u);
  EXPECT_EQ(nkOSCloseEvent(event), 1u);
  EXPECT_EQ(nkOSCloseThread(thread, nullptr), 1u);
}

TEST(Event, IsNullWithoutMemory) {
  for (const int allowed : {0, 1}) {
    const FailingNew failing(allowed);
    EXPECT_EQ(newEvent(), nullptr);
  }
}

/// A static object that is made before any event and so outlives what the events stand on.
struct ClosesAtTheEnd {
  nkHandle event = nullptr;

  ~ClosesAtTheEnd() {
    if (event != nullptr && nkOSCloseEvent(event) != 1)
      std::abort();
  }
} closesAtTheEnd;

TEST(Event, MayBeClosedByAStaticObjectWhenTheProcessEnds) {
  closesAtTheEnd.event = newEvent();
  EXPECT_NE(closesAtTheEnd.event, nullptr);
}

std::uint32_t tryFromAnotherThread(nkCriticalSection section) {
  std::uint32_t taken = 2;
  std::thread([&] {
    taken = nkOSTryEnterCriticalSection(&section);
    if (taken == 1)
      nkOSLeaveCriticalSection(&section);
  }).join();
  return taken;
}

class CriticalSection : public testing::Test {
 protected:
  CriticalSection() { nkOSInitializeCriticalSection(&section); }
  ~CriticalSection() override { nkOSDeleteCriticalSection(&section); }

  nkCriticalSection section;
};

TEST_F(CriticalSection, HeldByOneThreadKeepsOthersOut) {
  EXPECT_EQ(tryFromAnotherThread(section), 1u);
  nkOSEnterCriticalSection(&section);
  EXPECT_EQ(tryFromAnotherThread(section), 0u);
  nkOSLeaveCriticalSection(&section);
  EXPECT_EQ(tryFromAnotherThread(section), 1u);
}

TEST_F(CriticalSection, IsRecursiveAndLeftAsOftenAsTaken) {
  nkOSEnterCriticalSection(&section);
  nkOSEnterCriticalSection(&section);
  EXPECT_EQ(nkOSTryEnterCriticalSection(&section), 1u);
  for (int left = 0; left < 3; ++left) {
    EXPECT_EQ(tryFromAnotherThread(section), 0u);
    nkOSLeaveCriticalSection(&section);
  }
  EXPECT_EQ(tryFromAnotherThread(section), 1u);
}

TEST_F(CriticalSection, ACopyNamesTheSameLock) {
  nkCriticalSection copy = section;
  nkOSEnterCriticalSection(&section);
  EXPECT_EQ(tryFromAnotherThread(copy), 0u);
  nkOSLeaveCriticalSection(&copy);
  EXPECT_EQ(tryFromAnotherThread(section), 1u);
}

TEST_F(CriticalSection, GuardsACounterOfManyThreads) {
  constexpr int kThreads = 4, kRounds = 2000;
  int counter = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
      threads.emplace_back([&] {
        for (int round = 0; round < kRounds; ++round) {
          nkOSEnterCriticalSection(&section);
          ++counter;
          nkOSLeaveCriticalSection(&section);
        }
      });
  }
  EXPECT_EQ(counter, kThreads * kRounds);
}

TEST_F(CriticalSection, DeletedOnceThroughEachCopyIsHarmless) {
  nkCriticalSection copy = section;
  nkOSDeleteCriticalSection(&section);
  nkOSDeleteCriticalSection(&copy);
  nkOSDeleteCriticalSection(&section);
}

TEST_F(CriticalSection, NothingHappensForADeletedOne) {
  nkOSDeleteCriticalSection(&section);
  nkOSEnterCriticalSection(&section);
  EXPECT_EQ(nkOSTryEnterCriticalSection(&section), 0u);
  nkOSLeaveCriticalSection(&section);
}

TEST_F(CriticalSection, DeletedInAnyOrderTheOthersGoOn) {
  std::mt19937 random(2);
  std::vector<nkCriticalSection> sections(50);
  for (nkCriticalSection& each : sections)
    nkOSInitializeCriticalSection(&each);
  std::ranges::shuffle(sections, random);
  while (!sections.empty()) {
    nkOSDeleteCriticalSection(&sections.back());
    sections.pop_back();
    for (nkCriticalSection& each : sections) {
      ASSERT_EQ(nkOSTryEnterCriticalSection(&each), 1u);
      nkOSLeaveCriticalSection(&each);
    }
  }
}

TEST(CriticalSectionWithoutMemory, IsLikeADeletedOne) {
  for (const int allowed : {0, 1}) {
    const FailingNew failing(allowed);
    nkCriticalSection section;
    nkOSInitializeCriticalSection(&section);
    EXPECT_EQ(nkOSTryEnterCriticalSection(&section), 0u);
    nkOSEnterCriticalSection(&section);
    nkOSLeaveCriticalSection(&section);
    nkOSDeleteCriticalSection(&section);
  }
}

}  // namespace
