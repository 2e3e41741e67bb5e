// SPDX-License-Identifier: BSD-2-Clause
//
// Converts text subtitles from one codec to another.
#pragma once

#include "media/encoder.h"
#include "media/libav.h"

#include <string>

namespace nkdraw::media {

class SubtitleConverter {
 public:
  /// Converts the text of `from`, which must outlive it. `path` is the input's name, `advice` tells
  /// how to run without it. Throws Failure.
  SubtitleConverter(const AVStream& from, const CodecChoice& choice, const AVOutputFormat& format,
                    std::string path, std::string advice);

  void describeTo(AVStream& stream) const;

  /// Converts a packet; the times of those that come out are in timeBase().
  void convert(const AVPacket& packet, const TakePacket& take);

  [[nodiscard]] static AVRational timeBase() { return {1, AV_TIME_BASE}; }

 private:
  void encode(AVSubtitle& text, const TakePacket& take);
  [[noreturn]] void fail(const char* what, int error) const;

  const AVStream& stream_;
  std::string path_, advice_;
  CodecContext decoder_, encoder_;
};

}  // namespace nkdraw::media
