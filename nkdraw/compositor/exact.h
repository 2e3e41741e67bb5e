// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Transitions that keep every bit of both frames. The header is C99 and C++.
#ifndef NKDRAW_COMPOSITOR_EXACT_H
#define NKDRAW_COMPOSITOR_EXACT_H

#include <nkdraw/compositor/complete.h>
#include <nkdraw/export.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Draws one frame of a transition, by the numbers and patterns of NKDraw_CompleteWipe, and loses
/// nothing: samples that come from one frame come bit for bit, and those of a cross-fade are the
/// exact mix (outgoing * (range - position) + incoming * position) / range, rounded to the nearest
/// integer, halves up. At both ends of the range a cross-fade copies its input.
///
/// - Layouts: ptV210; ptYUYV, ptUYVY, ptYVYU and ptVYUY; ptRGBA32 to ptBGR24, ptRGB48 and ptARGB64;
///   ptYCbCr24 to ptYCbCrA64. All samples are mixed, alpha too.
/// - In 4:2:2 edges lie on whole pairs of pixels: one within a pair moves left by a pixel. Slides
///   move by whole pairs.
/// - `pitchA`, `pitchB` and `pitchDst` are each read for their own frame, in bytes. Rows may be any
///   number of bytes apart, but hold all their groups: 16 bytes for every six pixels begun of v210,
///   4 for every two begun of 8-bit 4:2:2. Bytes between rows are not touched. A group that the
///   width cuts is written whole. In v210 words that are mixed or moved, bits 30 and 31 are 0.
/// - `width` and `height` are in pixels and rows; `position` is 0 to `range`.
///
/// Returns NKStatusOk; or NKStatusRefused, with `dst` untouched, if
/// - `wipe` or one of its frames is null, the layout is not one of the above, `width`, `height` or
///   `range` is 0, or `position` is above `range`;
/// - a pitch is smaller than a row, or a frame reaches 4 GiB;
/// - `dst` and an input overlap, each from its first row to the end of its last;
/// - the number draws nothing: 508 to 515, and slides with NKWipeSwap;
/// - it does not cross-fade, and `position` times `width` or `height` passes 32 bits.
///
/// Any thread may call it, several at once. A large frame starts up to four threads
/// (nkOSCreateThread, time-critical) beside the calling one, which draws what they don't.
NKDRAW_API uint32_t NKDraw_ExactWipe(const NKWipe* wipe);

#ifdef __cplusplus
}
#endif

#endif
