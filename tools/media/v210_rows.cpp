// SPDX-License-Identifier: BSD-2-Clause
#include "media/v210_rows.h"

#include <nkdraw/surface/layout_facts.h>

#include <array>
#include <cstddef>
#include <cstring>

namespace nkdraw::media {
namespace {

constexpr const LayoutFacts& kFacts = kFactsOf<ptV210>;
constexpr int kGroupPixels = kFacts.groupPixels;
constexpr std::size_t kGroupBytes = kFacts.groupBytes;
constexpr std::uint32_t kSampleMask = (1U << kFacts.depth) - 1;

enum Plane : std::uint8_t { kY, kCb, kCr };

/// A sample of a group: in its plane, and in the group's words.
struct Sample {
  Plane plane;
  std::uint8_t index;
  std::uint8_t word, shift;
};

constexpr auto kSamples = [] {
  std::array<Sample, sampleCount(kFacts)> samples{};
  std::array<std::uint8_t, 3> seen{};
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const Channel channel = kFacts.samples[i];
    const Plane plane = channel == Channel::kY ? kY : channel == Channel::kCb ? kCb : kCr;
    const unsigned bit = sampleBit(kFacts, i);
    samples[i] = {plane, seen[plane]++, static_cast<std::uint8_t>(bit / 32),
                  static_cast<std::uint8_t>(bit % 32)};
  }
  return samples;
}();

/// How many of the group's samples belong to a row with `pixels` pixels left.
constexpr bool isThere(Sample sample, int pixels) {
  return sample.plane == kY ? sample.index < pixels : 2 * sample.index < pixels;
}

}  // namespace

void packV210Row(const std::uint16_t* y, const std::uint16_t* cb, const std::uint16_t* cr,
                 std::uint8_t* packed, int width) {
  const std::uint16_t* planes[] = {y, cb, cr};
  for (int left = width; left > 0; left -= kGroupPixels, packed += kGroupBytes) {
    std::array<std::uint32_t, 4> words{};
    for (const Sample sample : kSamples) {
      if (isThere(sample, left))
        words[sample.word] |= (planes[sample.plane][sample.index] & kSampleMask) << sample.shift;
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
    for (const Sample sample : kSamples) {
      if (isThere(sample, left))
        planes[sample.plane][sample.index] =
            static_cast<std::uint16_t>(words[sample.word] >> sample.shift & kSampleMask);
    }
    planes[kY] += kGroupPixels;
    planes[kCb] += kGroupPixels / 2;
    planes[kCr] += kGroupPixels / 2;
  }
}

}  // namespace nkdraw::media
