// SPDX-License-Identifier: BSD-2-Clause
//
// Uncompressed frames that are too short for their size.
#pragma once

#include "media/libav.h"
#include "media/media_input.h"
#include "media/packet_rows.h"

#include <cstdint>
#include <optional>

namespace nkdraw::media {

class PacketRepair {
 public:
  /// The input must outlive it.
  explicit PacketRepair(MediaInput& input);

  /// In a run that goes on after damage, completes the packet of frame `index` with the rest of
  /// the frame before, and notes it. In others the packet stays as it is.
  void repair(Packet& packet, std::int64_t index);

 private:
  [[nodiscard]] Packet completed(const AVPacket& packet) const;

  MediaInput& input_;
  const Layout* layout_;  // null for packets that are no frames in a known layout
  std::optional<PacketRows> rows_;
  Packet last_;
};

}  // namespace nkdraw::media
