// SPDX-License-Identifier: BSD-2-Clause
//
// The proof that a written file plays: it is opened again, and its ends are decoded.
#pragma once

#include "media/libav.h"

#include <string>

namespace nkdraw::media {

/// Opens the complete file `file`, whose kind is `format`, and decodes its first video frame, and
/// where the kind of file can be searched, the last ones that others refer to. Messages use `name`.
/// Throws Failure if either can't be decoded. Files of bare samples, which don't tell what they
/// hold, are not read.
void checkReadable(const std::string& file, const AVOutputFormat& format, const std::string& name);

}  // namespace nkdraw::media
