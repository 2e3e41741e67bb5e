// SPDX-License-Identifier: BSD-2-Clause
//
// Which video codecs the kinds of files hold, and which one is usual in each.
#pragma once

#include "media/libav.h"

#include <span>

namespace nkdraw::media {

/// Whether players find this codec in files of this kind. FFmpeg's own answer, except for kinds
/// whose muxers take anything and write what nobody can read.
[[nodiscard]] bool carries(const AVOutputFormat& format, AVCodecID codec);

/// Whether FFmpeg's muxer refuses a codec that its lists allow.
[[nodiscard]] bool refuses(const AVOutputFormat& format, AVCodecID codec);

/// The usual codecs of this kind of file, best first; never empty.
[[nodiscard]] std::span<const AVCodecID> usualCodecs(const AVOutputFormat& format);

/// Whether the muxer is one of those for QuickTime files and their relatives.
[[nodiscard]] bool isQuickTimeFamily(const AVOutputFormat& format);

}  // namespace nkdraw::media
