// SPDX-License-Identifier: BSD-2-Clause
//
// An audio track as samples without gaps, counted from the first frame of the video.
#pragma once

#include "media/libav.h"
#include "media/media_input.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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
};

class AudioReader {
 public:
  /// Reads stream `stream` of the file `path`, converted to `shape`. Throws Failure; `advice` tells
  /// how to run without this sound.
  AudioReader(const std::string& path, int stream, const AudioShape& shape,
              const std::string& advice);

  /// Reads the next `count` moments into `samples`; those before the track's beginning are silent.
  /// Returns how many were read: fewer only at the track's end.
  [[nodiscard]] std::size_t read(double* samples, std::size_t count);

 private:
  void decodeMore();
  void take(const AVFrame& frame);
  void skipOrFill(std::int64_t moments);
  void convert(const AVFrame* frame);
  void openResampler(const AVFrame& frame);
  void skip(std::size_t begin);
  [[noreturn]] void failToConvert(int error) const;

  MediaInput input_;  // separate, so that sound and video are read at their own pace
  AVStream& stream_;
  AudioShape shape_;
  std::string advice_;
  CodecContext decoder_;
  Resampler resampler_;
  Frame frame_ = makeFrame();
  std::vector<double> ready_;
  std::size_t used_ = 0;                    // of ready_
  std::size_t toSkip_ = 0;                  // moments before the video
  std::int64_t expected_ = AV_NOPTS_VALUE;  // time of the next frame, in microseconds
  bool ended_ = false;
};

}  // namespace nkdraw::media
