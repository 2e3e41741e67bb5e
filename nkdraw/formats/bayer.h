// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Raw sensor mosaics.
#pragma once

#include <nkdraw/draw/draw.h>

/// 12-bit samples, two in three bytes, in cells of two by two pixels: one red, one blue and two
/// green samples, in the order that the pixelType names. Plotting a pixel writes the upper eight
/// bits of its own sample; reading one gathers the colour of its whole cell. Plots are always
/// opaque: never blended, never added. Nothing is checked: callers keep pixels on a bound canvas
/// and read none on the last row of an odd height (GetLuma: on the last row of any height).
///
/// The layouts are ptBayerBGGR to ptBayerGRBG12; 25 to 28 are the same as 21 to 24. SetCanvas takes
/// any pitch.
class NKDRAW_API CDrawBayer : public virtual NKDraw {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawBayer(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawBayer(const CDrawBayer& other) = default;
  /// Does what NKDraw's does, then copies the colours of `other`. Returns this object.
  CDrawBayer& operator=(CDrawBayer& other);

  /// Returns three bytes for every two pixels, rounded down.
  int GetPitch() override;
  /// Returns the address of the byte in which the pixel's sample begins.
  void* GetPixel(int x, int y) override;
  /// At an even x, stores the upper eight bits of the sample. Deliberate: at an odd x, stores the
  /// upper four bits of its own channel and the lower four of its left neighbour's, and clears the
  /// low bits of the neighbouring sample. Returns 0.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// Reads the upper eight bits of each sample over 255, green from the cell's first row; `a`
  /// becomes 1.0. All four pixels of a cell read the same.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// Reads as NKPixel's does, except that the hue of a grey is -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Returns the mean of three bytes of the cell over 255, whatever the mode. A byte that two
  /// samples share counts in full, and at an odd y the cell is taken to begin there.
  double GetLuma(int x, int y) override;
  /// Sets the selected colour: each channel times 255, truncated and wrapping at eight bits.
  /// GetColorRGBA does not read it. Returns 0.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  std::uint8_t foregroundRGBA[4] = {0xFF, 0xFF, 0xFF, 0xFF};  ///< of SetColorRGBA
  std::uint8_t backgroundRGBA[4] = {0, 0, 0, 0};              ///< of SetColorRGBA
};
