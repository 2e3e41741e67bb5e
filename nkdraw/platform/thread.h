// SPDX-License-Identifier: BSD-2-Clause
//
// Threads, their priorities, and atomic counters.
#pragma once

#include <nkdraw/platform/sync.h>

#include <cstdint>

/// Where a thread starts; its result is the thread's exit code.
using nkThreadRoutine = std::uint32_t (*)(void* parameter);

/// The priority that asks the scheduler for real time; without the right to it the thread goes
/// on as it was, and the level is kept and reported all the same.
inline constexpr int kThreadTimeCritical = 15;

/// Starts a thread at once, at level 0. `security`, `stackSize` 0 (the default stack), `flags` 0
/// and `tag` (a label) ask for nothing; `threadId`, unless null, takes a number that no other
/// thread started here has. Null when the thread could not start; the wipes take an exception for
/// the same.
[[nodiscard]] NKDRAW_API nkHandle nkOSCreateThread(void* security, std::uint32_t stackSize,
                                                   nkThreadRoutine start, void* parameter,
                                                   std::uint32_t flags, std::uint32_t* threadId,
                                                   const char* tag);

/// Gives the handle up; the thread runs on. 1, or 0 for a null or closed handle.
NKDRAW_API std::uint32_t nkOSCloseThread(nkHandle thread, const char* tag);

/// A handle that names the calling thread in the two calls below. It needs no closing.
[[nodiscard]] NKDRAW_API nkHandle nkOSGetCurrentThread();

/// The level last set for the thread, 0 for one that was never set or is not known.
[[nodiscard]] NKDRAW_API int nkOSGetThreadPriority(nkHandle thread);

/// Sets the level: kThreadTimeCritical for real time, 0 for the ordinary one.
/// 1, or 0 for a handle that names no running thread.
NKDRAW_API std::uint32_t nkOSSetThreadPriority(nkHandle thread, int level);

/// Add 1 to, or take 1 from, `*value` in one step that all threads see; the new value.
NKDRAW_API std::int32_t nkOSInterlockedIncrement(std::int32_t* value);
NKDRAW_API std::int32_t nkOSInterlockedDecrement(std::int32_t* value);
