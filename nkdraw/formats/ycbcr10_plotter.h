// SPDX-License-Identifier: BSD-2-Clause
//
// How v210 pixels are written.
#pragma once

#include <nkdraw/formats/ycbcr10.h>
#include <nkdraw/surface/plotter.h>
#include <nkdraw/surface/run_kernels.h>
#include <nkdraw/surface/v210_group.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace nkdraw::v210 {

/// The eight bytes of a group that hold all samples of the pixels of a pair.
constexpr std::uint64_t window(const Halves& group, int pair) {
  switch (pair) {
    case 0:
      return group.low;
    case 1:
      return group.low >> 32 | group.high << 32;
    default:
      return group.high;
  }
}

/// The bits of its window that a pixel owns or shares.
inline constexpr auto kOwnedInWindow = [] {
  std::array<std::uint64_t, kGroupPixels> table{};
  for (int m = 0; m < kGroupPixels; ++m)
    table[static_cast<std::size_t>(m)] = window(ownedBits(m, m + 1), m / 2);
  return table;
}();

/// All samples of a group, and the bits that no sample uses, which stay.
inline MaskedGroup maskedGroup(const Halves& colour) {
  const Halves& owned = kOwned[0][kGroupPixels];
  const std::array<std::uint64_t, 2> kept = {~owned.low, ~owned.high};
  const std::array<std::uint64_t, 2> samples = {colour.low, colour.high};
  return {std::bit_cast<std::array<std::uint8_t, kGroupBytes>>(kept),
          std::bit_cast<std::array<std::uint8_t, kGroupBytes>>(samples)};
}

}  // namespace nkdraw::v210

namespace nkdraw {

template <>
class Plotter<CDrawYCbCr10> {
 public:
  Plotter(const CDrawYCbCr10& surface, bool foreground)
      : canvas_(surface.canvas),
        pitch_(surface.pitch),
        colour_(v210::filledGroup(foreground ? surface.foregroundCode : surface.backgroundCode)),
        windows_{v210::window(colour_, 0), v210::window(colour_, 1), v210::window(colour_, 2)} {}

  std::uint32_t put(int x, int y) const {
    if (x < 0 || y < 0)
      return NKStatusRefused;
    merge(group(x, y), x);
    return 0;
  }

  static constexpr int kGroupPixels = v210::kGroupPixels;
  static constexpr std::size_t kGroupBytes = v210::kGroupBytes;
  [[nodiscard]] char* rowAt(int y) const { return group(0, y); }
  [[nodiscard]] Plotter onCanvas(char* canvas) const {
    Plotter same = *this;
    same.canvas_ = canvas;
    return same;
  }

  /// Also prefetches what lies `ahead` of the pixel, wherever that is.
  void putAhead(int x, int y, std::ptrdiff_t ahead) const {
    if (x < 0 || y < 0)
      return;
    char* const at = group(x, y);
    prefetch(at, ahead);
    merge(at, x);
  }
  /// From one pixel to another, so many columns and rows away, about.
  [[nodiscard]] std::ptrdiff_t distance(int columns, int rows) const {
    return std::ptrdiff_t{pitch_} * rows +
           columns * std::ptrdiff_t{v210::kGroupBytes} / v210::kGroupPixels;
  }

  void row(int x, int y, int count) const {
    if (x < 0) {  // the pixels left of the canvas are refused
      count = static_cast<int>(std::max<std::int64_t>(std::int64_t{count} + x, 0));
      x = 0;
    }
    if (y < 0 || count == 0)
      return;
    char* at = group(x, y);
    const int m = x % v210::kGroupPixels;
    if (m != 0) {
      const int length = std::min(count, v210::kGroupPixels - m);
      merge(at, m, m + length);
      count -= length;
      at += v210::kGroupBytes;
    }
    at = fillGroups(at, count / v210::kGroupPixels);
    if (count % v210::kGroupPixels != 0)
      merge(at, 0, count % v210::kGroupPixels);
  }

 private:
  /// Of pixels that are not refused.
  [[nodiscard]] std::ptrdiff_t offset(int x, int y) const {
    return std::ptrdiff_t{pitch_ * static_cast<std::uint32_t>(y)} +
           std::ptrdiff_t{static_cast<std::uint32_t>(x) / kGroupPixels} * v210::kGroupBytes;
  }

  [[nodiscard]] char* group(int x, int y) const { return canvas_ + offset(x, y); }

  /// Fills whole groups, keeping only their unused bits; returns the address after them.
  char* fillGroups(char* at, int groups) const {
    constexpr int kFewGroups = 4;
    if (groups >= kFewGroups) {
      runKernels().setBits(reinterpret_cast<std::uint8_t*>(at), v210::maskedGroup(colour_),
                           static_cast<std::size_t>(groups));
      return at + std::ptrdiff_t{groups} * v210::kGroupBytes;
    }
    for (; groups > 0; --groups, at += v210::kGroupBytes)
      merge(at, 0, v210::kGroupPixels);
    return at;
  }

  /// One pixel of a group. Dividing numbers without a sign is quicker. The window is merged by
  /// words: loading what was stored in part, as the next pair's window is, is slow.
  void merge(char* at, int x) const {
    const std::uint32_t m = static_cast<std::uint32_t>(x) % kGroupPixels;
    char* const window = at + std::size_t{m / 2} * 4;
    const std::uint64_t owned = v210::kOwnedInWindow[m], colour = windows_[m / 2];
    mergeWord(window, static_cast<std::uint32_t>(owned), static_cast<std::uint32_t>(colour));
    mergeWord(window + 4, static_cast<std::uint32_t>(owned >> 32),
              static_cast<std::uint32_t>(colour >> 32));
  }

  static void mergeWord(char* at, std::uint32_t owned, std::uint32_t colour) {
    std::uint32_t word;
    std::memcpy(&word, at, sizeof word);
    word = (word & ~owned) | (colour & owned);
    std::memcpy(at, &word, sizeof word);
  }

  void merge(char* at, int first, int last) const {
    const v210::Halves& owned =
        v210::kOwned[static_cast<std::size_t>(first)][static_cast<std::size_t>(last)];
    mergeHalf(at, owned.low, colour_.low);
    mergeHalf(at + 8, owned.high, colour_.high);
  }

  static void mergeHalf(char* at, std::uint64_t owned, std::uint64_t colour) {
    std::uint64_t half;
    std::memcpy(&half, at, sizeof half);
    half = (half & ~owned) | (colour & owned);
    std::memcpy(at, &half, sizeof half);
  }

  char* canvas_;
  std::uint32_t pitch_;
  v210::Halves colour_;
  std::array<std::uint64_t, 3> windows_;
};

}  // namespace nkdraw
