// SPDX-License-Identifier: BSD-2-Clause
//
// How the surfaces of unpacked YCbCr find and read their pixels. Only their own sources include it.
#pragma once

#include <nkdraw/formats/component_words.h>
#include <nkdraw/surface/address.h>
#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/surface/little_words.h>
#include <nkdraw/surface/plotter.h>

namespace nkdraw {

template <pixelType layout>
constexpr bool hasChannel(Channel channel) {
  return sampleOf(kFactsOf<layout>, channel) < sampleCount(kFactsOf<layout>);
}

/// The word with the sample's number, also in an 8-bit layout.
template <pixelType layout>
double wordOf(const void* pixel, Channel channel) {
  return load16(pixel, sampleOf(kFactsOf<layout>, channel)) * kWordUnit;
}

template <class Surface, pixelType layout>
ComponentPixels<Surface, layout>::ComponentPixels(const Ranges& ranges, const Codes& codes)
    : NKDraw(layout), ComponentSurface(kFactsOf<layout>.groupBytes, ranges, codes) {}

template <class Surface, pixelType layout>
void* ComponentPixels<Surface, layout>::GetPixel(int x, int y) {
  return canvas + rowOffset(pitch, y) + std::ptrdiff_t{kFactsOf<layout>.groupBytes} * x;
}

template <class Surface, pixelType layout>
std::uint32_t ComponentPixels<Surface, layout>::PutPixel(int x, int y, bool foreground) {
  const Plotter<Surface> plotter(static_cast<Surface&>(*this), foreground);
  if constexpr (hasChannel<layout>(Channel::kY))
    plotter.put(x, y);
  else
    plotter.write(GetPixel(x, y));
  return 0;
}

template <class Surface, pixelType layout>
std::uint32_t ComponentPixels<Surface, layout>::GetPixelYCbCr(int x, int y, double& y2, double& cb,
                                                              double& cr, double& a) {
  const void* const pixel = GetPixel(x, y);
  y2 = hasChannel<layout>(Channel::kY) ? wordOf<layout>(pixel, Channel::kY) : 0.5;
  cb = wordOf<layout>(pixel, Channel::kCb);
  cr = wordOf<layout>(pixel, Channel::kCr);
  if constexpr (hasChannel<layout>(Channel::kA))
    a = wordOf<layout>(pixel, Channel::kA);
  return 0;
}

template <class Surface, pixelType layout>
double ComponentPixels<Surface, layout>::GetLuma(int x, int y) {
  return hasChannel<layout>(Channel::kY) ? wordOf<layout>(GetPixel(x, y), Channel::kY) : 0.5;
}

}  // namespace nkdraw
