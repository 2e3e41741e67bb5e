// SPDX-License-Identifier: BSD-2-Clause
//
// What a clip is, as far as that can be told before its first frame.
#pragma once

#include <cstdint>
#include <string>
#include "media/frame_kind.h"
#include "media/layouts.h"
#include "media/media_input.h"

namespace nkdraw::media {

/// The layout of the file's own frames, null when they have to be decoded.
[[nodiscard]] const Layout* ownLayout(MediaInput& input);

/// Size, rate and origin of the frames; `layout` is their own, or null.
[[nodiscard]] FrameKind framesOf(MediaInput& input, const Layout* layout);

/// What the video decodes to. Throws Failure for video that FFmpeg can't decode.
[[nodiscard]] AVPixelFormat decodedFormat(MediaInput& input);

/// A frame without pixels in the format `drawn`: the shape and the colours that an encoder is
/// opened with.
[[nodiscard]] Frame exampleOf(MediaInput& input, AVPixelFormat drawn);

/// "25 frames/s"
[[nodiscard]] std::string rateText(AVRational rate);

/// Throws Failure unless the decoded frame `index` of the clip has the size that the clip began
/// with.
void checkSize(const AVFrame& decoded, const FrameKind& frames, const std::string& path,
               std::int64_t index);

}  // namespace nkdraw::media
