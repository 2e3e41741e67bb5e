// SPDX-License-Identifier: BSD-2-Clause
//
// What a user tells about an input that does not tell it itself.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <optional>
#include <string>

namespace nkdraw::media {

struct InputShape {
  std::string format;         ///< of FFmpeg's demuxers, "y4m" or "rawvideo"; empty: by its content
  int width = 0, height = 0;  ///< of raw video; 0 if not given
  std::string layout;         ///< of raw video: a layout or a pixel format of FFmpeg
  AVRational rate = {0, 1};   ///< frames a second of raw video and pictures; 0 if not given
  std::optional<std::int64_t> startNumber;  ///< of the first picture of a sequence
};

/// The demuxer that `shape` asks for, or null, and the options to open it with. Throws Failure if
/// there is none such, or if raw video lacks its size or layout.
[[nodiscard]] const AVInputFormat* demuxerFor(const InputShape& shape, const std::string& name,
                                              Options& options);

}  // namespace nkdraw::media
