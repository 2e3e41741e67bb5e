// SPDX-License-Identifier: BSD-2-Clause
//
// What goes from the input to the output beside the burnt video: the other streams, copied or
// converted, tags and chapters.
#pragma once

#include "media/media_input.h"
#include "media/media_output.h"
#include "media/stream_facts.h"
#include "media/stream_plan.h"
#include "media/stream_route.h"
#include "media/time_window.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::media {

/// Brings packets from the input to the output.
class StreamCopier {
 public:
  /// Adds the streams that `plans` keeps, in the input's order, and copies tags and
  /// chapters. If given, `timecode` becomes the video's timecode; an empty one removes
  /// the input's.
  StreamCopier(MediaInput& input, MediaOutput& output, const std::vector<StreamPlan>& plans,
               const TimeWindow& window, const std::optional<std::string>& timecode);

  /// The stream for the burnt video, whose codec the caller sets.
  [[nodiscard]] AVStream& video() { return *output_.file().streams[videoIndex_]; }

  /// Writes a packet of another stream, if that stream is kept and the packet is inside the window.
  void write(AVPacket& packet);
  /// Writes a packet of the burnt video, with times in the input's time base.
  void writeVideo(AVPacket& packet);
  /// The same for a packet whose times, in `timeBase`, start at 0 with the first kept frame.
  void writeEncoded(AVPacket& packet, AVRational timeBase);
  /// Writes what converters still hold, at the end.
  void finish();
  /// The input's streams of sound that should be written, and of which no packet was.
  [[nodiscard]] std::vector<const AVStream*> silentStreams() const;
  /// Whether all audio is past the end of the window.
  [[nodiscard]] bool audioIsThrough() const;

 private:
  void addStream(const AVStream& from, const StreamPlan& plan);
  void copyTags(const std::optional<std::string>& timecode);

  MediaInput& input_;
  MediaOutput& output_;
  TimeWindow window_;
  std::vector<std::unique_ptr<StreamRoute>> routes_;  // for each of the input's streams, or null
  struct Pair {
    const AVStream *from, *to;
  };
  std::vector<Pair> sounds_;
  int videoIndex_ = -1;
};

}  // namespace nkdraw::media
