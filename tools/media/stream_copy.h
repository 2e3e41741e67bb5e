// SPDX-License-Identifier: BSD-2-Clause
//
// What is copied from the input to the output beside the burnt video: the other streams, tags and
// chapters.
#pragma once

#include "media/media_input.h"
#include "media/media_output.h"
#include "media/stream_facts.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::media {

/// What happens to a stream of the input.
enum class StreamAction {
  kBurn,      ///< it is the video that is drawn on
  kCopy,      ///< its packets are copied
  kTimecode,  ///< its timecode is written as the video's, which makes a new track where there are
              ///< any
  kLeaveOut,  ///< the output's kind of file has no place for it
};

/// One action for each stream. Throws Failure if sound, pictures or subtitles would be lost.
[[nodiscard]] std::vector<StreamAction> streamActions(MediaInput& input,
                                                      const AVOutputFormat& format);

/// The part of the input that is kept, in FFmpeg's AV_TIME_BASE.
struct TimeWindow {
  std::int64_t shift = 0;  // subtracted from all times
  std::int64_t video = 0;  // the first kept frame
  std::int64_t first = std::numeric_limits<std::int64_t>::min();
  std::int64_t end = std::numeric_limits<std::int64_t>::max();  // of the other streams

  [[nodiscard]] bool isWhole() const { return end == std::numeric_limits<std::int64_t>::max(); }
};

/// Copies packets from the input to the output.
class StreamCopier {
 public:
  /// Adds all streams that the output can hold, in the input's order, and copies tags and, for the
  /// whole clip, chapters. If given, `timecode` becomes the video's timecode; an empty one removes
  /// the input's.
  StreamCopier(MediaInput& input, MediaOutput& output, const std::vector<StreamAction>& actions,
               const TimeWindow& window, const std::optional<std::string>& timecode);

  /// The stream for the burnt video, whose codec the caller sets.
  [[nodiscard]] AVStream& video() { return *output_.file().streams[videoIndex_]; }

  /// Writes a packet of another stream, if that stream is copied and the packet is inside the
  /// window.
  void write(AVPacket& packet);
  /// Writes a packet of the burnt video, with times in the input's time base.
  void writeVideo(AVPacket& packet);
  /// The same for a packet whose times, in `timeBase`, start at 0 with the first kept frame.
  void writeEncoded(AVPacket& packet, AVRational timeBase);
  /// Whether all audio is past the end of the window.
  [[nodiscard]] bool audioIsThrough() const;

 private:
  void copyTags(const std::optional<std::string>& timecode);
  void copyChapters();

  MediaInput& input_;
  MediaOutput& output_;
  TimeWindow window_;
  std::vector<int> target_;    // the output's stream for each of the input's, -1 for none
  std::vector<bool> through_;  // for each of the input's: past the window, or not waited for
  int videoIndex_ = -1;
};

}  // namespace nkdraw::media
