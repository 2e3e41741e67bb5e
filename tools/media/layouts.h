// SPDX-License-Identifier: BSD-2-Clause
//
// The layouts that are drawn on in place: their names in FFmpeg and in the library, and the files
// that hold them.
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
  AVPixelFormat pixelFormat;  // of the packets; for v210, the format that FFmpeg decodes them to
  pixelType type;
  std::uint32_t compression;  // the frame header's biCompression
  std::uint16_t bitCount;     // and its biBitCount
  std::uint32_t redMask;      // only with the compression code of masks
  unsigned containers;        // FFmpeg's muxers that keep the layout
};

[[nodiscard]] std::span<const Layout> layouts();

/// The layout with this name, ignoring case, or of these raw frames; null if there is none.
[[nodiscard]] const Layout* layoutNamed(std::string_view name);
[[nodiscard]] const Layout* layoutOf(AVCodecID codec, AVPixelFormat pixelFormat);
/// The layout of these raw frames, if wipes can process them unconverted: all that are drawn on,
/// and 16-bit RGB with any order of the channels. Null if there is none.
[[nodiscard]] const Layout* wipeLayoutOf(AVCodecID codec, AVPixelFormat pixelFormat);
/// The layout in the table that the library draws as `type` and that has no unused byte. Throws
/// Failure if there is none.
[[nodiscard]] const Layout& layoutOf(pixelType type);

/// The kind of file of one of FFmpeg's demuxers or muxers; 0 for all others.
[[nodiscard]] unsigned containerOf(std::string_view formatName);
/// "mov, avi, mkv or nut": those that hold the layout.
[[nodiscard]] std::string containerNames(unsigned containers);

/// Bytes of the pixels of one row, and of a row as the library packs it. In 4:2:2 two pixels share
/// a pair, so an odd width takes half a pair more. Both throw Failure for an invalid value.
[[nodiscard]] std::size_t rowBytes(pixelType type, int width);
[[nodiscard]] std::size_t packedPitch(pixelType type, int width);

/// Whether the channels of this layout are Y, Cb and Cr.
[[nodiscard]] constexpr bool isYCbCr(pixelType type) {
  return nkdraw::isYCbCr(type);
}

/// The matrix with which the library draws on frames of this width: BT.709 above 720 pixels, else
/// BT.601.
[[nodiscard]] constexpr AVColorSpace matrixForWidth(int width) {
  constexpr int kWidestSD = 720;
  return width > kWidestSD ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

}  // namespace nkdraw::media
