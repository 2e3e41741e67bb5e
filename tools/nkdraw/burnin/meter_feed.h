// SPDX-License-Identifier: BSD-2-Clause
//
// Levels and peaks of a clip's sound, frame by frame, for the overlay's meters.
#pragma once

#include "cli/using_media.h"
#include "media/audio_reader.h"
#include "media/libav.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace nkdraw::tool {

/// Where the sound is.
struct SoundTrack {
  std::string path;
  int stream;
  AudioShape shape;
};

/// The level of a channel is the largest magnitude of its samples during the frame, scaled so that
/// full scale is 65535. The peak is the largest level of at most the last second and a half: a peak
/// that is not reached again in that time falls to the level.
class MeterFeed {
 public:
  MeterFeed(const SoundTrack& sound, AVRational frameRate);

  /// Advances to frame `index`, counted from the clip's first; never back.
  void advanceTo(std::int64_t index);

  // For that frame: two channels a word, the even one in the low half.
  [[nodiscard]] const std::uint32_t* levels() const { return levels_.data(); }
  [[nodiscard]] const std::uint32_t* peaks() const { return peaks_.data(); }

 private:
  static constexpr std::size_t kChannels = 8;
  using Words = std::array<std::uint32_t, kChannels / 2>;
  struct Channel {
    std::uint32_t level = 0, peak = 0;
    std::int64_t since = 0;  // the frame of the peak
  };

  void readFrame();
  void note(Channel& channel, double magnitude) const;
  void pack();

  AVRational frameTime_, moment_;
  std::int64_t hold_;  // frames
  std::size_t stride_;
  AudioReader reader_;
  std::vector<double> samples_;
  std::array<Channel, kChannels> channels_;
  Words levels_ = {}, peaks_ = {};
  std::int64_t next_ = 0;  // frame
};

}  // namespace nkdraw::tool
