// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's encoder for one audio track, and the choice of the encoder.
#pragma once

#include "media/audio_reader.h"
#include "media/encoder.h"
#include "media/libav.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace nkdraw::media {

/// The encoder that the request names, else PCM: the track's own kind if the output format can hold
/// it, or PCM of the same depth, or else the usual encoder for such files. `silent` is the name of
/// the option for no sound, for messages. Throws Failure.
[[nodiscard]] CodecChoice chooseAudioCodec(const CodecRequest& request,
                                           const AVCodecParameters& track,
                                           const AVOutputFormat& format, const std::string& silent);

class AudioEncoder {
 public:
  AudioEncoder(const CodecChoice& choice, const AudioShape& shape, const AVOutputFormat& format);

  void describeTo(AVStream& stream) const;
  [[nodiscard]] AVRational timeBase() const { return encoder_->time_base; }

  /// Encodes the next `count` sample frames.
  void encode(const double* samples, std::size_t count, const TakePacket& take);
  /// Encodes what is left.
  void finish(const TakePacket& take);

 private:
  void open(const AVOutputFormat& format);
  void prepareResampler();
  void send(std::size_t first, std::size_t count, const TakePacket& take);
  void encode(const AVFrame* frame, const TakePacket& take);

  AudioShape shape_;
  CodecChoice choice_;
  CodecContext encoder_;
  Resampler resampler_;
  std::vector<double> waiting_;
  std::int64_t sent_ = 0;
};

}  // namespace nkdraw::media
