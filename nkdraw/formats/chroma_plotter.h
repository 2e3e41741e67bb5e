// SPDX-License-Identifier: BSD-2-Clause
//
// How the pixels of chroma planes are written.
#pragma once

#include <nkdraw/formats/chroma_planes.h>
#include <nkdraw/surface/little_words.h>
#include <nkdraw/surface/packed_plotter.h>
#include <nkdraw/surface/plotter.h>

namespace nkdraw {

template <>
class Plotter<CDrawUV8> : public PackedPlotter<2> {
 public:
  Plotter(const CDrawUV8& surface, bool foreground)
      : PackedPlotter(surface.canvas, surface.pitch,
                      {static_cast<std::uint8_t>(foreground ? surface.foreCb : surface.backCb),
                       static_cast<std::uint8_t>(foreground ? surface.foreCr : surface.backCr)}) {}
};

template <>
class Plotter<CDrawUV16> : public PackedPlotter<4> {
 public:
  Plotter(const CDrawUV16& surface, bool foreground)
      : PackedPlotter(surface.canvas, surface.pitch,
                      foreground ? packWords(surface.foreCb, surface.foreCr)
                                 : packWords(surface.backCb, surface.backCr)) {}
};

}  // namespace nkdraw
