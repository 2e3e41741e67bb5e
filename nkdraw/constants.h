// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Names for the numbers of the interface. The header is C99 and C++. An enumerator is an int in
/// C99: numbers that an int can't hold, and one that is computed with, are typed constants, which C
/// does not take as a case label.
#ifndef NKDRAW_CONSTANTS_H
#define NKDRAW_CONSTANTS_H

#include <stdint.h>

// What calls return.

static const uint32_t NKStatusRefused = 0xFFFFFFFF;    ///< the call was refused, or it failed
static const uint32_t NKStatusNoSurface = 0xFFFFFFFE;  ///< no surface draws in the layout
static const uint32_t NKWaitFailed = 0xFFFFFFFF;       ///< there is no event to wait for

/// What calls return on success, and how waits end.
enum NKStatus {
  NKStatusOk = 0,        ///< success; also Lock without a limit
  NKLockTimedOut = 0,    ///< Lock with a limit: not taken
  NKLockTaken = 128,     ///< Lock with a limit: taken
  NKTryLockBusy = 0,     ///< TryLock: another thread holds the lock
  NKTryLockTaken = 1,    ///< TryLock: taken
  NKWaitSignalled = 0,   ///< the event was signalled
  NKWaitTimedOut = 258,  ///< the event was not signalled in time
};

// Arguments with all bits set.

static const uint32_t NKForever = 0xFFFFFFFF;   ///< a timeout: wait without limit
static const uint32_t NKOnlyRead = 0xFFFFFFFF;  ///< a change stamp: return it, store nothing

// The wipe word: a number in bits 0 to 30, and bit 31.

static const uint32_t NKWipeSwap = 0x80000000;  ///< exchange the inputs; slides then draw nothing

/// Wipe numbers, the system's own. Numbers up to NKWipeLastNumber that are not mentioned here, nor
/// in NKWipeRange, cross-fade.
enum NKWipeNumber {
  NKWipeDissolve = 0,  ///< a cross-fade
  /// An edge travels from left to right. So do 102 to 114, 119 to 125, 127 to 131, 201 to 207, 211
  /// to 214, 221 to 228, 231 to 236, 241 to 246, 251 to 254, 261 to 264, 301 to 306, 310 to 317,
  /// 320 to 329, 340 to 345, 350 to 353 and 409.
  NKWipeEdgeHorz = 1,
  NKWipeEdgeVert = 2,       ///< an edge travels from top to bottom
  NKWipeCornerTL = 3,       ///< a rectangle grows from the upper left corner
  NKWipeCornerTR = 4,       ///< a rectangle grows from the upper right corner
  NKWipeCornerBR = 5,       ///< a rectangle grows from the lower right corner
  NKWipeCornerBL = 6,       ///< a rectangle grows from the lower left corner
  NKWipeFourCorners = 7,    ///< four rectangles grow from the corners
  NKWipeBoxIn = 8,          ///< a frame closes from all edges on the centre
  NKWipeBarnDoorVert = 21,  ///< two doors close from the left and the right
  NKWipeBarnDoorHorz = 22,  ///< two doors close from the top and the bottom
  NKWipeBoxTop = 23,        ///< the outgoing picture shrinks to the middle of the top edge
  NKWipeBoxRight = 24,      ///< the outgoing picture shrinks to the middle of the right edge
  NKWipeBoxBottom = 25,     ///< the outgoing picture shrinks to the middle of the bottom edge
  NKWipeBoxLeft = 26,       ///< the outgoing picture shrinks to the middle of the left edge
  NKWipeIris = 41,  ///< a rectangle grows from the centre; also 42 to 48, 61 to 68, 71 to 74, 101
  NKWipeSlideUp = 500,     ///< the outgoing picture moves off upwards
  NKWipeSlideLeft = 501,   ///< the outgoing picture moves off to the left
  NKWipeSlideDown = 502,   ///< the outgoing picture moves off downwards; also 504 to 507
  NKWipeSlideRight = 503,  ///< the outgoing picture moves off to the right
};

/// Ranges of wipe numbers, both ends included.
enum NKWipeRange {
  NKWipeFirstSlide = 500,        ///< from here on the outgoing picture moves off
  NKWipeLastSlide = 507,         ///< up to here
  NKWipeFirstEmpty = 508,        ///< from here on nothing is drawn
  NKWipeLastEmpty = 515,         ///< up to here
  NKWipeLastNumber = 0x7FFFFFFF  ///< the highest number, and the mask of numbers in a wipe word
};

// The mode word of the multiplexed display: a value in bits 0 to 23, and flags.

static const uint32_t NKMuxSwap =
    0x80000000;  ///< exchange the inputs; NKMuxCompare shows white, not black

/// Mode values and flags. Only flags may be added up: a sum of two values is no mode and shows the
/// first frame. Bytes are those of a pixel; names of colours are those that the bytes have in
/// ptBGRA32.
enum NKMuxMode {
  NKMuxPlain = 1,          ///< the first frame; so does every value without a name
  NKMuxSecond = 2,         ///< the second frame
  NKMuxRedBlue = 4,        ///< byte 2 of the first, byte 0 of the second, zeros
  NKMuxRedCyan = 8,        ///< bytes 2, 3 of the first, bytes 0, 1 of the second
  NKMuxYellowBlue = 16,    ///< bytes 1, 2, 3 of the first, byte 0 of the second
  NKMuxGreenMagenta = 32,  ///< bytes 1, 3 of the first, bytes 0, 2 of the second
  NKMuxInterleave = 64,    ///< rows of both in turn; the other way columns
  NKMuxAverage = 128,      ///< half of each
  NKMuxDifference = 256,   ///< grey where they are equal, times the gain in `threshold`
  NKMuxOverUnder = 512,    ///< every other row of the first over those of the second
  NKMuxSideBySide = 1024,  ///< both squeezed to half their width
  NKMuxSplit = 2048,       ///< the first up to column `splitX`; the other way up to row `splitY`
  NKMuxMirror = 4096,      ///< left half of the first, mirrored left half of the second
  NKMuxMirrorToo = 8192,   ///< the same as NKMuxMirror
  NKMuxCompare = 16384,    ///< the second where they differ by at most `threshold`, else black
  NKMuxFade = 32768,       ///< a mixture: `amount` of the first
  NKMuxWipe = 65536,       ///< the wipe `wipe` at `amount`
  NKMuxChecker = 262144,   ///< pixels of both in turn, like a chess board
  NKMuxBlocks = 524288,    ///< blocks of both in turn, 256 times their size in `amount`
  NKMuxQuarterPair = 1048576,  ///< both at half their size on black
  NKMuxCropPair = 2097152,     ///< half of each, uncut in the other direction
  NKMuxGrey = 8388608,         ///< the byte of the first that `threshold` masks, or the mean

  NKMuxValueMask = 0x00FFFFFF,  ///< the bits of the value; unsigned where it is complemented:
                                ///< ~(uint32_t)NKMuxValueMask

  NKMuxGrid = 0x01000000,            ///< a NKGridPercent grid when `gridType` is NKGridNone
  NKMuxFlipSecondHorz = 0x02000000,  ///< mirror the second frame left to right first
  NKMuxFlipSecondVert = 0x04000000,  ///< mirror the second frame top to bottom first
  NKMuxMarkSplit = 0x08000000,       ///< a grey line at the split
  /// The other direction of NKMuxInterleave, NKMuxSplit, NKMuxMirror and NKMuxCropPair.
  NKMuxOtherWay = 0x10000000,
  NKMuxFlipFirstHorz = 0x20000000,  ///< mirror the first frame left to right first
  NKMuxFlipFirstVert = 0x40000000,  ///< mirror the first frame top to bottom first
};

/// An `amount` of all: of the first frame in a fade, of a wipe's progress.
static const uint32_t NKMuxWhole = 65536;

/// The grid of the multiplexed display.
enum NKGridType {
  NKGridNone = 0,     ///< no grid, unless NKMuxGrid asks for one
  NKGridPercent = 1,  ///< a line every `gridX` percent of the width and of the height
  NKGridPixels = 2,   ///< a line every `gridX` columns and `gridY` rows; so do all higher ones
};

// The video record: bits of scanFlags.

/// How the frames of an HZWVIDEO are scanned.
enum NKScan {
  NKScanMask =
      0x300,  ///< the bits that count; other values than the two below are called progressive
  NKScanInterlaced = 0x100,  ///< two fields a frame
  NKScanSegmented = 0x200,   ///< a progressive frame in two segments
};

// The overlay's commands, STREAMCMD.

/// STREAMCMD::commandKind: what is to be done.
enum NKCommand {
  NKCommandReport = 14,     ///< report the settings of a group
  NKCommandSet = 15,        ///< set those settings of a group that the mask names
  NKCommandReportToo = 16,  ///< the same as NKCommandReport
};

/// Bits of STREAMCMD::validMask: which fields count.
enum NKCommandMask {
  NKMaskSmallValue = 0x10,  ///< smallValue
  NKMaskExtraValue = 0x20,  ///< extraValue
  NKMaskValue1 = 0x40,      ///< value1
  NKMaskValue2 = 0x100,     ///< value2
  NKMaskValue3 = 0x400,     ///< value3
  NKMaskText = 0x2000,      ///< textValue
};

/// STREAMCMD::subCommand: a group of settings.
enum NKGroup {
  NKGroupMaster = 111000,        ///< the overlay as a whole
  NKGroupAudio = 111001,         ///< audio meters
  NKGroupVChip = 111002,         ///< the V-chip's rating; kept, not shown
  NKGroupCaptions = 111003,      ///< closed captions
  NKGroupTimecode = 111004,      ///< the timecode block
  NKGroupWatermark = 111005,     ///< the watermark
  NKGroupSourceFormat = 111006,  ///< the line that names the source format
  NKGroupCustomText = 111007,    ///< one of the ten texts
  NKGroupFirstEmpty = 111008,    ///< from here on groups without settings, reported as 0
  NKGroupLastEmpty = 111010,     ///< up to here
};

/// STREAMCMD::value1 of NKGroupTimecode. Added up to set them; a report has the first row that is
/// on.
enum NKTimecodeRow {
  NKRowNone = 0,    ///< no row
  NKRowLtc = 1,     ///< the frame's longitudinal timecode
  NKRowVitc = 2,    ///< the frame's vertical interval timecode
  NKRowClock = 16,  ///< the wall clock
};

/// The layers of an overlay, from bottom to top.
enum NKLayer {
  NKLayerTimecode = 0,      ///< the timecode rows, the wall clock among them
  NKLayerWatermark = 1,     ///< the watermark
  NKLayerSourceFormat = 2,  ///< the line that names the source format
  NKLayerCustomText = 3,    ///< the ten texts
  NKLayerAudio = 4,         ///< audio meters
  NKLayerCaptions = 5,      ///< closed captions
};

#endif
