// SPDX-License-Identifier: BSD-2-Clause
//
// How NKPixel plots: packed bytes, blended words and the additive step.
#pragma once

#include <nkdraw/surface/address.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/pixel.h>
#include <nkdraw/surface/plotter.h>
#include <nkdraw/surface/run_kernels.h>
#include <nkdraw/surface/truncate.h>

#include <array>
#include <bit>
#include <cstddef>
#include <optional>
#include <type_traits>

namespace nkdraw {

/// The ways in which NKPixel plots, each with the data that it needs. A negative y is refused. All
/// work on four bytes at the word address, in every layout, except the plain store of three bytes.
namespace rgb {

struct Canvas {
  char* first;
  std::uint32_t pitch;
};

struct StoreWords;

/// Plots at the word address, in `Write`'s way.
template <class Write>
struct Words {
  Canvas canvas;
  Write write;

  static constexpr int kGroupPixels = 1;
  static constexpr std::size_t kGroupBytes = 4;
  [[nodiscard]] char* rowAt(int y) const { return wordAddress(canvas.first, canvas.pitch, 0, y); }
  /// Only for words that are stored.
  [[nodiscard]] Words onCanvas(char* first) const requires std::is_same_v<Write, StoreWords> {
    return {{first, 0}, write};
  }

  std::uint32_t put(int x, int y) const {
    if (y < 0)
      return NKStatusRefused;
    write(address(x, y), 1);
    return 0;
  }
  void row(int x, int y, int count) const {
    if (y >= 0 && count > 0)
      write(address(x, y), static_cast<std::size_t>(count));
  }
  [[nodiscard]] std::uint8_t* address(int x, int y) const {
    return reinterpret_cast<std::uint8_t*>(wordAddress(canvas.first, canvas.pitch, x, y));
  }
};

struct StoreWords {
  std::uint32_t colour;

  void operator()(std::uint8_t* at, std::size_t count) const {
    storeRun(at, std::bit_cast<std::array<std::uint8_t, 4>>(colour), count);
  }
};

struct BlendWords {
  std::uint32_t colour;
  double alpha;

  void operator()(std::uint8_t* at, std::size_t count) const {
    if (count * 4 >= kShortRun && alpha <= 1.0)  // a derived class may have set a larger one
      return runKernels().blendWords(at, colour, alpha, count);
    for (; count > 0; --count, at += 4)
      store32(at, blendedWord(load32(at), colour, alpha));
  }
};

/// Adds bytes 0 to 2 of the colour, weighted by its byte 3 whatever channel that is. Sums wrap.
struct AddBytes {
  std::array<std::uint8_t, 4> colour;

  void operator()(std::uint8_t* at, std::size_t count) const {
    if (const auto addends = count * 4 >= kShortRun ? wholeAddends() : std::nullopt)
      return runKernels().addBytes(at, *addends, count);
    for (; count > 0; --count, at += 4) {
      for (std::size_t i = 0; i < 3; ++i)
        at[i] = truncateToLow8(weighted(i) + at[i]);
      at[3] = 255;
    }
  }

  [[nodiscard]] double weighted(std::size_t i) const { return (colour[3] / 255.0) * colour[i]; }

  /// What to add to each byte, if that does not depend on the byte's old value. A weighted channel
  /// is a whole number of 255ths. Rounding the sum can't move its fraction across a whole number,
  /// unless the channel should be whole itself and is not quite.
  [[nodiscard]] std::optional<std::uint32_t> wholeAddends() const {
    std::uint32_t addends = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      const std::uint8_t whole = truncateToLow8(weighted(i));
      if (colour[3] * colour[i] % 255 == 0 && weighted(i) != whole)
        return std::nullopt;
      addends |= std::uint32_t{whole} << (8 * i);
    }
    return addends;
  }
};

struct StoreThreeBytes {
  Canvas canvas;
  std::array<std::uint8_t, 3> colour;

  std::uint32_t put(int x, int y) const {
    if (y < 0)
      return NKStatusRefused;
    std::memcpy(address(x, y), colour.data(), colour.size());
    return 0;
  }
  void row(int x, int y, int count) const {
    if (y >= 0 && count > 0)
      storeRun(address(x, y), colour, static_cast<std::size_t>(count));
  }
  [[nodiscard]] std::uint8_t* address(int x, int y) const {
    return reinterpret_cast<std::uint8_t*>(threeByteAddress(canvas.first, canvas.pitch, x, y));
  }
};

}  // namespace rgb

template <>
class Plotter<NKPixel> {
 public:
  Plotter(const NKPixel& surface, bool foreground)
      : canvas_{surface.canvas, surface.pitch},
        colour_(load32(foreground ? surface.foregroundPixel : surface.backgroundPixel)),
        alpha_(foreground ? surface.foregroundAlpha : surface.backgroundAlpha),
        way_(wayOf(surface, foreground)) {}

  std::uint32_t put(int x, int y) const {
    std::uint32_t status = NKStatusRefused;
    unfold([&](const auto& way) { status = way.put(x, y); });
    return status;
  }

  void row(int x, int y, int count) const {
    unfold([x, y, count](const auto& way) { way.row(x, y, count); });
  }

  /// Passes the way in which this plots to a loop over many pixels; without a canvas, none.
  template <class Visitor>
  void unfold(Visitor visitor) const {
    if (canvas_.first == nullptr)
      return;
    const auto bytes = std::bit_cast<std::array<std::uint8_t, 4>>(colour_);
    switch (way_) {
      case Way::kStore:
        return visitor(rgb::Words<rgb::StoreWords>{canvas_, {colour_}});
      case Way::kStoreThreeBytes:
        return visitor(rgb::StoreThreeBytes{canvas_, {bytes[0], bytes[1], bytes[2]}});
      case Way::kBlend:
        return visitor(rgb::Words<rgb::BlendWords>{canvas_, {colour_, alpha_}});
      case Way::kAdd:
        return visitor(rgb::Words<rgb::AddBytes>{canvas_, {bytes}});
    }
  }

  /// The same for two plotters that both store words; otherwise false.
  template <class Visitor>
  static bool unfoldBoth(const Plotter& first, const Plotter& second, Visitor visitor) {
    return first.way_ == Way::kStore && second.way_ == Way::kStore &&
           visitor(rgb::Words<rgb::StoreWords>{first.canvas_, {first.colour_}},
                   rgb::Words<rgb::StoreWords>{second.canvas_, {second.colour_}});
  }

 private:
  enum class Way : std::uint8_t { kStore, kStoreThreeBytes, kBlend, kAdd };

  static Way wayOf(const NKPixel& surface, bool foreground) {
    if (foreground && surface.alphaAdditive)
      return Way::kAdd;
    if (surface.transparencyOn &&
        (foreground ? surface.foregroundAlpha : surface.backgroundAlpha) > 0.0)
      return Way::kBlend;
    return foreground && isThreeByteType(surface.pixelKind) ? Way::kStoreThreeBytes : Way::kStore;
  }

  rgb::Canvas canvas_;
  std::uint32_t colour_;
  double alpha_;
  Way way_;
};

}  // namespace nkdraw
