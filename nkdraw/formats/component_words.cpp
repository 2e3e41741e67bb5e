// SPDX-License-Identifier: BSD-2-Clause
#include <nkdraw/formats/component_words.h>

#include <nkdraw/formats/mode_for_width.h>
#include <nkdraw/surface/truncate.h>

#include <algorithm>

namespace nkdraw {
namespace {

std::uint32_t fraction(double component) {
  return truncateToLow32(component * 65536.0);
}

}  // namespace

ComponentSurface::ComponentSurface(std::uint32_t leastBytesPerPixel, const Ranges& ranges,
                                   const Codes& codes)
    : NKDraw(ptRGBA32),
      yOffset(ranges.yOffset),
      yScale(ranges.yScale),
      cbOffset(ranges.cbOffset),
      cbScale(ranges.cbScale),
      crOffset(ranges.crOffset),
      crScale(ranges.crScale),
      foreY(codes.whiteY),
      foreCr(codes.neutral),
      foreCb(codes.neutral),
      backY(codes.blackY),
      backCr(codes.neutral),
      backCb(codes.neutral),
      leastBytesPerPixel_(leastBytesPerPixel) {
  ycbcrMode = mode709Studio;
}

ComponentSurface& ComponentSurface::operator=(ComponentSurface& other) {
  NKDraw::operator=(other);
  yOffset = other.yOffset;
  yScale = other.yScale;
  cbOffset = other.cbOffset;
  cbScale = other.cbScale;
  crOffset = other.crOffset;
  crScale = other.crScale;
  foreY = other.foreY;
  foreCr = other.foreCr;
  foreCb = other.foreCb;
  backY = other.backY;
  backCr = other.backCr;
  backCb = other.backCb;
  return *this;
}

std::uint32_t ComponentSurface::SetCanvas(char* newCanvas, int newHeight, int newWidth,
                                          int newPitch) {
  NKPixel::SetCanvas(newCanvas, newHeight, newWidth, newPitch);
  height = static_cast<std::uint32_t>(newHeight);
  width = static_cast<std::uint32_t>(newWidth);
  flipped = false;
  pitch = std::max(static_cast<std::uint32_t>(newPitch), width * leastBytesPerPixel_);
  ycbcrMode = modeForWidth(ycbcrMode, newWidth);
  return 0;
}

int ComponentSurface::GetPitch() {
  return static_cast<int>(width * 2);
}

std::uint32_t ComponentSurface::GetPixelRGBA(int x, int y, double& r, double& g, double& b,
                                             double& /*a*/) {
  double luma = 0.0, cb = 0.0, cr = 0.0, alpha = 0.0;
  GetPixelYCbCr(x, y, luma, cb, cr, alpha);
  YCbCrToRGB(luma, cb, cr, 0.0, r, g, b, alpha);
  return 0;
}

std::uint32_t ComponentSurface::GetPixelHSV(int /*x*/, int /*y*/, double& /*h*/, double& /*s*/,
                                            double& /*v*/, double& /*a*/) {
  return NKStatusRefused;
}

std::uint32_t ComponentSurface::SetColorYCbCr(double y, double cb, double cr, double /*a*/,
                                              bool foreground) {
  (foreground ? foreY : backY) = fraction(y);
  (foreground ? foreCb : backCb) = fraction(cb);
  (foreground ? foreCr : backCr) = fraction(cr);
  return 0;
}

std::uint32_t ComponentSurface::SetColorRGBA(double r, double g, double b, double a,
                                             bool foreground) {
  double y = 0.0, cb = 0.0, cr = 0.0, unused = 0.0;
  RGBToYCbCr(r, g, b, 0.0, y, cb, cr, unused);
  SetColorYCbCr(y, cb, cr, a, foreground);
  return 0;
}

}  // namespace nkdraw
