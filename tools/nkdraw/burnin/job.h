// SPDX-License-Identifier: BSD-2-Clause
//
// What a burn-in decides before the first frame.
#pragma once

#include "burnin/overlay_plan.h"
#include "cli/using_media.h"
#include "media/damage.h"
#include "media/frame_kind.h"
#include "media/layouts.h"
#include "media/orientation.h"
#include "media/timecode_source.h"

#include <memory>

namespace nkdraw::tool {

class CaptionTrack;
struct SoundTrack;

/// One clip's burn-in.
struct Job {
  const Layout* layout = nullptr;  // of the frames that are drawn on
  bool libraryAlpha = false;       // in place, the alpha that the library draws
  bool inPlace = false;            // the frames are the file's own packets
  FrameKind frames;                // as stored
  FrameKind shown;                 // as a viewer sees them: turned, for example
  Orientation orientation;         // of the frames
  TimecodeStart timecode;
  OverlayPlan plan;
  FrameRange range;
  const DamageList* damage = nullptr;            // of the clip, whose frames are marked
  std::shared_ptr<const CaptionTrack> captions;  // from a separate file
  std::shared_ptr<const SoundTrack> sound;       // for the meters
};

}  // namespace nkdraw::tool
