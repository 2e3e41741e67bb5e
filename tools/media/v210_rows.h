// SPDX-License-Identifier: BSD-2-Clause
//
// Converts rows of 10-bit 4:2:2 between three planes and v210.
#pragma once

#include <cstdint>

namespace nkdraw::media {

/// Packs `width` luma samples and half as many of each chroma, rounded up, into the 16-byte groups
/// at `packed`. Samples have 10 bits; the last group is padded with 0.
void packV210Row(const std::uint16_t* y, const std::uint16_t* cb, const std::uint16_t* cr,
                 std::uint8_t* packed, int width);

/// The reverse.
void unpackV210Row(const std::uint8_t* packed, std::uint16_t* y, std::uint16_t* cb,
                   std::uint16_t* cr, int width);

}  // namespace nkdraw::media
