// SPDX-License-Identifier: BSD-2-Clause
//
// Burning closed captions into frames. The calls on a burner return 0, and do nothing for a null
// one or one that was closed. Calls on one burner wait for each other.
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

/// A caption decoder and the screen it fills.
struct nkCaptionBurner;

/// Makes a decoder for frames of this kind; null when the host has no captions to offer, or can't
/// draw them in this layout. It shows CC1, with boxes.
[[nodiscard]] NKDRAW_API nkCaptionBurner* ccBurnOpen(const HZWVIDEO* video);

/// Chooses the caption channel: 1 to 4 for CC1 to CC4, 5 to 8 for the text channels T1 to T4, and
/// CC1 for any other number. Meant for the time before the first frame: a channel of the other
/// field starts with an empty screen.
NKDRAW_API std::uint32_t ccBurnSetCCType(nkCaptionBurner* burner, std::uint32_t type);

/// Chooses how captions are shown: 2 draws the characters alone, any other number also the boxes
/// behind them.
NKDRAW_API std::uint32_t ccBurnSetCCDisplay(nkCaptionBurner* burner, std::uint32_t display);

/// Feeds the frame's caption bytes to the decoder, once for every frame, also for one without any.
/// Of the cc_data triplets it takes the valid ones of CEA-608; bytes behind the last whole triplet
/// are not read.
NKDRAW_API std::uint32_t ccBurnAddCCData(nkCaptionBurner* burner, const QFRAME* frame);

/// Draws the captions that are due on the frame, whose rows are packed as the layout packs them.
NKDRAW_API std::uint32_t ccBurnIn(nkCaptionBurner* burner, QFRAME* frame);

/// Lets the burner go. CNkOverlay never calls this, since its copies share a burner; those that it
/// opened stay until the process ends.
NKDRAW_API std::uint32_t ccBurnClose(nkCaptionBurner* burner);
