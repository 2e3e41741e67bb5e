// SPDX-License-Identifier: BSD-2-Clause
//
// One picture as a PNG file.
#pragma once

#include "media/libav.h"

#include <string>

namespace nkdraw::media {

/// Writes the picture as 8-bit RGB into `file`; `name` is what messages call it. Throws Failure.
void writeStill(AVFrame& picture, const std::string& file, const std::string& name);

}  // namespace nkdraw::media
