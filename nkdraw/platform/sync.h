// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Events and critical sections.
#pragma once

#include <nkdraw/constants.h>
#include <nkdraw/export.h>

#include <cstdint>

/// Names an event, a thread or a module of the host; null names none. Handles are never reused: one
/// that was closed is refused, not mistaken for another object.
using nkHandle = void*;

/// A recursive lock. The record may be copied byte by byte: both copies then name the same lock.
struct nkCriticalSection {
  std::uint64_t handle = 0;  ///< the host's; 0 names no lock
};

// What nkOSWaitForEvent returns.

inline constexpr std::uint32_t kWaitSignalled = NKWaitSignalled;  ///< the event was signalled
inline constexpr std::uint32_t kWaitTimedOut = NKWaitTimedOut;    ///< it was not, in time
inline constexpr std::uint32_t kWaitFailed = NKWaitFailed;        ///< there is no such event

/// Makes an event. With `manualReset` 0 it resets itself when it lets a waiter through; with
/// `initiallySet` other than 0 it starts signalled. `security` and `name` are not read. Null when
/// there is no memory. Given back with nkOSCloseEvent. Any thread may call it, and all below.
[[nodiscard]] NKDRAW_API nkHandle nkOSCreateEvent(void* security, int manualReset, int initiallySet,
                                                  const char* name);

/// Signals the event: one waiter goes on, now or later. Returns 1, or 0 for a null or closed
/// handle.
NKDRAW_API std::uint32_t nkOSSetEvent(nkHandle event);

/// Waits at most `milliseconds` (0xFFFFFFFF: without limit) for the event. Returns kWaitSignalled,
/// kWaitTimedOut, or kWaitFailed for a null or closed handle.
NKDRAW_API std::uint32_t nkOSWaitForEvent(nkHandle event, std::uint32_t milliseconds);

/// Closes the handle. Threads that wait on the event keep it alive until they are done. Returns 1,
/// or 0 for a null or closed handle.
NKDRAW_API std::uint32_t nkOSCloseEvent(nkHandle event);

/// Makes `section` a free lock.
NKDRAW_API void nkOSInitializeCriticalSection(nkCriticalSection* section);

/// Takes the lock, waiting as long as it takes. The thread that holds it may take it again and must
/// leave it as often. Nothing happens for a deleted section.
NKDRAW_API void nkOSEnterCriticalSection(nkCriticalSection* section);

/// Takes the lock if no other thread holds it. Returns 1 when taken, otherwise 0.
[[nodiscard]] NKDRAW_API std::uint32_t nkOSTryEnterCriticalSection(nkCriticalSection* section);

/// Leaves the lock once. Only the thread that holds it may call this.
NKDRAW_API void nkOSLeaveCriticalSection(nkCriticalSection* section);

/// Ends the lock, which no thread may hold. Does nothing for a section that was deleted already.
NKDRAW_API void nkOSDeleteCriticalSection(nkCriticalSection* section);
