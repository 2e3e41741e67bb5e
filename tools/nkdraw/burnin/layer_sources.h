// SPDX-License-Identifier: BSD-2-Clause
//
// The sources of meters, captions and the watermark.
#pragma once

#include "burnin/caption_track.h"
#include "burnin/job.h"
#include "burnin/meter_feed.h"
#include "cli/using_media.h"
#include "media/media_input.h"

#include <memory>
#include <string>

namespace nkdraw::tool {

/// The captions from the file that the plan names; null if it names none. Throws Failure.
[[nodiscard]] std::shared_ptr<const CaptionTrack> captionsFor(const Job& job);

/// The clip's first audio stream. Throws Failure if there is none that can be metered.
[[nodiscard]] std::shared_ptr<const SoundTrack> soundOf(MediaInput& input);

/// The size of a watermark in pixels. Reads it once before the first frame, as the overlay does.
/// Throws Failure if the file has no picture.
[[nodiscard]] Point watermarkSize(const std::string& path);

}  // namespace nkdraw::tool
