// SPDX-License-Identifier: BSD-2-Clause
//
// Raw sensor mosaics.
#pragma once

#include <nkdraw/draw/draw.h>

/// 12-bit samples, two in three bytes, in cells of two by two: one red, one blue and two green
/// ones, in the order that the pixelType names. A pixel writes the one sample of its place, and of
/// that the upper eight bits; a read gathers the colour of the whole cell. Always plots opaque,
/// never blends or adds. Nothing is refused: a caller keeps pixels on a canvas that is bound, and
/// reads none on the last row of an odd height (GetLuma: on the last row of any).
///
/// pixelType 21 to 28, which is not checked; the two ranges act alike. SetCanvas takes any pitch.
class NKDRAW_API CDrawBayer : public virtual NKDraw {
 public:
  explicit CDrawBayer(pixelType type);
  CDrawBayer(const CDrawBayer& other) = default;
  /// NKDraw's picture copy, then the colours of `other`; returns this object.
  CDrawBayer& operator=(CDrawBayer& other);

  /// Three bytes for two pixels, rounded down.
  int GetPitch() override;
  /// The address of the byte in which the pixel's sample begins.
  void* GetPixel(int x, int y) override;
  /// An even x stores the sample's upper eight bits. An odd x stores the upper four bits of its own
  /// channel and the lower four of its left neighbour's, and clears the low bits of the sample
  /// beside it. Returns 0.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// The upper eight bits of each sample over 255, green from the cell's first row; `a` 1.0. All
  /// four pixels of a cell read the same.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// As NKPixel's, but a grey has a hue of -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// The mean of three bytes of the cell over 255, whatever the mode. A byte that two samples share
  /// counts whole, and on an odd y the cell is taken from there on.
  double GetLuma(int x, int y) override;
  /// Bytes of each channel times 255, truncated and wrapping. GetColorRGBA does not tell of them.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  std::uint8_t foregroundRGBA[4] = {0xFF, 0xFF, 0xFF, 0xFF};
  std::uint8_t backgroundRGBA[4] = {0, 0, 0, 0};
};
