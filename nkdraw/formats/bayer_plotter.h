// SPDX-License-Identifier: BSD-2-Clause
//
// Mosaics of 12-bit samples: which place has which colour, and how pixels are written.
#pragma once

#include <nkdraw/formats/bayer.h>
#include <nkdraw/surface/address.h>
#include <nkdraw/surface/layout_facts.h>
#include <nkdraw/surface/plotter.h>
#include <nkdraw/surface/run_kernels.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace nkdraw::bayer {

/// All mosaics are alike except for the order of the channels.
inline constexpr const LayoutFacts& kFacts = kFactsOf<ptBayerBGGR>;

/// The channel at each position of a cell, by row and column: 0 is R, 1 G, 2 B.
struct Cell {
  std::uint8_t channel[2][2];
};

constexpr Cell cellOf(const LayoutFacts& facts) {
  Cell cell{};
  for (std::size_t i = 0; i < 4; ++i)
    cell.channel[i / 2][i % 2] = static_cast<std::uint8_t>(static_cast<int>(facts.samples[i]) -
                                                           static_cast<int>(Channel::kR));
  return cell;
}

/// By pixelType from ptBayerBGGR on; the four orders occur twice.
inline constexpr std::array<Cell, 4> kCells = {
    cellOf(kFactsOf<ptBayerBGGR>), cellOf(kFactsOf<ptBayerRGGB>), cellOf(kFactsOf<ptBayerGBRG>),
    cellOf(kFactsOf<ptBayerGRBG>)};

/// The index into tables by mosaic order; any other type counts as the first.
[[nodiscard]] constexpr std::size_t orderIndex(pixelType type) {
  return type >= ptBayerBGGR && type <= ptBayerGRBG12
             ? static_cast<std::size_t>(type - ptBayerBGGR) % kCells.size()
             : 0;
}

/// Where the sample of column x begins.
[[nodiscard]] constexpr char* address(char* canvas, std::uint32_t pitch, int x, int y) {
  return canvas + rowOffset(pitch, y) + std::ptrdiff_t{kFacts.groupBytes} * x / kFacts.groupPixels;
}

}  // namespace nkdraw::bayer

namespace nkdraw {

template <>
class Plotter<CDrawBayer> {
 public:
  Plotter(const CDrawBayer& surface, bool foreground)
      : canvas_(surface.canvas), pitch_(surface.pitch) {
    const std::uint8_t* const colour = foreground ? surface.foregroundRGBA : surface.backgroundRGBA;
    const bayer::Cell& cell = bayer::kCells[bayer::orderIndex(surface.pixelKind)];
    for (std::size_t row = 0; row < 2; ++row)
      triples_[row] = triple(colour[cell.channel[row][0]], colour[cell.channel[row][1]]);
  }

  std::uint32_t put(int x, int y) const {
    if (canvas_ != nullptr)
      write(bayer::address(canvas_, pitch_, x, y), x, y);
    return 0;
  }

  /// The bytes of neighbouring pixels in sequence: a pair's three, starting with the pixel's own.
  void row(int x, int y, int count) const {
    if (canvas_ == nullptr || count <= 0)
      return;
    const bool odd = (x & 1) != 0;
    const auto pixels = static_cast<std::size_t>(count);
    const std::size_t oddPixels = (pixels + (odd ? 1 : 0)) / 2;
    const Triple& pair = triples_[y & 1];
    storeBytes(reinterpret_cast<std::uint8_t*>(bayer::address(canvas_, pitch_, x, y)),
               odd ? Triple{pair[1], pair[2], pair[0]} : pair, pixels + oddPixels);
  }

  /// Left of the canvas division by two rounds the other way, towards the canvas, and pixels
  /// overlap.
  static constexpr bool overlaps(int leftmost) { return leftmost < 0; }

  /// Stores the pixel's sample, which begins at an address that the surface gives.
  void write(void* at, int x, int y) const {
    const auto& bytes = triples_[y & 1];
    auto* const sample = static_cast<std::uint8_t*>(at);
    if ((x & 1) == 0) {
      sample[0] = bytes[0];
    } else {
      sample[0] = bytes[1];
      sample[1] = bytes[2];
    }
  }

 private:
  using Triple = std::array<std::uint8_t, 3>;

  /// The bytes written by an even pixel of channel value `even` and an odd one of `odd`.
  /// Deliberate: callers rely on the bytes. The odd pixel's low bits are the even one's.
  static constexpr Triple triple(std::uint8_t even, std::uint8_t odd) {
    return {even, static_cast<std::uint8_t>(odd >> 4), static_cast<std::uint8_t>(even << 4)};
  }

  char* canvas_;
  std::uint32_t pitch_;
  std::array<Triple, 2> triples_;  // by the parity of y
};

}  // namespace nkdraw
