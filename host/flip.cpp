// SPDX-License-Identifier: BSD-2-Clause
//
// Mirrors frames. Opposite blocks are both read before either is written, so a frame may be
// mirrored in place.
#include <nkdraw/platform/flip.h>

#include <nkdraw/simd/vector_targets.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "host/flip.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#ifndef NKDRAW_HOST_FLIP
#define NKDRAW_HOST_FLIP
namespace nkdraw {
namespace {

constexpr std::size_t kPixelBytes = 4;

/// Mirrors the pixels from `left` up to `right`: byte offsets with a whole number of pixels between
/// them.
void mirrorBetween(const std::uint8_t* source, std::uint8_t* destination, std::size_t left,
                   std::size_t right) {
  for (; left < right; left += kPixelBytes) {
    right -= kPixelBytes;
    std::uint32_t fromLeft, fromRight;
    std::memcpy(&fromLeft, source + left, kPixelBytes);
    std::memcpy(&fromRight, source + right, kPixelBytes);
    std::memcpy(destination + left, &fromRight, kPixelBytes);
    std::memcpy(destination + right, &fromLeft, kPixelBytes);
  }
}

struct FlipKernels {
  void (*mirrorRow)(const std::uint8_t* source, std::uint8_t* destination, std::size_t bytes);
};

}  // namespace
}  // namespace nkdraw
#endif

HWY_BEFORE_NAMESPACE();
namespace nkdraw::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

void mirrorRow(const std::uint8_t* source, std::uint8_t* destination, std::size_t bytes) {
  mirrorBetween(source, destination, 0, bytes);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

void mirrorRow(const std::uint8_t* source, std::uint8_t* destination, std::size_t bytes) {
  const hn::ScalableTag<std::uint32_t> pixels;
  const hn::Repartition<std::uint8_t, decltype(pixels)> parts;
  const std::size_t size = hn::Lanes(parts);
  const auto mirrored = [&](const std::uint8_t* at) {
    return hn::BitCast(parts, hn::Reverse(pixels, hn::BitCast(pixels, hn::LoadU(parts, at))));
  };
  std::size_t left = 0, right = bytes;  // not yet done between these
  for (; right - left >= 2 * size; left += size) {
    const auto fromLeft = mirrored(source + left);
    right -= size;
    const auto fromRight = mirrored(source + right);
    hn::StoreU(fromRight, parts, destination + left);
    hn::StoreU(fromLeft, parts, destination + right);
  }
  mirrorBetween(source, destination, left, right);
}

#endif

constexpr FlipKernels kKernels = {mirrorRow};

}  // namespace
}  // namespace nkdraw::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace nkdraw {
namespace {

constexpr ByTarget<FlipKernels> kByTarget = {HWY_CHOOSE_TARGET_LIST(kKernels),
                                             HWY_CHOOSE_FALLBACK(kKernels)};

const FlipKernels& flipKernels() {
  static const FlipKernels& kernels = bestKernels(kByTarget, runnableTargets());
  return kernels;
}

/// Exchanges two rows through the cache: `bytes` bytes of `top` go to `newBottom`, and of `bottom`
/// to `newTop`.
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

}  // namespace
}  // namespace nkdraw

void pxcv_flip_vert(const std::uint8_t* source, std::uint8_t* destination, std::uint32_t width,
                    std::uint32_t height, std::uint32_t pitch) {
  const std::size_t step = pitch;
  for (std::size_t top = 0, bottom = height; top < bottom; ++top) {
    --bottom;
    nkdraw::exchangeRows(source + top * step, source + bottom * step, destination + top * step,
                         destination + bottom * step, width * nkdraw::kPixelBytes);
  }
}

void pxcv_flip_horz(const std::uint8_t* source, std::uint8_t* destination, std::uint32_t width,
                    std::uint32_t height, std::uint32_t pitch, std::uint32_t /*mask*/) {
  const nkdraw::FlipKernels& kernels = nkdraw::flipKernels();
  for (std::size_t y = 0; y < height; ++y)
    kernels.mirrorRow(source + y * pitch, destination + y * pitch, width * nkdraw::kPixelBytes);
}
#endif
