// SPDX-License-Identifier: BSD-2-Clause
//
// The plain form of an exact cross-fade, and the weights of its faster forms.
#include "exact_mix.h"

#include <cstring>
#include <initializer_list>
#include <numeric>

namespace nkdraw {
namespace {

template <class Sample>
void mixSamples(const ExactMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
                std::uint8_t* output, std::size_t count) {
  for (std::size_t i = 0; i < count * sizeof(Sample); i += sizeof(Sample)) {
    Sample o, n;
    std::memcpy(&o, outgoing + i, sizeof o);
    std::memcpy(&n, incoming + i, sizeof n);
    const auto result = static_cast<Sample>(mixedExactly(mix, o, n));
    std::memcpy(output + i, &result, sizeof result);
  }
}

void mixV210(const ExactMix& mix, const std::uint8_t* outgoing, const std::uint8_t* incoming,
             std::uint8_t* output, std::size_t count) {
  constexpr std::uint32_t kSample = 0x3FF;
  for (std::size_t i = 0; i < count * 4; i += 4) {
    std::uint32_t o, n, result = 0;
    std::memcpy(&o, outgoing + i, sizeof o);
    std::memcpy(&n, incoming + i, sizeof n);
    for (const int shift : {0, 10, 20})
      result |= mixedExactly(mix, o >> shift & kSample, n >> shift & kSample) << shift;
    std::memcpy(output + i, &result, sizeof result);
  }
}

constexpr std::uint32_t kLargestDifference = 1023;

/// A fraction of small numbers.
struct Fraction {
  std::uint64_t numerator, denominator;
  [[nodiscard]] bool isBelow(const Fraction& other) const {
    return numerator * other.denominator < other.numerator * denominator;
  }
};

/// The progress, as a fraction that gives every difference the same rounded result. Results change
/// at odd multiples of 1 / 2d only. Between two such places the middle is far from both: a
/// difference is then at least 2^-12 from a half.
Fraction roundedAlike(std::uint64_t position, std::uint64_t range) {
  const std::uint64_t common = std::gcd(position, range);
  if (range / common <= 2 * kLargestDifference)
    return {position / common, range / common};
  Fraction low = {0, 1}, high = {1, 1};
  for (std::uint64_t d = 1; d <= kLargestDifference; ++d) {
    const std::uint64_t rounded = (2 * d * position + range) / (2 * range);
    const Fraction above = {2 * rounded + 1, 2 * d};
    if (above.isBelow(high))
      high = above;
    if (const Fraction below = {2 * rounded - 1, 2 * d}; rounded != 0 && low.isBelow(below))
      low = below;
  }
  return {low.numerator * high.denominator + high.numerator * low.denominator,
          2 * low.denominator * high.denominator};
}

}  // namespace

ExactMix exactMix(std::uint32_t position, std::uint32_t range) {
  const Fraction progress = roundedAlike(position, range);
  const std::uint64_t weight =
      ((progress.numerator << 32) / progress.denominator + 1) / 2;  // in 2^-31
  return {position,
          range,
          {static_cast<std::uint16_t>(weight >> 15), static_cast<std::uint16_t>(weight & 0x7FFF)}};
}

constexpr ExactMixKernels kPlainExactMix = {mixSamples<std::uint8_t>, mixSamples<std::uint16_t>,
                                            mixV210};

}  // namespace nkdraw
