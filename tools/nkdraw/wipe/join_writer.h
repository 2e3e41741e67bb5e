// SPDX-License-Identifier: BSD-2-Clause
//
// Writes the file in which two clips are joined.
#pragma once

#include "cli/progress.h"
#include "cli/using_media.h"
#include "media/audio_join.h"
#include "media/media_output.h"
#include "media/output_file.h"
#include "wipe/wipe_plan.h"

#include <cstdint>

namespace nkdraw::tool {

/// Writes the output frames to the file, together with their sound. The file appears under its name
/// only when it is complete.
class JoinWriter {
 public:
  /// Throws Failure if the output can't be written.
  JoinWriter(ClipPair& clips, const WipePlan& plan, const WipeOptions& options);

  /// The video stream; the caller sets its codec before the file begins.
  [[nodiscard]] AVStream& video() { return video_; }
  void begin() { output_.begin(); }

  /// The position in the output for frame `index`; a second frame with the same time goes to the
  /// next position.
  [[nodiscard]] std::int64_t placeOf(std::int64_t index);
  /// Writes a packet of the video; times are in `timeBase`, one unit per frame.
  void write(AVPacket& packet, AVRational timeBase);

  void finish();

 private:
  OutputFile file_;
  const WipePlan& plan_;
  MediaOutput output_;
  AVStream& video_;
  AudioJoin sound_;
  Progress progress_;
  FramePlaces places_;
};

}  // namespace nkdraw::tool
