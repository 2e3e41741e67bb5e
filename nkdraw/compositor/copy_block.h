// SPDX-License-Identifier: BSD-2-Clause
//
// Copies within a frame that may be an input and the output at once.
#pragma once

#include <nkdraw/platform/memory.h>

#include <cstdint>

namespace nkdraw {

/// A block copy that leaves alone what lies in its place already.
inline void copyBlock(std::uint8_t* target, const std::uint8_t* source, std::uint32_t bytes) {
  if (target != source)
    CopyMemoryFast(target, source, bytes);
}

}  // namespace nkdraw
