// SPDX-License-Identifier: BSD-2-Clause
//
// Walks the chunks of a PNG file (ISO/IEC 15948) and keeps nothing.
#include <nkdraw/draw/draw.h>

#include <nkdraw/draw/open_file.h>

#include <algorithm>
#include <array>
#include <string_view>

#include <fcntl.h>

namespace {

constexpr std::int32_t kRefused = -1;

/// The signature, then the first chunk's length and type.
constexpr std::string_view kStart("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR", 16);
constexpr off_t kFirstChunkBehindHeader = 33;
constexpr off_t kChecksumBytes = 4;

struct Chunk {
  std::array<std::uint8_t, 8> head{};  // its length, highest byte first, and its type

  [[nodiscard]] off_t length() const {
    return off_t{head[0]} << 24 | off_t{head[1]} << 16 | off_t{head[2]} << 8 | off_t{head[3]};
  }
  [[nodiscard]] bool isLast() const {
    return std::equal(head.begin() + 4, head.end(), std::string_view("IEND").begin());
  }
};

bool startsAsPng(int file) {
  std::array<std::uint8_t, kStart.size()> bytes{};
  nkdraw::readAt(file, 0, bytes);
  return std::equal(bytes.begin(), bytes.end(), kStart.begin(),
                    [](std::uint8_t byte, char want) { return static_cast<char>(byte) == want; });
}

/// Goes from chunk to chunk. Whether the last one is reached before the file ends. Image data is
/// not needed, so it is skipped like the rest.
bool reachesLastChunk(int file) {
  off_t at = kFirstChunkBehindHeader;
  Chunk chunk;
  while (nkdraw::readAt(file, at, chunk.head) == chunk.head.size()) {
    if (chunk.isLast())
      return true;
    at += std::ssize(chunk.head) + chunk.length() + kChecksumBytes;
  }
  return false;
}

}  // namespace

std::int32_t NKDraw::ExtractPNGData(const char* path) {
  const auto file = nkdraw::takeOver(open(path, O_RDONLY | O_CLOEXEC));
  if (file == nullptr)
    return kRefused;
  refusedFile = file;
  if (!startsAsPng(file->descriptor))
    return kRefused;
  refusedFile.reset();
  const bool whole = reachesLastChunk(file->descriptor);
  const bool closed = file->close();
  return whole && closed ? 0 : kRefused;
}
