// SPDX-License-Identifier: BSD-2-Clause
//
// The rows of a wipe of packed 4:2:2, drawn in one pass from packed rows to packed rows, with the
// results of expanding, wiping and packing again.
#pragma once

#include "row_queue.h"

namespace nkdraw {

/// The wipes of one packed layout. The output's rows are `pitchDst` bytes apart. The last group of
/// a row may reach past its width, into pixels that come from the next row.
struct OnePass422 {
  DrawRows draw;  ///< all rows but, if the width ends within a group, the frame's last
  /// Draws the frame's last row. The pixels past its width are those at `past`, expanded.
  void (*drawLast)(const WipeTask& task, const std::uint8_t* past);
};

extern const OnePass422 kV210InOnePass, kPairsInOnePass;

}  // namespace nkdraw
