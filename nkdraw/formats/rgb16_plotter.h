// SPDX-License-Identifier: BSD-2-Clause
//
// How 16-bit RGB pixels are written.
#pragma once

#include <nkdraw/formats/rgb16.h>
#include <nkdraw/surface/little_words.h>
#include <nkdraw/surface/packed_plotter.h>
#include <nkdraw/surface/plotter.h>

#include <utility>

namespace nkdraw {

template <std::size_t kWords>
class Plotter<WordSurface<kWords>> : public PackedPlotter<2 * kWords> {
 public:
  Plotter(const WordSurface<kWords>& surface, bool foreground)
      : PackedPlotter<2 * kWords>(
            surface.canvas, surface.pitch,
            packed(foreground ? surface.foregroundWords : surface.backgroundWords,
                   std::make_index_sequence<kWords>())) {}

 private:
  template <std::size_t... kWord>
  static auto packed(const std::uint32_t (&words)[kWords], std::index_sequence<kWord...>) {
    return packWords(words[kWord]...);
  }
};

}  // namespace nkdraw
