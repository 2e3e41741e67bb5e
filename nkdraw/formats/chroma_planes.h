// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Planes of chroma alone.
#pragma once

#include <nkdraw/formats/component_words.h>

/// A Cb and a Cr byte for each pixel: drawing changes the colour of a frame, not its brightness.
/// Pitches below two bytes a pixel are raised.
///
/// Deliberate: colours are kept as 16-bit fractions all the same, of which a plot stores the low
/// byte, so 0.5 plots 0x00. Only the initial colours plot a neutral 128. Reads take the bytes of
/// two pixels as the words of one.
class NKDRAW_API CDrawUV8 : public nkdraw::ComponentPixels<CDrawUV8, ptUV8> {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawUV8(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawUV8(const CDrawUV8& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  CDrawUV8& operator=(CDrawUV8& other);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;
};

/// A Cb and a Cr word for each pixel, 16-bit little-endian: drawing changes the colour of a frame,
/// not its brightness. Pitches below four bytes a pixel are raised.
class NKDRAW_API CDrawUV16 : public nkdraw::ComponentPixels<CDrawUV16, ptUV16> {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawUV16(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawUV16(const CDrawUV16& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  CDrawUV16& operator=(CDrawUV16& other);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;
};

extern template class nkdraw::ComponentPixels<CDrawUV8, ptUV8>;
extern template class nkdraw::ComponentPixels<CDrawUV16, ptUV16>;
