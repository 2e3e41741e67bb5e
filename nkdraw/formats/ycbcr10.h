// SPDX-License-Identifier: BSD-2-Clause
//
// Packed 10-bit 4:2:2, the layout known as v210.
#pragma once

#include <nkdraw/draw/draw.h>

/// Six pixels in a group of sixteen bytes; each pair of pixels shares one Cb and Cr, and the last
/// pixel plotted wins them. Colours are kept as 10-bit codes. Always plots opaque, never blends or
/// adds; a negative x or y is refused.
///
/// A row is a multiple of 48 pixels, 128 bytes; SetCanvas raises a smaller pitch (a negative one
/// counts as large), and chooses
/// BT.709 for a width above 720 and BT.601 otherwise, whatever mode was set.
class NKDRAW_API CDrawYCbCr10 : public virtual NKDraw {
 public:
  /// `type` 15 and 16 are kept, anything else becomes ptV210.
  explicit CDrawYCbCr10(pixelType type);
  CDrawYCbCr10(const CDrawYCbCr10& other) = default;
  /// NKDraw's picture copy, then the codes of `other`; returns this object.
  CDrawYCbCr10& operator=(CDrawYCbCr10& other);

  std::uint32_t SetCanvas(char* canvas, int height, int width, int pitch) override;
  /// 128 bytes for every 48 pixels begun.
  int GetPitch() override;
  /// The address of the pixel's group; null without a canvas.
  void* GetPixel(int x, int y) override;
  /// 0, or 0xFFFFFFFF for a negative x or y or a missing canvas.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// `a` is not written.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// The three reads give each pixel its luma, but the sixth of a group that of the third, and
  /// write nothing without a canvas. Here: codes over 1024, offsets kept, `a` 1.0.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// The top eight bits of each code (of the first pixel's Cr the low eight), `a` 1.
  std::uint32_t GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                               unsigned char& cr, unsigned char& a) override;
  /// The codes, `a` 1.
  std::uint32_t GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                std::uint32_t& cr, std::uint32_t& a) override;
  /// Refused.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Luma code over 1024 of the first half of the group, for both halves. Needs a canvas.
  double GetLuma(int x, int y) override;
  /// Codes of y * 940 + 64 and c * 876 + 64, truncated, not clamped.
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground) override;
  /// The codes as they are, 0 to 1023: a larger one carries into the next. `a` is not read.
  std::uint32_t SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                std::uint32_t a, bool foreground) override;
  /// RGBToYCbCr, then SetColorYCbCr. Returns 0.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  double yOffset = 64.0;
  double yScale = 940.0;
  double cbOffset = 64.0;
  double cbScale = 876.0;
  double crOffset = 64.0;
  double crScale = 876.0;
  // Y in bits 0 to 9, Cb in 10 to 19, Cr in 20 to 29.
  std::uint64_t foregroundCode = 0x00003AC1F63AC1F6;
  std::uint64_t backgroundCode = 0x00000401F60401F6;
  std::int32_t reserved10 = 0;
};
