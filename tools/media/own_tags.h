// SPDX-License-Identifier: BSD-2-Clause
//
// Tags of a user's own in QuickTime and MP4 files, which have two ways to store tags: by fixed
// codes, and by names.
#pragma once

#include "media/media_output.h"

namespace nkdraw::media {

/// If the output's tags include some without a code, has all of them stored by their names. Tags of
/// the container itself, such as its brand, are removed then. Other file formats keep all tags.
void keepOwnTags(MediaOutput& output);

}  // namespace nkdraw::media
