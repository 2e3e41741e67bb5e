// SPDX-License-Identifier: BSD-2-Clause
//
// 8-bit RGB, packed in four bytes or three.
#pragma once

#include <nkdraw/draw/draw.h>

/// Four bytes a pixel: pixelType 1 to 4, which is not checked. A pitch that is no multiple of four
/// slips a row's start down to one, counted from the canvas.
class NKDRAW_API CDrawRGBA32 : public virtual NKDraw {
 public:
  explicit CDrawRGBA32(pixelType type);
  CDrawRGBA32(const CDrawRGBA32& other) = default;
  /// NKDraw's picture copy; returns this object.
  CDrawRGBA32& operator=(CDrawRGBA32& other);

  /// Four bytes a pixel.
  int GetPitch() override;
  /// The stored bytes over 255 through RGBToYCbCr; `a` as stored. Returns 0.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// As NKPixel's, but a grey has a hue of -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
};

/// Three bytes a pixel: pixelType 5 and 6, which is not checked. Only the plain foreground is
/// plotted at the pixel's own three bytes: the background, blending and the additive mode work on
/// the four bytes at x times 4, as on the 32-bit layouts.
class NKDRAW_API CDrawRGB24 : public virtual NKDraw {
 public:
  explicit CDrawRGB24(pixelType type);
  CDrawRGB24(const CDrawRGB24& other) = default;
  /// NKDraw's picture copy; returns this object.
  CDrawRGB24& operator=(CDrawRGB24& other);

  /// Three bytes a pixel.
  int GetPitch() override;
  /// The stored bytes over 255 through RGBToYCbCr; `a` 1.0. Returns 0.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// As NKPixel's, but a grey has a hue of -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
};
