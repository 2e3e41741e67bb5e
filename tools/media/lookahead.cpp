// SPDX-License-Identifier: BSD-2-Clause
#include "media/lookahead.h"

namespace nkdraw::media {
namespace {

constexpr std::size_t kMostBytes = std::size_t{32} << 20U;
constexpr std::size_t kPacketBytes = 256;  // what a packet needs beside its data

}  // namespace

const AVPacket* Lookahead::next() {
  while (others_ <= kMostBytes) {
    Packet packet = makePacket();
    if (!input_.read(*packet))
      return nullptr;
    packets_.push_back(std::move(packet));
    if (input_.isVideo(*packets_.back()))
      return packets_.back().get();
    others_ += static_cast<std::size_t>(packets_.back()->size) + kPacketBytes;
  }
  input_.noteAbsence();
  return nullptr;
}

}  // namespace nkdraw::media
