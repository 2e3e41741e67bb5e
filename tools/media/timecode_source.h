// SPDX-License-Identifier: BSD-2-Clause
//
// Where the timecode of a clip comes from, and what each frame shows.
#pragma once

#include "media/libav.h"

#include <nkdraw/platform/timecode.h>

#include <cstdint>
#include <optional>
#include <string>

namespace nkdraw::media {

class MediaInput;

/// The first frame's timecode.
struct TimecodeStart {
  TimecodeType type = TimecodeType::k25;
  std::uint32_t frame = 0;  // from midnight
  std::string origin;       // for messages: "the file's tag"
  bool known = false;       // the file or the user gave it
};

/// From a user's text; `origin` tells where it was given. Throws Failure if it is not a timecode at
/// this rate.
[[nodiscard]] TimecodeStart timecodeFromText(const std::string& text, AVRational rate,
                                             const std::string& origin);

/// From a tag of the video, of the file's timecode track or of the file, else from the video
/// itself, which is read ahead for that; else midnight.
[[nodiscard]] TimecodeStart timecodeOf(MediaInput& input, AVRational rate);

/// Midnight, counted in the usual way for the rate.
[[nodiscard]] TimecodeStart midnight(AVRational rate);

/// Whether a second of timecode has as many numbers as the clip has frames, rounded. Timecode in
/// files always counts so; at other rates it would differ from what is burnt in.
[[nodiscard]] bool countsAllFrames(const TimecodeStart& start, AVRational rate);

/// The text for the frame `index` frames after the start.
[[nodiscard]] std::string timecodeText(const TimecodeStart& start, std::int64_t index);

/// Numbers frames by their time, so a gap in the file is a gap in the timecode.
class FrameClock {
 public:
  /// `first` is the time of frame 0; AV_NOPTS_VALUE takes the first time that is passed in.
  FrameClock(AVRational timeBase, AVRational rate, std::int64_t first)
      : timeBase_(timeBase), rate_(rate), first_(first) {}

  /// The number of the frame at `time`; if it has no time, the next number.
  std::int64_t indexOf(std::int64_t time);

 private:
  AVRational timeBase_, rate_;
  std::int64_t first_;
  std::int64_t next_ = 0;
};

}  // namespace nkdraw::media
