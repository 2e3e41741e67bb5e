// SPDX-License-Identifier: BSD-2-Clause
//
// Finds damage in a stream beside the video, whose packets are copied, and notes it as the input's.
#pragma once

#include "media/libav.h"
#include "media/media_input.h"

#include <string>

namespace nkdraw::media {

class PacketWatch {
 public:
  /// Both must outlive it. Compressed sound is decoded, if `decodes`, since only that shows damage.
  PacketWatch(MediaInput& input, const AVStream& stream, bool decodes);

  /// Notes the packet if it is damaged. Throws Failure if the run is to stop then.
  void check(const AVPacket& packet);
  /// Notes that something is wrong with the packet of this time, in the stream's time base.
  void note(std::int64_t time, const std::string& why);

 private:
  [[nodiscard]] int decode(const AVPacket& packet);

  MediaInput& input_;
  const AVStream& stream_;
  CodecContext decoder_;  // null if packets aren't decoded
  Frame frame_ = makeFrame();
};

}  // namespace nkdraw::media
