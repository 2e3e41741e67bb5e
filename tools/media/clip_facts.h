// SPDX-License-Identifier: BSD-2-Clause
//
// The facts about a clip that are known before its first frame.
#pragma once

#include <cstdint>
#include <string>
#include "media/frame_kind.h"
#include "media/layouts.h"
#include "media/media_input.h"

namespace nkdraw::media {

/// The layout of the file's own frames; null if they must be decoded.
[[nodiscard]] const Layout* ownLayout(MediaInput& input);

/// Size, rate and origin of the frames; `layout` is their own, or null.
[[nodiscard]] FrameKind framesOf(MediaInput& input, const Layout* layout);

/// The format that the video decodes to. Throws Failure for video that FFmpeg can't decode.
[[nodiscard]] AVPixelFormat decodedFormat(MediaInput& input);

/// A frame without pixels in the format `drawn`, with the shape and the colours that an encoder
/// needs to be opened.
[[nodiscard]] Frame exampleOf(MediaInput& input, AVPixelFormat drawn);

/// "25 frames/s"
[[nodiscard]] std::string rateText(AVRational rate);

/// Throws Failure unless the decoded frame `index` has the same size as the first frame of the
/// clip.
void checkSize(const AVFrame& decoded, const FrameKind& frames, const std::string& path,
               std::int64_t index);

}  // namespace nkdraw::media
