// SPDX-License-Identifier: BSD-2-Clause
//
// Blocks of memory, copies and fills.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

/// A block of `bytes` bytes, aligned to 64 bytes, contents undefined; null when there is none. Any
/// thread may call, here and below.
[[nodiscard]] NKDRAW_API void* NKAlloc(std::uint32_t bytes);

/// Frees a block from NKAlloc; null is left alone. Up to two blocks of 4 to 96 MiB, a frame's size,
/// are kept for the next that asks for one.
NKDRAW_API void NKFree(void* block);

/// Copies `bytes` bytes between blocks that do not overlap.
NKDRAW_API void CopyMemoryFast(void* target, const void* source, std::uint32_t bytes);
NKDRAW_API void nkOSCopyMemory(void* target, const void* source, std::uint32_t bytes);

/// Fills `bytes` bytes with the four bytes of `value` in memory order, again and again; a count
/// that is no multiple of four ends inside the value. `target` needs no alignment.
NKDRAW_API void SetMemoryFast(void* target, std::uint32_t value, std::uint32_t bytes);

/// Sets `bytes` bytes to zero.
NKDRAW_API void nkOSZeroMemory(void* target, std::uint32_t bytes);
