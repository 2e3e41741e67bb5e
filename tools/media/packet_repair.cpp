// SPDX-License-Identifier: BSD-2-Clause
#include "media/packet_repair.h"

#include "media/clip_facts.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace nkdraw::media {

PacketRepair::PacketRepair(MediaInput& input) : input_(input), layout_(ownLayout(input)) {
  if (layout_ != nullptr)
    rows_.emplace(*input.video().codecpar, *layout_);
}

/// The first frame of a clip is completed with zeros.
Packet PacketRepair::completed(const AVPacket& packet) const {
  const AVCodecParameters& video = *input_.video().codecpar;
  const std::size_t whole =
      packedPitch(layout_->type, video.width) * static_cast<std::size_t>(video.height);
  const int size = last_ != nullptr ? last_->size : static_cast<int>(whole);
  Packet made = makePacket();
  if (av_new_packet(made.get(), size) < 0 || av_packet_copy_props(made.get(), &packet) < 0)
    throw std::bad_alloc();
  if (last_ != nullptr)
    std::memcpy(made->data, last_->data, static_cast<std::size_t>(size));
  else
    std::memset(made->data, 0, static_cast<std::size_t>(size));
  std::memcpy(made->data, packet.data, static_cast<std::size_t>(std::min(size, packet.size)));
  return made;
}

void PacketRepair::repair(Packet& packet, std::int64_t index) {
  if (!rows_ || !input_.damage().goesOn())
    return;
  if (rows_->rowsOf(*packet).planes[0] == nullptr) {
    input_.damage().note(index, "it is cut short, with " + std::to_string(packet->size) + " bytes");
    packet = completed(*packet);
  }
  last_ = owned<Packet>(av_packet_clone(packet.get()));
}

}  // namespace nkdraw::media
