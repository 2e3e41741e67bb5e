// SPDX-License-Identifier: BSD-2-Clause
//
// A row of a watermark, in each form that pictures are converted to, put into a row of the frame.
#pragma once

#include <cstddef>
#include <cstdint>

namespace nkdraw::watermark {

/// The layouts that a watermark is converted for, by the frames' FOURCC.
inline constexpr std::uint32_t kRgb32 = 0;
inline constexpr std::uint32_t kYCbCr8 = 0x32767579;   // "yuv2"
inline constexpr std::uint32_t kYCbCr10 = 0x76323130;  // "012v"

/// Up to this alpha a pixel or pair is left alone. Deliberate: the limits differ by layout, and
/// callers rely on the pictures.
inline constexpr std::uint32_t kInvisibleRgb = 16, kInvisible8 = 8, kInvisible10 = 10;

/// A pair of pixels: Y, Cb, Y, Cr, alpha.
inline constexpr std::size_t kPairParts = 5;
inline constexpr std::size_t kPixelBytes = 4;  ///< 32-bit RGB, in the picture and in the frame
inline constexpr std::size_t kPairBytes = 4;   ///< 8-bit 4:2:2 in the frame: Cb, Y, Cr, Y

/// A byte of the picture over one of the frame; the division truncates.
[[nodiscard]] constexpr std::uint8_t blend(std::uint32_t source, std::uint32_t under,
                                           std::uint32_t alpha) {
  return static_cast<std::uint8_t>((source * alpha + under * (255 - alpha)) / 255);
}

/// The colour of one pixel of a pair, with Y in bits 0 to 9, Cb in bits 10 to 19 and Cr in bits 20
/// to 29; a larger part carries into the next.
[[nodiscard]] constexpr std::uint32_t codeOf(const std::uint32_t* pair, bool odd) {
  return pair[odd ? 2 : 0] + (pair[1] << 10) + (pair[3] << 20);
}

/// Each touches no byte outside its run, and reads none of the picture outside it. Neither needs to
/// be aligned.
struct Rows {
  /// Blends `pixels` pixels of 32-bit RGB.
  void (*blendPixels)(const std::uint8_t* picture, std::uint8_t* frame, std::size_t pixels);
  /// Blends `pairs` pairs into 8-bit 4:2:2.
  void (*blendPairs)(const std::uint8_t* picture, std::uint8_t* frame, std::size_t pairs);
  /// Plots three pairs into each of `groups` groups of v210. A pixel that shows is opaque.
  void (*plotGroups)(const std::uint32_t* picture, std::uint8_t* frame, std::size_t groups);
};

/// The plain form, which defines the result.
extern const Rows kPlainRows;

/// The fastest among `targets`, Highway's bits.
[[nodiscard]] const Rows& rows(std::int64_t targets);
/// The fastest of this machine.
[[nodiscard]] const Rows& rows();

}  // namespace nkdraw::watermark
