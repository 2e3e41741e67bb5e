// SPDX-License-Identifier: BSD-2-Clause
//
// Events and critical sections.
#pragma once

#include <nkdraw/constants.h>
#include <nkdraw/export.h>

#include <cstdint>

/// Names an event, a thread or a module of the host; null names none. A handle is never used
/// again for another object, so one that was closed already is refused and not mistaken.
using nkHandle = void*;

/// A recursive lock. The record may be copied byte by byte: both copies then name the same lock.
struct nkCriticalSection {
  std::uint64_t handle = 0;
};

/// What nkOSWaitForEvent returns.
inline constexpr std::uint32_t kWaitSignalled = NKWaitSignalled;
inline constexpr std::uint32_t kWaitTimedOut = NKWaitTimedOut;
inline constexpr std::uint32_t kWaitFailed = NKWaitFailed;

/// Makes an event. `security` and `name` are not read. With `manualReset` 0 the event resets
/// itself when it lets one waiter through; `initiallySet` other than 0 starts it signalled.
/// Null when there is no memory.
[[nodiscard]] NKDRAW_API nkHandle nkOSCreateEvent(void* security, int manualReset, int initiallySet,
                                                  const char* name);

/// Signals the event: one waiter, now or later, goes on. 1, or 0 for a null or closed handle.
NKDRAW_API std::uint32_t nkOSSetEvent(nkHandle event);

/// Waits at most `milliseconds` (0xFFFFFFFF: without limit) for the event.
/// kWaitSignalled, kWaitTimedOut, or kWaitFailed for a null or closed handle.
NKDRAW_API std::uint32_t nkOSWaitForEvent(nkHandle event, std::uint32_t milliseconds);

/// Gives the handle up; threads that wait on the event keep it alive until they are through.
/// 1, or 0 for a null or closed handle.
NKDRAW_API std::uint32_t nkOSCloseEvent(nkHandle event);

/// Makes `section` a free lock.
NKDRAW_API void nkOSInitializeCriticalSection(nkCriticalSection* section);

/// Takes the lock, waiting as long as it takes. The thread that holds it may take it again and
/// must leave it as often. Nothing happens for a deleted section.
NKDRAW_API void nkOSEnterCriticalSection(nkCriticalSection* section);

/// Takes the lock if that needs no waiting: 1 taken, 0 not.
[[nodiscard]] NKDRAW_API std::uint32_t nkOSTryEnterCriticalSection(nkCriticalSection* section);

/// Leaves the lock once. Only the thread that holds it may call this.
NKDRAW_API void nkOSLeaveCriticalSection(nkCriticalSection* section);

/// Gives the lock up. No thread may hold it. A section that was deleted already is left alone.
NKDRAW_API void nkOSDeleteCriticalSection(nkCriticalSection* section);
