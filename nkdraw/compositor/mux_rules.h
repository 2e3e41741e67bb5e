// SPDX-License-Identifier: BSD-2-Clause
//
// How one pixel of the display is computed from one pixel of each frame. These plain rules define
// the results; the fast rows give the same ones.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace nkdraw {

/// The four bytes of a pixel, in memory order.
using MuxPixel = std::array<std::uint8_t, 4>;

/// Some bytes of the first, others of the second, the rest 0. The masks apply to the pixel as a
/// word whose lowest byte is byte 0; they have no bit in common.
struct ChannelMix {
  std::uint32_t first;
  std::uint32_t second;

  [[nodiscard]] constexpr MuxPixel operator()(const MuxPixel& f, const MuxPixel& s) const {
    MuxPixel mix{};
    for (std::size_t i = 0; i < mix.size(); ++i)
      mix[i] =
          static_cast<std::uint8_t>((f[i] & (first >> (8 * i))) | (s[i] & (second >> (8 * i))));
    return mix;
  }
};

/// Both are halved before they are added, so two odd bytes give a mean one too low.
struct Average {
  [[nodiscard]] constexpr MuxPixel operator()(const MuxPixel& f, const MuxPixel& s) const {
    MuxPixel mean{};
    for (std::size_t i = 0; i < mean.size(); ++i)
      mean[i] = static_cast<std::uint8_t>((f[i] >> 1) + (s[i] >> 1));
    return mean;
  }
};

/// The largest signed difference of bytes 0 to 2, halved and rounded down, multiplied by the gain,
/// limited to 127 either way, and added to 128; byte 3 is 0.
struct Difference {
  std::int16_t gain;  ///< 1 to 255: the product fits 16 bits, as a difference is -128 to 127

  [[nodiscard]] constexpr MuxPixel operator()(const MuxPixel& f, const MuxPixel& s) const {
    const int largest = std::max({(f[0] - s[0]) >> 1, (f[1] - s[1]) >> 1, (f[2] - s[2]) >> 1});
    const auto grey = static_cast<std::uint8_t>(128 + std::clamp(largest * gain, -127, 127));
    return {grey, grey, grey, 0};
  }
};

/// The second, if every byte differs from the first's by at most `threshold`; else the byte
/// `other`, four times.
struct Compare {
  std::uint32_t threshold;
  std::uint8_t other;

  [[nodiscard]] constexpr MuxPixel operator()(const MuxPixel& f, const MuxPixel& s) const {
    for (std::size_t i = 0; i < f.size(); ++i) {
      const int distance = f[i] < s[i] ? s[i] - f[i] : f[i] - s[i];
      if (static_cast<std::uint32_t>(distance) > threshold)
        return {other, other, other, other};
    }
    return s;
  }
};

/// Mixes bytes by weights whose sum is 256, modulo 2^32: the low byte of (s * second + f * first)
/// >> 8. That byte is bits 8 to 15 of the sum, and depends only on the low 16 bits of the weights.
struct Fade {
  std::uint32_t first;
  std::uint32_t second;

  [[nodiscard]] constexpr MuxPixel operator()(const MuxPixel& f, const MuxPixel& s) const {
    MuxPixel mix{};
    for (std::size_t i = 0; i < mix.size(); ++i)
      mix[i] = static_cast<std::uint8_t>((s[i] * second + f[i] * first) >> 8);
    return mix;
  }
};

/// One byte of the first, four times.
struct GreyByte {
  std::uint8_t place;  ///< 0 to 3

  [[nodiscard]] constexpr MuxPixel operator()(const MuxPixel& f, const MuxPixel& /*s*/) const {
    return {f[place], f[place], f[place], f[place]};
  }
};

/// The mean of bytes 0 to 2 of the first, four times.
struct GreyMean {
  [[nodiscard]] constexpr MuxPixel operator()(const MuxPixel& f, const MuxPixel& /*s*/) const {
    const auto mean = static_cast<std::uint8_t>((f[0] + f[1] + f[2]) / 3);
    return {mean, mean, mean, mean};
  }
};

/// The rules that never read the second frame.
template <class Rule>
inline constexpr bool kReadsFirstAlone = false;
template <>
inline constexpr bool kReadsFirstAlone<GreyByte> = true;
template <>
inline constexpr bool kReadsFirstAlone<GreyMean> = true;

/// Runs of `run` pixels, alternately from the first and the second, starting with the row. Made
/// once for all rows of a frame.
struct Runs {
  static constexpr std::uint32_t kLongest = 100;
  static constexpr std::size_t kPixelsAtOnce = 16;

  /// `length` is 1 to kLongest.
  explicit constexpr Runs(std::uint32_t length) : run(length) {
    for (std::size_t i = 0; i < period() + kPixelsAtOnce; ++i)
      fromFirst[i] = i / run % 2 == 0 ? ~0U : 0;
  }

  [[nodiscard]] constexpr std::size_t period() const { return std::size_t{2} * run; }

  std::uint32_t run;
  /// All bits are set where the first shows. Covers one period, and as many further pixels as may
  /// be written at once.
  std::array<std::uint32_t, 2 * kLongest + kPixelsAtOnce> fromFirst{};
};

}  // namespace nkdraw
