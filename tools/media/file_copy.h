// SPDX-License-Identifier: BSD-2-Clause
//
// Copies a file without its bytes passing through the program.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace nkdraw::media {

/// The copy is made by the kernel: both files share their blocks where the file system can do that,
/// else it goes on as far as advanceTo() asks.
class FileCopy {
 public:
  /// From the start of `from`, which has `size` bytes, into the empty file `to`. The room for the
  /// copy is taken at once. Both must stay open. Messages use `name`. Throws Failure if the disk
  /// has no room.
  FileCopy(int from, int to, std::int64_t size, std::string name);

  /// Whether the files share their blocks. Then blocks that are written take new room.
  [[nodiscard]] bool shares() const { return shares_; }
  /// Copies on until the first `end` bytes are there, or all. Throws Failure or Interrupted.
  void advanceTo(std::int64_t end);
  /// Throws Failure if the disk has no room for so many more bytes.
  void checkRoom(std::int64_t bytes) const;
  /// Writes bytes of the copy. Throws Failure.
  void write(std::span<const std::uint8_t> bytes, std::int64_t place) const;

 private:
  using CopySome = std::int64_t (*)(int from, int to, std::int64_t place, std::size_t bytes);
  static const CopySome kWays[];

  [[nodiscard]] std::int64_t copySome(std::size_t bytes);

  int from_, to_;
  std::int64_t size_, done_ = 0;
  std::string name_;
  bool shares_ = false;
  const CopySome* way_;
};

}  // namespace nkdraw::media
