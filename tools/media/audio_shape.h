// SPDX-License-Identifier: BSD-2-Clause
//
// What samples of a track are: their rate, channels and depth, and the nearest that an encoder
// takes.
#pragma once

#include "media/libav.h"

#include <cstddef>

namespace nkdraw::media {

/// Sample rate and channels. Samples are doubles, which hold every PCM format without loss; the
/// channels of one moment lie side by side.
struct AudioShape {
  /// The shape of a track; unnamed channels get the usual layout.
  explicit AudioShape(const AVCodecParameters& track);
  AudioShape(const AudioShape& other);
  AudioShape& operator=(const AudioShape&) = delete;
  ~AudioShape();

  [[nodiscard]] std::size_t channels() const {
    return static_cast<std::size_t>(layout.nb_channels);
  }

  int rate = 0;
  AVChannelLayout layout = {};
  int bits = 0;          ///< of the track's samples; of what a lossy codec gives, those that count
  bool isFloat = false;  ///< whether the track's samples are floating-point numbers
};

/// The shape in which an encoder gets a track: the track's own, or the lowest rate above it that
/// the encoder and the format have, and the encoder's order of as many channels. Throws Failure if
/// the encoder does not take as many.
[[nodiscard]] AudioShape shapeFor(const AVCodecParameters& track, const AVCodec& encoder,
                                  const AVOutputFormat& format);

/// The sample format of the encoder that holds the shape's bits with none to spare, or the deepest.
[[nodiscard]] AVSampleFormat sampleFormatFor(const AVCodec& encoder, const AudioShape& shape);

/// How many bits of a sample come out of the encoder again, if it is lossless and these are fewer
/// than the track has; otherwise 0.
[[nodiscard]] int fewerBits(const AVCodec& encoder, const AVCodecParameters& track);

}  // namespace nkdraw::media
