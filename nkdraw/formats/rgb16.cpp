// SPDX-License-Identifier: BSD-2-Clause
//
// The surfaces of RGB in 16-bit words.
#include <nkdraw/formats/rgb16.h>

#include <nkdraw/formats/rgb16_plotter.h>
#include <nkdraw/formats/rgb_reads.h>
#include <nkdraw/surface/layout_facts.h>

#include <algorithm>
#include <iterator>

namespace nkdraw {
namespace {

template <std::size_t kWords>
constexpr const LayoutFacts& kFacts = kWords == 3 ? kFactsOf<ptRGB48> : kFactsOf<ptARGB64>;

/// Where R, G and B stand, one after the other.
template <std::size_t kWords>
constexpr std::size_t kRed = sampleOf(kFacts<kWords>, Channel::kR);

constexpr std::uint32_t kForegroundWord = 255, kBackgroundWord = 0;

}  // namespace

template <std::size_t kWords>
WordSurface<kWords>::WordSurface(pixelType type) : NKDraw(type) {
  pixelKind = type;
  std::fill(std::begin(foregroundWords), std::end(foregroundWords), kForegroundWord);
  std::fill(std::begin(backgroundWords), std::end(backgroundWords), kBackgroundWord);
}

template <std::size_t kWords>
WordSurface<kWords>& WordSurface<kWords>::operator=(WordSurface& other) {
  NKDraw::operator=(other);
  std::copy(std::begin(other.foregroundWords), std::end(other.foregroundWords), foregroundWords);
  std::copy(std::begin(other.backgroundWords), std::end(other.backgroundWords), backgroundWords);
  return *this;
}

template <std::size_t kWords>
int WordSurface<kWords>::GetPitch() {
  return static_cast<int>(packedPitch(kFacts<kWords>, width));
}

template <std::size_t kWords>
void* WordSurface<kWords>::GetPixel(int x, int y) {
  return canvas + rowOffset(pitch, y) + std::ptrdiff_t{kFacts<kWords>.groupBytes} * x;
}

template <std::size_t kWords>
std::uint32_t WordSurface<kWords>::PutPixel(int x, int y, bool foreground) {
  Plotter<WordSurface>(*this, foreground).write(GetPixel(x, y));
  return 0;
}

template <std::size_t kWords>
std::uint32_t WordSurface<kWords>::GetPixelRGBA(int x, int y, double& r, double& g, double& b,
                                                double& a) {
  const void* const pixel = GetPixel(x, y);
  r = load16(pixel, kRed<kWords>) * kWordUnit;
  g = load16(pixel, kRed<kWords> + 1) * kWordUnit;
  b = load16(pixel, kRed<kWords> + 2) * kWordUnit;
  if constexpr (kWords == 4)
    a = load16(pixel, 0) * kWordUnit;
  return 0;
}

template <std::size_t kWords>
std::uint32_t WordSurface<kWords>::GetPixelHSV(int x, int y, double& h, double& s, double& v,
                                               double& a) {
  return readHsv(*this, x, y, h, s, v, a);
}

template <std::size_t kWords>
double WordSurface<kWords>::GetLuma(int x, int y) {
  const void* const pixel = GetPixel(x, y);
  const int sum = load16(pixel, kRed<kWords>) + load16(pixel, kRed<kWords> + 1) +
                  load16(pixel, kRed<kWords> + 2);
  return sum / 196608.0;  // three times 65536
}

template class WordSurface<3>;
template class WordSurface<4>;

}  // namespace nkdraw

CDrawRGB48::CDrawRGB48(pixelType type) : NKDraw(type), WordSurface(type) {}

CDrawRGB48& CDrawRGB48::operator=(CDrawRGB48& other) {
  WordSurface::operator=(other);
  return *this;
}

CDrawRGBHalf48::CDrawRGBHalf48(pixelType type) : NKDraw(type), WordSurface(type) {}

CDrawRGBHalf48& CDrawRGBHalf48::operator=(CDrawRGBHalf48& other) {
  WordSurface::operator=(other);
  return *this;
}

CDrawARGB64::CDrawARGB64(pixelType type) : NKDraw(type), WordSurface(type) {}

CDrawARGB64& CDrawARGB64::operator=(CDrawARGB64& other) {
  WordSurface::operator=(other);
  return *this;
}
