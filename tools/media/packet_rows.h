// SPDX-License-Identifier: BSD-2-Clause
//
// Where the rows of an uncompressed frame are in its packet. Files differ: rows may be padded, or
// stored bottom up.
#pragma once

#include "media/canvas_stage.h"
#include "media/layouts.h"
#include "media/libav.h"

#include <cstdint>

namespace nkdraw::media {

class MediaInput;

class PacketRows {
 public:
  PacketRows(const AVCodecParameters& video, const Layout& layout);

  [[nodiscard]] Storage storage() const { return storage_; }

  /// The rows of the frame in this packet, whose data must be writable. A picture without planes if
  /// the packet is too short for a frame.
  [[nodiscard]] Picture rowsOf(AVPacket& packet);
  /// The same for frame `index` of the clip. Throws Failure if the packet is too short.
  [[nodiscard]] Picture rowsOf(AVPacket& packet, std::int64_t index, MediaInput& input);

  /// Converts the packet's frame to the form that every file format holds: packed rows, top row
  /// first.
  void makePlain(AVPacket& packet, const Picture& picture) const;

 private:
  /// Offset and pitch of the first row.
  struct Place {
    std::ptrdiff_t offset = 0, pitch = 0;
  };

  [[nodiscard]] bool findV210(const AVPacket& packet);
  [[nodiscard]] bool findRaw(AVPacket& packet);

  const Layout& layout_;
  int width_, height_;
  std::uint32_t codecTag_;
  Storage storage_;
  CodecContext decoder_;  // FFmpeg's view of raw frames
  Place place_;
  int size_ = -1;  // of the packets that place_ is valid for
};

}  // namespace nkdraw::media
