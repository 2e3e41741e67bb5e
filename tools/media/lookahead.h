// SPDX-License-Identifier: BSD-2-Clause
//
// Reads a clip's next packets and gives them out again, so that a pipe can be looked into.
#pragma once

#include "media/libav.h"
#include "media/media_input.h"

#include <cstddef>
#include <vector>

namespace nkdraw::media {

class Lookahead {
 public:
  /// The input must outlive it, and reads the same packets once more after it.
  explicit Lookahead(MediaInput& input) : input_(input) {}
  Lookahead(const Lookahead&) = delete;
  Lookahead& operator=(const Lookahead&) = delete;
  ~Lookahead() { input_.giveBack(std::move(packets_)); }

  /// The next packet of the video; null at the end, or where none comes for too long.
  [[nodiscard]] const AVPacket* next();

 private:
  MediaInput& input_;
  std::vector<Packet> packets_;
  std::size_t others_ = 0;  // bytes of other streams
};

}  // namespace nkdraw::media
