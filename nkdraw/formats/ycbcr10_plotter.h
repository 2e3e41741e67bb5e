// SPDX-License-Identifier: BSD-2-Clause
//
// v210: where each sample lies in a group, and how pixels are written.
#pragma once

#include <nkdraw/formats/ycbcr10.h>
#include <nkdraw/surface/plotter.h>
#include <nkdraw/surface/run_kernels.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace nkdraw::v210 {

inline constexpr int kGroupPixels = 6;
inline constexpr int kGroupBytes = 16;
inline constexpr std::uint32_t kSampleMask = 0x3FF;

/// A 10-bit sample of a group: which of its four little-endian words, and the lowest bit there.
struct Sample {
  std::uint8_t word;
  std::uint8_t shift;
};

// Bits   29..20  19..10   9..0
// word 0   Cr0     Y0     Cb0
// word 1   Y2      Cb1    Y1
// word 2   Cb2     Y3     Cr1
// word 3   Y5      Cr2    Y4
inline constexpr std::array<Sample, 6> kLuma = {
    {{0, 10}, {1, 0}, {1, 20}, {2, 10}, {3, 0}, {3, 20}}};
inline constexpr std::array<Sample, 3> kCb = {{{0, 0}, {1, 10}, {2, 20}}};
inline constexpr std::array<Sample, 3> kCr = {{{0, 20}, {2, 0}, {3, 10}}};

/// A group in two halves of eight bytes, as numbers.
struct Halves {
  std::uint64_t low = 0, high = 0;

  constexpr void put(Sample sample, std::uint64_t value) {
    (sample.word < 2 ? low : high) |= value << (sample.shift + (sample.word % 2) * 32);
  }
};

/// The bits that the pixels from `first` up to, not including, `last` own or share.
constexpr Halves ownedBits(int first, int last) {
  Halves bits;
  for (int m = first; m < last; ++m) {
    bits.put(kLuma[static_cast<std::size_t>(m)], kSampleMask);
    bits.put(kCb[static_cast<std::size_t>(m / 2)], kSampleMask);
    bits.put(kCr[static_cast<std::size_t>(m / 2)], kSampleMask);
  }
  return bits;
}

/// ownedBits of every stretch inside a group.
inline constexpr auto kOwned = [] {
  std::array<std::array<Halves, kGroupPixels + 1>, kGroupPixels> table{};
  for (int first = 0; first < kGroupPixels; ++first) {
    for (int last = first + 1; last <= kGroupPixels; ++last)
      table[static_cast<std::size_t>(first)][static_cast<std::size_t>(last)] =
          ownedBits(first, last);
  }
  return table;
}();

/// Eight bytes of a group hold all samples of one pixel: from which word on, by its pair.
inline constexpr int kWindowBytes = 8;

/// The window of the pair in a group given by its halves.
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

/// A whole group in the colour `code` (Y, Cb, Cr in ten bits each, from bit 0).
constexpr Halves filledGroup(std::uint64_t code) {
  Halves group;
  for (const Sample sample : kLuma)
    group.put(sample, code & kSampleMask);
  for (const Sample sample : kCb)
    group.put(sample, (code >> 10) & kSampleMask);
  for (const Sample sample : kCr)
    group.put(sample, (code >> 20) & kSampleMask);
  return group;
}

/// All samples of a group, and the bits that none uses, which stay.
inline MaskedGroup maskedGroup(const Halves& colour) {
  const Halves& owned = kOwned[0][kGroupPixels];
  const std::array<std::uint64_t, 2> kept = {~owned.low, ~owned.high};
  const std::array<std::uint64_t, 2> samples = {colour.low, colour.high};
  return {std::bit_cast<std::array<std::uint8_t, kGroupBytes>>(kept),
          std::bit_cast<std::array<std::uint8_t, kGroupBytes>>(samples)};
}

/// Some pixels of a group, each in a colour of its own.
class GroupEditor {
 public:
  explicit GroupEditor(char* group) : group_(group) {
    std::memcpy(&bits_.low, group_, sizeof bits_.low);
    std::memcpy(&bits_.high, group_ + 8, sizeof bits_.high);
  }

  /// The pixel with number `m` in the colour `code`, as filledGroup takes it.
  void put(std::size_t m, std::uint64_t code) {
    Halves colour;
    colour.put(kLuma[m], code & kSampleMask);
    colour.put(kCb[m / 2], (code >> 10) & kSampleMask);
    colour.put(kCr[m / 2], (code >> 20) & kSampleMask);
    const Halves& owned = kOwned[m][m + 1];
    bits_.low = (bits_.low & ~owned.low) | colour.low;
    bits_.high = (bits_.high & ~owned.high) | colour.high;
  }

  void store() const {
    std::memcpy(group_, &bits_.low, sizeof bits_.low);
    std::memcpy(group_ + 8, &bits_.high, sizeof bits_.high);
  }

 private:
  char* group_;
  Halves bits_;
};

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
    const auto m = static_cast<std::size_t>(x % v210::kGroupPixels);
    mergeHalf(group(x, y) + m / 2 * 4, v210::kOwnedInWindow[m], windows_[m / 2]);
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

  /// For a pixel that is put soon, or refused: the address is a number, and may lie anywhere.
  void prefetch(int x, int y) const {
    const auto address =
        std::bit_cast<std::uintptr_t>(canvas_) + static_cast<std::uintptr_t>(offset(x, y));
    __builtin_prefetch(std::bit_cast<const char*>(address), 1);
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
  [[nodiscard]] std::ptrdiff_t offset(int x, int y) const {
    return std::ptrdiff_t{pitch_ * static_cast<std::uint32_t>(y)} +
           std::ptrdiff_t{x / v210::kGroupPixels} * v210::kGroupBytes;
  }

  [[nodiscard]] char* group(int x, int y) const { return canvas_ + offset(x, y); }

  /// Whole groups, of which only the unused bits stay; the address behind them.
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
