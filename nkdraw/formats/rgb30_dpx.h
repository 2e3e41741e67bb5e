// SPDX-License-Identifier: BSD-2-Clause
//
// RGB with ten bits a channel, as in DPX files.
#pragma once

#include <nkdraw/draw/draw.h>

/// One big-endian word a pixel, filled from the top (SMPTE ST 268, method A): R in bits 31 to 22,
/// G in 21 to 12, B in 11 to 2; the last two bits are 0 when written and not read.
///
/// Plots as NKPixel does on the word as it lies in memory: a blend mixes the byte-swapped word as
/// one number, and the additive mode works on its bytes, not on the channels. pixelType 20, which
/// is not checked. SetCanvas takes any pitch.
class NKDRAW_API CDrawRGB30DPX : public virtual NKDraw {
 public:
  explicit CDrawRGB30DPX(pixelType type);
  CDrawRGB30DPX(const CDrawRGB30DPX& other) = default;
  /// NKDraw's picture copy; returns this object.
  CDrawRGB30DPX& operator=(CDrawRGB30DPX& other);

  /// Four bytes a pixel.
  int GetPitch() override;
  /// Codes over 1023, `a` 1.0.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// As NKPixel's, but a grey has a hue of -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Weighted codes over 1024; modes 2 to 4 have weights of their own, all others share one set.
  double GetLuma(int x, int y) override;
  /// The colour's codes over 1023, `a` 1.0.
  std::uint32_t GetColorRGBA(double& r, double& g, double& b, double& a, bool foreground) override;
  /// Codes of each channel times 1023, truncated; G and B wrap at ten bits. `a` is dropped.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;
};
