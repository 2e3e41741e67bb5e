// SPDX-License-Identifier: BSD-2-Clause
#include "media/sample_scale.h"

#include <algorithm>

namespace nkdraw::media {
namespace {

// Of studio range with eight bits, by ITU-R BT.601.
constexpr int kBlack = 16, kLumaSpan = 219, kChromaSpan = 224;

/// To the nearest whole number, halves away from 0.
std::int64_t divided(std::int64_t value, std::int64_t by) {
  return (2 * value + (value < 0 ? -by : by)) / (2 * by);
}

/// A level of eight bits in samples of `depth` bits.
int scaled(int level, int depth) {
  return depth >= 8 ? level << (depth - 8) : level >> (8 - depth);
}

}  // namespace

Levels levelsOf(SampleKind kind, int depth, bool fullRange) {
  const unsigned most = (1U << depth) - 1;
  const int all = static_cast<int>(most);
  if (kind == SampleKind::kChroma)
    return {1 << (depth - 1), fullRange ? all : scaled(kChromaSpan, depth), most};
  if (kind == SampleKind::kRGB || fullRange)
    return {0, all, most};
  return {scaled(kBlack, depth), scaled(kLumaSpan, depth), most};
}

SampleScale::SampleScale(const Levels& from, const Levels& to) {
  values_.reserve(std::size_t{from.most} + 1);
  for (std::int64_t value = 0; value <= from.most; ++value) {
    const std::int64_t scaled = to.zero + divided((value - from.zero) * to.span, from.span);
    values_.push_back(static_cast<std::uint16_t>(std::clamp<std::int64_t>(scaled, 0, to.most)));
  }
}

}  // namespace nkdraw::media
