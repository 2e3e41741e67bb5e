// SPDX-License-Identifier: BSD-2-Clause
//
// Streams that appear only while the input is read, too late to be kept.
#pragma once

#include "media/media_input.h"

#include <string>

namespace nkdraw::media {

/// Names them in a line of words; empty if there are none so far.
[[nodiscard]] std::string lateStreams(MediaInput& input);

}  // namespace nkdraw::media
