// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's messages: shown on request, and stored for the one line that a failure prints.
#pragma once

#include <string>

struct AVFormatContext;

namespace nkdraw::media {

/// Chooses whether to show them from now on.
void showLibavMessages(bool show);
[[nodiscard]] bool showsLibavMessages();

/// The first error that FFmpeg logged since the last call of forgetLibavErrors. An encoder logs the
/// cause before the layers above it log that something failed. Empty if there was none.
[[nodiscard]] std::string firstLibavError();
void forgetLibavErrors();

/// The last error that FFmpeg logged, without its line end; empty if there was none.
[[nodiscard]] std::string lastLibavError();

/// Whether the demuxer of this file logged that it is truncated, which it reports only so.
[[nodiscard]] bool demuxerSawCut(const AVFormatContext& file);

/// Whether the demuxer of this file logged, since the last call, that it passed over damage.
[[nodiscard]] bool takeDemuxerComplaint(AVFormatContext& file);

/// The text of an error code, followed by a logged error, by default the last one.
[[nodiscard]] std::string explained(int error, const std::string& reported = lastLibavError());

}  // namespace nkdraw::media
