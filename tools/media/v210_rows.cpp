// SPDX-License-Identifier: BSD-2-Clause
#include "media/v210_rows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace nkdraw::media {
namespace {

constexpr int kGroupPixels = 6;
constexpr std::size_t kGroupBytes = 16;
constexpr std::uint32_t kSampleMask = 0x3FF;

/// The twelve samples of a group in the order in which its words hold them, three to a word from
/// bit 0 up.
enum Plane : std::uint8_t { kY, kCb, kCr };
struct Sample {
  Plane plane;
  std::uint8_t index;
};

// Bits   29..20  19..10   9..0
// word 0   Cr0     Y0     Cb0
// word 1   Y2      Cb1    Y1
// word 2   Cb2     Y3     Cr1
// word 3   Y5      Cr2    Y4
constexpr std::array<Sample, 12> kSamples = {{{kCb, 0},
                                              {kY, 0},
                                              {kCr, 0},
                                              {kY, 1},
                                              {kCb, 1},
                                              {kY, 2},
                                              {kCr, 1},
                                              {kY, 3},
                                              {kCb, 2},
                                              {kY, 4},
                                              {kCr, 2},
                                              {kY, 5}}};

/// How many of the group's samples a row has that goes on for `pixels` pixels.
constexpr bool isThere(Sample sample, int pixels) {
  return sample.plane == kY ? sample.index < pixels : 2 * sample.index < pixels;
}

}  // namespace

void packV210Row(const std::uint16_t* y, const std::uint16_t* cb, const std::uint16_t* cr,
                 std::uint8_t* packed, int width) {
  const std::uint16_t* planes[] = {y, cb, cr};
  for (int left = width; left > 0; left -= kGroupPixels, packed += kGroupBytes) {
    std::array<std::uint32_t, 4> words{};
    for (std::size_t i = 0; i < kSamples.size(); ++i) {
      const Sample sample = kSamples[i];
      if (isThere(sample, left))
        words[i / 3] |= (planes[sample.plane][sample.index] & kSampleMask) << (10 * (i % 3));
    }
    std::memcpy(packed, words.data(), kGroupBytes);
    planes[kY] += kGroupPixels;
    planes[kCb] += kGroupPixels / 2;
    planes[kCr] += kGroupPixels / 2;
  }
}

void unpackV210Row(const std::uint8_t* packed, std::uint16_t* y, std::uint16_t* cb,
                   std::uint16_t* cr, int width) {
  std::uint16_t* planes[] = {y, cb, cr};
  for (int left = width; left > 0; left -= kGroupPixels, packed += kGroupBytes) {
    std::array<std::uint32_t, 4> words{};
    std::memcpy(words.data(), packed, kGroupBytes);
    for (std::size_t i = 0; i < kSamples.size(); ++i) {
      const Sample sample = kSamples[i];
      if (isThere(sample, left))
        planes[sample.plane][sample.index] =
            static_cast<std::uint16_t>((words[i / 3] >> (10 * (i % 3))) & kSampleMask);
    }
    planes[kY] += kGroupPixels;
    planes[kCb] += kGroupPixels / 2;
    planes[kCr] += kGroupPixels / 2;
  }
}

}  // namespace nkdraw::media
