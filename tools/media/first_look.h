// SPDX-License-Identifier: BSD-2-Clause
//
// What only decoded frames tell about a clip: whether they are interlaced, their colours, and how
// bright they were mastered.
#pragma once

#include "media/libav.h"
#include "media/media_input.h"

namespace nkdraw::media {

/// The first frame that the video decodes to, read from a file of its own so that the input stays
/// where it is. Null for what is no file, and without a frame.
[[nodiscard]] Frame firstLook(MediaInput& input);

/// Whether the frames are interlaced: as the file says or, if that is silent, as the first frame,
/// which may be null.
[[nodiscard]] bool isInterlaced(const AVStream& video, const AVFrame* first);

/// Gives the example of the frames the facts of the first that it lacks.
void completeFrom(const AVFrame& first, const AVStream& video, AVFrame& example);

/// The order of the fields for the output: the input's own or, if its file is silent, what FFmpeg
/// writes for such frames.
[[nodiscard]] AVFieldOrder fieldOrderFor(const AVStream& video, const AVFrame* first,
                                         AVCodecID codec);

}  // namespace nkdraw::media
