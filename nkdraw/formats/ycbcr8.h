// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Packed 8-bit 4:2:2 in its four byte orders.
#pragma once

#include <nkdraw/draw/draw.h>

/// Pairs of pixels in four bytes, which share one Cb and Cr. Colours are kept as the four bytes of
/// a pair. Plots are always opaque: never blended, never added. Coordinates of plots wrap around
/// the canvas; which luma of the pair is plotted depends on whether x is odd before that.
/// Deliberate: in the orders that begin with luma (ptYUYV, ptYVYU) an even x plots the pair's
/// second luma and an odd x its first. Reads give both pixels the pair's first luma, unless said
/// otherwise.
class NKDRAW_API CDrawYCbCrYUYV : public virtual NKDraw {
 public:
  /// Makes a surface without a canvas. A `type` of ptYUYV, ptYVYU or ptVYUY is kept, any other
  /// becomes ptUYVY. The initial mode is mode709Studio. The initial colours are not white and
  /// black: set colours before drawing.
  explicit CDrawYCbCrYUYV(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawYCbCrYUYV(const CDrawYCbCrYUYV& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  CDrawYCbCrYUYV& operator=(CDrawYCbCrYUYV& other);

  /// Binds a canvas as NKPixel's does, but keeps the signs of width and height and raises a pitch
  /// below two bytes a pixel. Above a width of 720 any mode but mode709Full becomes mode709Studio;
  /// otherwise any but mode601Full becomes mode601Studio. Returns 0.
  std::uint32_t SetCanvas(char* canvas, int height, int width, int pitch) override;
  /// Returns two bytes a pixel.
  int GetPitch() override;
  /// Returns the address of the pixel's pair; null without a canvas.
  void* GetPixel(int x, int y) override;
  /// Stores the pair's Cb and Cr and one of its two lumas. Does nothing without a canvas. Returns
  /// 0.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// Reads the bytes converted as by YCbCrToRGB; `a` becomes 0.0. Deliberate: in ptUYVY alone an
  /// odd x reads the pair's second luma. Without a canvas the other three become 0.5. Returns 0.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// Reads the bytes over 256; `a` becomes 1.0. Without a canvas the three become 0.0 and `a` is
  /// not written. Returns 0.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// Reads the bytes as they are; `a` becomes 255. Without a canvas the other three become 0.
  /// Returns 0.
  std::uint32_t GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                               unsigned char& cr, unsigned char& a) override;
  /// Reads four times the bytes; `a` becomes 255. Without a canvas the other three become 0.
  /// Returns 0.
  std::uint32_t GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                std::uint32_t& cr, std::uint32_t& a) override;
  /// Refuses: returns 0xFFFFFFFF and writes nothing.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Returns the pair's first luma over 256. Needs a canvas.
  double GetLuma(int x, int y) override;
  /// Sets the selected colour to the bytes y * 235 + 16, cb * 219 + 19 and cr * 219 + 18,
  /// truncated; a value above 255 carries into the next byte. The scales are the system's own. `a`
  /// is not read. Returns 0.
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground) override;
  /// Sets the selected colour to the upper eight bits of each 10-bit code. `a` is not read. Returns
  /// 0.
  std::uint32_t SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                std::uint32_t a, bool foreground) override;
  /// Converts by RGBToYCbCr and calls SetColorYCbCr. Returns 0.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;
  /// Sets the selected colour to these bytes. `a` is not read. Returns 0. It hides NKPixel's
  /// operation of this name, which a call through an NKPixel or NKDraw reaches instead.
  virtual std::uint32_t SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr,
                                       unsigned char a, bool foreground);

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  double yOffset = 16.0;         ///< of SetColorYCbCr
  double yScale = 235.0;         ///< of SetColorYCbCr
  double cbOffset = 19.0;        ///< of SetColorYCbCr; a cb of 0.5 gives 128
  double cbScale = 219.0;        ///< of SetColorYCbCr
  double crOffset = 18.0;        ///< of SetColorYCbCr; a cr of 0.5 gives 127
  double crScale = 219.0;        ///< of SetColorYCbCr
  std::uint32_t foregroundCode;  ///< the pair's bytes in memory order
  std::uint32_t backgroundCode;  ///< the pair's bytes in memory order
  std::int32_t reservedYUV = 0;  ///< not used
};
