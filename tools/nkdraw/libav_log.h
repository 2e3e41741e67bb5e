// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's messages: shown on request, and kept for the one line that a failure may print.
#pragma once

#include <string>

namespace nkdraw::tool {

/// Shows them from now on, or not.
void showLibavMessages(bool show);

/// The last error that FFmpeg reported, without its line end; empty when there was none.
[[nodiscard]] std::string lastLibavError();

/// Whether FFmpeg said, as its readers do in their messages alone, that a file was cut.
[[nodiscard]] bool libavSawCut();

/// The text of an error code, with the last reported error behind it.
[[nodiscard]] std::string explained(int error);

}  // namespace nkdraw::tool
