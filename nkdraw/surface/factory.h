// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Making surfaces for frame buffers, and counting their references.
#pragma once

#include <nkdraw/constants.h>
#include <nkdraw/export.h>
#include <nkdraw/platform/records.h>
#include <nkdraw/surface/pixel_type.h>

#include <cstdint>

class NKDraw;

/// What GetDraw returns when no surface draws in the layout.
inline constexpr std::uint32_t kNoSurface = NKStatusNoSurface;

/// Makes a surface of layout `type` (a pixelType) and binds it to `canvas`, which stays the
/// caller's: `height` rows of `width` pixels, `pitch` bytes apart (0: packed as the layout packs).
/// The result is stored in `surface`, whatever that held, with one reference that ReleaseDraw gives
/// back.
///
/// On entry `surface` must be null or point to a surface. Deliberate: for a type that no surface
/// draws in, a surface that it points to is bound to the buffer instead, with success; null gives
/// kNoSurface. Returns 0 on success, and 0xFFFFFFFF, with nothing touched, for the type 0xFFFFFFFF.
NKDRAW_API std::uint32_t GetDraw(std::uint32_t type, int width, int height, int pitch, char* canvas,
                                 NKDraw*& surface);

/// Makes a surface for the frame that a header describes by `biCompression` (a FOURCC, 0 or 3) and
/// `biBitCount`, with packed rows; the sign of `biHeight` is dropped. Writes `biBitCount` and
/// `biSizeImage` (bytes) back into `info`; a size that is not 0 is kept, except for mosaics and
/// half floats. Sets `surface` to null and returns 0xFFFFFFFF for a header that names no layout or
/// has no size. Otherwise everything is as for the type, including what `surface` must be on entry.
NKDRAW_API std::uint32_t GetDraw(BITMAPINFO* info, char* canvas, NKDraw*& surface);

/// Does nothing and returns 0.
NKDRAW_API std::uint32_t GetDrawSize(std::uint32_t type, int width, int height, int pitch);

/// Adds a reference to `surface`, which must not be null. Returns 0. Any thread may call it.
NKDRAW_API std::uint32_t AddRefDraw(NKDraw*& surface);

/// Gives a reference back. The last one deletes the surface and sets `surface`, which must not be
/// null, to null. Returns 0. Any thread may call it.
NKDRAW_API std::uint32_t ReleaseDraw(NKDraw*& surface);

/// Notes that the default font is wanted; `wanted` is not read. `surface` must not be null. Returns
/// 0.
NKDRAW_API std::uint32_t UseDefaultFont(NKDraw*& surface, bool wanted);

/// Does nothing and returns 0.
NKDRAW_API std::uint32_t SetFont(NKDraw*& surface, char* name);
