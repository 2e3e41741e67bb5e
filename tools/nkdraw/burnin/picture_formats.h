// SPDX-License-Identifier: BSD-2-Clause
//
// The pixel formats of a clip's frames on their way from the decoder to the encoder, and what a
// user should know about them.
#pragma once

#include "cli/using_media.h"
#include "media/encoder.h"
#include "media/libav.h"

#include <optional>
#include <string>
#include <vector>

namespace nkdraw::tool {

struct PictureFormats {
  AVPixelFormat decoded = AV_PIX_FMT_NONE;  // none for frames that are not decoded
  AVPixelFormat drawn = AV_PIX_FMT_NONE;    // in which they are drawn on
};

/// For decoded frames: their own format if it can be drawn on.
[[nodiscard]] PictureFormats formatsFor(AVPixelFormat decoded);

/// "yuv420p" or "pal8, drawn on in bgra"
[[nodiscard]] std::string pictureText(const PictureFormats& formats);

/// What makes the written pictures others than the decoded ones, apart from the overlay and what
/// the user asked for; `codec` is none for stills.
[[nodiscard]] std::vector<std::string> formatNotes(const PictureFormats& formats,
                                                   const std::optional<CodecChoice>& codec);

}  // namespace nkdraw::tool
