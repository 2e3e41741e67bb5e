// SPDX-License-Identifier: BSD-2-Clause
//
// The protected fields of the library's own objects, as a derived class can name them.
#pragma once

#include <nkdraw/nkdraw.h>

#include <array>

namespace nkdraw::test {

struct PixelFields : NKPixel {
  static auto& kind(NKPixel& p) { return p.*&PixelFields::pixelKind; }
  static auto& mode(NKPixel& p) { return p.*&PixelFields::ycbcrMode; }
  static auto& widthOf(NKPixel& p) { return p.*&PixelFields::width; }
  static auto& heightOf(NKPixel& p) { return p.*&PixelFields::height; }
  static auto& pitchOf(NKPixel& p) { return p.*&PixelFields::pitch; }
  static auto& flippedOf(NKPixel& p) { return p.*&PixelFields::flipped; }
  static auto& foreground(NKPixel& p) { return p.*&PixelFields::foregroundPixel; }
  static auto& background(NKPixel& p) { return p.*&PixelFields::backgroundPixel; }
  static auto& alpha(NKPixel& p, bool ink) {
    return ink ? p.*&PixelFields::foregroundAlpha : p.*&PixelFields::backgroundAlpha;
  }
  static auto& transparency(NKPixel& p) { return p.*&PixelFields::transparencyOn; }
  static auto& additive(NKPixel& p) { return p.*&PixelFields::alphaAdditive; }
  static auto& stamp(NKPixel& p) { return p.*&PixelFields::lastChange; }
  static auto& antialiased(NKPixel& p) { return p.*&PixelFields::antialias; }
  static auto& spare(NKPixel& p) { return p.*&PixelFields::spareFlag; }
  static auto& references(NKPixel& p) { return p.*&PixelFields::refs; }
  static auto& event(NKPixel& p) { return p.*&PixelFields::changeEvent; }
  static auto& section(NKPixel& p) { return p.*&PixelFields::lock; }
  static auto& canvasOf(NKPixel& p) { return p.*&PixelFields::canvas; }
};

struct DrawFields : NKDraw {
  static auto& file(NKDraw& d) { return d.*&DrawFields::metaFile; }
  static auto& penXOf(NKDraw& d) { return d.*&DrawFields::penX; }
  static auto& penYOf(NKDraw& d) { return d.*&DrawFields::penY; }
  static auto& spareAOf(NKDraw& d) { return d.*&DrawFields::spareA; }
  static auto& spareBOf(NKDraw& d) { return d.*&DrawFields::spareB; }
  static auto& spareCOf(NKDraw& d) { return d.*&DrawFields::spareC; }
  static auto& spareDOf(NKDraw& d) { return d.*&DrawFields::spareD; }
  static auto& textColor(NKDraw& d) { return d.*&DrawFields::sdlTextColor; }
  static auto& bkColor(NKDraw& d) { return d.*&DrawFields::sdlBkColor; }
  static auto& savedTextColor(NKDraw& d) { return d.*&DrawFields::savedSdlTextColor; }
  static auto& savedBkColor(NKDraw& d) { return d.*&DrawFields::savedSdlBkColor; }
  static auto& transparentText(NKDraw& d) { return d.*&DrawFields::textTransparent; }
  static auto& font(NKDraw& d) { return d.*&DrawFields::labelFont; }
  static auto& fontWidth(NKDraw& d) { return d.*&DrawFields::labelFontWidth; }
  static auto& fontHeight(NKDraw& d) { return d.*&DrawFields::labelFontHeight; }
  static auto& fontScale(NKDraw& d) { return d.*&DrawFields::labelFontScale; }
  static auto& wantsDefaultFont(NKDraw& d) { return d.*&DrawFields::defaultFontWanted; }
};

struct V210Fields : CDrawYCbCr10 {
  static auto& foreground(CDrawYCbCr10& s) { return s.*&V210Fields::foregroundCode; }
  static auto& background(CDrawYCbCr10& s) { return s.*&V210Fields::backgroundCode; }
  static auto& spare(CDrawYCbCr10& s) { return s.*&V210Fields::reserved10; }
  static auto scales(CDrawYCbCr10& s) {
    return std::array<double*, 6>{&(s.*&V210Fields::yOffset),  &(s.*&V210Fields::yScale),
                                  &(s.*&V210Fields::cbOffset), &(s.*&V210Fields::cbScale),
                                  &(s.*&V210Fields::crOffset), &(s.*&V210Fields::crScale)};
  }
};

struct PairFields : CDrawYCbCrYUYV {
  static auto& foreground(CDrawYCbCrYUYV& s) { return s.*&PairFields::foregroundCode; }
  static auto& background(CDrawYCbCrYUYV& s) { return s.*&PairFields::backgroundCode; }
  static auto& spare(CDrawYCbCrYUYV& s) { return s.*&PairFields::reservedYUV; }
  static auto scales(CDrawYCbCrYUYV& s) {
    return std::array<double*, 6>{&(s.*&PairFields::yOffset),  &(s.*&PairFields::yScale),
                                  &(s.*&PairFields::cbOffset), &(s.*&PairFields::cbScale),
                                  &(s.*&PairFields::crOffset), &(s.*&PairFields::crScale)};
  }
};

/// Of CDrawRGB48, CDrawRGBHalf48 and CDrawARGB64.
template <class Surface>
struct WordFields : Surface {
  static auto& words(Surface& s, bool ink) {
    return ink ? s.*&WordFields::foregroundWords : s.*&WordFields::backgroundWords;
  }
};

/// Sets the words that PutPixel writes on surfaces whose words no colour call reaches; does nothing
/// on others.
inline void setDeepWord(NKDraw& surface, bool ink, int i, std::uint32_t word) {
  if (auto* const rgb = dynamic_cast<CDrawRGB48*>(&surface); rgb != nullptr && i < 3)
    WordFields<CDrawRGB48>::words(*rgb, ink)[i] = word;
  if (auto* const half = dynamic_cast<CDrawRGBHalf48*>(&surface); half != nullptr && i < 3)
    WordFields<CDrawRGBHalf48>::words(*half, ink)[i] = word;
  if (auto* const argb = dynamic_cast<CDrawARGB64*>(&surface); argb != nullptr && i < 4)
    WordFields<CDrawARGB64>::words(*argb, ink)[i] = word;
}

struct BayerFields : CDrawBayer {
  static auto& rgba(CDrawBayer& s, bool ink) {
    return ink ? s.*&BayerFields::foregroundRGBA : s.*&BayerFields::backgroundRGBA;
  }
};

/// Of the 16-bit YCbCr surfaces and the chroma planes.
template <class Surface>
struct SampleFields : Surface {
  /// Y, Cb, Cr.
  static std::array<std::uint32_t*, 3> samples(Surface& s, bool ink) {
    if (ink)
      return {&(s.*&SampleFields::foreY), &(s.*&SampleFields::foreCb), &(s.*&SampleFields::foreCr)};
    return {&(s.*&SampleFields::backY), &(s.*&SampleFields::backCb), &(s.*&SampleFields::backCr)};
  }
  static auto scales(Surface& s) {
    return std::array<double*, 6>{&(s.*&SampleFields::yOffset),  &(s.*&SampleFields::yScale),
                                  &(s.*&SampleFields::cbOffset), &(s.*&SampleFields::cbScale),
                                  &(s.*&SampleFields::crOffset), &(s.*&SampleFields::crScale)};
  }
};

struct SampleAlphaFields : CDrawYCbCrYCbCrA16 {
  static auto& alpha(CDrawYCbCrYCbCrA16& s, bool ink) {
    return ink ? s.*&SampleAlphaFields::foreAlpha : s.*&SampleAlphaFields::backAlpha;
  }
};

}  // namespace nkdraw::test
