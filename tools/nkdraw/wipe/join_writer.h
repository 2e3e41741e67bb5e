// SPDX-License-Identifier: BSD-2-Clause
//
// The file that two clips are joined in.
#pragma once

#include "cli/progress.h"
#include "cli/using_media.h"
#include "media/audio_join.h"
#include "media/media_output.h"
#include "media/output_file.h"
#include "wipe/wipe_plan.h"

#include <cstdint>

namespace nkdraw::tool {

/// Takes the frames of the output to its file, with the sound that belongs to them. The file
/// appears under its name when it is finished, and not before.
class JoinWriter {
 public:
  /// Throws Failure when the output can't be written.
  JoinWriter(ClipPair& clips, const WipePlan& plan, const WipeOptions& options);

  /// The stream of the video, whose codec the caller sets before it begins.
  [[nodiscard]] AVStream& video() { return video_; }
  void begin() { output_.begin(); }

  /// The place in the output for frame `index`; two frames at one time go one after the other.
  [[nodiscard]] std::int64_t placeOf(std::int64_t index);
  /// Writes a packet of the video; times are in `timeBase`, which is the time of a frame.
  void write(AVPacket& packet, AVRational timeBase);

  void finish();

 private:
  OutputFile file_;
  MediaOutput output_;
  AVStream& video_;
  AudioJoin sound_;
  Progress progress_;
  FramePlaces places_;
};

}  // namespace nkdraw::tool
