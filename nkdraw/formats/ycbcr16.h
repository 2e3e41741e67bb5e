// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// 4:4:4 YCbCr in 16-bit words.
#pragma once

#include <nkdraw/formats/component_words.h>

/// Little-endian words Y, Cb, Cr. Pitches below six bytes a pixel are raised. GetDraw makes no such
/// surface: call the constructor.
///
/// Deliberate: PixelType() is ptRGBA32. LineHoriz, EraseCanvas and a FillRect of the whole canvas
/// therefore write NKPixel's packed colour in four-byte pixels, and SetPixel takes R, G, B. What
/// goes through PutPixel is drawn in words.
class NKDRAW_API CDrawYCbCrYCbCr16 : public nkdraw::ComponentPixels<CDrawYCbCrYCbCr16, ptYCbCr48> {
 public:
  /// Makes a surface without a canvas. `type` is not read.
  explicit CDrawYCbCrYCbCr16(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawYCbCrYCbCr16(const CDrawYCbCrYCbCr16& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  CDrawYCbCrYCbCr16& operator=(CDrawYCbCrYCbCr16& other);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;
};

/// CDrawYCbCrYCbCr16 with a fourth word, alpha. Pitches below eight bytes a pixel are raised.
/// Deliberate: pixels are read eight bytes apart but plotted six bytes apart. Each overwrites the
/// alpha of its left neighbour, and only the pixel at x 0 reads back as it was plotted.
class NKDRAW_API CDrawYCbCrYCbCrA16
    : public nkdraw::ComponentPixels<CDrawYCbCrYCbCrA16, ptYCbCrA64> {
 public:
  /// Makes a surface without a canvas. `type` is not read.
  explicit CDrawYCbCrYCbCrA16(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawYCbCrYCbCrA16(const CDrawYCbCrYCbCrA16& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  CDrawYCbCrYCbCrA16& operator=(CDrawYCbCrYCbCrA16& other);
  /// Sets the selected colour as ComponentSurface's does. Deliberate: the alpha to be plotted
  /// becomes the code of Cr; `a` is not read. Returns 0.
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground) override;

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  std::uint32_t foreAlpha = 0x108F6;  ///< a plot stores the low 16 bits: 0x08F6
  std::uint32_t backAlpha = 0;        ///< a plot stores the low 16 bits
};

extern template class nkdraw::ComponentPixels<CDrawYCbCrYCbCr16, ptYCbCr48>;
extern template class nkdraw::ComponentPixels<CDrawYCbCrYCbCrA16, ptYCbCrA64>;
