// SPDX-License-Identifier: BSD-2-Clause
//
// What files say of their streams: kind, codec, shape, tags and timecode, taken over from another
// stream or those of uncompressed frames.
#pragma once

#include "media/frame_kind.h"
#include "media/layouts.h"
#include "media/libav.h"
#include "media/media_output.h"

#include <string>

namespace nkdraw::media {

/// Whether FFmpeg reads and writes both kinds of files as one.
[[nodiscard]] bool isSameKind(const AVInputFormat& in, const AVOutputFormat& out);

/// "audio, pcm_s16le"
[[nodiscard]] std::string describeStream(const AVStream& stream);

/// Makes `timecode` the video's, and the file's where that has one; an empty one takes them away.
void setTimecodeTag(MediaOutput& output, AVStream& video, const std::string& timecode);

/// AVI has no tags of streams: there the video's timecode becomes the file's.
void keepTimecodeTag(MediaOutput& output, const AVStream& video);

/// Gives `to` the tags, disposition, shape, side data and times of `from`.
void copyFacts(const AVStream& from, AVStream& to);

/// Gives `to` the codec and the pixels' shape of `from`, with the tag that the output's kind of
/// file has for the codec.
void copyCodec(const AVStream& from, AVStream& to, const AVOutputFormat& format);

/// Throws Failure unless files of this kind keep the layout; `codecOption` is what the user calls
/// the choice of a codec.
void checkKeeps(const AVOutputFormat& format, const Layout& layout, const std::string& codecOption);

/// Makes the stream one of plain frames in `layout`. Shape and colours that it already has stay.
void describeRaw(AVStream& stream, const Layout& layout, const FrameKind& frames,
                 const AVOutputFormat& format);

}  // namespace nkdraw::media
