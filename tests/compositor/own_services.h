// SPDX-License-Identifier: BSD-2-Clause
//
// The test program's own host services, which replace the default ones. They record their calls,
// fail on demand, and run threads when the test wants.
#pragma once

#include <nkdraw/platform/thread.h>

#include <cstddef>
#include <cstdint>
#include <latch>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace nkdraw::test {

struct OwnHost {
  // What the services do.
  std::size_t addressBeyond512 = 0;  ///< of blocks
  bool hasMemory = true;
  bool memoryThrows = false;
  int refusedThread = -1;    ///< by the order of creation
  int throwingThread = -1;   ///< its creation throws
  std::string throwingCall;  ///< a call that throws, as it is recorded
  bool holdsThreads = false;
  bool runsTogether = false;  ///< all four at once, each on a thread of its own
  /// The fourth thread runs concurrently with the caller, and stops after it has counted itself
  /// out, before the caller begins to wait.
  bool stopsLastThread = false;

  // The recorded calls.
  std::vector<std::string> calls;
  int threads = 0;
  std::uint32_t result = 0;              ///< of the last thread that ran at once
  std::vector<std::uint8_t> freedBlock;  ///< contents of the last block as it was freed
  struct Start {
    nkThreadRoutine routine;
    void* parameter;
  };
  std::vector<Start> held;

  void note(const std::string& call);
  [[nodiscard]] int count(const std::string& call);
  /// Runs the held threads, and returns after the last.
  void runHeld();
  void letLastThreadEnd();

  std::mutex mutex;
  std::latch counted{1}, mayEnd{1};
  std::thread last;
};

/// Made anew for every test. The error log comes here, too.
extern std::unique_ptr<OwnHost> host;
void resetHost();

/// What a new block of `bytes` bytes holds.
std::vector<std::uint8_t> contentsOfNewBlock(std::size_t bytes);

}  // namespace nkdraw::test
