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
#include <span>
#include <string>

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
  void takeCanvas(const AVPacket& packet, std::int64_t place);
  void readAhead(std::span<const tagRECT> rects, std::int64_t place);
  void checkRoom();
  void readParts(std::span<const tagRECT> rects, std::int64_t place);
  void writeParts(std::span<const tagRECT> rects, std::int64_t place);
  [[nodiscard]] bool readAt(std::span<std::uint8_t> part, std::int64_t place);
  [[nodiscard]] std::span<std::uint8_t> partOf(const tagRECT& rect, int y) const;
  [[nodiscard]] std::span<std::uint8_t> rowsOf(const tagRECT& rect) const;

  MediaInput& input_;
  const LayoutFacts& facts_;
  int to_;
  FileCopy copy_;
  PacketRows rows_;
  PictureBurner burner_;
  Packet canvas_ = makePacket();      // as large as the frame's packet; most of it has old contents
  Picture picture_;                   // the frame in it
  std::int64_t last_ = -1, end_ = 0;  // where the last frame begins and ends in the file
  std::int64_t ahead_ = 0;            // where the parts end that are being read ahead
};

}  // namespace nkdraw::tool
