// SPDX-License-Identifier: BSD-2-Clause
//
// Mirroring frames: what lies opposite is read in pairs of blocks before either is written, so that
// a frame may be mirrored in place.
#include <nkdraw/platform/flip.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t kPixelBytes = 4;

/// Exchanges two rows by way of the cache: `bytes` bytes of `top` go to `newBottom`, of `bottom` to
/// `newTop`.
void exchangeRows(const std::uint8_t* top, const std::uint8_t* bottom, std::uint8_t* newTop,
                  std::uint8_t* newBottom, std::size_t bytes) {
  std::array<std::uint8_t, 2048> block;
  for (std::size_t at = 0; at < bytes; at += block.size()) {
    const std::size_t size = std::min(block.size(), bytes - at);
    std::memcpy(block.data(), top + at, size);
    std::memmove(newTop + at, bottom + at, size);
    std::memcpy(newBottom + at, block.data(), size);
  }
}

using Pixels [[gnu::vector_size(16)]] = std::uint32_t;

Pixels mirrored(const std::uint8_t* at) {
  Pixels pixels;
  std::memcpy(&pixels, at, sizeof pixels);
  return __builtin_shuffle(pixels, Pixels{3, 2, 1, 0});
}

void mirrorRow(const std::uint8_t* source, std::uint8_t* destination, std::size_t bytes) {
  std::size_t left = 0, right = bytes;  // what lies between is still to do
  for (; right - left >= 2 * sizeof(Pixels); left += sizeof(Pixels)) {
    const Pixels fromLeft = mirrored(source + left);
    right -= sizeof(Pixels);
    const Pixels fromRight = mirrored(source + right);
    std::memcpy(destination + left, &fromRight, sizeof fromRight);
    std::memcpy(destination + right, &fromLeft, sizeof fromLeft);
  }
  for (; left < right; left += kPixelBytes) {
    right -= kPixelBytes;
    std::uint32_t fromLeft, fromRight;
    std::memcpy(&fromLeft, source + left, kPixelBytes);
    std::memcpy(&fromRight, source + right, kPixelBytes);
    std::memcpy(destination + left, &fromRight, kPixelBytes);
    std::memcpy(destination + right, &fromLeft, kPixelBytes);
  }
}

}  // namespace

void pxcv_flip_vert(const std::uint8_t* source, std::uint8_t* destination, std::uint32_t width,
                    std::uint32_t height, std::uint32_t pitch) {
  const std::size_t step = pitch;
  for (std::size_t top = 0, bottom = height; top < bottom; ++top) {
    --bottom;
    exchangeRows(source + top * step, source + bottom * step, destination + top * step,
                 destination + bottom * step, width * kPixelBytes);
  }
}

void pxcv_flip_horz(const std::uint8_t* source, std::uint8_t* destination, std::uint32_t width,
                    std::uint32_t height, std::uint32_t pitch, std::uint32_t /*mask*/) {
  for (std::size_t y = 0; y < height; ++y)
    mirrorRow(source + y * pitch, destination + y * pitch, width * kPixelBytes);
}
