// SPDX-License-Identifier: BSD-2-Clause
//
// The header of DPX files, SMPTE ST 268-1: the timecode in its television part, and the colours,
// some of which FFmpeg does not carry over.
#pragma once

#include "media/libav.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nkdraw::media {

struct DPXFacts {
  std::optional<std::string> timecode;                 ///< "10:00:00:00"; ';' counts drop-frame
  AVRational rate = {0, 1};                            ///< frames a second, 0 if not known
  std::optional<std::array<std::uint8_t, 2>> colours;  ///< transfer characteristic, colorimetry
};

/// Whether the timecode of a header numbers each frame of a second. As in SMPTE ST 12-1 it has room
/// for 30.
[[nodiscard]] bool countsInDPX(AVRational rate);

/// What the file's header tells; nothing if it is no DPX file.
[[nodiscard]] DPXFacts readDPX(const std::string& file);

/// The DPX file in `bytes` with these facts in its header, which gets the parts for film and
/// television. There is no timecode at a rate at which it does not count.
[[nodiscard]] std::vector<std::uint8_t> withFacts(std::span<const std::uint8_t> bytes,
                                                  const DPXFacts& facts);

}  // namespace nkdraw::media
