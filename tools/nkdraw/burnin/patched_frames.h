// SPDX-License-Identifier: BSD-2-Clause
//
// The frames of an uncompressed clip, burnt in a copy of its file.
#pragma once

#include "burnin/burner.h"
#include "burnin/picture_burner.h"
#include "cli/using_media.h"
#include "media/file_copy.h"
#include "media/libav.h"
#include "media/media_input.h"
#include "media/packet_rows.h"
#include "media/video_feed.h"

#include <cstddef>
#include <cstdint>

namespace nkdraw::tool {

/// Ends a run that finds that the file can't be patched. It is then written anew.
class CanNotPatch {};

/// Of each frame, only the parts that the overlay touches are read and written. All other bytes of
/// the file stay as they are.
class PatchedFrames {
 public:
  using Feed = PacketFeed;

  /// `input` was opened with Reading::kSparse; `to` is the descriptor of an empty file, for reading
  /// and writing, that becomes the copy. Messages use `name`. Throws Failure if there is no room.
  PatchedFrames(MediaInput& input, const Job& job, int to, const std::string& name);

  /// Burns the frame `index` of this packet, whose contents may be unread. Throws CanNotPatch if
  /// the file does not hold the packet as it is, Failure or Interrupted.
  AVPacket& burn(AVPacket& packet, std::int64_t index);
  /// Copies what lies behind the last frame.
  void finish();
  [[nodiscard]] Burner& burner() { return burner_.burner(); }

 private:
  using MovePart = bool (PatchedFrames::*)(std::uint8_t* part, std::size_t bytes,
                                           std::int64_t place);

  void takeCanvas(const AVPacket& packet, std::int64_t place);
  void checkRoom();
  void moveParts(std::span<const tagRECT> rects, std::int64_t place, MovePart move);
  [[nodiscard]] bool read(std::uint8_t* part, std::size_t bytes, std::int64_t place);
  [[nodiscard]] bool write(std::uint8_t* part, std::size_t bytes, std::int64_t place);

  MediaInput& input_;
  const LayoutFacts& facts_;
  int to_;
  std::string name_;
  FileCopy copy_;
  PacketRows rows_;
  PictureBurner burner_;
  Packet canvas_ = makePacket();  // as large as the frame's packet; most of it has old contents
  Picture picture_;               // the frame in it
  std::int64_t end_ = 0;          // of the last frame in the file
};

}  // namespace nkdraw::tool
