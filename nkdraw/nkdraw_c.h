// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Surfaces for hosts written in C, and the compositor, which combines two frames. The header is
/// C99 and C++.
///
/// A surface is an opaque pointer. It must not be null, except where a call names a result for
/// null. Threads that share one bracket their calls with its lock, except for calls that any thread
/// may make. nkdraw/constants.h has names for the numbers.
#ifndef NKDRAW_C_H
#define NKDRAW_C_H

#include <nkdraw/compositor/complete.h>
#include <nkdraw/compositor/exact.h>
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

/// Makes a surface for the frame that `info` describes and binds it to `canvas`, which stays the
/// caller's. Returns the surface, with one reference that qtReleaseDraw gives back, or null when no
/// surface draws in that layout. Writes biBitCount and biSizeImage (bytes) back into `info`; a size
/// that is not 0 is kept, except for mosaics and half floats. `info` must not be null.
NKDRAW_API NKDraw* qtGetDrawBMI(BITMAPINFO* info, char* canvas);

/// Makes a surface of layout `type` (a pixelType) and binds it to `canvas`, which stays the
/// caller's: `height` rows of `width` pixels, `pitch` bytes apart (0: packed). Returns the surface,
/// with one reference that qtReleaseDraw gives back, or null for a type that no surface draws in.
NKDRAW_API NKDraw* qtGetDraw(uint32_t type, int width, int height, int pitch, char* canvas);

/// Adds a reference. Returns 0. Any thread may call it.
NKDRAW_API uint32_t qtAddRefDraw(NKDraw* surface);

/// Gives a reference back, and deletes the surface with the last one; the caller's pointer is not
/// cleared. Returns 0. Any thread may call it.
NKDRAW_API uint32_t qtReleaseDraw(NKDraw* surface);

/// Notes that the default font is wanted. Returns 0.
NKDRAW_API uint32_t qtUseDefaultFont(NKDraw* surface);

/// Takes the surface's recursive lock. A `timeout` of 0 or 0xFFFFFFFF (NKForever) waits without
/// limit and returns 0. Any other is a number of attempts, one millisecond apart: returns 128
/// (NKLockTaken) when one succeeds and 0 when none does. Returns 0xFFFFFFFF for null. Any thread
/// may call it.
NKDRAW_API uint32_t qtNKPixelLock(NKDraw* surface, uint32_t timeout);

/// Takes the lock if no other thread holds it. Returns 1 when taken, otherwise 0; 0xFFFFFFFF for
/// null. Any thread may call it.
NKDRAW_API uint32_t qtNKPixelTryLock(NKDraw* surface);

/// Leaves the lock once. Only the thread that holds it may call this. Returns 0, or 0xFFFFFFFF for
/// null.
NKDRAW_API uint32_t qtNKPixelUnlock(NKDraw* surface);

/// Waits at most `timeout` milliseconds (NKForever: without limit) for the change event. Returns 0
/// (NKWaitSignalled) or 258 (NKWaitTimedOut); 0xFFFFFFFF for null, and when there is no event. Any
/// thread may call it.
NKDRAW_API uint32_t qtNKPixelWaitForChangeEvent(NKDraw* surface, uint32_t timeout);

/// Signals the change event, which lets one waiter through. Does nothing for null. Any thread may
/// call it.
NKDRAW_API void qtNKPixelSetChangeEvent(NKDraw* surface);

/// Stores the caller's change stamp, unless `value` is 0xFFFFFFFF (NKOnlyRead). Returns the stamp,
/// or 0xFFFFFFFF for null. Any thread may call it.
NKDRAW_API uint32_t qtNKPixelLastChange(NKDraw* surface, uint32_t value);

/// Binds another frame buffer, which stays the caller's: `height` rows (first, mind the order) of
/// `width` pixels, `pitch` bytes apart (0: packed). Returns 0, or 0xFFFFFFFF for null.
NKDRAW_API uint32_t qtNKPixelSetCanvas(NKDraw* surface, char* canvas, int height, int width,
                                       int pitch);

///@{
/// Does nothing. Returns 0.
NKDRAW_API uint32_t qtGetDrawSizeBMI(BITMAPINFO* info);
NKDRAW_API uint32_t qtGetDrawSize(uint32_t type, int width, int height, int pitch);
NKDRAW_API uint32_t qtSetFont(NKDraw* surface, char* name);
///@}

/// @name The compositor
/// Frames are `height` rows of `width` pixels; pitches are bytes from row to row. No argument is
/// checked: every buffer must hold what its pitch and height say. Any thread may call, several at
/// once. The patterns and modes are the system's own; docs/compositor.md shows them.
///@{

/// Combines two frames of one layout by a numbered wipe, on four threads that live for the call.
///
/// - `wipe` is a number (NKWipeNumber); bit 31 (NKWipeSwap) exchanges the inputs. A number without
///   a pattern of its own cross-fades. Nothing is drawn for 508 to 515, nor for a slide (500 to
///   507) with its inputs exchanged.
/// - `pixelType` is one of ptRGBA32 to ptBGR24 or ptRGBAFloat to ptYCbCrA64. For any other a slide
///   takes pixels as four bytes, and the other wipes draw nothing.
/// - Rows of `dst` lie `pitchB` bytes apart: `pitchDst` and the five spares are not read. `dst` may
///   be an input of the same pitch.
/// - Slides take all three frames as packed and read no pitch; their `dst` must not be an input.
/// - Number 2 copies whole rows, with the bytes past their pixels: `pitchA` bytes above the edge
///   and `pitchB` below it, whichever the input.
///
/// The progress is position / (rangeEnd - rangeStart); position is not counted from rangeStart. At
/// 0 the result is `srcA` and at 1 it is `srcB`, although some patterns show a first row or column
/// of the other. width * position wraps at 32 bits. The range must not be empty: a cross-fade then
/// draws zeros in integer layouts and not-a-number in floats, and the other wipes draw nothing. A
/// cross-fade truncates the incoming frame's floats to integers.
///
/// Always returns 0, after some 100 milliseconds at most. A worker that is still busy then goes on
/// drawing into `dst`, which must outlive it. If the host could not start a worker
/// (nkOSCreateThread returned null or threw), its quarter of `dst` stays as it was, and the call
/// takes the whole time; number 2 with `pitchA` above `pitchB` has one worker for both left
/// quarters, since their rows overlap. NKDraw_CompleteWipe waits for all of the frame instead.
NKDRAW_API uint32_t NKDraw_DisplayWipe(const uint8_t* srcA, uint32_t pitchA, const uint8_t* srcB,
                                       uint32_t pitchB, uint8_t* dst, uint32_t pitchDst,
                                       uint32_t wipe, int32_t pixelType, uint32_t width,
                                       uint32_t height, uint32_t spare1, uint32_t spare2,
                                       uint32_t spare3, uint32_t spare4, uint32_t spare5,
                                       uint32_t rangeStart, uint32_t rangeEnd, uint32_t position);

/// NKDraw_DisplayWipe for packed 8-bit 4:2:2 frames, two pixels in four bytes. All byte orders are
/// treated as ptYUYV, so in ptUYVY and ptVYUY a pair at an edge mixes the luma of one frame with
/// the chroma of the other. A pair takes its chroma from its first pixel. `pixelType` is not read;
/// `pitchDst` is. Rows are read in whole groups of four pixels and written in whole pairs.
///
/// The calling thread runs at time-critical priority during the call. Returns 0, or 0xFFFFFFFF,
/// with `dst` untouched, when there was no memory for a block of 9 * width * height + 3072 bytes.
/// When nkOSCreateThread threw, `dst` is untouched, too: a message goes to the error log, and the
/// result is 0. When it returned null, that worker's quarter shows what the block held before. The
/// calling thread draws beside its workers; one that is still busy after the bounded wait is waited
/// for until the few rows that it has begun are drawn: after the return none touches the frames.
NKDRAW_API uint32_t NKDraw_DisplayWipeYCbCr(const uint8_t* srcA, uint32_t pitchA,
                                            const uint8_t* srcB, uint32_t pitchB, uint8_t* dst,
                                            uint32_t pitchDst, uint32_t wipe, int32_t pixelType,
                                            uint32_t width, uint32_t height, uint32_t spare1,
                                            uint32_t spare2, uint32_t spare3, uint32_t spare4,
                                            uint32_t spare5, uint32_t rangeStart, uint32_t rangeEnd,
                                            uint32_t position);

/// NKDraw_DisplayWipe for v210 frames. Samples are carried in eight bits: the low two bits of every
/// sample of `dst` are zero, whatever the inputs held. A pair takes its chroma from its first
/// pixel. `pixelType` is not read; a pitch below the layout's minimum (128 bytes for every 48
/// pixels begun) is raised to it. Rows are read and written in whole groups of six pixels.
///
/// Priority, result and memory are those of NKDraw_DisplayWipeYCbCr, except that nkOSCreateThread
/// throwing has the same effect as its returning null.
NKDRAW_API uint32_t NKDraw_DisplayWipeV210(const uint8_t* srcA, uint32_t pitchA,
                                           const uint8_t* srcB, uint32_t pitchB, uint8_t* dst,
                                           uint32_t pitchDst, uint32_t wipe, int32_t pixelType,
                                           uint32_t width, uint32_t height, uint32_t spare1,
                                           uint32_t spare2, uint32_t spare3, uint32_t spare4,
                                           uint32_t spare5, uint32_t rangeStart, uint32_t rangeEnd,
                                           uint32_t position);

/// Shows two frames of 32-bit pixels in one. Bytes are treated by their place in the pixel, byte 0
/// at the lowest address. Always returns 0.
///
/// - `mode` is one mode value in bits 0 to 23 and flags in bits 24 to 31: see NKMuxMode and
///   NKMuxSwap. The flags that mirror a frame change the input buffer itself.
/// - `sizeA`: NKMuxPlain, and any value that is no mode (a sum of modes is none), copies the first
///   frame in one block of this many bytes.
/// - `sizeB`: NKMuxSecond copies the second frame in one block of this many bytes. NKMuxSwap
///   exchanges the frames, but not the sizes.
/// - `wipe` is the wipe word of NKDraw_DisplayWipe, for NKMuxWipe.
/// - `amount`, 0 to 65536, is the weight of the first frame (NKMuxFade), the position of the wipe
///   (NKMuxWipe), or 256 times the size of a block in pixels (NKMuxBlocks). Above 65536 the weights
///   of a fade wrap; blocks never exceed 100 pixels.
/// - `threshold` is the largest difference that counts as equal (NKMuxCompare), the gain, 2 to 255
///   (NKMuxDifference), or the mask of the byte to show (NKMuxGrey).
/// - `splitX` is a column and `splitY` a row, for NKMuxSplit.
/// - `gridType` is an NKGridType. NKGridPercent draws a line every gridX percent of the width and
///   of the height; gridX is 1 to 100, and there must be no more cells than rows or columns. Higher
///   values draw one every gridX columns and gridY rows, each at least 1. A step of 0 rows draws no
///   grid, one of 0 columns only the first vertical line. Horizontal lines fill the whole pitch.
/// - `pitch` is that of all three buffers. NKMuxSideBySide, NKMuxQuarterPair and NKMuxCropPair take
///   rows as packed. `spare` is not read.
///
/// `dst` may be an input, except in modes that move pixels (NKMuxOverUnder, NKMuxSideBySide,
/// NKMuxMirror, NKMuxMirrorToo, NKMuxQuarterPair, NKMuxCropPair) and in wipes that need a third
/// buffer.
///
/// Some modes touch memory past the frame: NKMuxInterleave (by rows) and NKMuxChecker one row past
/// an odd height, NKMuxChecker one pixel past an odd width, and NKMuxSplit with NKMuxMarkSplit one
/// pixel past the row when splitX is the width.
NKDRAW_API uint32_t NKDraw_DisplayMuxRGBA(uint8_t* srcA, uint32_t sizeA, uint8_t* srcB,
                                          uint32_t sizeB, uint8_t* dst, uint32_t spare,
                                          uint32_t mode, uint32_t wipe, uint32_t amount,
                                          uint32_t threshold, uint32_t splitX, uint32_t splitY,
                                          uint32_t gridType, uint32_t gridX, uint32_t gridY,
                                          uint32_t width, uint32_t height, uint32_t pitch);

///@}

#ifdef __cplusplus
}
#endif

#endif
