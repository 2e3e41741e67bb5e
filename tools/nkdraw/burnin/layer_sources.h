// SPDX-License-Identifier: BSD-2-Clause
//
// Where meters, captions and the watermark get what they show.
#pragma once

#include "burnin/caption_track.h"
#include "burnin/job.h"
#include "burnin/meter_feed.h"
#include "cli/using_media.h"
#include "media/media_input.h"

#include <memory>
#include <string>

namespace nkdraw::tool {

/// The captions that the job's plan has in a file; null without one. Throws Failure.
[[nodiscard]] std::shared_ptr<const CaptionTrack> captionsFor(const Job& job);

/// The clip's first sound. Throws Failure when it has none that can be metered.
[[nodiscard]] std::shared_ptr<const SoundTrack> soundOf(MediaInput& input);

/// The size in pixels of a watermark, which is read once before the first frame, the way the
/// overlay does. Throws Failure for a file that gives none.
[[nodiscard]] Point watermarkSize(const std::string& path);

}  // namespace nkdraw::tool
