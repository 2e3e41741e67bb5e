// SPDX-License-Identifier: BSD-2-Clause
//
// The road of all other clips: decoded, converted to the nearest format that is drawn on, drawn on.
#pragma once

#include "burnin/burner.h"
#include "cli/using_media.h"
#include "media/media_input.h"
#include "media/picture_converter.h"
#include "media/video_decoder.h"

#include <cstdint>
#include <functional>

namespace nkdraw::tool {

class ConvertingRoad {
 public:
  ConvertingRoad(MediaInput& input, const Job& job, AVPixelFormat drawn);

  /// Gets a burnt picture and its number.
  using TakePicture = std::function<void(AVFrame& picture, std::int64_t index)>;
  using TakePacket = std::function<void(AVPacket& packet)>;
  /// Reads to the end of the job's range. `takeVideo` gets every burnt picture of the range,
  /// `takeOther` the packets of the other streams; past the range reading goes on until `done`.
  /// Returns whether the video had a frame past the range.
  bool run(const TakePicture& takeVideo, const TakePacket& takeOther,
           const std::function<bool()>& done);

 private:
  void burn(AVFrame& decoded, const TakePicture& take);

  MediaInput& input_;
  const Job& job_;
  VideoDecoder decoder_;
  PictureConverter converter_;
  Burner burner_;
  FrameClock clock_;
  bool pastRange_ = false;
};

}  // namespace nkdraw::tool
