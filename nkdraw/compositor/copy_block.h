// SPDX-License-Identifier: BSD-2-Clause
//
// Copies within a frame that may be both an input and the output.
#pragma once

#include <nkdraw/platform/memory.h>

#include <cstdint>

namespace nkdraw {

/// A block copy that does nothing if source and target are the same.
inline void copyBlock(std::uint8_t* target, const std::uint8_t* source, std::uint32_t bytes) {
  if (target != source)
    CopyMemoryFast(target, source, bytes);
}

}  // namespace nkdraw
