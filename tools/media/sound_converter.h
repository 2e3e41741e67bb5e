// SPDX-License-Identifier: BSD-2-Clause
//
// Converts one audio stream: packets in, packets of another codec out, cut to the sample.
#pragma once

#include "media/audio_encoder.h"
#include "media/sound_decoder.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace nkdraw::media {

class SoundConverter {
 public:
  /// Converts the sound of `from`, which must outlive it, from `source.origin` until `end`, in
  /// microseconds. Throws Failure.
  SoundConverter(const AVStream& from, const CodecChoice& choice, const AVOutputFormat& format,
                 const SoundSource& source,
                 std::int64_t end = std::numeric_limits<std::int64_t>::max());

  void describeTo(AVStream& stream) const { encoder_.describeTo(stream); }

  /// Converts a packet; null ends the stream. Times of packets are in timeBase(), from origin() on.
  void convert(const AVPacket* packet, const TakePacket& take);

  [[nodiscard]] AVRational timeBase() const { return encoder_.timeBase(); }
  /// The time of the first sample in microseconds, once a packet has come out.
  [[nodiscard]] std::int64_t origin() const { return decoder_.origin(); }
  /// Whether all sound until the end has been converted.
  [[nodiscard]] bool isThrough() const { return left_ == 0; }

 private:
  AudioShape shape_;
  SoundDecoder decoder_;
  AudioEncoder encoder_;
  std::size_t left_;  // moments until the end
};

}  // namespace nkdraw::media
