// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Burning closed captions (CEA-608) into frames. Calls on a burner return 0. They do nothing for a
/// null burner or one that was closed. Any thread may call; calls on one burner wait for each
/// other.
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

/// A caption decoder and the screen it fills.
struct nkCaptionBurner;

/// Makes a decoder for frames like those of `video`; null when the host can't decode captions or
/// can't draw them in this layout. At first it shows CC1, with boxes. Given back with ccBurnClose.
[[nodiscard]] NKDRAW_API nkCaptionBurner* ccBurnOpen(const HZWVIDEO* video);

/// Selects the caption channel: 1 to 4 for CC1 to CC4, 5 to 8 for the text channels T1 to T4, and
/// CC1 for any other number. Call it before the first frame: a channel of the other field starts
/// with an empty screen.
NKDRAW_API std::uint32_t ccBurnSetCCType(nkCaptionBurner* burner, std::uint32_t type);

/// Selects how captions are shown: 2 draws the characters alone, any other number draws the boxes
/// behind them, too.
NKDRAW_API std::uint32_t ccBurnSetCCDisplay(nkCaptionBurner* burner, std::uint32_t display);

/// Feeds the frame's caption bytes to the decoder. Call it once for every frame, including frames
/// without any. Of the cc_data triplets (CEA-708) it decodes the valid ones that carry CEA-608;
/// bytes after the last whole triplet are not read.
NKDRAW_API std::uint32_t ccBurnAddCCData(nkCaptionBurner* burner, const QFRAME* frame);

/// Draws the captions on screen now into the frame, whose rows are packed as the layout packs them.
NKDRAW_API std::uint32_t ccBurnIn(nkCaptionBurner* burner, QFRAME* frame);

/// Ends a burner. CNkOverlay never calls this, since its copies share a burner: those that it
/// opened stay until the process ends.
NKDRAW_API std::uint32_t ccBurnClose(nkCaptionBurner* burner);
