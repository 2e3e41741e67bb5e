// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// 8-bit RGB in four bytes a pixel, or three.
#pragma once

#include <nkdraw/draw/draw.h>

/// Four bytes a pixel: ptRGBA32 to ptABGR32. With a pitch that is no multiple of four, the offset
/// of each row from the canvas is rounded down to one.
class NKDRAW_API CDrawRGBA32 : public virtual NKDraw {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawRGBA32(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawRGBA32(const CDrawRGBA32& other) = default;
  /// Does what NKDraw's does. Returns this object.
  CDrawRGBA32& operator=(CDrawRGBA32& other);

  /// Returns four bytes a pixel.
  int GetPitch() override;
  /// Reads the stored bytes over 255, converted by RGBToYCbCr; `a` is as stored. Returns 0.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// Reads as NKPixel's does, except that the hue of a grey is -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
};

/// Three bytes a pixel: ptRGB24 and ptBGR24. Deliberate: only the opaque foreground is plotted at
/// the pixel's own three bytes. The background, blending and the additive mode work on the four
/// bytes at x times 4, as on the 32-bit layouts.
class NKDRAW_API CDrawRGB24 : public virtual NKDraw {
 public:
  /// Makes a surface without a canvas. `type` is kept without a check.
  explicit CDrawRGB24(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawRGB24(const CDrawRGB24& other) = default;
  /// Does what NKDraw's does. Returns this object.
  CDrawRGB24& operator=(CDrawRGB24& other);

  /// Returns three bytes a pixel.
  int GetPitch() override;
  /// Reads the stored bytes over 255, converted by RGBToYCbCr; `a` becomes 1.0. Returns 0.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// Reads as NKPixel's does, except that the hue of a grey is -1.0.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
};
