// SPDX-License-Identifier: BSD-2-Clause
//
// How bright and in which colours a clip was mastered: mastering display (SMPTE ST 2086) and
// content light level (CTA-861.3), from frames to streams and encoders.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

/// Gives the stream those of the frame, unless it has its own.
void copyLightLevels(const AVFrame& frame, AVStream& to);
/// Gives another frame those of the frame.
void copyLightLevels(const AVFrame& frame, AVFrame& to);

/// Adds those of the frame to the options of encoders that write them into the bitstream: libx265
/// and libsvtav1. The user's options come after them.
void addLightLevels(const AVFrame& frame, const AVCodec& codec, Options& options);

}  // namespace nkdraw::media
