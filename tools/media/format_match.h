// SPDX-License-Identifier: BSD-2-Clause
//
// Pixel formats that hold the same samples.
#pragma once

#include "media/libav.h"

namespace nkdraw::media {

/// Whether both formats store the same samples in the same places: they differ in name only.
[[nodiscard]] bool storeAlike(AVPixelFormat a, AVPixelFormat b);

/// Whether both formats hold the same samples, perhaps in another order or byte order, so that
/// either can be converted to the other without loss.
[[nodiscard]] bool holdTheSame(AVPixelFormat a, AVPixelFormat b);

/// Whether frames lose nothing when they are converted between these formats: neither bits nor
/// chroma nor alpha.
[[nodiscard]] bool losesNothing(AVPixelFormat from, AVPixelFormat to);

/// The smallest format in a list that ends with AV_PIX_FMT_NONE which loses nothing of `wanted`;
/// AV_PIX_FMT_NONE if there is none.
[[nodiscard]] AVPixelFormat widerIn(const AVPixelFormat* list, AVPixelFormat wanted);

/// The format in a list that ends with AV_PIX_FMT_NONE which is `wanted`, or holds the same;
/// AV_PIX_FMT_NONE if there is none. Without a list it is `wanted`.
[[nodiscard]] AVPixelFormat sameIn(const AVPixelFormat* list, AVPixelFormat wanted);

}  // namespace nkdraw::media
