// SPDX-License-Identifier: BSD-2-Clause
//
// The layouts that are drawn on in place: what FFmpeg calls them, what the library calls them, and
// which files hold them.
#pragma once

#include "media/libav.h"

#include <nkdraw/surface/layout_facts.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace nkdraw::media {

/// Kinds of files that hold uncompressed frames, as bits.
enum Container : unsigned {
  kMOV = 1,
  kAVI = 2,
  kMKV = 4,
  kNUT = 8,
};

struct Layout {
  std::string_view name;
  std::string_view description;
  AVCodecID codec;
  AVPixelFormat pixelFormat;  // of the packets; for v210 of what FFmpeg decodes them to
  pixelType type;
  std::uint32_t compression;  // the frame header's biCompression
  std::uint16_t bitCount;     // and its biBitCount
  std::uint32_t redMask;      // with the masks' compression code only
  unsigned containers;        // which of FFmpeg's writers keep the layout
};

[[nodiscard]] std::span<const Layout> layouts();

/// The layout with this name, in small or capital letters, or of these raw frames; null when there
/// is none.
[[nodiscard]] const Layout* layoutNamed(std::string_view name);
[[nodiscard]] const Layout* layoutOf(AVCodecID codec, AVPixelFormat pixelFormat);
/// The layout of these raw frames among those that wipes take as they are: all that are drawn on,
/// and RGB of 16 bits, where any order of the channels will do; null when there is none.
[[nodiscard]] const Layout* wipeLayoutOf(AVCodecID codec, AVPixelFormat pixelFormat);
/// The layout of the table that the library draws as `type` and that has no unused byte. Throws
/// Failure when there is none.
[[nodiscard]] const Layout& layoutOf(pixelType type);

/// The kind of file that one of FFmpeg's readers or writers stands for, 0 for all others.
[[nodiscard]] unsigned containerOf(std::string_view formatName);
/// "mov, avi, mkv or nut", as far as they hold the layout.
[[nodiscard]] std::string containerNames(unsigned containers);

/// Bytes of the pixels of one row, and of a row as the library packs it. Two pixels share a pair
/// in 4:2:2, so an odd width has half a pair more. Both throw Failure for a value that is no
/// layout.
[[nodiscard]] std::size_t rowBytes(pixelType type, int width);
[[nodiscard]] std::size_t packedPitch(pixelType type, int width);

/// Whether the channels of this layout are Y, Cb and Cr.
[[nodiscard]] constexpr bool isYCbCr(pixelType type) {
  return nkdraw::isYCbCr(type);
}

/// The matrix in which the library draws on frames of this width: BT.709 above 720 pixels, else
/// BT.601.
[[nodiscard]] constexpr AVColorSpace matrixForWidth(int width) {
  constexpr int kWidestSD = 720;
  return width > kWidestSD ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

}  // namespace nkdraw::media
