// SPDX-License-Identifier: BSD-2-Clause
//
// Everything that is decided about a wipe of two clips before its first frame.
#pragma once

#include "cli/using_media.h"
#include "media/audio_join.h"
#include "media/clip_pair.h"
#include "media/kept_timecode.h"
#include "media/layouts.h"
#include "media/video_encoder.h"
#include "wipe/frame_wiper.h"
#include "wipe/wipe_options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nkdraw::tool {

struct WipePlan {
  const Layout* layout = nullptr;  // of the frames that are wiped
  AVPixelFormat drawn =
      AV_PIX_FMT_NONE;    // of decoded frames; none when in place: packets are wiped as they are
  bool sameRows = false;  // packets have the same rows in both inputs and the output
  std::int64_t at = 0, duration = 0;  // frames
  std::uint32_t word = 0;
  bool backwards = false;
  WipeWay way = WipeWay::kExact;
  const AVOutputFormat* format = nullptr;
  std::optional<CodecChoice> codec;  // if frames are encoded
  std::vector<AudioTrackPlan> audio;
  std::optional<std::string> timecodeTag;  // empty to drop the first clip's
  OutputTimecode timecode;                 // that the output should tell
  std::string note;                        // that it doesn't

  [[nodiscard]] bool isInPlace() const { return drawn == AV_PIX_FMT_NONE; }
  /// The progress at frame `index` of the transition.
  [[nodiscard]] Progression progressOf(std::int64_t index) const {
    const std::int64_t step = backwards ? duration - index : index + 1;
    return {static_cast<std::uint32_t>(step), static_cast<std::uint32_t>(duration + 1)};
  }
};

/// Throws Failure for what can't be done.
[[nodiscard]] WipePlan planWipe(ClipPair& clips, const WipeOptions& options);

/// Throws the Failure for a clip without the frame `index` that the transition needs.
[[noreturn]] void failTooShort(const MediaInput& clip, std::int64_t needed);

}  // namespace nkdraw::tool
