// SPDX-License-Identifier: BSD-2-Clause
//
// Events and critical sections on the standard library's mutexes.
#include <nkdraw/platform/sync.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "handle_table.h"

namespace {

using nkdraw::handlesOf;

class Event {
 public:
  Event(bool staysSet, bool startsSet) : manualReset(staysSet), signalled(startsSet) {}

  void set() {
    {
      const std::scoped_lock lock(mutex);
      signalled = true;
    }
    manualReset ? changed.notify_all() : changed.notify_one();
  }

  /// False on timeout.
  bool wait(std::uint32_t milliseconds) {
    const auto isSignalled = [this] { return signalled; };
    std::unique_lock lock(mutex);
    if (milliseconds == NKForever)
      changed.wait(lock, isSignalled);
    else if (!changed.wait_for(lock, std::chrono::milliseconds(milliseconds), isSignalled))
      return false;
    signalled = manualReset;
    return true;
  }

 private:
  const bool manualReset;
  bool signalled;
  std::mutex mutex;
  std::condition_variable changed;
};

using Lock = std::recursive_mutex;

std::shared_ptr<Lock> lockOf(const nkCriticalSection* section) {
  return handlesOf<Lock>().find(section->handle);
}

}  // namespace

nkHandle nkOSCreateEvent(void* /*security*/, int manualReset, int initiallySet,
                         const char* /*name*/) {
  return nkdraw::toHandle(
      handlesOf<Event>().add(nkdraw::tryMakeShared<Event>(manualReset != 0, initiallySet != 0)));
}

std::uint32_t nkOSSetEvent(nkHandle event) {
  const auto found = handlesOf<Event>().find(nkdraw::toNumber(event));
  if (!found)
    return 0;
  found->set();
  return 1;
}

std::uint32_t nkOSWaitForEvent(nkHandle event, std::uint32_t milliseconds) {
  const auto found = handlesOf<Event>().find(nkdraw::toNumber(event));
  if (!found)
    return kWaitFailed;
  return found->wait(milliseconds) ? kWaitSignalled : kWaitTimedOut;
}

std::uint32_t nkOSCloseEvent(nkHandle event) {
  return handlesOf<Event>().close(nkdraw::toNumber(event)) ? 1 : 0;
}

void nkOSInitializeCriticalSection(nkCriticalSection* section) {
  section->handle = handlesOf<Lock>().add(nkdraw::tryMakeShared<Lock>());
}

void nkOSEnterCriticalSection(nkCriticalSection* section) {
  if (const auto lock = lockOf(section))
    lock->lock();
}

std::uint32_t nkOSTryEnterCriticalSection(nkCriticalSection* section) {
  const auto lock = lockOf(section);
  return lock && lock->try_lock() ? 1 : 0;
}

void nkOSLeaveCriticalSection(nkCriticalSection* section) {
  if (const auto lock = lockOf(section))
    lock->unlock();
}

void nkOSDeleteCriticalSection(nkCriticalSection* section) {
  handlesOf<Lock>().close(section->handle);
}
