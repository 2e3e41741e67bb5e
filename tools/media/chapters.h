// SPDX-License-Identifier: BSD-2-Clause
//
// The chapters of a file: which kinds of files hold them, and the copy of those in a part.
#pragma once

#include "media/libav.h"
#include "media/time_window.h"

#include <optional>
#include <string>

namespace nkdraw::media {

/// Whether chapters are read back from files of this format.
[[nodiscard]] bool holdsChapters(const AVOutputFormat& format);

/// Copies what the window holds of the chapters, with times that count from the window's first.
void copyChapters(const AVFormatContext& from, const TimeWindow& window, AVFormatContext& to);

/// What the user should know if the window has chapters that files of this format can't hold.
[[nodiscard]] std::optional<std::string> lostChapters(const AVFormatContext& from,
                                                      const TimeWindow& window,
                                                      const AVOutputFormat& format);

}  // namespace nkdraw::media
