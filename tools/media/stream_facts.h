// SPDX-License-Identifier: BSD-2-Clause
//
// What files record about their streams: kind, codec, shape, tags and timecode. They are copied
// from another stream, or set for uncompressed frames.
#pragma once

#include "media/frame_kind.h"
#include "media/layouts.h"
#include "media/libav.h"
#include "media/media_output.h"

#include <string>

namespace nkdraw::media {

/// Whether FFmpeg treats both file formats as one.
[[nodiscard]] bool isSameKind(const AVInputFormat& in, const AVOutputFormat& out);

/// "audio, pcm_s16le"
[[nodiscard]] std::string describeStream(const AVStream& stream);

/// Sets `timecode` as the video's, and the file's if that has one; an empty one removes them.
void setTimecodeTag(MediaOutput& output, AVStream& video, const std::string& timecode);

/// AVI has no stream tags: the video's timecode is moved to the file.
void keepTimecodeTag(MediaOutput& output, const AVStream& video);

/// Gives `to` the tags, disposition, shape, side data and times of `from`.
void copyFacts(const AVStream& from, AVStream& to);

/// Gives `to` the codec and the pixels' shape of `from`, with the tag that the output's kind of
/// file has for the codec.
void copyCodec(const AVStream& from, AVStream& to, const AVOutputFormat& format);

/// Whether this file format keeps the layout.
[[nodiscard]] bool keeps(const AVOutputFormat& format, const Layout& layout);

/// Throws Failure unless this file format keeps the layout; `codecOption` is the name of the codec
/// option.
void checkKeeps(const AVOutputFormat& format, const Layout& layout, const std::string& codecOption);

/// Makes the stream one of raw frames in `layout`. Keeps the shape and colours that it already has.
void describeRaw(AVStream& stream, const Layout& layout, const FrameKind& frames,
                 const AVOutputFormat& format);

}  // namespace nkdraw::media
