// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's messages: shown on request, and kept for the one line that a failure may print.
#pragma once

#include <string>

namespace nkdraw::media {

/// Shows them from now on, or not.
void showLibavMessages(bool show);
[[nodiscard]] bool showsLibavMessages();

/// The first error that FFmpeg reported since the last call of forgetLibavErrors: encoders say what
/// is wrong before the layers above them say that something is. Empty when there was none.
[[nodiscard]] std::string firstLibavError();
void forgetLibavErrors();

/// The last error that FFmpeg reported, without its line end; empty when there was none.
[[nodiscard]] std::string lastLibavError();

/// Whether FFmpeg said, as its readers do in their messages alone, that a file was cut.
[[nodiscard]] bool libavSawCut();

/// The text of an error code, with a reported error behind it, by default the last.
[[nodiscard]] std::string explained(int error, const std::string& reported = lastLibavError());

}  // namespace nkdraw::media
