// SPDX-License-Identifier: BSD-2-Clause
//
// Two frames into one, complete whatever the machine's load. The header is C99 and C++.
//
// The entries of eighteen arguments in nkdraw_c.h return after some 100 milliseconds at the most,
// be their workers done or not, and leave out what no thread could be started for. These two wait
// for as long as it takes, and the calling thread draws what no other could be started for. What
// they draw is otherwise theirs to the bit, and so is the contract of each argument. Every field of
// a record counts, by its name; those that a call does not need may be 0.
#ifndef NKDRAW_COMPOSITOR_COMPLETE_H
#define NKDRAW_COMPOSITOR_COMPLETE_H

#include <nkdraw/constants.h>
#include <nkdraw/export.h>
#include <nkdraw/surface/pixel_type.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// One frame of a wipe: `position` of `range` has passed.
typedef struct NKWipe {
  const uint8_t* srcA;  ///< shown at position 0; read only
  uint32_t pitchA;      ///< bytes from row to row
  const uint8_t* srcB;  ///< shown at the end of the range; read only
  uint32_t pitchB;
  uint8_t* dst;
  uint32_t pitchDst;  ///< read for packed 4:2:2 alone; rows of other layouts lie `pitchB` apart
  uint32_t wipe;      ///< an NKWipeNumber, and NKWipeSwap
  int32_t pixelType;  ///< of all three frames
  uint32_t width;     ///< in pixels
  uint32_t height;    ///< in rows
  uint32_t position;
  uint32_t range;  ///< not 0
} NKWipe;

/// Draws one frame of a wipe. The layout chooses what it is done like: ptV210 like
/// NKDraw_DisplayWipeV210, ptYUYV, ptUYVY, ptYVYU and ptVYUY like NKDraw_DisplayWipeYCbCr, all
/// others like NKDraw_DisplayWipe. `wipe` must not be null. NKStatusOk, or NKStatusRefused when
/// there was no memory for a packed 4:2:2 frame; `dst` is then untouched.
NKDRAW_API uint32_t NKDraw_CompleteWipe(const NKWipe* wipe);

/// Two frames of 32-bit pixels on one display.
typedef struct NKMux {
  uint8_t* srcA;   ///< the first frame; mirrored in place when the mode says so
  uint32_t sizeA;  ///< bytes that NKMuxPlain copies
  uint8_t* srcB;   ///< the second frame, likewise
  uint32_t sizeB;  ///< bytes that NKMuxSecond copies
  uint8_t* dst;
  uint32_t mode;       ///< a value and flags of NKMuxMode, and NKMuxSwap
  uint32_t wipe;       ///< of NKMuxWipe, as in NKWipe
  uint32_t amount;     ///< of a fade, a wipe or blocks, 0 to NKMuxWhole
  uint32_t threshold;  ///< of NKMuxCompare; gain of NKMuxDifference; mask of NKMuxGrey
  uint32_t splitX, splitY;
  uint32_t gridType, gridX, gridY;
  uint32_t width;   ///< in pixels
  uint32_t height;  ///< in rows
  uint32_t pitch;   ///< bytes from row to row, of all three
} NKMux;

/// Shows two frames in one, like NKDraw_DisplayMuxRGBA; the two differ in NKMuxWipe alone. `mux`
/// must not be null. NKStatusOk.
NKDRAW_API uint32_t NKDraw_CompleteMux(const NKMux* mux);

#ifdef __cplusplus
}
#endif

#endif
