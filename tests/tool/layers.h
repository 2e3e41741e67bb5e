// SPDX-License-Identifier: BSD-2-Clause
//
// Clips, a picture and captions for the layers that a test burns in.
#pragma once

#include "program.h"

#include <tests/support/caption_stream.h>

#include <string>

namespace layers {

using nkdraw::test::CaptionStream;

constexpr int kWidth = 640, kHeight = 360;

/// A clip of one colour, with this sound if any.
std::string makeClip(const std::string& layout, const std::string& colour, int frames,
                     const std::string& sound = "");

/// Runs `nkdraw burnin`, and expects success without messages.
void expectBurnt(const Arguments& arguments);

/// A picture of 60 by 30 pixels that becomes opaque from left to right.
std::string makeLogo();

/// The pairs that put `text` on the last row with the last of them.
CaptionStream popOn(const std::string& text, unsigned channel);

/// A Scenarist file that begins to do so at frame 10, and erases it at frame 50.
std::string makeCaptions(const std::string& text, unsigned channel = 1);

}  // namespace layers
