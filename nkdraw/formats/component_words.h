// SPDX-License-Identifier: BSD-2-Clause
//
// What the surfaces of unpacked YCbCr components have in common.
#pragma once

#include <nkdraw/draw/draw.h>

namespace nkdraw {

/// Keeps each component of its colours as a 16-bit fraction: 1.0 is 65536, of which a plot takes
/// the low bits. Always plots opaque, never blends or adds. Nothing is refused: a caller keeps
/// pixels on a canvas that is bound.
///
/// SetCanvas keeps the signs of width and height, raises pitches below the class's least, and
/// leaves the mode within BT.709 for a width above 720 and within BT.601 otherwise. The mode starts
/// as BT.709 studio.
class NKDRAW_API ComponentSurface : public virtual NKDraw {
 public:
  std::uint32_t SetCanvas(char* canvas, int height, int width, int pitch) override;
  /// Two bytes a pixel, whatever the class: SetCanvas raises it.
  int GetPitch() override;
  /// `a` is not written.
  std::uint32_t GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
  /// Refused.
  std::uint32_t GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
  /// Each component times 65536, truncated, not clamped. `a` is not read.
  std::uint32_t SetColorYCbCr(double y, double cb, double cr, double a, bool foreground) override;
  /// RGBToYCbCr, then SetColorYCbCr. Returns 0.
  std::uint32_t SetColorRGBA(double r, double g, double b, double a, bool foreground) override;

 protected:
  /// Offsets and scales of the components, which are kept and not used.
  struct Ranges {
    double yOffset, yScale, cbOffset, cbScale, crOffset, crScale;
  };
  /// The start values of both colours.
  struct Codes {
    std::uint32_t whiteY, blackY, neutral;
  };

  ComponentSurface(std::uint32_t leastBytesPerPixel, const Ranges& ranges, const Codes& codes);
  ComponentSurface(const ComponentSurface& other) = default;
  /// NKDraw's picture copy, then the fields of `other`.
  ComponentSurface& operator=(ComponentSurface& other);

  double yOffset, yScale;
  double cbOffset, cbScale;
  double crOffset, crScale;
  std::uint32_t foreY, foreCr, foreCb;
  std::uint32_t backY, backCr, backCb;

 private:
  std::uint32_t leastBytesPerPixel_;
};

/// The pixels of `Surface`, whose samples are those of `layout`: Y, Cb and Cr, with a fourth one
/// alpha behind them, or Cb and Cr alone.
template <class Surface, pixelType layout>
class NKDRAW_API ComponentPixels : public ComponentSurface {
 public:
  /// The address that reads use.
  void* GetPixel(int x, int y) override;
  /// Returns 0.
  std::uint32_t PutPixel(int x, int y, bool foreground) override;
  /// 16-bit words over 65536, in 8-bit layouts, too. Where there is no Y, `y2` is 0.5; where there
  /// is no alpha, `a` is not written.
  std::uint32_t GetPixelYCbCr(int x, int y, double& y2, double& cb, double& cr, double& a) override;
  /// The Y; where there is none, 0.5, and the canvas is not read.
  double GetLuma(int x, int y) override;

 protected:
  ComponentPixels(const Ranges& ranges, const Codes& codes);
  ComponentPixels(const ComponentPixels& other) = default;
  ComponentPixels& operator=(ComponentPixels& other) = default;
};

}  // namespace nkdraw
