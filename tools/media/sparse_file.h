// SPDX-License-Identifier: BSD-2-Clause
//
// A file that FFmpeg reads, but for the contents of its frames.
#pragma once

#include "media/libav.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>

namespace nkdraw::media {

/// Large blocks can be left unread but for their first bytes, which may hold the frame's header:
/// the memory that FFmpeg means to fill with the rest keeps what it has. It remembers which memory
/// was meant for which part of the file, and so tells where in the file the bytes of a packet lie.
class SparseFile {
 public:
  /// Throws Failure if the file can't be opened.
  explicit SparseFile(const std::string& path);
  SparseFile(const SparseFile&) = delete;
  SparseFile& operator=(const SparseFile&) = delete;
  ~SparseFile();

  [[nodiscard]] AVIOContext* context() { return context_; }
  [[nodiscard]] int descriptor() const { return descriptor_; }
  [[nodiscard]] std::int64_t size() const { return size_; }

  /// From now on, blocks of at least so many bytes stay unread. Blocks of less than kLeastUnread
  /// are always read.
  void leaveUnread(std::int64_t bytes);
  static constexpr std::int64_t kLeastUnread = 1 << 16;

  /// The next packet is about to be read: where others lie is no longer asked.
  void beginPacket();
  /// Where in the file the packet lies that was read since beginPacket(), or before the first call
  /// of leaveUnread(). All of its bytes that were read are compared with those in the file. None if
  /// it is not there in one piece, as it is, or if more than one place is possible.
  [[nodiscard]] std::optional<std::int64_t> placeOf(const AVPacket& packet) const;
  /// Reads what was left unread of that packet. False if it can't be told where that belongs.
  [[nodiscard]] bool complete(const AVPacket& packet) const;

 private:
  /// A part of the file, and the memory that it was meant for.
  struct Block {
    std::uint8_t* memory;
    std::int64_t place, size;
    std::int64_t read;  // so many of its first bytes
  };

  static int readNext(void* file, std::uint8_t* memory, int size);
  static std::int64_t seekTo(void* file, std::int64_t offset, int whence);

  [[nodiscard]] bool completeBlock(const Block& block, const AVPacket& packet) const;
  [[nodiscard]] bool holds(std::int64_t place, std::span<const std::uint8_t> bytes) const;
  [[nodiscard]] std::optional<std::int64_t> placeIn(const Block& block,
                                                    std::span<const std::uint8_t> bytes) const;
  [[nodiscard]] std::optional<std::int64_t> placeBehind(std::int64_t place,
                                                        std::span<const std::uint8_t> bytes) const;

  int descriptor_;
  std::int64_t size_ = 0, next_ = 0;
  std::optional<std::int64_t> unread_;  // blocks of so many bytes
  std::deque<Block> blocks_;            // the last one first
  std::deque<Block> early_;             // of packets that FFmpeg reads while it opens a file
  AVIOContext* context_ = nullptr;
};

}  // namespace nkdraw::media
