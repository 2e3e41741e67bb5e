// SPDX-License-Identifier: BSD-2-Clause
//
// The road of uncompressed clips: the overlay is drawn on the file's own packets.
#pragma once

#include "burnin/burner.h"
#include "cli/using_media.h"
#include "media/media_input.h"
#include "media/packet_rows.h"

#include <cstdint>
#include <functional>

namespace nkdraw::tool {

class NativeRoad {
 public:
  NativeRoad(MediaInput& input, const Job& job);

  /// Makes the frames plain as well, for an output of another kind than the input.
  void makePlain() { plain_ = true; }

  /// Gets a burnt packet and its number.
  using TakeVideo = std::function<void(AVPacket& packet, std::int64_t index)>;
  using TakePacket = std::function<void(AVPacket& packet)>;
  /// Reads to the end of the job's range. `takeVideo` gets every burnt packet of the range,
  /// `takeOther` the packets of the other streams; past the range reading goes on until `done`.
  /// Returns whether the video had a frame past the range. Throws Failure for a frame that is cut
  /// short.
  bool run(const TakeVideo& takeVideo, const TakePacket& takeOther,
           const std::function<bool()>& done);

 private:
  void burn(AVPacket& packet, std::int64_t index);

  MediaInput& input_;
  const Job& job_;
  PacketRows rows_;
  Burner burner_;
  bool plain_ = false;
};

}  // namespace nkdraw::tool
