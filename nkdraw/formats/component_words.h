// SPDX-License-Identifier: BSD-2-Clause
/// @file
/// What the surfaces of unpacked YCbCr samples have in common.
#pragma once

#include <nkdraw/draw/draw.h>

namespace nkdraw {

/// Keeps its colours as 16-bit fractions, in which 1.0 is 65536; a plot stores the low bits. Plots
/// are always opaque: never blended, never added. Nothing is checked: callers keep pixels on a
/// bound canvas. The initial mode is mode709Studio.
class NKDRAW_API ComponentSurface : public virtual NKDraw {
 public:
  /// Binds a canvas as NKPixel's does, but keeps the signs of width and height and raises a pitch
  /// below that of the class. Above a width of 720 any mode but mode709Full becomes mode709Studio;
  /// otherwise any but mode601Full becomes mode601Studio. Returns 0.
  std::uint32_t SetCanvas(char* canvas, int height, int width, int pitch) override;
  /// Returns two bytes a pixel, whatever the class; SetCanvas raises it.
  int GetPitch() override;
  /// Reads GetPixelYCbCr's channels converted by YCbCrToRGB; `a` is not written. Returns 0.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// Refuses: returns 0xFFFFFFFF and writes nothing.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Sets the selected colour: each channel times 65536, truncated, not clamped. `a` is not read.
  /// Returns 0.
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground) override;
  /// Converts by RGBToYCbCr and calls SetColorYCbCr. Returns 0.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;

 protected:
  /// Offsets and scales of the channels. They are kept and not used.
  struct Ranges {
    double yOffset,  ///< of Y
        yScale,      ///< of Y
        cbOffset,    ///< of Cb
        cbScale,     ///< of Cb
        crOffset,    ///< of Cr
        crScale;     ///< of Cr
  };
  /// The initial values of both colours.
  struct Codes {
    std::uint32_t whiteY,  ///< Y of the foreground
        blackY,            ///< Y of the background
        neutral;           ///< Cb and Cr of both
  };

  /// Makes a surface whose pitches are at least `leastBytesPerPixel` times the width.
  ComponentSurface(std::uint32_t leastBytesPerPixel, const Ranges& ranges, const Codes& codes);
  /// Copies every field, as NKDraw does.
  ComponentSurface(const ComponentSurface& other) = default;
  /// Does what NKDraw's does, then copies the fields of `other`. Returns this object.
  ComponentSurface& operator=(ComponentSurface& other);

  double yOffset,       ///< not used
      yScale;           ///< not used
  double cbOffset,      ///< not used
      cbScale;          ///< not used
  double crOffset,      ///< not used
      crScale;          ///< not used
  std::uint32_t foreY,  ///< foreground Y, 1.0 is 65536
      foreCr,           ///< foreground Cr
      foreCb;           ///< foreground Cb
  std::uint32_t backY,  ///< background Y
      backCr,           ///< background Cr
      backCb;           ///< background Cb

 private:
  std::uint32_t leastBytesPerPixel_;
};

/// Plots and reads the pixels of `Surface`, whose samples are those of `layout`: Y, Cb and Cr, and
/// alpha last if there is one, or Cb and Cr alone.
template <class Surface, pixelType layout>
class NKDRAW_API ComponentPixels : public ComponentSurface {
 public:
  /// Returns the address that reads use.
  void* GetPixel(int x, int y) override;
  /// Stores the low bits of the selected colour's channels. Returns 0.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// Reads 16-bit words over 65536, in 8-bit layouts, too. Without a Y sample `y2` becomes 0.5;
  /// without an alpha sample `a` is not written. Returns 0.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// Returns the Y as GetPixelYCbCr reads it; without a Y sample 0.5, and the canvas is not read.
  double GetLuma(int x, int y) override;

 protected:
  /// Makes a surface whose pitches hold all samples of `layout`.
  ComponentPixels(const Ranges& ranges, const Codes& codes);
  /// Copies every field, as NKDraw does.
  ComponentPixels(const ComponentPixels& other) = default;
  /// Does what ComponentSurface's does.
  ComponentPixels& operator=(ComponentPixels& other) = default;
};

}  // namespace nkdraw
