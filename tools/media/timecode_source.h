// SPDX-License-Identifier: BSD-2-Clause
//
// Where the timecode of a clip comes from, and what each frame shows of it.
#pragma once

#include "media/libav.h"

#include <nkdraw/platform/timecode.h>

#include <cstdint>
#include <optional>
#include <string>

namespace nkdraw::media {

/// The first frame's timecode.
struct TimecodeStart {
  TimecodeType type = TimecodeType::k25;
  std::uint32_t frame = 0;  // from midnight
  std::string origin;       // for people: "the file's tag"
  bool known = false;       // the file or the user gave it
};

/// From a text that a user gave; `origin` says where. Throws Failure for one that is no timecode at
/// this rate.
[[nodiscard]] TimecodeStart timecodeFromText(const std::string& text, AVRational rate,
                                             const std::string& origin);

/// From the tags that the file keeps with its video, its timecode track or itself; else midnight.
[[nodiscard]] TimecodeStart timecodeOf(const AVFormatContext& file, const AVStream& video,
                                       AVRational rate);

/// Midnight, counted as the rate usually is.
[[nodiscard]] TimecodeStart midnight(AVRational rate);

/// Whether a second of the count has as many numbers as the clip has frames, rounded. Timecodes in
/// files count so at every rate, and would not say what is burnt in elsewhere.
[[nodiscard]] bool countsAllFrames(const TimecodeStart& start, AVRational rate);

/// The text of the frame `index` frames after the start.
[[nodiscard]] std::string timecodeText(const TimecodeStart& start, std::int64_t index);

/// Numbers frames by their time, so that a gap in the file is a gap in the timecode.
class FrameClock {
 public:
  /// `first` is the time of frame 0, AV_NOPTS_VALUE for the first time that is asked for.
  FrameClock(AVRational timeBase, AVRational rate, std::int64_t first)
      : timeBase_(timeBase), rate_(rate), first_(first) {}

  /// The number of the frame at `time`; the next number when it has none.
  std::int64_t indexOf(std::int64_t time);

 private:
  AVRational timeBase_, rate_;
  std::int64_t first_;
  std::int64_t next_ = 0;
};

}  // namespace nkdraw::media
