// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// The facts of every pixel layout: which samples a group of pixels has, where they lie, and how
/// long its rows are.
#pragma once

#include <nkdraw/surface/pixel_type.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string_view>

namespace nkdraw {

/// What a sample is a sample of.
enum class Channel : std::uint8_t {
  kNone,  ///< no sample: ends a list
  kR,     ///< red
  kG,     ///< green
  kB,     ///< blue
  kA,     ///< alpha
  kY,     ///< luma
  kCb,    ///< blue difference
  kCr     ///< red difference
};

/// How the bits of a sample are read.
enum class SampleKind : std::uint8_t {
  kInteger,  ///< an unsigned integer
  kHalf,     ///< IEEE 754 binary16
  kFloat     ///< IEEE 754 binary32
};

/// What SetCanvas does with a pitch below that of a packed row.
enum class PitchRule : std::uint8_t {
  kAny,    ///< keeps it
  kRaised  ///< raises it
};

/// The facts of a layout. A group is the smallest number of neighbouring pixels in a row that share
/// no byte with others.
struct LayoutFacts {
  pixelType type;         ///< the layout
  std::string_view name;  ///< a short name
  /// The samples of a group in memory order; in a mosaic those of the first row, then those of the
  /// second.
  std::array<Channel, 12> samples;
  std::uint8_t depth;                        ///< bits of a sample
  std::uint8_t groupPixels;                  ///< in one row
  std::uint8_t groupBytes;                   ///< in one row
  PitchRule pitchRule = PitchRule::kRaised;  ///< of SetCanvas
  SampleKind kind = SampleKind::kInteger;    ///< of every sample
  /// A group is one number in this byte order. Little-endian samples fill each 32 bits of it from
  /// the lowest bit up, big-endian ones all of it from the highest bit down. Bits left over are
  /// unused.
  std::endian order = std::endian::little;
  std::uint8_t rows = 1;       ///< rows after which the channels repeat: 2 in a mosaic
  std::uint8_t rowPixels = 1;  ///< a packed row is a multiple of this many pixels
};

// v210, four little-endian words:
//
// Bits   29..20  19..10   9..0
// word 0   Cr0     Y0     Cb0
// word 1   Y2      Cb1    Y1
// word 2   Cb2     Y3     Cr1
// word 3   Y5      Cr2    Y4
//
// Mosaics, two samples in three bytes:
//
// Byte      0         1                    2
// bits   7..0      7..4      3..0       7..4      3..0
//        s0 11..4  s0 3..0   s1 11..8   s1 7..4   s1 3..0
//
// rgb30dpx, one big-endian word (SMPTE ST 268, method A):
//
// Bits   31..22  21..12  11..2  1..0
//          R       G       B     0
//
/// The facts of all layouts, in ascending order of `type`.
inline constexpr auto kLayoutFacts = [] {
  using enum Channel;
  using enum SampleKind;
  constexpr auto kAny = PitchRule::kAny, kRaised = PitchRule::kRaised;
  constexpr auto kBig = std::endian::big, kLittle = std::endian::little;
  return std::to_array<LayoutFacts>({
      {ptRGBA32, "rgba", {kR, kG, kB, kA}, 8, 1, 4},
      {ptARGB32, "argb", {kA, kR, kG, kB}, 8, 1, 4},
      {ptBGRA32, "bgra", {kB, kG, kR, kA}, 8, 1, 4},
      {ptABGR32, "abgr", {kA, kB, kG, kR}, 8, 1, 4},
      {ptRGB24, "rgb24", {kR, kG, kB}, 8, 1, 3},
      {ptBGR24, "bgr24", {kB, kG, kR}, 8, 1, 3},
      {ptYUYV, "yuy2", {kY, kCb, kY, kCr}, 8, 2, 4},
      {ptUYVY, "uyvy", {kCb, kY, kCr, kY}, 8, 2, 4},
      {ptYVYU, "yvyu", {kY, kCr, kY, kCb}, 8, 2, 4},
      {ptVYUY, "vyuy", {kCr, kY, kCb, kY}, 8, 2, 4},
      {ptV210,
       "v210",
       {kCb, kY, kCr, kY, kCb, kY, kCr, kY, kCb, kY, kCr, kY},
       10,
       6,
       16,
       kRaised,
       kInteger,
       kLittle,
       1,
       48},
      {ptRGB30DPX, "rgb30dpx", {kR, kG, kB}, 10, 1, 4, kAny, kInteger, kBig},
      {ptBayerBGGR, "bayer_bggr", {kB, kG, kG, kR}, 12, 2, 3, kAny, kInteger, kBig, 2},
      {ptBayerRGGB, "bayer_rggb", {kR, kG, kG, kB}, 12, 2, 3, kAny, kInteger, kBig, 2},
      {ptBayerGBRG, "bayer_gbrg", {kG, kB, kR, kG}, 12, 2, 3, kAny, kInteger, kBig, 2},
      {ptBayerGRBG, "bayer_grbg", {kG, kR, kB, kG}, 12, 2, 3, kAny, kInteger, kBig, 2},
      {ptBayerBGGR12, "bayer_bggr12", {kB, kG, kG, kR}, 12, 2, 3, kAny, kInteger, kBig, 2},
      {ptBayerRGGB12, "bayer_rggb12", {kR, kG, kG, kB}, 12, 2, 3, kAny, kInteger, kBig, 2},
      {ptBayerGBRG12, "bayer_gbrg12", {kG, kB, kR, kG}, 12, 2, 3, kAny, kInteger, kBig, 2},
      {ptBayerGRBG12, "bayer_grbg12", {kG, kR, kB, kG}, 12, 2, 3, kAny, kInteger, kBig, 2},
      {ptRGBAFloat, "rgbafloat", {kR, kG, kB, kA}, 32, 1, 16, kAny, kFloat},
      {ptRGBFloat, "rgbfloat", {kR, kG, kB}, 32, 1, 12, kAny, kFloat},
      {ptRGB48, "rgb48", {kR, kG, kB}, 16, 1, 6},
      {ptARGB64, "argb64", {kA, kR, kG, kB}, 16, 1, 8},
      {ptYCbCr24, "ycbcr24", {kY, kCb, kCr}, 8, 1, 3, kAny},
      {ptYCbCrA32, "ycbcra32", {kY, kCb, kCr, kA}, 8, 1, 4, kAny},
      {ptYCbCr48, "ycbcr48", {kY, kCb, kCr}, 16, 1, 6, kAny},
      {ptYCbCrA64, "ycbcra64", {kY, kCb, kCr, kA}, 16, 1, 8, kAny},
      {ptRGBHalf48, "rgbhalf48", {kR, kG, kB}, 16, 1, 6, kRaised, kHalf},
      {ptRGBAHalf64, "rgbahalf64", {kA, kR, kG, kB}, 16, 1, 8, kRaised, kHalf},
      {ptUV8, "uv8", {kCb, kCr}, 8, 1, 2},
      {ptUV16, "uv16", {kCb, kCr}, 16, 1, 4},
  });
}();

/// The row of a pixelType in kLayoutFacts; its size when there is none.
[[nodiscard]] constexpr std::size_t factsRow(std::int32_t type) {
  std::size_t row = 0;
  while (row < kLayoutFacts.size() && kLayoutFacts[row].type < type)
    ++row;
  return row < kLayoutFacts.size() && kLayoutFacts[row].type == type ? row : kLayoutFacts.size();
}

/// The facts of the layout with this pixelType; null when there is none.
[[nodiscard]] constexpr const LayoutFacts* findFacts(std::int32_t type) {
  const std::size_t row = factsRow(type);
  return row < kLayoutFacts.size() ? &kLayoutFacts[row] : nullptr;
}

/// The facts of a layout known at compile time; does not compile for a value that names none.
template <pixelType type>
inline constexpr const LayoutFacts& kFactsOf = kLayoutFacts[factsRow(type)];

/// The number of samples of a group, in all of its rows.
[[nodiscard]] constexpr std::size_t sampleCount(const LayoutFacts& facts) {
  return static_cast<std::size_t>(
      std::find(facts.samples.begin(), facts.samples.end(), Channel::kNone) -
      facts.samples.begin());
}

/// The lowest bit of sample `i` of a row, from bit 0 of the group's number.
[[nodiscard]] constexpr unsigned sampleBit(const LayoutFacts& facts, std::size_t i) {
  const unsigned depth = facts.depth, index = static_cast<unsigned>(i);
  if (facts.order == std::endian::big)
    return 8U * facts.groupBytes - (index + 1) * depth;
  constexpr unsigned kWordBits = 32;
  const unsigned perWord = kWordBits / depth;
  return index / perWord * kWordBits + index % perWord * depth;
}

/// The index in the group of sample number `n`, from 0, of a channel; sampleCount() if there are
/// not so many.
[[nodiscard]] constexpr std::size_t sampleOf(const LayoutFacts& facts, Channel channel,
                                             std::size_t n = 0) {
  const std::size_t count = sampleCount(facts);
  std::size_t i = 0;
  while (i < count && (facts.samples[i] != channel || n-- > 0))
    ++i;
  return i;
}

/// Whether the channels of a pixelType are Y, Cb and Cr. Of the values that name no layout, ptNone
/// and those reserved for packed YCbCr (15 to 19) count as such; all others count as RGB.
[[nodiscard]] constexpr bool isYCbCr(std::int32_t type) {
  constexpr std::int32_t kLastPackedYCbCr = 19;
  if (const LayoutFacts* const facts = findFacts(type))
    return sampleOf(*facts, Channel::kR) == sampleCount(*facts);
  return type == ptNone || (type > ptV210 && type <= kLastPackedYCbCr);
}

/// The bytes of the groups that hold `width` pixels.
[[nodiscard]] constexpr std::size_t rowBytes(const LayoutFacts& facts, std::uint32_t width) {
  return (std::size_t{width} + facts.groupPixels - 1) / facts.groupPixels * facts.groupBytes;
}

/// The bytes of a packed row, in 32-bit arithmetic that wraps. An incomplete last group counts in
/// part.
[[nodiscard]] constexpr std::uint32_t packedPitch(const LayoutFacts& facts, std::uint32_t width) {
  const std::uint32_t beyond = width % facts.rowPixels;
  const std::uint32_t pixels = beyond == 0 ? width : width - beyond + facts.rowPixels;
  const std::uint32_t common = std::gcd(facts.groupBytes, facts.groupPixels);
  return pixels * (facts.groupBytes / common) / (facts.groupPixels / common);
}

}  // namespace nkdraw
