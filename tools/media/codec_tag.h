// SPDX-License-Identifier: BSD-2-Clause
//
// The four letters by which QuickTime files and their relatives name a codec.
#pragma once

#include "media/libav.h"

#include <string>

namespace nkdraw::media {

/// Gives a stream the tag with which players expect its codec in this kind of file: avc1 for H.264,
/// hvc1 for HEVC. Left alone, FFmpeg marks 10-bit H.264 of some sizes and rates as AVC-Intra, whose
/// decoders take the headers from a fixed table, and HEVC as a kind that some players refuse.
void tagCodec(AVCodecParameters& video, const AVOutputFormat& format);

/// That tag, "avc1"; empty where FFmpeg chooses it.
[[nodiscard]] std::string tagText(AVCodecID codec, const AVOutputFormat& format);

}  // namespace nkdraw::media
