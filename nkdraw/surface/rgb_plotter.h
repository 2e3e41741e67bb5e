// SPDX-License-Identifier: BSD-2-Clause
//
// How NKPixel plots: packed bytes, blended words and the additive step.
#pragma once

#include <nkdraw/surface/address.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/pixel.h>
#include <nkdraw/surface/plotter.h>
#include <nkdraw/surface/truncate.h>

#include <cstddef>

namespace nkdraw {

/// The packed colour as one number, in the machine's byte order.
struct BlendWord {
  std::uint32_t colour;
  double alpha;

  /// word' = (1 - alpha) * word + colour * alpha, over all four bytes at once: a channel's
  /// fraction carries into the channel below it.
  void operator()(char* pixel) const {
    const double word = load32(pixel);
    store32(pixel, truncateToLow32((1.0 - alpha) * word + colour * alpha));
  }
};

/// Adds bytes 0 to 2 of the colour, weighted by its byte 3 whatever channel that is; sums wrap.
struct AddBytes {
  const std::uint8_t* colour;

  void operator()(char* pixel) const {
    for (std::size_t i = 0; i < 3; ++i) {
      const auto old = static_cast<std::uint8_t>(pixel[i]);
      pixel[i] = static_cast<char>(truncateToLow8((colour[3] / 255.0) * colour[i] + old));
    }
    pixel[3] = static_cast<char>(255);
  }
};

struct StoreWord {
  std::uint32_t colour;
  void operator()(char* pixel) const { store32(pixel, colour); }
};

struct StoreThreeBytes {
  const std::uint8_t* colour;
  void operator()(char* pixel) const { std::memcpy(pixel, colour, 3); }
};

template <>
class Plotter<NKPixel> {
 public:
  Plotter(const NKPixel& surface, bool foreground)
      : surface_(surface),
        foreground_(foreground),
        colour_(foreground ? surface.foregroundPixel : surface.backgroundPixel),
        alpha_(foreground ? surface.foregroundAlpha : surface.backgroundAlpha) {}

  std::uint32_t put(int x, int y) const {
    if (refused(y))
      return 0xFFFFFFFF;
    run(x, y, 1);
    return 0;
  }

  void row(int x, int y, int count) const {
    if (!refused(y) && count > 0)
      run(x, y, count);
  }

 private:
  [[nodiscard]] bool refused(int y) const { return surface_.canvas == nullptr || y < 0; }

  /// Only the plain foreground of a three-byte type goes to the pixel's own three bytes; all else
  /// works on four bytes at the word address, in every layout.
  void run(int x, int y, int count) const {
    char* const words = wordAddress(surface_.canvas, surface_.pitch, x, y);
    if (foreground_ && surface_.alphaAdditive)
      each(words, 4, count, AddBytes{colour_});
    else if (surface_.transparencyOn && alpha_ > 0.0)
      each(words, 4, count, BlendWord{load32(colour_), alpha_});
    else if (foreground_ && isThreeByteType(surface_.pixelKind))
      each(threeByteAddress(surface_.canvas, surface_.pitch, x, y), 3, count,
           StoreThreeBytes{colour_});
    else
      each(words, 4, count, StoreWord{load32(colour_)});
  }

  template <class Write>
  static void each(char* pixel, std::ptrdiff_t step, int count, Write write) {
    for (; count > 0; --count, pixel += step)
      write(pixel);
  }

  const NKPixel& surface_;
  bool foreground_;
  const std::uint8_t* colour_;
  double alpha_;
};

}  // namespace nkdraw
