// SPDX-License-Identifier: BSD-2-Clause
//
// Copied packets whose times don't rise, because files round them: they are moved as little as the
// output needs.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <string>

namespace nkdraw::media {

class RisingTimes {
 public:
  /// `name` is the stream, for the one note that is printed.
  RisingTimes(const AVOutputFormat& format, std::string name)
      : format_(format), name_(std::move(name)) {}

  /// Moves the packet, whose times are the output's, behind the one before.
  void raise(AVPacket& packet);

 private:
  void moveTo(AVPacket& packet, std::int64_t first);

  const AVOutputFormat& format_;
  std::string name_;
  std::int64_t last_ = AV_NOPTS_VALUE;
  bool told_ = false;
};

}  // namespace nkdraw::media
