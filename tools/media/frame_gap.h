// SPDX-License-Identifier: BSD-2-Clause
//
// Frames that a file should have and has not, because the demuxer passed over damage, or because
// packets are missing in a transport stream.
#pragma once

#include "media/media_input.h"

#include <cstdint>
#include <optional>

namespace nkdraw::media {

class FrameGap {
 public:
  /// The input must outlive it.
  FrameGap(MediaInput& input, AVRational rate) : input_(input), rate_(rate) {}

  /// The frame `index` comes next: the number of a frame that is missing before it, if any. To be
  /// asked again until there is none.
  [[nodiscard]] std::optional<std::int64_t> missingBefore(std::int64_t index);
  /// The same at the end of the file.
  [[nodiscard]] std::optional<std::int64_t> missingAtEnd();

 private:
  [[nodiscard]] bool isDamage(std::int64_t index);
  [[nodiscard]] bool lacksPackets(std::int64_t index) const;

  MediaInput& input_;
  AVRational rate_;
  std::optional<std::int64_t> expected_;  // the next number
  std::int64_t end_ = 0;                  // of the gap
  bool complained_ = false;               // the demuxer did
  std::int64_t steps_ = 0;                // frames that came without a gap
  std::int64_t gaps_ = 0;                 // those that are meant
};

}  // namespace nkdraw::media
