// SPDX-License-Identifier: BSD-2-Clause
//
// Packed 8-bit 4:2:2 in its four byte orders.
#pragma once

#include <nkdraw/draw/draw.h>

/// Two pixels in four bytes, with one Cb and Cr. Colours are kept as the four bytes of a pair.
/// Always plots opaque, never blends or adds. Plotted coordinates wrap around the canvas; the luma
/// that is plotted goes by the parity of x as given. In the orders that begin with luma (10 and 12)
/// an even x plots the pair's second luma and an odd x its first; the reads give both pixels the
/// first luma.
///
/// The smallest pitch is two bytes a pixel. SetCanvas keeps the signs of width and height, and
/// leaves the mode within BT.709 for a width above 720 and within BT.601 otherwise.
class NKDRAW_API CDrawYCbCrYUYV : public virtual NKDraw {
 public:
  /// `type` 10, 12 and 13 are kept, anything else becomes ptUYVY. The mode starts as BT.709 studio.
  /// The start colours are no black and white: set colours before drawing.
  explicit CDrawYCbCrYUYV(pixelType type);
  CDrawYCbCrYUYV(const CDrawYCbCrYUYV& other) = default;
  /// NKDraw's picture copy, then the fields of `other`; returns this object.
  CDrawYCbCrYUYV& operator=(CDrawYCbCrYUYV& other);

  std::uint32_t SetCanvas(char* canvas, int height, int width, int pitch) override;
  /// Two bytes a pixel.
  int GetPitch() override;
  /// The address of the pixel's pair; null without a canvas.
  void* GetPixel(int x, int y) override;
  /// Returns 0, without a canvas too.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// Converts the bytes by the mode; both pixels of a pair have its one Cb and Cr. `a` is 0.0.
  /// Without a canvas 0.5 each.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// Bytes over 256, `a` 1.0; without a canvas 0.0 and `a` unwritten.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// The bytes, `a` 255; without a canvas 0.
  std::uint32_t GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                               unsigned char& cr, unsigned char& a) override;
  /// Four times the bytes, `a` 255; without a canvas 0.
  std::uint32_t GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                std::uint32_t& cr, std::uint32_t& a) override;
  /// Refused.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// The pair's first luma over 256. Needs a canvas.
  double GetLuma(int x, int y) override;
  /// Bytes of y * 235 + 16, cb * 219 + 19 and cr * 219 + 18, truncated; what is too large carries
  /// into the next byte.
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground) override;
  /// The top eight bits of each 10-bit code.
  std::uint32_t SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                std::uint32_t a, bool foreground) override;
  /// RGBToYCbCr, then SetColorYCbCr. Returns 0.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;
  /// The bytes as they are. It hides NKPixel's operation of this name, which a caller that holds
  /// an NKPixel or NKDraw reaches instead.
  virtual std::uint32_t SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr,
                                       unsigned char a, bool foreground);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  double yOffset = 16.0;
  double yScale = 235.0;
  double cbOffset = 19.0;  // the three offsets differ: 0.5 gives a Cb of 128 and a Cr of 127
  double cbScale = 219.0;
  double crOffset = 18.0;
  double crScale = 219.0;
  std::uint32_t foregroundCode;  // the pair's bytes in memory order
  std::uint32_t backgroundCode;
  std::int32_t reservedYUV = 0;
};
