// SPDX-License-Identifier: BSD-2-Clause
//
// Facts about clips as every description words and names them.
#pragma once

#include "cli/description.h"
#include "cli/using_media.h"
#include "media/encoder.h"
#include "media/layouts.h"
#include "media/libav.h"
#include "media/media_input.h"

#include <string>

namespace nkdraw::tool {

/// "25 frames/s", "rate": {"num": 25, "den": 1}
[[nodiscard]] Piece ratePiece(AVRational rate);

/// "mov,mp4,m4a,3gp,3g2,mj2" and "h264"
[[nodiscard]] Piece formatPiece(MediaInput& input);
[[nodiscard]] Piece codecPiece(MediaInput& input);

/// The encoder of an output, in these words, with its options; null is said by `codec` null.
[[nodiscard]] Piece encoderPiece(const CodecChoice* choice, const std::string& words);

/// "layout    uyvy: 8-bit 4:2:2", "layout": {"name", "description"}
void describeLayout(Description& to, const Layout& layout);

}  // namespace nkdraw::tool
