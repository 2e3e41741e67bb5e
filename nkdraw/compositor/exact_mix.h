// SPDX-License-Identifier: BSD-2-Clause
//
// The arithmetic of an exact cross-fade. With outgoing o, incoming n and progress p of range R the
// result is (o * (R - p) + n * p) / R, rounded to the nearest integer, halves up.
#pragma once

#include <cstddef>
#include <cstdint>

namespace nkdraw {

/// For samples of up to ten bits: o + (n - o) * weight, where the weight gives every difference the
/// rounding of p / R.
struct ExactWeight {
  std::uint16_t high = 0;  ///< in 2^-16
  std::uint16_t low = 0;   ///< in 2^-31
};

struct ExactMix {
  std::uint32_t position = 0, range = 1;
  ExactWeight weight{};
};

/// Progress strictly inside the range.
[[nodiscard]] ExactMix exactMix(std::uint32_t position, std::uint32_t range);

[[nodiscard]] inline std::uint32_t mixedExactly(const ExactMix& mix, std::uint32_t outgoing,
                                                std::uint32_t incoming) {
  const std::uint64_t range = mix.range;
  const std::uint64_t sum =
      outgoing * (range - mix.position) + std::uint64_t{incoming} * mix.position;
  return static_cast<std::uint32_t>((2 * sum + range) / (2 * range));
}

/// Mixes rows of samples. `output` must not be an input. Needs no alignment.
struct ExactMixKernels {
  using MixRow = void (*)(const ExactMix& mix, const std::uint8_t* outgoing,
                          const std::uint8_t* incoming, std::uint8_t* output, std::size_t count);
  MixRow bytes;  ///< bytes
  MixRow words;  ///< words of sixteen bits
  MixRow v210;   ///< v210 words, whose two top bits become 0
};

/// Defines the result.
extern const ExactMixKernels kPlainExactMix;

/// The fastest of `targets`, Highway's bits.
[[nodiscard]] const ExactMixKernels& exactMixKernels(std::int64_t targets);

/// The fastest that this machine runs.
[[nodiscard]] const ExactMixKernels& bestExactMix();

}  // namespace nkdraw
