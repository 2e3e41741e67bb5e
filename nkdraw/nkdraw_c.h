/* SPDX-License-Identifier: BSD-2-Clause
 *
 * Surfaces for hosts written in C, and the compositor, which combines two frames. Valid C99.
 *
 * A surface is held by an opaque pointer. Statuses are 0 for success and 0xFFFFFFFF for a null
 * surface where a call says that it tests for one; where it does not, the pointer must not be null.
 * nkdraw/constants.h has names for the numbers.
 */
#ifndef NKDRAW_C_H
#define NKDRAW_C_H

#include <nkdraw/compositor/complete.h>
#include <nkdraw/constants.h>
#include <nkdraw/export.h>
#include <nkdraw/platform/records.h>
#include <nkdraw/surface/pixel_type.h>
#include <nkdraw/version.h>

#include <stdint.h>

#ifdef __cplusplus
class NKDraw;
extern "C" {
#else
typedef struct NKDraw NKDraw;
#endif

/* A surface for the frame that `info` describes, bound to `canvas`, with one reference; null when
 * no surface serves it. Writes biBitCount and biSizeImage back, the size where it was 0, and for
 * mosaics and half floats whatever it was. `info` must not be null; the canvas stays the caller's,
 * and qtReleaseDraw gives the surface back. */
NKDRAW_API NKDraw* qtGetDrawBMI(BITMAPINFO* info, char* canvas);

/* A surface of a pixelType for `height` rows of `width` pixels, `pitch` bytes apart (0: packed);
 * null for a type that no surface draws in. The canvas stays the caller's, and qtReleaseDraw gives
 * the surface back. */
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

/* Binds another frame buffer of `height` rows of `width` pixels, `pitch` bytes apart (0: packed);
 * height comes before width. The canvas stays the caller's. 0, or 0xFFFFFFFF for null. */
NKDRAW_API uint32_t qtNKPixelSetCanvas(NKDraw* surface, char* canvas, int height, int width,
                                       int pitch);

/* Do nothing and return 0. */
NKDRAW_API uint32_t qtGetDrawSizeBMI(BITMAPINFO* info);
NKDRAW_API uint32_t qtGetDrawSize(uint32_t type, int width, int height, int pitch);
NKDRAW_API uint32_t qtSetFont(NKDraw* surface, char* name);

/* The compositor. Frames are `height` rows of `width` pixels; pitches are bytes from row to row. No
 * argument is checked: every buffer must hold what its pitch and height say. Any thread may call,
 * several at once. */

/* Combines two frames of one layout by a numbered wipe, on four threads that live for the call.
 *
 * `wipe` is the number (NKWipeNumber), and in bit 31 (NKWipeSwap) that the inputs change places. A
 * number without a pattern of its own cross-fades, but 508 to 515, and the slides, 500 to 507, with
 * their inputs swapped, draw nothing. `pixelType` is one of ptRGBA32 to ptBGR24 and ptRGBAFloat to
 * ptYCbCrA64; of another, nothing is drawn (a slide takes it for four bytes a pixel). Rows of `dst`
 * lie `pitchB` bytes apart: `pitchDst` and the five spares are not read. `dst` may be an input, of
 * the same pitch, but for the slides, which take all three frames as packed, without pitches.
 * Number 2 copies rows with what lies behind their pixels, `pitchA` bytes above the edge and
 * `pitchB` below it, from either input.
 *
 * The progress is position / (rangeEnd - rangeStart): 0 shows `srcA`, 1 shows `srcB`, but that some
 * patterns have the first row or column of the other one; position is not counted from rangeStart.
 * The range must not be empty: only a cross-fade draws then, zeros in integer layouts, not-a-number
 * in floats. width * position wraps at 32 bits. A cross-fade counts incoming floats as integers.
 *
 * Returns 0 always, after at most some 100 milliseconds; a worker that is still busy then goes on
 * drawing into `dst`, which must outlive it. The quarter of a worker that the host could not start,
 * be it that nkOSCreateThread returned null or that it threw, stays as it was, and the call takes
 * the whole time. NKDraw_CompleteWipe is the call that waits, and leaves nothing out. */
NKDRAW_API uint32_t NKDraw_DisplayWipe(const uint8_t* srcA, uint32_t pitchA, const uint8_t* srcB,
                                       uint32_t pitchB, uint8_t* dst, uint32_t pitchDst,
                                       uint32_t wipe, int32_t pixelType, uint32_t width,
                                       uint32_t height, uint32_t spare1, uint32_t spare2,
                                       uint32_t spare3, uint32_t spare4, uint32_t spare5,
                                       uint32_t rangeStart, uint32_t rangeEnd, uint32_t position);

/* NKDraw_DisplayWipe for packed 8-bit 4:2:2 frames, two pixels in four bytes. Every byte order is
 * treated as ptYUYV: in ptUYVY and ptVYUY a pair at an edge mixes luma and chroma of the two. A
 * pair takes its chroma from its first pixel. `pixelType` is not read, `pitchDst` is honoured. Rows
 * are read and written in whole groups: of four pixels in, of two out.
 *
 * The calling thread runs at the time-critical priority during the call. 0, or 0xFFFFFFFF when
 * there was no memory for a block of 9 * width * height + 3072 bytes; `dst` is then untouched, and
 * so it is when nkOSCreateThread threw, which the error log tells and the result 0 does not. The
 * quarter of a worker that could not start otherwise shows what that block held. */
NKDRAW_API uint32_t NKDraw_DisplayWipeYCbCr(const uint8_t* srcA, uint32_t pitchA,
                                            const uint8_t* srcB, uint32_t pitchB, uint8_t* dst,
                                            uint32_t pitchDst, uint32_t wipe, int32_t pixelType,
                                            uint32_t width, uint32_t height, uint32_t spare1,
                                            uint32_t spare2, uint32_t spare3, uint32_t spare4,
                                            uint32_t spare5, uint32_t rangeStart, uint32_t rangeEnd,
                                            uint32_t position);

/* NKDraw_DisplayWipe for v210 frames. Samples are carried in eight bits: the low two bits of every
 * sample of `dst` are zero, whatever the inputs held. A pair takes its chroma from its first pixel.
 * `pixelType` is not read; a pitch below the layout's minimum (128 bytes for every 48 pixels begun)
 * is raised to it. Rows are read and written in whole groups of six pixels.
 *
 * Priority, result and memory as for NKDraw_DisplayWipeYCbCr, but that a host that throws is one
 * that could not start the thread. */
NKDRAW_API uint32_t NKDraw_DisplayWipeV210(const uint8_t* srcA, uint32_t pitchA,
                                           const uint8_t* srcB, uint32_t pitchB, uint8_t* dst,
                                           uint32_t pitchDst, uint32_t wipe, int32_t pixelType,
                                           uint32_t width, uint32_t height, uint32_t spare1,
                                           uint32_t spare2, uint32_t spare3, uint32_t spare4,
                                           uint32_t spare5, uint32_t rangeStart, uint32_t rangeEnd,
                                           uint32_t position);

/* Shows two frames of 32-bit pixels in one. Bytes are treated by their place in the pixel, byte 0
 * the lowest. `mode` is a mode value in bits 0 to 23 and flags above (NKMuxMode);
 * docs/compositor.md shows them all:
 *
 *   bit 24  draw the grid even when gridType is 0
 *   bit 25  mirror the second frame left to right first   bit 26  top to bottom
 *   bit 27  mark the split (mode 2048) in grey
 *   bit 28  the other direction of modes 64, 2048, 4096, 8192 and 2097152
 *   bit 29  mirror the first frame left to right first    bit 30  top to bottom
 *   bit 31  the inputs change places; white, not black, for what differs in mode 16384
 *
 * A value that is no mode, a sum of modes included, copies the first frame in one block of `sizeA`
 * bytes, mode 2 the second in one of `sizeB`; the sizes stay with their argument when the inputs
 * change places. Mirroring changes the input buffers themselves. `wipe` is the word of
 * NKDraw_DisplayWipe for mode 65536. `amount` is the weight of the first frame in a fade, the
 * position of a wipe, or 256 times the size of blocks: from 0 to 65536; beyond that the weights of
 * a fade wrap, and blocks never exceed 100 pixels. `threshold` is the largest difference that
 * counts as equal (mode 16384), the gain from 2 to 255 of a difference (256), or the mask of the
 * byte to show (8388608). `splitX`, `splitY` are a column and a row. `gridType`: 0 none, 1 every
 * gridX percent of the width and of the height, else every gridX columns and gridY rows; a line's
 * row is filled to the pitch. `pitch` serves all three buffers; modes 1024, 1048576 and 2097152
 * take rows as packed. `spare` is not read.
 *
 * `dst` may be an input in the modes that leave every pixel in its place: all but 512, 1024, 4096,
 * 8192, 1048576 and 2097152, and those wipes that need a third buffer.
 *
 * Nothing is checked. A grid needs gridX from 1 to 100 and no more cells than rows and columns (in
 * percent), gridX and gridY of at least 1 (in pixels); without rows to step by it is not drawn,
 * without columns only its first. Modes 64 (by rows) and 262144 read and write one row past an odd
 * height, 262144 one pixel past an odd width, and a marked split at `width` (mode 2048) writes one
 * pixel past the row. Returns 0. */
NKDRAW_API uint32_t NKDraw_DisplayMuxRGBA(uint8_t* srcA, uint32_t sizeA, uint8_t* srcB,
                                          uint32_t sizeB, uint8_t* dst, uint32_t spare,
                                          uint32_t mode, uint32_t wipe, uint32_t amount,
                                          uint32_t threshold, uint32_t splitX, uint32_t splitY,
                                          uint32_t gridType, uint32_t gridX, uint32_t gridY,
                                          uint32_t width, uint32_t height, uint32_t pitch);

#ifdef __cplusplus
}
#endif

#endif
