// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Mirroring frames of four-byte pixels.
///
/// A frame is `height` rows of `width` pixels, `pitch` bytes from row to row. `destination` is
/// `source` itself or a frame apart from it. Bytes past a row's pixels are neither read nor
/// written.
#pragma once

#include <nkdraw/export.h>

#include <cstdint>

/// Mirrors a frame top to bottom.
NKDRAW_API void pxcv_flip_vert(const std::uint8_t* source, std::uint8_t* destination,
                               std::uint32_t width, std::uint32_t height, std::uint32_t pitch);

/// Mirrors a frame left to right. `mask` is 0xFFFFFFFF; the default implementation does not read
/// it.
NKDRAW_API void pxcv_flip_horz(const std::uint8_t* source, std::uint8_t* destination,
                               std::uint32_t width, std::uint32_t height, std::uint32_t pitch,
                               std::uint32_t mask);
