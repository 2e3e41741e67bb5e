// SPDX-License-Identifier: BSD-2-Clause
//
// A file that stays open until its last user releases it.
#pragma once

#include <nkdraw/try_make_shared.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <utility>

#include <unistd.h>

namespace nkdraw {

struct OpenFile {
  explicit OpenFile(int opened) : descriptor(opened) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (descriptor != -1)
      ::close(descriptor);
  }

  /// Closes the file now; false when the system reports an error.
  [[nodiscard]] bool close() { return ::close(std::exchange(descriptor, -1)) == 0; }

  int descriptor;
};

/// Takes ownership of a descriptor. Without memory for its owner it is closed, and the result is
/// null, as it is for -1.
[[nodiscard]] inline std::shared_ptr<OpenFile> takeOver(int descriptor) {
  if (descriptor == -1)
    return nullptr;
  std::shared_ptr<OpenFile> file = tryMakeShared<OpenFile>(descriptor);
  if (file == nullptr)
    ::close(descriptor);
  return file;
}

/// Reads from a position in the file; bytes past its end leave the memory as it was. How many bytes
/// there were, or nothing if the system reports an error.
inline std::optional<std::size_t> readAt(int file, off_t at, std::span<std::uint8_t> bytes) {
  if (lseek(file, at, SEEK_SET) != at)
    return std::nullopt;
  std::size_t have = 0;
  while (have < bytes.size()) {
    const ssize_t got = read(file, bytes.data() + have, bytes.size() - have);
    if (got < 0)
      return std::nullopt;
    if (got == 0)
      break;
    have += static_cast<std::size_t>(got);
  }
  return have;
}

}  // namespace nkdraw
