// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Threads, their priorities, and atomic counters.
#pragma once

#include <nkdraw/platform/sync.h>

#include <cstdint>

/// Where a thread starts; its result is the thread's exit code.
using nkThreadRoutine = std::uint32_t (*)(void* parameter);

/// The level that asks the scheduler for real time. Without the right to it the thread goes on as
/// it was, but the level is kept and reported.
inline constexpr int kThreadTimeCritical = 15;

/// Starts a thread at once, at level 0, which runs `start(parameter)`. The library passes
/// `security` null, `stackSize` 0 (the default stack) and `flags` 0; `tag` is a label. `threadId`,
/// unless null, takes a number that no other thread started here has. Null when the thread could
/// not be started. A host may throw instead: nkdraw_c.h says what the wipes then do. Given back
/// with nkOSCloseThread.
[[nodiscard]] NKDRAW_API nkHandle nkOSCreateThread(void* security, std::uint32_t stackSize,
                                                   nkThreadRoutine start, void* parameter,
                                                   std::uint32_t flags, std::uint32_t* threadId,
                                                   const char* tag);

/// Closes the handle; the thread runs on. Returns 1, or 0 for a null or closed handle.
NKDRAW_API std::uint32_t nkOSCloseThread(nkHandle thread, const char* tag);

/// A handle that names the calling thread in the two calls below. It needs no closing.
[[nodiscard]] NKDRAW_API nkHandle nkOSGetCurrentThread();

/// The level last set for the thread; 0 when none was set, or the thread is not known.
[[nodiscard]] NKDRAW_API int nkOSGetThreadPriority(nkHandle thread);

/// Sets the level: kThreadTimeCritical for real time, 0 for the ordinary one. Returns 1, or 0 for a
/// handle that names no running thread.
NKDRAW_API std::uint32_t nkOSSetThreadPriority(nkHandle thread, int level);

/// Adds 1 to `*value` atomically. Returns the new value.
NKDRAW_API std::int32_t nkOSInterlockedIncrement(std::int32_t* value);
/// Subtracts 1 from `*value` atomically. Returns the new value.
NKDRAW_API std::int32_t nkOSInterlockedDecrement(std::int32_t* value);
