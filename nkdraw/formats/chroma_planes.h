// SPDX-License-Identifier: BSD-2-Clause
//
// Planes of chroma alone.
#pragma once

#include <nkdraw/formats/component_words.h>

/// A Cb and a Cr byte for each pixel: what is drawn changes the colour of a frame and not its
/// brightness. Pitches below two bytes a pixel are raised.
///
/// Colours are 16-bit fractions here, too, of which a plot takes the low byte: 0.5 plots 0x00. Only
/// the start colours are a neutral 128. This is meant, and so are the reads, which take the bytes
/// of two pixels for one pixel's words.
class NKDRAW_API CDrawUV8 : public nkdraw::ComponentPixels<CDrawUV8, ptUV8> {
 public:
  /// `type` is kept as it is.
  explicit CDrawUV8(pixelType type);
  CDrawUV8(const CDrawUV8& other) = default;
  /// NKDraw's picture copy, then the fields of `other`; returns this object.
  CDrawUV8& operator=(CDrawUV8& other);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;
};

/// The same with little-endian words of 16 bits. Pitches below four bytes a pixel are raised.
class NKDRAW_API CDrawUV16 : public nkdraw::ComponentPixels<CDrawUV16, ptUV16> {
 public:
  /// `type` is kept as it is.
  explicit CDrawUV16(pixelType type);
  CDrawUV16(const CDrawUV16& other) = default;
  /// NKDraw's picture copy, then the fields of `other`; returns this object.
  CDrawUV16& operator=(CDrawUV16& other);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;
};

extern template class nkdraw::ComponentPixels<CDrawUV8, ptUV8>;
extern template class nkdraw::ComponentPixels<CDrawUV16, ptUV16>;
