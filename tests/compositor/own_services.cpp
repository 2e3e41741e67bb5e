// SPDX-License-Identifier: BSD-2-Clause
//
// The services. They allow one block of memory at a time, and four threads a call.
#include "own_services.h"

#include <nkdraw/platform/log.h>
#include <nkdraw/platform/memory.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <new>
#include <semaphore>
#include <stdexcept>
#include <thread>

namespace nkdraw::test {

std::unique_ptr<OwnHost> host;

void OwnHost::note(const std::string& call) {
  const std::scoped_lock lock(mutex);
  calls.push_back(call);
  if (call == throwingCall)
    throw std::runtime_error(call);
}

int OwnHost::count(const std::string& call) {
  const std::scoped_lock lock(mutex);
  return static_cast<int>(std::ranges::count(calls, call));
}

void OwnHost::runHeld() {
  std::vector<std::thread> running;
  for (const Start& start : held)
    running.emplace_back([start] { start.routine(start.parameter); });
  for (std::thread& thread : running)
    thread.join();
  held.clear();
}

void OwnHost::letLastThreadEnd() {
  mayEnd.count_down();
  last.join();
}

void resetHost() {
  host = std::make_unique<OwnHost>();
  setLogSink([](const char* message, void*) { host->note(std::string("log ") + message); },
             nullptr);
}

std::vector<std::uint8_t> contentsOfNewBlock(std::size_t bytes) {
  std::vector<std::uint8_t> contents(bytes);
  std::uint32_t state = 12345;
  for (std::uint8_t& byte : contents) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(state >> 24);
  }
  return contents;
}

}  // namespace nkdraw::test

namespace {

using nkdraw::test::host;

/// Four threads that start together. Only the start is synchronised, so the thread sanitizer
/// reports every byte that two of them write.
class Team {
 public:
  ~Team() {
    for (Member& member : members_) {
      member.routine = nullptr;
      member.wake.release();
    }
  }

  void add(int number, nkThreadRoutine routine, void* parameter) {
    Member& member = members_[static_cast<std::size_t>(number % 4)];
    member.routine = routine;
    member.parameter = parameter;
  }
  void start() {
    for (Member& member : members_)
      member.wake.release();
  }

 private:
  struct Member {
    nkThreadRoutine routine = nullptr;
    void* parameter = nullptr;
    std::counting_semaphore<4> wake{0};
    std::jthread thread{[this] {
      for (wake.acquire(); routine != nullptr; wake.acquire())
        routine(parameter);
    }};
  };
  std::array<Member, 4> members_;
};

Team& team() {
  static Team four;
  return four;
}

constexpr std::align_val_t kBlockAlignment{512};

/// The only block.
struct {
  std::uint8_t* storage;
  std::uint8_t* address;
  std::size_t bytes;
} block;

int self = 0;
thread_local int selfLevel = 0;
thread_local bool stopsWhenCounted = false;
char threadHandles[4];

std::string nameOf(nkHandle thread) {
  for (std::size_t i = 0; i < 4; ++i) {
    if (thread == &threadHandles[i])
      return std::to_string(i);
  }
  return thread == nullptr ? "null" : "?";
}

}  // namespace

void* NKAlloc(std::uint32_t bytes) {
  host->note("alloc " + std::to_string(bytes));
  if (host->memoryThrows)
    throw std::runtime_error("no memory");
  if (!host->hasMemory)
    return nullptr;
  const std::size_t before = host->addressBeyond512;
  block.storage = static_cast<std::uint8_t*>(::operator new(before + bytes, kBlockAlignment));
  block.address = block.storage + before;
  block.bytes = bytes;
  std::ranges::copy(nkdraw::test::contentsOfNewBlock(bytes), block.address);
  return block.address;
}

void NKFree(void* address) {
  host->note(address == block.address ? "free" : "free?");
  host->freedBlock.assign(block.address, block.address + block.bytes);
  ::operator delete(block.storage, kBlockAlignment);
  block = {};
}

nkHandle nkOSGetCurrentThread() {
  return &self;
}

int nkOSGetThreadPriority(nkHandle thread) {
  return thread == &self ? selfLevel : 0;
}

std::uint32_t nkOSSetThreadPriority(nkHandle thread, int level) {
  host->note((thread == &self ? "self" : "priority " + nameOf(thread)) + " " +
             std::to_string(level));
  if (thread == &self)
    selfLevel = level;
  return 1;
}

nkHandle nkOSCreateThread(void* security, std::uint32_t stackSize, nkThreadRoutine start,
                          void* parameter, std::uint32_t flags, std::uint32_t* threadId,
                          const char* tag) {
  const int number = host->threads++;
  const bool plain = security == nullptr && stackSize == 0 && flags == 0 && threadId != nullptr;
  host->note("create " + std::to_string(number) + " " + tag + (plain ? "" : "?"));
  if (number == host->throwingThread)
    throw std::runtime_error("no thread");
  if (number == host->refusedThread)
    return nullptr;
  *threadId = static_cast<std::uint32_t>(number);
  if (host->holdsThreads)
    host->held.push_back({start, parameter});
  else if (host->runsTogether)
    team().add(number, start, parameter);
  else if (host->stopsLastThread && number == 3)
    host->last = std::thread([=] {
      stopsWhenCounted = true;
      start(parameter);
    });
  else
    host->result = start(parameter);
  return &threadHandles[number % 4];
}

std::uint32_t nkOSCloseThread(nkHandle thread, const char* tag) {
  host->note("close " + nameOf(thread) + " " + tag);
  if (host->runsTogether && thread == &threadHandles[0])
    team().start();
  if (host->stopsLastThread && thread == &threadHandles[3])
    host->counted.wait();
  return 1;
}

std::int32_t nkOSInterlockedIncrement(std::int32_t* value) {
  host->note("count in");
  return ++std::atomic_ref(*value);
}

std::int32_t nkOSInterlockedDecrement(std::int32_t* value) {
  host->note("count out");
  const std::int32_t left = --std::atomic_ref(*value);
  if (stopsWhenCounted) {
    host->counted.count_down();
    host->mayEnd.wait();
  }
  return left;
}
