// SPDX-License-Identifier: BSD-2-Clause
//
// What each kind of file keeps of sound and subtitles, so that it is read back as it was written,
// and what streams that it does not keep become.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

/// Whether files of this format keep a stream of this codec. For formats that are not in the table,
/// FFmpeg's answer, and no if it has none.
[[nodiscard]] bool keepsCodec(const AVOutputFormat& format, AVCodecID codec);

/// Whether they keep this stream, its sample rate included.
[[nodiscard]] bool keepsStream(const AVOutputFormat& format, const AVCodecParameters& stream);

/// The only sample rate that the format has, or 0 for any.
[[nodiscard]] int soundRateOf(const AVOutputFormat& format);

/// Whether the place of a sample in the file is its time: the format can't begin sound later than
/// the picture.
[[nodiscard]] bool countsSamples(const AVOutputFormat& format);

/// The encoder for a track that the format does not keep: PCM of the track's depth where that is
/// usual. Null if there is none.
[[nodiscard]] const AVCodec* usualSoundEncoder(const AVOutputFormat& format,
                                               const AVCodecParameters& track);

/// The encoder for text subtitles that the format does not keep. Null if it has no text.
[[nodiscard]] const AVCodec* usualTextEncoder(const AVOutputFormat& format);

}  // namespace nkdraw::media
