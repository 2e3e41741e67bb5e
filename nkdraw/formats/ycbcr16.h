// SPDX-License-Identifier: BSD-2-Clause
//
// 4:4:4 YCbCr in 16-bit words.
#pragma once

#include <nkdraw/formats/component_words.h>

/// Little-endian words Y, Cb, Cr; pitches below six bytes a pixel are raised. GetDraw makes none:
/// call the constructor, whose argument is not kept.
///
/// PixelType() is 1, as of 32-bit RGBA, and this is meant: LineHoriz, EraseCanvas and a FillRect of
/// the whole canvas write NKPixel's packed colour in four-byte pixels, and SetPixel takes R, G, B.
/// All that goes through PutPixel is drawn in words.
class NKDRAW_API CDrawYCbCrYCbCr16 : public nkdraw::ComponentPixels<CDrawYCbCrYCbCr16, ptYCbCr48> {
 public:
  explicit CDrawYCbCrYCbCr16(pixelType type);
  CDrawYCbCrYCbCr16(const CDrawYCbCrYCbCr16& other) = default;
  /// NKDraw's picture copy, then the fields of `other`; returns this object.
  CDrawYCbCrYCbCr16& operator=(CDrawYCbCrYCbCr16& other);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;
};

/// The same with a fourth word, alpha; pitches below eight bytes a pixel are raised. Pixels are
/// read eight bytes apart, but plotted six bytes apart, so that each covers the alpha of the one on
/// its left, and only x 0 reads back as it was plotted.
class NKDRAW_API CDrawYCbCrYCbCrA16
    : public nkdraw::ComponentPixels<CDrawYCbCrYCbCrA16, ptYCbCrA64> {
 public:
  explicit CDrawYCbCrYCbCrA16(pixelType type);
  CDrawYCbCrYCbCrA16(const CDrawYCbCrYCbCrA16& other) = default;
  /// NKDraw's picture copy, then the fields of `other`; returns this object.
  CDrawYCbCrYCbCrA16& operator=(CDrawYCbCrYCbCrA16& other);
  /// The alpha that is plotted becomes Cr's code; `a` is not read.
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground) override;

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  std::uint32_t foreAlpha = 0x108F6;  // of which a plot takes 0x08F6
  std::uint32_t backAlpha = 0;
};

extern template class nkdraw::ComponentPixels<CDrawYCbCrYCbCr16, ptYCbCr48>;
extern template class nkdraw::ComponentPixels<CDrawYCbCrYCbCrA16, ptYCbCrA64>;
