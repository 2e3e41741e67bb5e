// SPDX-License-Identifier: BSD-2-Clause
#include <gtest/gtest.h>
#include <nkdraw/platform/thread.h>
#include <pthread.h>
#include <sched.h>

#include <limits>
#include <thread>
#include <vector>

#include "failing_new.h"

namespace {

using nkdraw::test::FailingNew;

constexpr std::uint32_t kForever = 0xFFFFFFFF;

nkHandle startThread(nkThreadRoutine routine, void* parameter, std::uint32_t* id = nullptr) {
  return nkOSCreateThread(nullptr, 0, routine, parameter, 0, id, "test");
}

nkHandle newEvent() {
  return nkOSCreateEvent(nullptr, 0, 0, nullptr);
}

/// What a thread sees of its own scheduling.
struct Scheduling {
  int policy = -1;
  int priority = -1;

  bool operator==(const Scheduling&) const = default;
};

Scheduling schedulingOfThisThread() {
  Scheduling scheduling;
  sched_param parameters{};
  EXPECT_EQ(pthread_getschedparam(pthread_self(), &scheduling.policy, &parameters), 0);
  scheduling.priority = parameters.sched_priority;
  return scheduling;
}

/// Whether the system grants this process the lowest real-time priority.
bool isRealTimeGranted() {
  bool granted = false;
  std::thread([&] {
    sched_param lowest{};
    lowest.sched_priority = sched_get_priority_min(SCHED_RR);
    granted = pthread_setschedparam(pthread_self(), SCHED_RR, &lowest) == 0;
  }).join();
  return granted;
}

/// A thread that goes through its steps when told, so that both sides can look in between.
class SteppedThread {
 public:
  using Step = void (*)(SteppedThread& thread);

  explicit SteppedThread(std::vector<Step> todo) : steps(std::move(todo)) {
    handle = startThread(run, this);
  }
  SteppedThread(const SteppedThread&) = delete;
  SteppedThread& operator=(const SteppedThread&) = delete;
  ~SteppedThread() {
    nkOSCloseThread(handle, nullptr);
    nkOSCloseEvent(go);
    nkOSCloseEvent(done);
  }

  /// Lets the thread take its next step, and waits for it.
  void step() {
    nkOSSetEvent(go);
    ASSERT_EQ(nkOSWaitForEvent(done, kForever), kWaitSignalled);
  }

  nkHandle handle = nullptr;
  int level = -1;
  Scheduling scheduling;

 private:
  static std::uint32_t run(void* self) {
    auto* const thread = static_cast<SteppedThread*>(self);
    for (const Step step : thread->steps) {
      nkOSWaitForEvent(thread->go, kForever);
      step(*thread);
      nkOSSetEvent(thread->done);
    }
    return 0;
  }

  const std::vector<Step> steps;
  const nkHandle go = newEvent();
  const nkHandle done = newEvent();
};

void look(SteppedThread& thread) {
  thread.level = nkOSGetThreadPriority(nkOSGetCurrentThread());
  thread.scheduling = schedulingOfThisThread();
}

TEST(Thread, RunsItsRoutineWithItsParameter) {
  struct Call {
    nkHandle done = newEvent();
    int value = 0;
  } call;
  const nkHandle thread = startThread(
      [](void* parameter) -> std::uint32_t {
        auto* const given = static_cast<Call*>(parameter);
        given->value = 7;
        nkOSSetEvent(given->done);
        return 0;
      },
      &call);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(nkOSWaitForEvent(call.done, kForever), kWaitSignalled);
  EXPECT_EQ(call.value, 7);
  EXPECT_EQ(nkOSCloseThread(thread, "test"), 1u);
  nkOSCloseEvent(call.done);
}

TEST(Thread, RunsOnWhenItsHandleIsClosedAtOnce) {
  SteppedThread thread({look, look});
  EXPECT_EQ(nkOSCloseThread(thread.handle, nullptr), 1u);
  thread.step();
  thread.step();
  EXPECT_EQ(thread.level, 0);
}

TEST(Thread, ManyThreadsEachRunOnce) {
  struct Shared {
    std::int32_t left = 100;
    nkHandle done = newEvent();
  } shared;
  for (int i = 100; i > 0; --i) {
    const nkHandle thread = startThread(
        [](void* parameter) -> std::uint32_t {
          auto* const given = static_cast<Shared*>(parameter);
          if (nkOSInterlockedDecrement(&given->left) == 0)
            nkOSSetEvent(given->done);
          return 0;
        },
        &shared);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(nkOSCloseThread(thread, nullptr), 1u);
  }
  EXPECT_EQ(nkOSWaitForEvent(shared.done, kForever), kWaitSignalled);
  nkOSCloseEvent(shared.done);
}

TEST(Thread, HasItsOwnNumber) {
  const auto nothing = [](void*) -> std::uint32_t { return 0; };
  std::uint32_t first = 0, second = 0;
  nkOSCloseThread(startThread(nothing, nullptr, &first), nullptr);
  nkOSCloseThread(startThread(nothing, nullptr, &second), nullptr);
  EXPECT_NE(first, 0u);
  EXPECT_NE(second, 0u);
  EXPECT_NE(first, second);
}

TEST(Thread, TakesAStackOfTheSizeAskedFor) {
  constexpr std::uint32_t kLarge = 64 << 20;
  for (const std::uint32_t asked : {1u, kLarge}) {
    struct Call {
      nkHandle done = newEvent();
      std::size_t stackSize = 0;
    } call;
    const nkHandle thread = nkOSCreateThread(
        nullptr, asked,
        [](void* parameter) -> std::uint32_t {
          auto* const given = static_cast<Call*>(parameter);
          pthread_attr_t attributes;
          pthread_getattr_np(pthread_self(), &attributes);
          pthread_attr_getstacksize(&attributes, &given->stackSize);
          pthread_attr_destroy(&attributes);
          nkOSSetEvent(given->done);
          return 0;
        },
        &call, 0, nullptr, nullptr);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(nkOSWaitForEvent(call.done, kForever), kWaitSignalled);
    EXPECT_GE(call.stackSize, asked);
    nkOSCloseThread(thread, nullptr);
    nkOSCloseEvent(call.done);
  }
}

TEST(Thread, NullAndClosedHandlesAreRefused) {
  SteppedThread thread({look});
  const nkHandle handle = thread.handle;
  EXPECT_EQ(nkOSSetThreadPriority(handle, 1), 1u);
  EXPECT_EQ(nkOSCloseThread(handle, nullptr), 1u);
  for (const nkHandle refused : {handle, nkHandle{nullptr}}) {
    EXPECT_EQ(nkOSCloseThread(refused, nullptr), 0u);
    EXPECT_EQ(nkOSSetThreadPriority(refused, 1), 0u);
    EXPECT_EQ(nkOSGetThreadPriority(refused), 0);
  }
  thread.step();
}

TEST(Thread, IsNullWithoutMemory) {
  for (const int allowed : {0, 1}) {
    const FailingNew failing(allowed);
    EXPECT_EQ(startThread([](void*) -> std::uint32_t { return 0; }, nullptr), nullptr);
  }
}

TEST(ThreadPriority, IsTheLevelLastSetFromEitherSide) {
  SteppedThread thread({look, look, [](SteppedThread&) {
                          EXPECT_EQ(nkOSSetThreadPriority(nkOSGetCurrentThread(), -2), 1u);
                        }});
  EXPECT_EQ(nkOSGetThreadPriority(thread.handle), 0);
  thread.step();
  EXPECT_EQ(thread.level, 0);
  EXPECT_EQ(nkOSSetThreadPriority(thread.handle, 2), 1u);
  thread.step();
  EXPECT_EQ(thread.level, 2);
  thread.step();
  EXPECT_EQ(nkOSGetThreadPriority(thread.handle), -2);
}

TEST(ThreadPriority, OfTheCallingThreadIsItsOwn) {
  const nkHandle self = nkOSGetCurrentThread();
  EXPECT_EQ(nkOSGetThreadPriority(self), 0);
  EXPECT_EQ(nkOSSetThreadPriority(self, 1), 1u);
  int other = -1;
  std::thread([&] {
    other = nkOSGetThreadPriority(self);
    nkOSSetThreadPriority(self, 2);
  }).join();
  EXPECT_EQ(other, 0);
  EXPECT_EQ(nkOSGetThreadPriority(self), 1);
  EXPECT_EQ(nkOSSetThreadPriority(self, 0), 1u);
}

TEST(ThreadPriority, OfTheCallingThreadNeedsNoClosing) {
  EXPECT_EQ(nkOSCloseThread(nkOSGetCurrentThread(), nullptr), 0u);
  EXPECT_EQ(nkOSSetThreadPriority(nkOSGetCurrentThread(), 0), 1u);
}

TEST(ThreadPriority, Level15IsKeptAndRealTimeWhereGrantedAndTheKeptLevelBringsTheOrdinaryBack) {
  const bool granted = isRealTimeGranted();
  std::thread([&] {
    const nkHandle self = nkOSGetCurrentThread();
    const Scheduling ordinary = schedulingOfThisThread();
    const int kept = nkOSGetThreadPriority(self);
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(nkOSSetThreadPriority(self, kThreadTimeCritical), 1u);
      EXPECT_EQ(nkOSSetThreadPriority(self, kThreadTimeCritical), 1u);
      EXPECT_EQ(nkOSGetThreadPriority(self), kThreadTimeCritical);
      EXPECT_EQ(schedulingOfThisThread().policy, granted ? SCHED_RR : ordinary.policy);
      EXPECT_EQ(nkOSSetThreadPriority(self, kept), 1u);
      EXPECT_EQ(nkOSGetThreadPriority(self), kept);
      EXPECT_EQ(schedulingOfThisThread(), ordinary);
    }
  }).join();
}

TEST(ThreadPriority, OfAStartedThreadIsAskedForThroughItsHandle) {
  const bool granted = isRealTimeGranted();
  const Scheduling ordinary = schedulingOfThisThread();
  SteppedThread thread({look, look});
  EXPECT_EQ(nkOSSetThreadPriority(thread.handle, kThreadTimeCritical), 1u);
  thread.step();
  EXPECT_EQ(thread.level, kThreadTimeCritical);
  EXPECT_EQ(thread.scheduling.policy, granted ? SCHED_RR : ordinary.policy);
  EXPECT_EQ(nkOSSetThreadPriority(thread.handle, 0), 1u);
  thread.step();
  EXPECT_EQ(thread.level, 0);
  EXPECT_EQ(thread.scheduling, ordinary);
}

TEST(ThreadPriority, IsNotHandedDownToThreadsThatARaisedThreadStarts) {
  std::thread([] {
    const Scheduling ordinary = schedulingOfThisThread();
    nkOSSetThreadPriority(nkOSGetCurrentThread(), kThreadTimeCritical);
    SteppedThread child({look});
    child.step();
    EXPECT_EQ(child.level, 0);
    EXPECT_EQ(child.scheduling, ordinary);
  }).join();
}

TEST(ThreadPriority, OfAnEndedThreadCantBeSetAndItsLastLevelStays) {
  SteppedThread thread({look});
  EXPECT_EQ(nkOSSetThreadPriority(thread.handle, 3), 1u);
  thread.step();
  while (nkOSSetThreadPriority(thread.handle, 3) == 1)
    std::this_thread::yield();
  EXPECT_EQ(nkOSGetThreadPriority(thread.handle), 3);
}

TEST(Interlocked, CountsAndGivesTheNewValue) {
  std::int32_t value = -2;
  for (const std::int32_t expected : {-1, 0, 1})
    EXPECT_EQ(nkOSInterlockedIncrement(&value), expected);
  for (const std::int32_t expected : {0, -1})
    EXPECT_EQ(nkOSInterlockedDecrement(&value), expected);
  EXPECT_EQ(value, -1);
}

TEST(Interlocked, Wraps) {
  std::int32_t value = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(nkOSInterlockedIncrement(&value), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(nkOSInterlockedDecrement(&value), std::numeric_limits<std::int32_t>::max());
}

TEST(Interlocked, LosesNothingBetweenThreads) {
  std::int32_t value = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread)
      threads.emplace_back([&] {
        for (int i = 0; i < 10'000; ++i)
          nkOSInterlockedIncrement(&value);
        for (int i = 0; i < 4'000; ++i)
          nkOSInterlockedDecrement(&value);
      });
  }
  EXPECT_EQ(value, 24'000);
}

}  // namespace
