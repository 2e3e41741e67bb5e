// SPDX-License-Identifier: BSD-2-Clause
//
// RGB in 16-bit words.
#pragma once

#include <nkdraw/draw/draw.h>

#include <cstddef>

namespace nkdraw {

/// `kWords` unsigned little-endian 16-bit words a pixel, R, G, B, with a fourth one A in front of
/// them. Always plots opaque, never blends or adds. Nothing is refused: a caller keeps pixels on a
/// canvas that is bound.
///
/// The plotted words never change: the foreground is 255 and the background 0 in each word,
/// whatever colour is set, although GetColorRGBA tells of the colour that was set.
template <std::size_t kWords>
class NKDRAW_API WordSurface : public virtual NKDraw {
  static_assert(kWords == 3 || kWords == 4);

 public:
  /// Two bytes a word.
  int GetPitch() override;
  /// The address of the pixel's first word.
  void* GetPixel(int x, int y) override;
  /// Returns 0.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// Words over 65536, so that none reads as 1.0. `a` is not written where there is no alpha word.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// As NKPixel's, but a grey has a hue of -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// The mean of the three colour words over 65536, whatever the mode.
  double GetLuma(int x, int y) override;

 protected:
  friend class nkdraw::Plotter<WordSurface>;

  explicit WordSurface(pixelType type);
  WordSurface(const WordSurface& other) = default;
  /// NKDraw's picture copy, then the fields of `other`.
  WordSurface& operator=(WordSurface& other);

  std::uint32_t foregroundWords[kWords];
  std::uint32_t backgroundWords[kWords];
};

extern template class WordSurface<3>;
extern template class WordSurface<4>;

}  // namespace nkdraw

/// Words R, G, B: pixelType 31, which is not checked. Pitches below six bytes a pixel are raised.
class NKDRAW_API CDrawRGB48 : public nkdraw::WordSurface<3> {
 public:
  explicit CDrawRGB48(pixelType type);
  CDrawRGB48(const CDrawRGB48& other) = default;
  /// NKDraw's picture copy, then the fields of `other`; returns this object.
  CDrawRGB48& operator=(CDrawRGB48& other);
};

/// The same for pixelType 37: the words of a frame of half floats are drawn and read as integers.
class NKDRAW_API CDrawRGBHalf48 : public nkdraw::WordSurface<3> {
 public:
  explicit CDrawRGBHalf48(pixelType type);
  CDrawRGBHalf48(const CDrawRGBHalf48& other) = default;
  /// NKDraw's picture copy, then the fields of `other`; returns this object.
  CDrawRGBHalf48& operator=(CDrawRGBHalf48& other);
};

/// Words A, R, G, B: pixelType 32 and 38, which is not checked. Half floats are drawn and read as
/// integers. Pitches below eight bytes a pixel are raised.
class NKDRAW_API CDrawARGB64 : public nkdraw::WordSurface<4> {
 public:
  explicit CDrawARGB64(pixelType type);
  CDrawARGB64(const CDrawARGB64& other) = default;
  /// NKDraw's picture copy, then the fields of `other`; returns this object.
  CDrawARGB64& operator=(CDrawARGB64& other);
};
