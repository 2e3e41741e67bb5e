// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// RGB with ten bits a channel, as in DPX files (SMPTE ST 268).
#pragma once

#include <nkdraw/draw/draw.h>

/// One big-endian word a pixel, filled from the top (SMPTE ST 268, method A): R in bits 31 to 22, G
/// in 21 to 12, B in 11 to 2; the last two bits are 0 when written and not read.
///
/// Plots as NKPixel does, on the word as it lies in memory: a blend mixes the byte-swapped word as
/// one number, and the additive mode works on its bytes, not on the channels. The layout is
/// ptRGB30DPX. SetCanvas takes any pitch.
class NKDRAW_API CDrawRGB30DPX : public virtual NKDraw {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawRGB30DPX(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawRGB30DPX(const CDrawRGB30DPX& other) = default;
  /// Does what NKDraw's does. Returns this object.
  CDrawRGB30DPX& operator=(CDrawRGB30DPX& other);

  /// Returns four bytes a pixel.
  int GetPitch() override;
  /// Reads the 10-bit codes over 1023; `a` becomes 1.0. Returns 0.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// Reads as NKPixel's does, except that the hue of a grey is -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Returns the codes over 1024, weighted by the system's own weights: modes 2 to 4 have each its
  /// own set, all others share one.
  double GetLuma(int x, int y) override;
  /// Reads the selected colour's codes over 1023; `a` becomes 1.0. Returns 0.
  std::uint32_t GetColorRGBA(double& r, double& g, double& b, double& a, bool foreground) override;
  /// Sets the selected colour: each channel times 1023, truncated; G and B wrap at ten bits. `a` is
  /// not read. Returns 0.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;
};
