// SPDX-License-Identifier: BSD-2-Clause
//
// Memory for frames.
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

/// What QFrameMem is asked to do.
enum QFrameCode : std::uint32_t { kFrameAllocate = 10, kFrameFree = 11 };
inline constexpr std::uint32_t kFrameFlags = 0x2120;

/// kFrameAllocate: `*frame` becomes a frame with a `frameBuffer` of `bytes` bytes, aligned to 64,
/// contents undefined. kFrameFree: gives a frame from here back and sets `*frame` to null; null is
/// left alone. `flags` is not read. 0 on success; else 0xFFFFFFFF, and `*frame` is null when there
/// was no memory.
NKDRAW_API std::uint32_t QFrameMem(std::uint32_t code, std::uint32_t bytes, std::uint32_t flags,
                                   QFRAME** frame);
