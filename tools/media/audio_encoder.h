// SPDX-License-Identifier: BSD-2-Clause
//
// FFmpeg's encoder of one track of sound, and which one is taken.
#pragma once

#include "media/audio_reader.h"
#include "media/libav.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::media {

struct AudioCodec {
  const AVCodec* codec = nullptr;
  std::string options;  // "key=value:key=value"
};

/// The encoder that `request` names ("NAME" or "NAME:KEY=VALUE:..."), else PCM: the track's own
/// kind of it if the output holds that, or one of its depth. Throws Failure.
[[nodiscard]] AudioCodec chooseAudioCodec(const std::optional<std::string>& request,
                                          const AVCodecParameters& track,
                                          const AVOutputFormat& format);

class AudioEncoder {
 public:
  AudioEncoder(const AudioCodec& choice, const AudioShape& shape, const AVOutputFormat& format);

  void describeTo(AVStream& stream) const;
  [[nodiscard]] AVRational timeBase() const { return encoder_->time_base; }

  using TakePacket = std::function<void(AVPacket& packet)>;
  /// Encodes the next `count` moments.
  void encode(const double* samples, std::size_t count, const TakePacket& take);
  /// Encodes what is left.
  void finish(const TakePacket& take);

 private:
  void send(std::size_t count, const TakePacket& take);
  void drain(const AVFrame* frame, const TakePacket& take);

  AudioShape shape_;
  CodecContext encoder_;
  Resampler resampler_;
  Packet packet_ = makePacket();
  std::vector<double> waiting_;
  std::int64_t sent_ = 0;
};

}  // namespace nkdraw::media
