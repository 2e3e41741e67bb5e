// SPDX-License-Identifier: BSD-2-Clause
//
// Decodes one audio stream into samples without gaps.
#pragma once

#include "media/audio_shape.h"
#include "media/libav.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace nkdraw::media {

/// How a stream is decoded: where from, and what a message says.
struct SoundSource {
  std::string path;
  std::string advice;                    // how to run without this sound
  std::int64_t origin = AV_NOPTS_VALUE;  // in microseconds: where the samples begin; without one,
                                         // with the stream's first
  std::function<void(std::int64_t time, const std::string& why)> damaged = {};
  ///< told of packets that can't be decoded, with their time in the stream's time base; silence
  ///< takes their place. Without it they end the run.
};

class SoundDecoder {
 public:
  /// Converts the stream, which must outlive it, to `shape`. Throws Failure.
  SoundDecoder(const AVStream& stream, const AudioShape& shape, SoundSource source);

  /// Decodes a packet of the stream; null ends it.
  void decode(const AVPacket* packet);

  /// What comes next of what has been decoded and not yet taken, empty if there is nothing; the
  /// channels of one moment lie side by side. Behind it there may be more.
  [[nodiscard]] std::span<const double> ready() const;
  /// Takes the first `samples` of ready().
  void take(std::size_t samples);

  /// The time of the first sample, in microseconds; none before that was decoded.
  [[nodiscard]] std::int64_t origin() const { return source_.origin; }

 private:
  /// A gap in the sound, which may be long.
  struct Silence {
    std::size_t place;  // in ready_, before which it lies
    std::size_t samples;
  };

  [[nodiscard]] bool isSilent() const {
    return !silences_.empty() && silences_.front().place == used_;
  }
  void dropUsed();
  void append(const AVFrame& frame);
  void complain(int error, const AVPacket* packet);
  void skipOrFill(std::int64_t moments);
  void convert(const AVFrame* frame);
  void openResampler(const AVFrame& frame);
  void skip(std::size_t begin);
  [[noreturn]] void failToConvert(int error) const;

  const AVStream& stream_;
  AudioShape shape_;
  SoundSource source_;
  CodecContext decoder_;
  Resampler resampler_;
  Frame frame_ = makeFrame();
  std::vector<double> ready_;
  std::size_t used_ = 0;  // of ready_
  std::deque<Silence> silences_;
  std::vector<double> second_;              // of silence
  std::size_t toSkip_ = 0;                  // moments before the origin
  std::int64_t expected_ = AV_NOPTS_VALUE;  // time of the next frame, in microseconds
  bool lost_ = false;                       // whether frames before the next one are lost
};

}  // namespace nkdraw::media
