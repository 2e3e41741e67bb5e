// SPDX-License-Identifier: BSD-2-Clause
//
// Burning closed captions into frames. The calls on a burner return 0, and do nothing for a null
// one.
#pragma once

#include <nkdraw/platform/records.h>

#include <cstdint>

/// A caption decoder and the screen it fills.
struct nkCaptionBurner;

/// Makes a decoder for frames of this kind; null when the host has no captions to offer.
[[nodiscard]] NKDRAW_API nkCaptionBurner* ccBurnOpen(const HZWVIDEO* video);

/// Chooses the caption channel.
NKDRAW_API std::uint32_t ccBurnSetCCType(nkCaptionBurner* burner, std::uint32_t type);

/// Chooses how captions are shown.
NKDRAW_API std::uint32_t ccBurnSetCCDisplay(nkCaptionBurner* burner, std::uint32_t display);

/// Feeds the frame's caption bytes to the decoder.
NKDRAW_API std::uint32_t ccBurnAddCCData(nkCaptionBurner* burner, const QFRAME* frame);

/// Draws the captions that are due on the frame.
NKDRAW_API std::uint32_t ccBurnIn(nkCaptionBurner* burner, QFRAME* frame);
