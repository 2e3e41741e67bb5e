// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes: seventeen kernels. Each may draw several rectangles at once on several threads. With
// an empty range (rangeStart equal to rangeEnd) only the dissolve draws anything.
#pragma once

#include "wipe_band.h"

namespace nkdraw {

// Hard edges: every pixel whole from one of the inputs. `dst` may be one of them.
extern const WipeKernel WipeEdgeHorz;
extern const WipeKernel WipeCornerTL;
extern const WipeKernel WipeCornerTR;
extern const WipeKernel WipeCornerBR;
extern const WipeKernel WipeCornerBL;
extern const WipeKernel WipeFourCorners;
extern const WipeKernel WipeBoxIn;
extern const WipeKernel WipeBarnDoorVert;
extern const WipeKernel WipeBarnDoorHorz;
extern const WipeKernel WipeBoxTop;
extern const WipeKernel WipeBoxRight;
extern const WipeKernel WipeBoxBottom;
extern const WipeKernel WipeBoxLeft;
extern const WipeKernel WipeIris;

/// Whole rows; only the tasks of the two rectangles on the left draw.
extern const WipeKernel WipeEdgeVert;

/// The outgoing frame slides off the incoming one. Copies whole packed frames, without pitches;
/// only the task of the top left rectangle draws. `dst` must be a third buffer.
extern const WipeKernel WipeSlide;

/// A cross-fade of every part of every pixel, alpha included. From an outgoing part o and an
/// incoming part n it computes o * (1 - progress) + n * progress in doubles, truncates, and keeps
/// the low bits. For floats the incoming part is truncated to an integer first. An empty range
/// makes every result not-a-number, which bytes and words store as 0. `dst` may be one of the
/// inputs.
extern const WipeKernel WipeDissolve;

/// The kernel that draws a wipe number; bit 31 is ignored.
WipeKernel kernelOfWipe(std::uint32_t wipe);

/// Where the pixels of a wipe come from: null if it mixes them. A cross-fade at the ends of its
/// range has runs, too. With an empty range there is nothing to call.
RunsOfRow runsOfWipe(const WipeTask& task);

/// Whether a wipe draws anything.
bool drawsAnything(const WipeTask& task);

}  // namespace nkdraw
