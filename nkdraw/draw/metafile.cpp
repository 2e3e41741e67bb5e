// SPDX-License-Identifier: BSD-2-Clause
//
// The header of a 16-bit metafile, with or without the Aldus placeable header in front of it.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/open_file.h>

#include <array>
#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nkdraw {

struct MetafileHeader {
  std::array<std::uint8_t, 18> bytes{};
};

struct PlaceableHeader {
  std::array<std::uint8_t, 22> bytes{};

  /// A little-endian word.
  [[nodiscard]] std::uint16_t word(std::size_t at) const {
    return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8);
  }

  [[nodiscard]] int signedWord(std::size_t at) const { return static_cast<std::int16_t>(word(at)); }

  /// The last word is the XOR of the ten before it.
  [[nodiscard]] bool checksumFits() const {
    std::uint16_t sum = 0;
    for (std::size_t at = 0; at < kChecksum; at += 2)
      sum = static_cast<std::uint16_t>(sum ^ word(at));
    return sum == word(kChecksum);
  }

  static constexpr std::size_t kChecksum = 20;
  static constexpr std::size_t kRight = 10;
  static constexpr std::size_t kBottom = 12;
};

}  // namespace nkdraw

namespace {

constexpr std::uint8_t kPlaceableMark = 0xD7;  // the first byte of the key 0x9AC6CDD7

using nkdraw::readAt;
using nkdraw::tryMakeShared;

/// The descriptor, or -1. A folder is refused, although the system opens it.
int openForReading(const char* path) {
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (file == -1 || (fstat(file, &status) == 0 && !S_ISDIR(status.st_mode)))
    return file;
  close(file);
  return -1;
}

}  // namespace

std::uint32_t NKDraw::EMFOpen(const char* path) {
  EMFClose();
  metaFileOwner = nkdraw::takeOver(openForReading(path));
  metaFile = metaFileOwner ? metaFileOwner->descriptor : -1;
  if (metaFile == -1)
    return NKStatusRefused;
  std::array<std::uint8_t, 1> mark{};
  readAt(metaFile, 0, mark);
  const bool placeable = mark[0] == kPlaceableMark;
  if (placeable) {
    placeableHeader = tryMakeShared<nkdraw::PlaceableHeader>();
    if (placeableHeader == nullptr)
      return NKStatusRefused;
    readAt(metaFile, 0, placeableHeader->bytes);
    if (!placeableHeader->checksumFits())
      return NKStatusRefused;
  }
  metaHeader = tryMakeShared<nkdraw::MetafileHeader>();
  if (metaHeader == nullptr)
    return NKStatusRefused;
  readAt(metaFile, placeable ? std::ssize(placeableHeader->bytes) : 0, metaHeader->bytes);
  return 0;
}

std::uint32_t NKDraw::EMFGetSize(int& sizeX, int& sizeY) {
  const nkdraw::PlaceableHeader none;
  const nkdraw::PlaceableHeader& header = placeableHeader ? *placeableHeader : none;
  sizeX = header.signedWord(nkdraw::PlaceableHeader::kRight);
  sizeY = header.signedWord(nkdraw::PlaceableHeader::kBottom);
  return 0;
}

std::uint32_t NKDraw::EMFClose() {
  metaFileOwner.reset();  // a copy of this object may still use the file
  metaFile = 0;
  return 0;
}
