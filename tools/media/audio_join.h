// SPDX-License-Identifier: BSD-2-Clause
//
// Joins the sound of two clips.
#pragma once

#include "media/audio_encoder.h"
#include "media/audio_reader.h"
#include "media/clip_pair.h"
#include "media/media_output.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::media {

enum class AudioMode {
  kCrossfade,  ///< linear, while the frames change
  kCut,        ///< in the middle of the transition
  kNone,
};

/// The request of a user.
struct AudioRequest {
  AudioMode mode = AudioMode::kCrossfade;
  CodecRequest codec;
  std::string silent;  // the name of the option for no sound, for messages
};

/// A track of the output: the corresponding track of each clip, if it has one.
struct AudioTrackPlan {
  std::optional<int> a, b;                   // streams
  const AVCodecParameters* model = nullptr;  // the first clip's track, else the second's
  CodecChoice codec;
};

/// The first track of one clip is joined with the first of the other, and so on. Throws Failure.
[[nodiscard]] std::vector<AudioTrackPlan> planAudio(ClipPair& clips, const AudioRequest& request,
                                                    const AVOutputFormat& format);

/// The output frames at which the second clip begins and the first one ends.
struct Overlap {
  std::int64_t first, end;
};

/// Writes the audio tracks beside the video. They last as long as these frames, or as the second
/// clip's sound; where a clip has no sound, they are silent.
class AudioJoin {
 public:
  /// Adds the streams to the output, which must not have begun yet.
  AudioJoin(ClipPair& clips, const std::vector<AudioTrackPlan>& plan, const AudioRequest& request,
            Overlap overlap, MediaOutput& output);
  ~AudioJoin();

  /// Writes the sound of the frames before `frame`.
  void advanceTo(std::int64_t frame);
  /// Writes the rest.
  void finish();

 private:
  class Track;
  std::vector<std::unique_ptr<Track>> tracks_;
};

}  // namespace nkdraw::media
