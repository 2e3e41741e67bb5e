// SPDX-License-Identifier: BSD-2-Clause
//
// What an output file asks for, and the choice of its video's encoder: the input's own codec in its
// own quality, unless the user or the kind of file wants another.
#pragma once

#include "media/codec_options.h"
#include "media/encoder.h"
#include "media/libav.h"
#include "media/media_input.h"
#include "media/stream_plan.h"

#include <optional>
#include <string>
#include <vector>

namespace nkdraw::media {

/// One output file.
struct OutputRequest {
  std::string path;
  std::optional<std::string> format;  ///< the kind of file; none: by the path
  CodecRequest codec = {"--codec", {}};
  bool lossless = false;
  bool viewingCopy = false;
  std::vector<std::string> containerOptions;  ///< "KEY=VALUE", for FFmpeg's muxer
  StreamRequest streams;

  /// Whether the video may stay as it is stored.
  [[nodiscard]] bool leavesVideo() const { return !codec.asked && !viewingCopy; }
};

/// The video of the clip, whose frames come in the format `drawn`.
[[nodiscard]] SourceVideo sourceVideo(MediaInput& input, const FrameKind& frames,
                                      AVPixelFormat drawn);

/// The encoder for the output's video, its input format and its options:
/// - --codec: as named, in the source's pixel format if it takes that;
/// - --lossless: uncompressed where the kind of file keeps the pixel format, else FFV1;
/// - --viewing-copy: 8-bit 4:2:0 H.264;
/// - else the source's own codec, profile and bit rate; where FFmpeg has no encoder for it, FFV1;
///   where the kind of file holds neither, its usual codec.
/// The choice's note says what could not be kept. Throws Failure.
[[nodiscard]] CodecChoice chooseDelivery(const OutputRequest& request, const SourceVideo& source,
                                         const AVOutputFormat& format);

/// The encoder for joined clips: as named, else lossless where the kind of file holds that, else
/// its usual codec, which the choice's note says. Throws Failure.
[[nodiscard]] CodecChoice chooseJoined(const CodecRequest& request, const SourceVideo& source,
                                       const AVOutputFormat& format);

/// The options for the output's muxer, "KEY=VALUE".
[[nodiscard]] std::vector<std::string> muxerOptions(const OutputRequest& request,
                                                    const AVOutputFormat& format);

/// "libx264, yuv422p10le, b=1000000, avc1"
[[nodiscard]] std::string deliveryText(const CodecChoice& choice, const AVOutputFormat& format);

}  // namespace nkdraw::media
