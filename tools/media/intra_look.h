// SPDX-License-Identifier: BSD-2-Clause
//
// Whether a video consists of key frames alone, as IMX and AVC-Intra do, and how such frames of
// MPEG-2 are coded. Containers don't tell it.
#pragma once

#include "media/libav.h"
#include "media/media_input.h"

namespace nkdraw::media {

struct IntraLook {
  bool isIntra = false;   ///< the first frames are all key frames
  bool sameSize = false;  ///< and all have the same number of bytes
  /// Of MPEG-2, from the picture coding extension.
  int precision = 0;  ///< of DC, 0 for 8 bits to 3 for 11
  bool nonLinear = false, intraTable = false, alternateScan = false;
};

/// Reads the first packets of the file, opened once more. Nothing is known of pipes.
[[nodiscard]] IntraLook lookForIntra(const MediaInput& input);

}  // namespace nkdraw::media
