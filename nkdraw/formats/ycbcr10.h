// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// Packed 10-bit 4:2:2, the layout known as v210.
#pragma once

#include <nkdraw/draw/draw.h>

/// Six pixels in a group of sixteen bytes. Two pixels share one Cb and Cr, which are those of the
/// pixel plotted last. Colours are kept as 10-bit codes. Plots are always opaque: never blended,
/// never added. A negative x or y is refused.
class NKDRAW_API CDrawYCbCr10 : public virtual NKDraw {
 public:
  /// Makes a surface without a canvas. A `type` of 15 or 16 is kept, any other becomes ptV210.
  explicit CDrawYCbCr10(pixelType type);
  /// Copies every field, as NKDraw does.
  CDrawYCbCr10(const CDrawYCbCr10& other) = default;
  /// Does what NKDraw's does, then copies the codes of `other`. Returns this object.
  CDrawYCbCr10& operator=(CDrawYCbCr10& other);

  /// Binds a canvas as NKPixel's does, and raises a pitch below that of a packed row (a negative
  /// one counts as large). Selects mode709Studio for a width above 720 and mode601Studio otherwise,
  /// whatever was set. Returns 0.
  std::uint32_t SetCanvas(char* canvas, int height, int width, int pitch) override;
  /// Returns 128 bytes for every 48 pixels begun.
  int GetPitch() override;
  /// Returns the address of the pixel's group; null without a canvas.
  void* GetPixel(int x, int y) override;
  /// Stores the pixel's Y and its pair's Cb and Cr. Returns 0, or 0xFFFFFFFF for a negative x or y
  /// or a missing canvas.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// Reads GetPixelYCbCr's channels converted by YCbCrToRGB; `a` is not written. Returns 0.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// Reads the pixel's codes over 1024, offsets included; `a` becomes 1.0. The sixth pixel of a
  /// group reads the luma of the third. Writes nothing without a canvas. Returns 0.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// Reads the upper eight bits of the same codes, but the lower eight of the first pixel's Cr; `a`
  /// becomes 1. Writes nothing without a canvas. Returns 0.
  std::uint32_t GetPixelYCbCr8(int x, int y, unsigned char& y2, unsigned char& cb,
                               unsigned char& cr, unsigned char& a) override;
  /// Reads the same codes as they are; `a` becomes 1. Writes nothing without a canvas. Returns 0.
  std::uint32_t GetPixelYCbCr10(int x, int y, std::uint32_t& y2, std::uint32_t& cb,
                                std::uint32_t& cr, std::uint32_t& a) override;
  /// Refuses: returns 0xFFFFFFFF and writes nothing.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Returns a luma code over 1024: both halves of a group read that of its first half. Needs a
  /// canvas.
  double GetLuma(int x, int y) override;
  /// Sets the selected colour to the codes y * 940 + 64 and c * 876 + 64, truncated, not clamped.
  /// The scales are the system's own. `a` is not read. Returns 0.
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground) override;
  /// Sets the selected colour to these codes, 0 to 1023: a larger one carries into the next. `a` is
  /// not read. Returns 0.
  std::uint32_t SetColorYCbCr10(std::uint32_t y, std::uint32_t cb, std::uint32_t cr,
                                std::uint32_t a, bool foreground) override;
  /// Converts by RGBToYCbCr and calls SetColorYCbCr. Returns 0.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;

 protected:
  template <class Surface>
  friend class nkdraw::Plotter;

  double yOffset = 64.0;   ///< not used
  double yScale = 940.0;   ///< not used
  double cbOffset = 64.0;  ///< not used
  double cbScale = 876.0;  ///< not used
  double crOffset = 64.0;  ///< not used
  double crScale = 876.0;  ///< not used
  ///@{
  /// Y in bits 0 to 9, Cb in bits 10 to 19, Cr in bits 20 to 29.
  std::uint64_t foregroundCode = 0x00003AC1F63AC1F6;
  std::uint64_t backgroundCode = 0x00000401F60401F6;
  ///@}
  std::int32_t reserved10 = 0;  ///< not used
};
