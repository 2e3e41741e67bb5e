// SPDX-License-Identifier: BSD-2-Clause
//
// Surfaces for frame buffers, and their references.
#pragma once

#include <nkdraw/constants.h>
#include <nkdraw/export.h>
#include <nkdraw/platform/records.h>
#include <nkdraw/surface/pixel_type.h>

#include <cstdint>

class NKDraw;

/// What GetDraw returns when there is no surface for what was asked.
inline constexpr std::uint32_t kNoSurface = NKStatusNoSurface;

/// Makes a surface of layout `type` (a pixelType) and binds it to `canvas`, a buffer of `height`
/// rows of `width` pixels, `pitch` bytes apart (0: packed as the layout packs). `surface` takes it,
/// with one reference that ReleaseDraw gives back; what it held is overwritten.
///
/// `surface` must be null or a surface on entry: for a type that no surface draws in, an object
/// that it holds is bound to the buffer instead, and null gives kNoSurface. The type 0xFFFFFFFF
/// gives 0xFFFFFFFF and touches nothing. 0 on success.
NKDRAW_API std::uint32_t GetDraw(std::uint32_t type, int width, int height, int pitch, char* canvas,
                                 NKDraw*& surface);

/// The same for the frame that a header describes, by its `biCompression` (a FOURCC, 0 or 3) and
/// `biBitCount`; rows are packed, the sign of the height is dropped. Writes `biBitCount` and
/// `biSizeImage` (bytes) back into the header: the size where it was 0, and for mosaics and half
/// floats whatever it was. A header without a layout or a size sets `surface` to null and gives
/// 0xFFFFFFFF; one with a layout that no surface draws in goes the way of its type above, so
/// `surface` must be null or a surface here too.
NKDRAW_API std::uint32_t GetDraw(BITMAPINFO* info, char* canvas, NKDraw*& surface);

/// Does nothing and returns 0.
NKDRAW_API std::uint32_t GetDrawSize(std::uint32_t type, int width, int height, int pitch);

/// Adds a reference. `surface` must not be null. Returns 0. Any thread may call it.
NKDRAW_API std::uint32_t AddRefDraw(NKDraw*& surface);

/// Gives a reference back. With the last one the surface is deleted and `surface` becomes null;
/// otherwise it stays. Returns 0. Any thread may call it.
NKDRAW_API std::uint32_t ReleaseDraw(NKDraw*& surface);

/// Notes that the default font is wanted, whatever `wanted` says. Returns 0.
NKDRAW_API std::uint32_t UseDefaultFont(NKDraw*& surface, bool wanted);

/// Does nothing and returns 0.
NKDRAW_API std::uint32_t SetFont(NKDraw*& surface, char* name);
