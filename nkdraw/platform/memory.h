// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Blocks of memory, copies and fills.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

/// Allocates a block of `bytes` bytes, aligned to 64 bytes, contents undefined; null when there is
/// no memory. Given back with NKFree. Any thread may call it.
[[nodiscard]] NKDRAW_API void* NKAlloc(std::uint32_t bytes);

/// Frees a block from NKAlloc; null is left alone. Up to two blocks of 4 to 96 MiB, the size of
/// frames, are kept for later calls of NKAlloc. Any thread may call it.
NKDRAW_API void NKFree(void* block);

///@{
/// Copies `bytes` bytes between blocks that do not overlap.
NKDRAW_API void CopyMemoryFast(void* target, const void* source, std::uint32_t bytes);
NKDRAW_API void nkOSCopyMemory(void* target, const void* source, std::uint32_t bytes);
///@}

/// Fills `bytes` bytes with the four bytes of `value`, repeated in memory order. If `bytes` is no
/// multiple of four, the last repetition is cut short. `target` needs no alignment.
NKDRAW_API void SetMemoryFast(void* target, std::uint32_t value, std::uint32_t bytes);

/// Sets `bytes` bytes to zero.
NKDRAW_API void nkOSZeroMemory(void* target, std::uint32_t bytes);
