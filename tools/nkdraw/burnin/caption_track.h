// SPDX-License-Identifier: BSD-2-Clause
//
// Captions from a separate file, Scenarist SCC.
#pragma once

#include "burnin/overlay_session.h"
#include "cli/using_media.h"
#include "media/libav.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>

namespace nkdraw::tool {

class CaptionTrack {
 public:
  /// Reads the file. Times become frame numbers at `rate`. The pairs of a line take one frame each,
  /// and wait until an earlier line has ended. Throws Failure.
  CaptionTrack(const std::string& path, AVRational rate);

  /// The pairs for frame `index`, counted from the clip's first.
  [[nodiscard]] Captions at(std::int64_t index) const;

 private:
  using Triplet = std::array<std::uint8_t, 3>;

  void add(const AVPacket& line, AVRational timeBase, AVRational rate);

  std::map<std::int64_t, Triplet> triplets_;
};

}  // namespace nkdraw::tool
