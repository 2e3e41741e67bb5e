// SPDX-License-Identifier: BSD-2-Clause
//
// From a frame's header to its pixel layout.
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

namespace nkdraw {

/// The bytes of a frame with this header. Writes `biBitCount` and `biSizeImage` back as the
/// layout's row says. `type`, unless null, takes the pixelType, 0xFFFFFFFF when no surface draws
/// in the layout; it stays as it was for a `biCompression` that is not known.
std::uint32_t DrawSizeFromBitmapInfo(BITMAPINFO* info, std::uint32_t* type);

}  // namespace nkdraw
