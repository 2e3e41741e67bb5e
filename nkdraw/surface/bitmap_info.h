// SPDX-License-Identifier: BSD-2-Clause
//
// From a frame's header to its pixel layout.
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

namespace nkdraw {

/// The bytes of a frame with this header. Writes `biBitCount` and `biSizeImage` back as the
/// layout's row says. `type`, unless null, receives the pixelType, or 0xFFFFFFFF if no surface
/// draws in the layout; an unknown `biCompression` leaves it unchanged.
std::uint32_t DrawSizeFromBitmapInfo(BITMAPINFO* info, std::uint32_t* type);

}  // namespace nkdraw
