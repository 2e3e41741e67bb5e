// SPDX-License-Identifier: BSD-2-Clause
//
// An audio track as samples without gaps, counted from the first frame of the video.
#pragma once

#include "media/media_input.h"
#include "media/sound_decoder.h"

#include <cstddef>
#include <string>

namespace nkdraw::media {

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

  MediaInput input_;  // separate, so that sound and video are read at their own pace
  AVStream& stream_;
  SoundDecoder decoder_;
  std::size_t channels_;
  bool ended_ = false;
};

}  // namespace nkdraw::media
