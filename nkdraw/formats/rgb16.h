// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// RGB in 16-bit words.
#pragma once

#include <nkdraw/draw/draw.h>

#include <cstddef>

namespace nkdraw {

/// Three little-endian 16-bit words a pixel, R, G, B, or four, A, R, G, B. Plots are always opaque:
/// never blended, never added. Nothing is checked: callers keep pixels on a bound canvas.
///
/// Deliberate: the foreground plots 255 and the background 0 in each word, whatever colour is set.
/// GetColorRGBA reads the colour that was set.
template <std::size_t kWords>
class NKDRAW_API WordSurface : public virtual NKDraw {
  static_assert(kWords == 3 || kWords == 4);

 public:
  /// Returns two bytes for each word of a row.
  int GetPitch() override;
  /// Returns the address of the pixel's first word.
  void* GetPixel(int x, int y) override;
  /// Stores the words of the selected colour, which never change. Returns 0.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// Reads words over 65536, so none reads as 1.0. `a` is not written when there is no alpha word.
  /// Returns 0.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// Reads as NKPixel's does, except that the hue of a grey is -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Returns the mean of the three colour words over 65536, whatever the mode.
  double GetLuma(int x, int y) override;

 protected:
  friend class nkdraw::Plotter<WordSurface>;

  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit WordSurface(pixelType type);
  /// Copies every field, as NKDraw does.
  WordSurface(const WordSurface& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  WordSurface& operator=(WordSurface& other);

  std::uint32_t foregroundWords[kWords];  ///< 255 each
  std::uint32_t backgroundWords[kWords];  ///< 0 each
};

extern template class WordSurface<3>;
extern template class WordSurface<4>;

}  // namespace nkdraw

/// Words R, G, B: ptRGB48. Pitches below six bytes a pixel are raised.
class NKDRAW_API CDrawRGB48 : public nkdraw::WordSurface<3> {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawRGB48(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawRGB48(const CDrawRGB48& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  CDrawRGB48& operator=(CDrawRGB48& other);
};

/// Words R, G, B: ptRGBHalf48. Deliberate: half floats are drawn and read as integers. Pitches
/// below six bytes a pixel are raised.
class NKDRAW_API CDrawRGBHalf48 : public nkdraw::WordSurface<3> {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawRGBHalf48(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawRGBHalf48(const CDrawRGBHalf48& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  CDrawRGBHalf48& operator=(CDrawRGBHalf48& other);
};

/// Words A, R, G, B: ptARGB64 and ptRGBAHalf64. Deliberate: half floats are drawn and read as
/// integers. Pitches below eight bytes a pixel are raised.
class NKDRAW_API CDrawARGB64 : public nkdraw::WordSurface<4> {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawARGB64(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawARGB64(const CDrawARGB64& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  CDrawARGB64& operator=(CDrawARGB64& other);
};
