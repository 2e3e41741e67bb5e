// SPDX-License-Identifier: BSD-2-Clause
//
// What a video decoder tells only in FFmpeg's log: that the picture in a packet is damaged.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace nkdraw::media {

/// A decoder whose context has this as its `opaque`, and the number of each packet as its
/// `reordered_opaque`, notes here the packets that it complains of; frames bring the numbers back.
class DecoderLog {
 public:
  /// Only the first message about a packet is kept.
  void note(std::int64_t packet, const std::string& message);
  /// Removes and returns the complaint about this packet, if any.
  [[nodiscard]] std::optional<std::string> take(std::int64_t packet);
  /// The newest packet complained of, -1 if there was none.
  [[nodiscard]] std::int64_t newest();
  /// Forgets all complaints about packets before this one.
  void forgetBefore(std::int64_t packet);

 private:
  std::mutex lock_;  // decoders log from their threads
  std::map<std::int64_t, std::string> messages_;
  std::int64_t newest_ = -1;
};

/// Notes an error that FFmpeg logged if it comes from such a decoder and says that a picture is
/// damaged.
void noteDecoderMessage(void* reporter, const std::string& message);

}  // namespace nkdraw::media
