// SPDX-License-Identifier: BSD-2-Clause
//
// Whether an output can tell players that YCbCr has the full range.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

/// What becomes of full range.
enum class FullRange {
  kTold,     ///< kept, and players learn of it
  kUntold,   ///< kept by a lossless codec, but players take it for studio range
  kGivenUp,  ///< converted to studio range, so that pictures look right
};

[[nodiscard]] FullRange fullRangeIn(const AVCodec& codec, const AVOutputFormat& format);

}  // namespace nkdraw::media
