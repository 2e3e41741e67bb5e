/* SPDX-License-Identifier: BSD-2-Clause
 *
 * Surfaces for hosts written in C. Valid C99.
 *
 * A surface is held by an opaque pointer. Statuses are 0 for success and 0xFFFFFFFF for a null
 * surface where a call says that it tests for one; where it does not, the pointer must not be null.
 */
#ifndef NKDRAW_C_H
#define NKDRAW_C_H

#include <nkdraw/export.h>
#include <nkdraw/platform/records.h>
#include <nkdraw/surface/pixel_type.h>

#include <stdint.h>

#ifdef __cplusplus
class NKDraw;
extern "C" {
#else
typedef struct NKDraw NKDraw;
#endif

/* A surface for the frame that `info` describes, bound to `canvas`, with one reference; null when
 * no surface serves it. Writes biBitCount, and biSizeImage where it was 0, back. */
NKDRAW_API NKDraw* qtGetDrawBMI(BITMAPINFO* info, char* canvas);

/* A surface of a pixelType for `height` rows of `width` pixels, `pitch` bytes apart (0: packed);
 * null for a type that no surface draws in. */
NKDRAW_API NKDraw* qtGetDraw(uint32_t type, int width, int height, int pitch, char* canvas);

/* Count references. qtReleaseDraw deletes the surface with the last one and can't clear the
 * caller's pointer. Both return 0 and do not test for null. */
NKDRAW_API uint32_t qtAddRefDraw(NKDraw* surface);
NKDRAW_API uint32_t qtReleaseDraw(NKDraw* surface);

/* Notes that the default font is wanted. Returns 0; does not test for null. */
NKDRAW_API uint32_t qtUseDefaultFont(NKDraw* surface);

/* Takes the surface's recursive lock: with a timeout of 0 or 0xFFFFFFFF waits without limit and
 * returns 0; else tries so many times, a millisecond apart, and returns 128 when the lock was taken
 * and 0 when not. 0xFFFFFFFF for null. */
NKDRAW_API uint32_t qtNKPixelLock(NKDraw* surface, uint32_t timeout);

/* 1 taken, 0 not, 0xFFFFFFFF for null. */
NKDRAW_API uint32_t qtNKPixelTryLock(NKDraw* surface);

/* Leaves the lock once. 0, or 0xFFFFFFFF for null. */
NKDRAW_API uint32_t qtNKPixelUnlock(NKDraw* surface);

/* Waits at most `timeout` milliseconds for the change event: 0 signalled, 258 timed out,
 * 0xFFFFFFFF for null. */
NKDRAW_API uint32_t qtNKPixelWaitForChangeEvent(NKDraw* surface, uint32_t timeout);

/* Signals the change event; nothing for null. */
NKDRAW_API void qtNKPixelSetChangeEvent(NKDraw* surface);

/* Stores the caller's change stamp, 0xFFFFFFFF only reads it; the stamp, or 0xFFFFFFFF for null. */
NKDRAW_API uint32_t qtNKPixelLastChange(NKDraw* surface, uint32_t value);

/* Binds another frame buffer; height comes before width. 0, or 0xFFFFFFFF for null. */
NKDRAW_API uint32_t qtNKPixelSetCanvas(NKDraw* surface, char* canvas, int height, int width,
                                       int pitch);

/* Do nothing and return 0. */
NKDRAW_API uint32_t qtGetDrawSizeBMI(BITMAPINFO* info);
NKDRAW_API uint32_t qtGetDrawSize(uint32_t type, int width, int height, int pitch);
NKDRAW_API uint32_t qtSetFont(NKDraw* surface, char* name);

#ifdef __cplusplus
}
#endif

#endif
