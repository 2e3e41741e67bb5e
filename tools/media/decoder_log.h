// SPDX-License-Identifier: BSD-2-Clause
//
// What a video decoder tells only in FFmpeg's log: that a packet's picture is damaged.
#pragma once

#include <cstdint>
#include <mutex>
#include <set>

namespace nkdraw::media {

/// A decoder whose context has this as its `opaque`, and the number of each packet as its
/// `reordered_opaque`, notes here the packets that it complained of; frames bring the numbers back.
class DecoderLog {
 public:
  void note(std::int64_t packet);
  /// Whether it complained of this packet.
  [[nodiscard]] bool takes(std::int64_t packet);
  /// Whether it complained at all since the last call.
  [[nodiscard]] bool takeAny();

 private:
  std::mutex lock_;  // decoders log from their threads
  std::set<std::int64_t> packets_;
  bool any_ = false;
};

/// Notes a message of FFmpeg's if it comes from such a decoder and says that a picture is damaged.
void noteDecoderMessage(void* reporter, const char* message);

}  // namespace nkdraw::media
