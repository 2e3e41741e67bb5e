// SPDX-License-Identifier: BSD-2-Clause
//
// How 16-bit YCbCr pixels are written.
#pragma once

#include <nkdraw/formats/ycbcr16.h>
#include <nkdraw/surface/address.h>
#include <nkdraw/surface/little_words.h>
#include <nkdraw/surface/packed_plotter.h>
#include <nkdraw/surface/plotter.h>

namespace nkdraw {

template <>
class Plotter<CDrawYCbCrYCbCr16> : public PackedPlotter<6> {
 public:
  Plotter(const CDrawYCbCrYCbCr16& surface, bool foreground)
      : PackedPlotter(surface.canvas, surface.pitch,
                      foreground ? packWords(surface.foreY, surface.foreCb, surface.foreCr)
                                 : packWords(surface.backY, surface.backCb, surface.backCr)) {}
};

/// Pixels are eight bytes, but only six bytes apart. The order of plotting decides what the shared
/// word holds, so there are no runs.
template <>
class Plotter<CDrawYCbCrYCbCrA16> {
 public:
  Plotter(const CDrawYCbCrYCbCrA16& surface, bool foreground)
      : canvas_(surface.canvas),
        pitch_(surface.pitch),
        colour_(foreground
                    ? packWords(surface.foreY, surface.foreCb, surface.foreCr, surface.foreAlpha)
                    : packWords(surface.backY, surface.backCb, surface.backCr, surface.backAlpha)) {
  }

  std::uint32_t put(int x, int y) const {
    if (canvas_ != nullptr)
      std::memcpy(canvas_ + rowOffset(pitch_, y) + std::ptrdiff_t{6} * x, colour_.data(),
                  colour_.size());
    return 0;
  }

 private:
  char* canvas_;
  std::uint32_t pitch_;
  std::array<std::uint8_t, 8> colour_;
};

}  // namespace nkdraw
