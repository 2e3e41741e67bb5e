// SPDX-License-Identifier: BSD-2-Clause
//
// The sound of two clips that are joined.
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
  kCrossfade,  ///< from one to the other while the frames change, by straight lines
  kCut,        ///< in the middle of the transition
  kNone,
};

/// What a user asks for.
struct AudioRequest {
  AudioMode mode = AudioMode::kCrossfade;
  CodecRequest codec;
  std::string silent;  // what the user calls the choice of no sound, for messages
};

/// A track of the output: the same track of each clip, where it has one.
struct AudioTrackPlan {
  std::optional<int> a, b;                   // streams
  const AVCodecParameters* model = nullptr;  // the first clip's track, else the second's
  CodecChoice codec;
};

/// The first track of one clip joins the first of the other, and so on. Throws Failure.
[[nodiscard]] std::vector<AudioTrackPlan> planAudio(ClipPair& clips, const AudioRequest& request,
                                                    const AVOutputFormat& format);

/// Where the second clip begins in the output and where the first one ends, in frames.
struct Overlap {
  std::int64_t first, end;
};

/// Writes the tracks beside the video. They last as long as these, or as the second clip's
/// sound; what a clip lacks is silent.
class AudioJoin {
 public:
  /// Adds the streams to the output, which must not have begun.
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
