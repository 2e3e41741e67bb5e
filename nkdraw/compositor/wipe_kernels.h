// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes: seventeen kernels, any of which may draw several rectangles at once on several
// threads. With an empty range (rangeStart equal to rangeEnd) all but the dissolve draw nothing.
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

/// Whole rows, by the two rectangles at the left alone.
extern const WipeKernel WipeEdgeVert;

/// The outgoing frame moves off the incoming one: whole packed frames, without pitches, by the
/// rectangle at the top left alone. Needs a third buffer for `dst`.
extern const WipeKernel WipeSlide;

/// A cross-fade of every part of every pixel, alpha included: of an outgoing part o and an incoming
/// part n, o * (1 - progress) + n * progress in doubles, truncated, its low bits kept. In floats
/// the incoming part is truncated to an integer first. An empty range makes every result
/// not-a-number, which bytes and words store as 0. `dst` may be one of the inputs.
extern const WipeKernel WipeDissolve;

/// The kernel that draws a wipe number; bit 31 is left out of account.
WipeKernel kernelOfWipe(std::uint32_t wipe);

}  // namespace nkdraw
