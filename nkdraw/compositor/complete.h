// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Two frames into one, complete under any load. The header is C99 and C++.
///
/// The calls of eighteen arguments in nkdraw_c.h return after some 100 milliseconds at most,
/// whether their workers have finished or not, and leave out the part of a worker that could not be
/// started. The two calls here wait as long as it takes, and the calling thread draws the part of a
/// worker that could not be started. Results and the contracts of the arguments are otherwise the
/// same, to the bit: how far rows are read in packed 4:2:2, which wipes and modes read no pitch
/// because they take frames as packed (the slides; NKMuxSideBySide, NKMuxQuarterPair and
/// NKMuxCropPair), and that wipes of packed 4:2:2 raise the calling thread's priority meanwhile.
/// Fields that a wipe or mode does not use may be 0.
#ifndef NKDRAW_COMPOSITOR_COMPLETE_H
#define NKDRAW_COMPOSITOR_COMPLETE_H

#include <nkdraw/constants.h>
#include <nkdraw/export.h>
#include <nkdraw/surface/pixel_type.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// One frame of a wipe, at `position` out of `range`.
typedef struct NKWipe {
  const uint8_t* srcA;  ///< shown at position 0; read only
  uint32_t pitchA;      ///< bytes from row to row, also of `pitchB`; v210 raises those too small
  const uint8_t* srcB;  ///< shown at the end of the range; read only
  uint32_t pitchB;      ///< bytes from row to row
  uint8_t* dst;         ///< the result
  uint32_t pitchDst;    ///< bytes, read for packed 4:2:2 only: other layouts use `pitchB`
  uint32_t wipe;        ///< an NKWipeNumber, with NKWipeSwap added to exchange the inputs
  int32_t pixelType;    ///< of all three frames
  uint32_t width;       ///< in pixels
  uint32_t height;      ///< in rows
  uint32_t position;    ///< progress: 0 to `range`
  uint32_t range;       ///< not 0
} NKWipe;

/// Draws one frame of a wipe: ptV210 like NKDraw_DisplayWipeV210; ptYUYV, ptUYVY, ptYVYU and ptVYUY
/// like NKDraw_DisplayWipeYCbCr; all other layouts like NKDraw_DisplayWipe. `wipe` must not be
/// null. Returns NKStatusOk, or NKStatusRefused, with `dst` untouched: for a layout that no wipe
/// draws in, or without memory for a packed 4:2:2 frame.
NKDRAW_API uint32_t NKDraw_CompleteWipe(const NKWipe* wipe);

/// Two frames of 32-bit pixels on one display.
typedef struct NKMux {
  uint8_t* srcA;       ///< the first frame; mirrored in place when `mode` has such a flag
  uint32_t sizeA;      ///< bytes that NKMuxPlain copies; NKMuxSwap leaves the sizes in place
  uint8_t* srcB;       ///< the second frame, likewise
  uint32_t sizeB;      ///< bytes that NKMuxSecond copies
  uint8_t* dst;        ///< the result
  uint32_t mode;       ///< a value and flags of NKMuxMode, and NKMuxSwap
  uint32_t wipe;       ///< for NKMuxWipe, as in NKWipe
  uint32_t amount;     ///< of a fade, a wipe or blocks, 0 to NKMuxWhole
  uint32_t threshold;  ///< of NKMuxCompare; gain of NKMuxDifference; mask of NKMuxGrey
  uint32_t splitX,     ///< column of NKMuxSplit
      splitY;          ///< row of NKMuxSplit
  uint32_t gridType,   ///< an NKGridType
      gridX,           ///< columns between lines, or percent
      gridY;           ///< rows between lines, with NKGridPixels
  uint32_t width;      ///< in pixels
  uint32_t height;     ///< in rows
  uint32_t pitch;      ///< bytes from row to row, of all three
} NKMux;

/// Shows two frames in one, like NKDraw_DisplayMuxRGBA; only NKMuxWipe differs, as said above.
/// `mux` must not be null. Returns NKStatusOk.
NKDRAW_API uint32_t NKDraw_CompleteMux(const NKMux* mux);

#ifdef __cplusplus
}
#endif

#endif
