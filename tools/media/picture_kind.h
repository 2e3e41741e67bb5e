// SPDX-License-Identifier: BSD-2-Clause
//
// Kinds of picture files, by their suffixes, and in what form each holds a frame.
#pragma once

#include "media/encoder.h"
#include "media/libav.h"

#include <string>
#include <string_view>

namespace nkdraw::media {

struct PictureKind {
  std::string_view suffix;
  AVCodecID codec;
  bool still;     ///< whether single frames are written as such
  bool sequence;  ///< whether sequences are written as such: kinds without loss
};

/// By the suffix, ignoring case; null if it is no picture's.
[[nodiscard]] const PictureKind* pictureKindOf(const std::string& path);

/// The same for a still: PNG without such a suffix, as in a pipe.
[[nodiscard]] const PictureKind& stillKindOf(const std::string& path);

/// The encoding of frames in the format `drawn` as a sequence of this name: the smallest form that
/// holds grey or RGB with as many bits, and alpha if the frames have that. Throws Failure.
[[nodiscard]] CodecChoice sequenceCodec(const CodecRequest& request, AVPixelFormat drawn,
                                        const std::string& path);

/// The encoding of a still of this kind: RGB without alpha, with more than 8 bits if the frame has
/// more and the kind holds them.
[[nodiscard]] CodecChoice stillCodec(const PictureKind& kind, AVPixelFormat drawn);

}  // namespace nkdraw::media
