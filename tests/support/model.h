// SPDX-License-Identifier: BSD-2-Clause
//
// A second, plain implementation of how a pixel of each layout is written. Tests compare the
// library with it.
#pragma once

#include <tests/support/fields.h>
#include <tests/support/frame.h>

#include <array>
#include <cstdint>
#include <cstring>

namespace nkdraw::test {

/// A model of a surface as documented, which draws on its own canvas.
struct Model {
  int type = 0;
  std::uint8_t* canvas = nullptr;
  std::uint32_t width = 0, height = 0, pitch = 0;
  std::uint8_t ink[4] = {}, paper[4] = {};
  double inkAlpha = 0.0, paperAlpha = 0.0;
  bool transparency = false, additive = false;
  std::uint64_t inkCode = 0, paperCode = 0;
  // What a pixel of a deep, raw or chroma layout is made of, in memory order.
  std::array<std::uint32_t, 4> inkSamples{}, paperSamples{};

  /// The state of `surface`, but with a separate canvas.
  void take(NKDraw& surface, std::uint8_t* ownCanvas) {
    type = surface.PixelType();
    if (dynamic_cast<CDrawYCbCrYCbCr16*>(&surface) != nullptr)
      type = ptYCbCr48;
    if (dynamic_cast<CDrawYCbCrYCbCrA16*>(&surface) != nullptr)
      type = ptYCbCrA64;
    canvas = ownCanvas;
    width = surface.Width();
    height = surface.Height();
    pitch = surface.Pitch();
    std::memcpy(ink, PixelFields::foreground(surface), 4);
    std::memcpy(paper, PixelFields::background(surface), 4);
    inkAlpha = PixelFields::alpha(surface, true);
    paperAlpha = PixelFields::alpha(surface, false);
    transparency = surface.GetTransparency();
    additive = surface.GetAlphaAdditive();
    if (auto* const group = dynamic_cast<CDrawYCbCr10*>(&surface)) {
      inkCode = V210Fields::foreground(*group);
      paperCode = V210Fields::background(*group);
    }
    if (auto* const pair = dynamic_cast<CDrawYCbCrYUYV*>(&surface)) {
      inkCode = PairFields::foreground(*pair);
      paperCode = PairFields::background(*pair);
    }
    inkSamples = samplesOf(surface, true);
    paperSamples = samplesOf(surface, false);
  }

  std::uint32_t put(int x, int y, bool foreground) {
    if (type >= 14 && type <= 16)
      return putGroup(x, y, foreground ? inkCode : paperCode);
    if (type >= 10 && type <= 13)
      return putPair(x, y, static_cast<std::uint32_t>(foreground ? inkCode : paperCode));
    const std::array<std::uint32_t, 4>& samples = foreground ? inkSamples : paperSamples;
    if (type >= 21 && type <= 28)
      return putMosaic(x, y, samples);
    switch (type) {
      case 31:
      case 37:
      case 35:
        return putWords(x, y, samples, 3, 6);
      case 32:
      case 38:
        return putWords(x, y, samples, 4, 8);
      case 36:  // eight bytes, at a step of six
        return putWords(x, y, samples, 4, 6);
      case 10001:
        return putWords(x, y, samples, 2, 4);
      case 10000:
        for (int i = 0; i < 2; ++i)
          row(y)[std::int64_t{2} * x + i] =
              static_cast<std::uint8_t>(samples[static_cast<std::size_t>(i)]);
        return 0;
      default:
        break;
    }
    return putRgb(x, y, foreground);
  }

  /// The row of the 32-bit layouts that is filled whatever the switches say; x2 is left out.
  void fillRow(int x1, int y, int x2) {
    for (int x = x1; x < x2; ++x)
      std::memcpy(wordAddress(x, y), ink, 4);
  }

  /// The same of the 32-bit layouts' canvas, packed from its first byte whatever the pitch.
  void fillAll() {
    for (std::uint32_t i = 0; i < width * height; ++i)
      std::memcpy(canvas + std::size_t{4} * i, ink, 4);
  }

  /// Whether both plot the foreground alike.
  [[nodiscard]] bool hasInkOf(const Model& other) const {
    return std::memcmp(ink, other.ink, 4) == 0 && inkCode == other.inkCode &&
           inkSamples == other.inkSamples;
  }

  [[nodiscard]] std::uint8_t* wordAddress(int x, int y) const {
    const std::uint32_t row = (pitch * static_cast<std::uint32_t>(y)) >> 2;
    return canvas + 4 * (std::int64_t{row} + x);
  }

 private:
  template <class Class>
  static bool copyWords(NKDraw& surface, bool ink, int count,
                        std::array<std::uint32_t, 4>& samples) {
    auto* const own = dynamic_cast<Class*>(&surface);
    for (int i = 0; own != nullptr && i < count; ++i)
      samples[static_cast<std::size_t>(i)] = WordFields<Class>::words(*own, ink)[i];
    return own != nullptr;
  }

  /// From the second on, where a pixel begins with Y, and else Cb and Cr alone.
  template <class Class>
  static bool copySamples(NKDraw& surface, bool ink, std::size_t first,
                          std::array<std::uint32_t, 4>& samples) {
    auto* const own = dynamic_cast<Class*>(&surface);
    for (std::size_t i = first; own != nullptr && i < 3; ++i)
      samples[i - first] = *SampleFields<Class>::samples(*own, ink)[i];
    return own != nullptr;
  }

  static std::array<std::uint32_t, 4> samplesOf(NKDraw& surface, bool ink) {
    std::array<std::uint32_t, 4> samples{};
    if (auto* const bayer = dynamic_cast<CDrawBayer*>(&surface)) {
      for (int i = 0; i < 3; ++i)
        samples[static_cast<std::size_t>(i)] = BayerFields::rgba(*bayer, ink)[i];
    }
    copyWords<CDrawRGB48>(surface, ink, 3, samples);
    copyWords<CDrawRGBHalf48>(surface, ink, 3, samples);
    copyWords<CDrawARGB64>(surface, ink, 4, samples);
    copySamples<CDrawYCbCrYCbCr16>(surface, ink, 0, samples);
    if (copySamples<CDrawYCbCrYCbCrA16>(surface, ink, 0, samples))
      samples[3] = SampleAlphaFields::alpha(dynamic_cast<CDrawYCbCrYCbCrA16&>(surface), ink);
    copySamples<CDrawUV8>(surface, ink, 1, samples);
    copySamples<CDrawUV16>(surface, ink, 1, samples);
    return samples;
  }

  [[nodiscard]] std::uint8_t* row(int y) const {
    return canvas + pitch * static_cast<std::uint32_t>(y);
  }

  std::uint32_t putWords(int x, int y, const std::array<std::uint32_t, 4>& samples, int count,
                         int step) {
    std::uint8_t* const at = row(y) + std::int64_t{step} * x;
    for (int i = 0; i < count; ++i) {
      at[2 * i] = static_cast<std::uint8_t>(samples[static_cast<std::size_t>(i)]);
      at[2 * i + 1] = static_cast<std::uint8_t>(samples[static_cast<std::size_t>(i)] >> 8);
    }
    return 0;
  }

  std::uint32_t putMosaic(int x, int y, const std::array<std::uint32_t, 4>& rgb) {
    enum { kRed, kGreen, kBlue };
    const bool odd = (y & 1) != 0;
    std::size_t own = 0, other = 0;  // of an even column, of an odd one
    switch (type) {
      case 22:
      case 26:
        own = odd ? kGreen : kRed;
        other = odd ? kBlue : kGreen;
        break;
      case 23:
      case 27:
        own = odd ? kRed : kGreen;
        other = odd ? kGreen : kBlue;
        break;
      case 24:
      case 28:
        own = odd ? kBlue : kGreen;
        other = odd ? kGreen : kRed;
        break;
      default:
        own = odd ? kGreen : kBlue;
        other = odd ? kRed : kGreen;
        break;
    }
    std::uint8_t* const at = row(y) + std::int64_t{3} * x / 2;
    if (x % 2 == 0) {
      at[0] = static_cast<std::uint8_t>(rgb[own]);
    } else {
      at[0] = static_cast<std::uint8_t>(rgb[other] >> 4);
      at[1] = static_cast<std::uint8_t>(rgb[own] << 4);
    }
    return 0;
  }

  std::uint32_t putRgb(int x, int y, bool foreground) {
    if (canvas == nullptr || y < 0)
      return 0xFFFFFFFF;
    std::uint8_t* const at = wordAddress(x, y);
    const bool threeBytes = type == 5 || type == 6;
    if (!foreground) {
      if (transparency && paperAlpha > 0.0)
        blend(at, paper, paperAlpha);
      else
        std::memcpy(at, paper, 4);
    } else if (additive) {
      for (int i = 0; i < 3; ++i) {
        const double sum = (ink[3] / 255.0) * ink[i] + at[i];
        at[i] = static_cast<std::uint8_t>(static_cast<std::int64_t>(sum));
      }
      at[3] = 255;
    } else if (transparency && inkAlpha > 0.0) {
      blend(at, ink, inkAlpha);
    } else if (threeBytes) {
      std::uint8_t* const own =
          canvas + pitch * static_cast<std::uint32_t>(y) + std::int64_t{3} * x;
      std::memcpy(own, ink, 3);
    } else {
      std::memcpy(at, ink, 4);
    }
    return 0;
  }

  /// The four bytes as one number, so that a channel's fraction carries into its neighbour.
  static void blend(std::uint8_t* at, const std::uint8_t* colour, double alpha) {
    const double word = wordAt(at);
    const double mixed = (1.0 - alpha) * word + wordAt(colour) * alpha;
    setWord(at, static_cast<std::uint32_t>(static_cast<std::int64_t>(mixed)));
  }

  static void setSample(std::uint8_t* word, int lowestBit, std::uint64_t value) {
    const std::uint32_t mask = 0x3FFU << lowestBit;
    const auto placed = static_cast<std::uint32_t>((value & 0x3FF) << lowestBit);
    setWord(word, (wordAt(word) & ~mask) | placed);
  }

  std::uint32_t putGroup(int x, int y, std::uint64_t code) {
    if (x < 0 || y < 0)
      return 0xFFFFFFFF;
    const std::uint64_t luma = code, cb = code >> 10, cr = code >> 20;
    std::uint8_t* const group =
        canvas + pitch * static_cast<std::uint32_t>(y) + std::int64_t{x / 6} * 16;
    std::uint8_t* const words[] = {group, group + 4, group + 8, group + 12};
    switch (x % 6) {
      case 0:
        setSample(words[0], 10, luma);
        break;
      case 1:
        setSample(words[1], 0, luma);
        break;
      case 2:
        setSample(words[1], 20, luma);
        break;
      case 3:
        setSample(words[2], 10, luma);
        break;
      case 4:
        setSample(words[3], 0, luma);
        break;
      default:
        setSample(words[3], 20, luma);
        break;
    }
    switch (x % 6 / 2) {
      case 0:
        setSample(words[0], 0, cb);
        setSample(words[0], 20, cr);
        break;
      case 1:
        setSample(words[1], 10, cb);
        setSample(words[2], 0, cr);
        break;
      default:
        setSample(words[2], 20, cb);
        setSample(words[3], 10, cr);
        break;
    }
    return 0;
  }

  std::uint32_t putPair(int x, int y, std::uint32_t code) {
    if (canvas == nullptr)
      return 0;
    const auto column = static_cast<std::uint32_t>(x) % width;
    const auto row = static_cast<std::uint32_t>(y) % height;
    std::uint8_t* const at = canvas + row * pitch + (column >> 1) * 4;
    const bool odd = (static_cast<std::uint32_t>(x) & 1) != 0;
    int kept = 0;
    if (type == 11 || type == 13)
      kept = odd ? 1 : 3;
    else
      kept = odd ? 2 : 0;
    for (int byte = 0; byte < 4; ++byte) {
      if (byte != kept)
        at[byte] = static_cast<std::uint8_t>(code >> (8 * byte));
    }
    return 0;
  }
};

}  // namespace nkdraw::test
