// SPDX-License-Identifier: BSD-2-Clause
//
// Which frame of a clip is number 0: the first that can be shown.
#pragma once

#include "media/libav.h"

#include <cstdint>

namespace nkdraw::media {

class MediaInput;

/// Times are in the video's time base; AV_NOPTS_VALUE if unknown.
struct VideoStart {
  /// The time with which frame 0 comes out of the decoder. Files that tell only the order of the
  /// packets give all frames a time that is late.
  std::int64_t first = AV_NOPTS_VALUE;
  /// When frame 0 is shown.
  std::int64_t shown = AV_NOPTS_VALUE;
  /// Frames before it that can't be decoded, since what they need is not in the file.
  std::int64_t undecodable = 0;
};

/// Decodes the first frame to find out: of a pipe by reading ahead, of all else from the file,
/// opened once more. What the file's header says if that gives no frame, or if every frame can be
/// decoded alone.
[[nodiscard]] VideoStart findVideoStart(MediaInput& input);

/// Whether each frame of such video can be decoded alone.
[[nodiscard]] bool isIntraOnly(AVCodecID codec);

}  // namespace nkdraw::media
