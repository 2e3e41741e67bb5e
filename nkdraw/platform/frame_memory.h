// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Memory for frames.
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

/// What QFrameMem is asked to do.
enum QFrameCode : std::uint32_t {
  kFrameAllocate = 10,  ///< make a frame
  kFrameFree = 11       ///< give a frame back
};
/// The flags that the library passes to QFrameMem.
inline constexpr std::uint32_t kFrameFlags = 0x2120;

/// Allocates or frees a frame, by `code`. kFrameAllocate sets `*frame` to a frame whose
/// `frameBuffer` has `bytes` bytes, aligned to 64 bytes, contents undefined. kFrameFree gives a
/// frame from here back and sets `*frame` to null; null is left alone. The default implementation
/// does not read `flags`. Returns 0; otherwise 0xFFFFFFFF, and `*frame` is null when there was no
/// memory.
NKDRAW_API std::uint32_t QFrameMem(std::uint32_t code, std::uint32_t bytes, std::uint32_t flags,
                                   QFRAME** frame);
