// SPDX-License-Identifier: BSD-2-Clause
//
// Whether a video ends where the header of its file says.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <string>

namespace nkdraw::media {

class PromisedEnd {
 public:
  /// What the header promises; nothing for kinds of files whose header can't be relied on. Both
  /// must outlive it.
  PromisedEnd(const AVFormatContext& file, AVStream& video, AVRational rate);

  /// The video's packets, as they are read.
  void note(const AVPacket& packet);
  /// At the end of the file: "the last 8 frames are missing", or nothing if none are.
  [[nodiscard]] std::string missing() const;

 private:
  [[nodiscard]] std::int64_t missingByTime() const;
  [[nodiscard]] std::int64_t missingByIndex() const;

  const AVFormatContext& file_;
  AVStream& video_;
  AVRational rate_;
  std::int64_t promised_ = AV_NOPTS_VALUE, reached_ = AV_NOPTS_VALUE;  // in the time base
};

}  // namespace nkdraw::media
