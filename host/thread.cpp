// SPDX-License-Identifier: BSD-2-Clause
//
// Detached threads, and the priority level stored for each.
#include <nkdraw/platform/thread.h>

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "handle_table.h"

namespace {

using nkdraw::handlesOf;

/// No table ever issues this number.
constexpr std::uint64_t kCallingThread = 0xFFFFFFFFFFFFFFFE;

struct Scheduling {
  int policy = SCHED_OTHER;
  sched_param parameters{};
};

/// The scheduling of one thread. `mutex` guards the rest, and stops the thread from ending while
/// another thread calls the scheduler for it.
struct ThreadState {
  std::mutex mutex;
  bool running = false;
  pthread_t native{};  ///< valid only while the thread runs
  int level = 0;
  std::optional<Scheduling> ordinary;  ///< what to restore, while the level is raised
};

/// A thread of nkOSCreateThread.
struct StartedThread {
  StartedThread(nkThreadRoutine routine, void* argument) : start(routine), parameter(argument) {}

  const nkThreadRoutine start;
  void* const parameter;
  ThreadState state;
  std::shared_ptr<StartedThread> self;  ///< the thread's own share, taken when it starts
};

thread_local ThreadState* startedState = nullptr;

ThreadState& callingThread() {
  if (startedState != nullptr)
    return *startedState;
  thread_local ThreadState foreign;
  foreign.running = true;
  foreign.native = pthread_self();
  return foreign;
}

std::shared_ptr<ThreadState> stateOf(nkHandle thread) {
  const std::uint64_t number = nkdraw::toNumber(thread);
  if (number == kCallingThread)
    return {std::shared_ptr<void>(), &callingThread()};
  const auto started = handlesOf<StartedThread>().find(number);
  return started ? std::shared_ptr<ThreadState>(started, &started->state) : nullptr;
}

/// Asks for the lowest real-time priority. A thread that its program already made real-time stays
/// as it is.
void askForRealTime(ThreadState& state) {
  Scheduling before;
  if (pthread_getschedparam(state.native, &before.policy, &before.parameters) != 0 ||
      before.policy == SCHED_FIFO || before.policy == SCHED_RR)
    return;
  sched_param lowest{};
  lowest.sched_priority = sched_get_priority_min(SCHED_RR);
  if (pthread_setschedparam(state.native, SCHED_RR, &lowest) == 0)
    state.ordinary = before;
}

void goBackToOrdinary(ThreadState& state) {
  if (state.ordinary)
    pthread_setschedparam(state.native, state.ordinary->policy, &state.ordinary->parameters);
  state.ordinary.reset();
}

/// Removes the thread's record when the thread ends, even if it is cancelled.
class RunningThread {
 public:
  explicit RunningThread(StartedThread* thread) {
    const std::scoped_lock lock(thread->state.mutex);
    share = std::move(thread->self);
    startedState = &share->state;
  }
  RunningThread(const RunningThread&) = delete;
  RunningThread& operator=(const RunningThread&) = delete;
  ~RunningThread() {
    startedState = nullptr;
    const std::scoped_lock lock(share->state.mutex);
    share->state.running = false;
  }

  void run() const { share->start(share->parameter); }

 private:
  std::shared_ptr<StartedThread> share;
};

void* runThread(void* thread) {
  RunningThread(static_cast<StartedThread*>(thread)).run();
  return nullptr;
}

class ThreadAttributes {
 public:
  ThreadAttributes() {
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  }
  ThreadAttributes(const ThreadAttributes&) = delete;
  ThreadAttributes& operator=(const ThreadAttributes&) = delete;
  ~ThreadAttributes() { pthread_attr_destroy(&attributes); }

  void setStackSize(std::size_t bytes) {
    const auto least = static_cast<std::size_t>(PTHREAD_STACK_MIN);
    pthread_attr_setstacksize(&attributes, std::max(bytes, least));
  }

  void setScheduling(const Scheduling& scheduling) {
    pthread_attr_setinheritsched(&attributes, PTHREAD_EXPLICIT_SCHED);
    pthread_attr_setschedpolicy(&attributes, scheduling.policy);
    pthread_attr_setschedparam(&attributes, &scheduling.parameters);
  }

  [[nodiscard]] const pthread_attr_t* get() const { return &attributes; }

 private:
  pthread_attr_t attributes;
};

/// A thread starts at the ordinary level, whatever the level of its creator.
std::optional<Scheduling> schedulingOfNewThread() {
  ThreadState& maker = callingThread();
  const std::scoped_lock lock(maker.mutex);
  return maker.ordinary;
}

bool launch(const std::shared_ptr<StartedThread>& thread, std::uint32_t stackSize) {
  ThreadAttributes attributes;
  if (stackSize != 0)
    attributes.setStackSize(stackSize);
  if (const auto scheduling = schedulingOfNewThread())
    attributes.setScheduling(*scheduling);

  ThreadState& state = thread->state;
  const std::scoped_lock lock(state.mutex);
  thread->self = thread;
  state.running = pthread_create(&state.native, attributes.get(), runThread, thread.get()) == 0;
  if (!state.running)
    thread->self.reset();
  return state.running;
}

}  // namespace

nkHandle nkOSCreateThread(void* /*security*/, std::uint32_t stackSize, nkThreadRoutine start,
                          void* parameter, std::uint32_t /*flags*/, std::uint32_t* threadId,
                          const char* /*tag*/) {
  const auto thread = nkdraw::tryMakeShared<StartedThread>(start, parameter);
  const std::uint64_t number = handlesOf<StartedThread>().add(thread);
  if (number == 0)
    return nullptr;
  if (!launch(thread, stackSize)) {
    handlesOf<StartedThread>().close(number);
    return nullptr;
  }
  if (threadId != nullptr)
    *threadId = static_cast<std::uint32_t>(number);
  return nkdraw::toHandle(number);
}

std::uint32_t nkOSCloseThread(nkHandle thread, const char* /*tag*/) {
  return handlesOf<StartedThread>().close(nkdraw::toNumber(thread)) ? 1 : 0;
}

nkHandle nkOSGetCurrentThread() {
  return nkdraw::toHandle(kCallingThread);
}

int nkOSGetThreadPriority(nkHandle thread) {
  const auto state = stateOf(thread);
  if (!state)
    return 0;
  const std::scoped_lock lock(state->mutex);
  return state->level;
}

std::uint32_t nkOSSetThreadPriority(nkHandle thread, int level) {
  const auto state = stateOf(thread);
  if (!state)
    return 0;
  const std::scoped_lock lock(state->mutex);
  if (!state->running)
    return 0;
  level == kThreadTimeCritical ? askForRealTime(*state) : goBackToOrdinary(*state);
  state->level = level;
  return 1;
}

std::int32_t nkOSInterlockedIncrement(std::int32_t* value) {
  return ++std::atomic_ref<std::int32_t>(*value);
}

std::int32_t nkOSInterlockedDecrement(std::int32_t* value) {
  return --std::atomic_ref<std::int32_t>(*value);
}
