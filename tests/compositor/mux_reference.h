// SPDX-License-Identifier: BSD-2-Clause
//
// The multiplexed display computed pixel by pixel, for comparison.
#pragma once

#include <nkdraw/nkdraw_c.h>

#include <algorithm>
#include <cstring>

namespace nkdraw::test {

/// The settings of one call.
struct MuxCall {
  std::uint32_t mode = 0;
  std::uint32_t width = 0, height = 0, pitch = 0;
  std::uint32_t sizeA = 0, sizeB = 0;
  std::uint32_t wipe = 0, amount = 0, threshold = 0;
  std::uint32_t splitX = 0, splitY = 0;
  std::uint32_t gridType = 0, gridX = 10, gridY = 3;

  [[nodiscard]] bool bit(int number) const { return ((mode >> number) & 1) != 0; }
  [[nodiscard]] std::uint32_t value() const { return mode & 0x00FFFFFF; }
};

inline std::uint32_t displayComplete(const MuxCall& call, std::uint8_t* a, std::uint8_t* b,
                                     std::uint8_t* dst) {
  const NKMux mux = {a,           call.sizeA,    b,           call.sizeB,     dst,
                     call.mode,   call.wipe,     call.amount, call.threshold, call.splitX,
                     call.splitY, call.gridType, call.gridX,  call.gridY,     call.width,
                     call.height, call.pitch};
  return NKDraw_CompleteMux(&mux);
}

inline std::uint32_t display(const MuxCall& call, std::uint8_t* a, std::uint8_t* b,
                             std::uint8_t* dst) {
  if (call.value() == NKMuxWipe)  // a busy machine may keep workers longer than the bounded wait
    return displayComplete(call, a, b, dst);
  return NKDraw_DisplayMuxRGBA(a, call.sizeA, b, call.sizeB, dst, 0xDEADBEEF, call.mode, call.wipe,
                               call.amount, call.threshold, call.splitX, call.splitY, call.gridType,
                               call.gridX, call.gridY, call.width, call.height, call.pitch);
}

namespace reference {

inline std::uint32_t load(const std::uint8_t* at) {
  std::uint32_t word = 0;
  for (int i = 0; i < 4; ++i)
    word |= static_cast<std::uint32_t>(at[i]) << (8 * i);
  return word;
}
inline void store(std::uint8_t* at, std::uint32_t word) {
  for (int i = 0; i < 4; ++i)
    at[i] = static_cast<std::uint8_t>(word >> (8 * i));
}
inline int byteOf(std::uint32_t word, int number) {
  return static_cast<int>(word >> (8 * number) & 0xFF);
}
inline std::uint32_t word(int byte3, int byte2, int byte1, int byte0) {
  return static_cast<std::uint32_t>(byte3) << 24 | static_cast<std::uint32_t>(byte2) << 16 |
         static_cast<std::uint32_t>(byte1) << 8 | static_cast<std::uint32_t>(byte0);
}

inline std::uint32_t channels(std::uint32_t value, std::uint32_t f, std::uint32_t s) {
  if (value == 4)
    return word(0, byteOf(f, 2), 0, byteOf(s, 0));
  if (value == 8)
    return word(byteOf(f, 3), byteOf(f, 2), byteOf(s, 1), byteOf(s, 0));
  if (value == 16)
    return word(byteOf(f, 3), byteOf(f, 2), byteOf(f, 1), byteOf(s, 0));
  return word(byteOf(f, 3), byteOf(s, 2), byteOf(f, 1), byteOf(s, 0));
}

inline std::uint32_t average(std::uint32_t f, std::uint32_t s) {
  int mean[4];
  for (int i = 0; i < 4; ++i)
    mean[i] = byteOf(f, i) / 2 + byteOf(s, i) / 2;
  return word(mean[3], mean[2], mean[1], mean[0]);
}

inline std::uint32_t difference(std::uint32_t f, std::uint32_t s, std::uint32_t threshold) {
  int largest = -1000;
  for (int i = 0; i < 3; ++i) {
    const int distance = byteOf(f, i) - byteOf(s, i);
    const int halved = (distance - (distance & 1)) / 2;  // towards the lower number
    largest = std::max(largest, halved);
  }
  if (threshold >= 2 && threshold <= 255)
    largest *= static_cast<int>(threshold);
  largest = std::min(std::max(largest, -127), 127);
  return word(0, 128 + largest, 128 + largest, 128 + largest);
}

inline std::uint32_t compare(std::uint32_t f, std::uint32_t s, std::uint32_t threshold,
                             bool swapped) {
  for (int i = 0; i < 4; ++i) {
    const int distance = std::abs(byteOf(f, i) - byteOf(s, i));
    if (static_cast<std::uint32_t>(distance) > threshold)
      return swapped ? 0xFFFFFFFF : 0;
  }
  return s;
}

inline std::uint8_t fadedByte(std::uint8_t f, std::uint8_t s, std::uint32_t amount) {
  const std::uint32_t a = amount >> 8, b = 256U - a;
  return static_cast<std::uint8_t>((s * b + f * a) >> 8);
}

inline std::uint32_t fade(std::uint32_t f, std::uint32_t s, std::uint32_t amount) {
  int mix[4];
  for (int i = 0; i < 4; ++i)
    mix[i] = fadedByte(static_cast<std::uint8_t>(byteOf(f, i)),
                       static_cast<std::uint8_t>(byteOf(s, i)), amount);
  return word(mix[3], mix[2], mix[1], mix[0]);
}

inline std::uint32_t grey(std::uint32_t f, std::uint32_t threshold) {
  int v = (byteOf(f, 0) + byteOf(f, 1) + byteOf(f, 2)) / 3;
  if (threshold == 0xFF000000)
    v = byteOf(f, 3);
  if (threshold == 0x00FF0000)
    v = byteOf(f, 2);
  if (threshold == 0x0000FF00)
    v = byteOf(f, 1);
  if (threshold == 0x000000FF)
    v = byteOf(f, 0);
  return word(v, v, v, v);
}

/// One call on three frames of a pitch; the steps in their order.
class Mux {
 public:
  Mux(const MuxCall& call, std::uint8_t* a, std::uint8_t* b, std::uint8_t* dst)
      : c(call), first(call.bit(31) ? b : a), second(call.bit(31) ? a : b), dst(dst) {}

  void run() {
    if (c.bit(26))
      mirrorVert(second);
    if (c.bit(30))
      mirrorVert(first);
    if (c.bit(25))
      mirrorHorz(second);
    if (c.bit(29))
      mirrorHorz(first);
    runMode();
    if (c.bit(24) || c.gridType != 0)
      grid();
  }

 private:
  std::uint8_t* at(std::uint8_t* frame, std::uint32_t x, std::uint32_t y) const {
    return frame + y * c.pitch + 4 * x;
  }
  std::uint8_t* tight(std::uint8_t* frame, std::uint32_t index) const { return frame + 4 * index; }
  static void copyPixel(std::uint8_t* to, const std::uint8_t* from) { store(to, load(from)); }
  static void copyBytes(std::uint8_t* to, const std::uint8_t* from, std::uint32_t bytes) {
    for (std::uint32_t i = 0; i < bytes; ++i)
      to[i] = from[i];
  }
  void copyRow(std::uint32_t y, std::uint8_t* frame, std::uint32_t from) const {
    copyBytes(at(dst, 0, y), at(frame, 0, from), c.pitch);
  }

  void mirrorVert(std::uint8_t* frame) const {
    for (std::uint32_t y = 0; y < c.height / 2; ++y)
      std::swap_ranges(at(frame, 0, y), at(frame, c.width, y), at(frame, 0, c.height - 1 - y));
  }
  void mirrorHorz(std::uint8_t* frame) const {
    for (std::uint32_t y = 0; y < c.height; ++y) {
      for (std::uint32_t x = 0; x < c.width / 2; ++x)
        std::swap_ranges(at(frame, x, y), at(frame, x + 1, y), at(frame, c.width - 1 - x, y));
    }
  }

  template <class Rule>
  void eachPixel(Rule rule) const {
    for (std::uint32_t y = 0; y < c.height; ++y) {
      for (std::uint32_t x = 0; x < c.width; ++x)
        store(at(dst, x, y), rule(load(at(first, x, y)), load(at(second, x, y))));
    }
  }

  void runMode() const {
    using std::uint32_t;
    switch (c.value()) {
      case 2:
        return copyBytes(dst, second, c.sizeB);
      case 4:
      case 8:
      case 16:
      case 32:
        return eachPixel([this](uint32_t f, uint32_t s) { return channels(c.value(), f, s); });
      case 64:
        return c.bit(28) ? interleaveColumns() : interleaveRows();
      case 128:
        return eachPixel(average);
      case 256:
        return eachPixel([this](uint32_t f, uint32_t s) { return difference(f, s, c.threshold); });
      case 512:
        return overAndUnder();
      case 1024:
        return sideBySide();
      case 2048:
        return c.bit(28) ? splitRows() : splitColumns();
      case 4096:
      case 8192:
        return mirror();
      case 16384:
        return eachPixel(
            [this](uint32_t f, uint32_t s) { return compare(f, s, c.threshold, c.bit(31)); });
      case 32768:
        return eachPixel([this](uint32_t f, uint32_t s) { return fade(f, s, c.amount); });
      case 65536: {
        const NKWipe wipe = {first,  c.pitch, second,  c.pitch,  dst,      c.pitch,
                             c.wipe, 1,       c.width, c.height, c.amount, 65536};
        NKDraw_CompleteWipe(&wipe);
        return;
      }
      case 262144:
        return checker();
      case 524288:
        return blocks();
      case 1048576:
        return quarterPair();
      case 2097152:
        return c.bit(28) ? cropRows() : cropColumns();
      case 8388608:
        return eachPixel([this](uint32_t f, uint32_t) { return grey(f, c.threshold); });
      default:
        return copyBytes(dst, first, c.sizeA);
    }
  }

  void interleaveRows() const {
    if (c.height == 0)
      return;
    const std::uint32_t pairs = ((c.height - 1) >> 1) + 1;
    for (std::uint32_t i = 0; i < pairs; ++i) {
      copyRow(2 * i, first, 2 * i);
      copyRow(2 * i + 1, second, 2 * i + 1);
    }
  }
  void interleaveColumns() const {
    for (std::uint32_t y = 0; y < c.height; ++y) {
      for (std::uint32_t i = 0; i < c.width >> 1; ++i) {
        copyPixel(at(dst, 2 * i, y), at(first, 2 * i, y));
        copyPixel(at(dst, 2 * i + 1, y), at(second, 2 * i + 1, y));
      }
    }
  }
  void overAndUnder() const {
    for (std::uint32_t i = 0; i < c.height >> 1; ++i) {
      copyRow(i, first, 2 * i);
      copyRow((c.height >> 1) + i, second, 2 * i);
    }
  }
  void sideBySide() const {
    for (std::uint8_t* const frame : {first, second}) {
      std::uint8_t* const half = frame == first ? dst : dst + 2 * c.width;
      for (std::uint32_t y = 0; y < c.height; ++y) {
        for (std::uint32_t i = 0; i < c.width >> 1; ++i)
          copyPixel(half + 4 * c.width * y + 4 * i, frame + 4 * c.width * y + 8 * i);
      }
    }
  }
  void splitColumns() const {
    const std::uint32_t split = c.splitX > c.width ? c.width >> 1 : c.splitX;
    for (std::uint32_t y = 0; y < c.height; ++y) {
      for (std::uint32_t x = 0; x < c.width; ++x)
        copyPixel(at(dst, x, y), at(x < split ? first : second, x, y));
      if (c.bit(27))
        store(at(dst, split, y), 0x80808080);
    }
  }
  void splitRows() const {
    const std::uint32_t split = c.splitY > c.height ? c.height >> 1 : c.splitY;
    for (std::uint32_t y = 0; y < c.height; ++y) {
      if (y == split && c.bit(27))
        std::fill_n(at(dst, 0, y), c.pitch, std::uint8_t{0x80});
      else
        copyRow(y, y < split ? first : second, y);
    }
  }
  void mirror() const {
    const bool vertical = c.bit(28);
    const std::uint32_t half = (vertical ? c.height : c.width) >> 1;
    for (std::uint32_t y = 0; y < c.height; ++y) {
      for (std::uint32_t x = 0; x < c.width; ++x) {
        if ((vertical ? y : x) < half)
          copyPixel(at(dst, x, y), at(first, x, y));
        else if (vertical)
          copyPixel(at(dst, x, y), at(second, x, 2 * half - y));
        else
          copyPixel(at(dst, x, y), at(second, 2 * half - x, y));
      }
    }
  }
  void checker() const {
    const std::uint32_t pairs = c.width == 0 ? 0 : ((c.width - 1) >> 1) + 1;
    for (std::uint32_t y = 0; y < c.height; y += 2) {
      for (std::uint32_t i = 0; i < pairs; ++i) {
        copyPixel(at(dst, 2 * i, y), at(first, 2 * i, y));
        copyPixel(at(dst, 2 * i + 1, y), at(second, 2 * i + 1, y));
      }
      for (std::uint32_t i = 0; i < pairs; ++i) {
        copyPixel(at(dst, 2 * i, y + 1), at(second, 2 * i, y + 1));
        copyPixel(at(dst, 2 * i + 1, y + 1), at(first, 2 * i + 1, y + 1));
      }
    }
  }
  void blocks() const {
    const std::uint32_t n = std::min(std::max(c.amount >> 8, 1U), 100U);
    for (std::uint32_t y = 0; y < c.height; ++y) {
      const bool even = y / n % 2 == 0;
      for (std::uint32_t x = 0; x < c.width; ++x) {
        const bool fromP = x / n % 2 == 0;
        copyPixel(at(dst, x, y), at(fromP == even ? first : second, x, y));
      }
    }
  }
  void blacken() const { std::fill_n(dst, c.width * c.height * 4, std::uint8_t{0}); }
  void quarterPair() const {
    blacken();
    if (c.width == 0)
      return;
    const std::uint32_t t = (c.height >> 2) * c.width, h = c.width >> 1;
    for (std::uint32_t y = 0; y < c.height; y += 2) {
      for (std::uint32_t j = 0; j < ((c.width - 1) >> 1) + 1; ++j) {
        const std::uint32_t out = t + (y >> 1) * c.width + j;
        copyPixel(tight(dst, out), tight(first, y * c.width + 2 * j));
        copyPixel(tight(dst, out + h), tight(second, y * c.width + 2 * j));
      }
    }
  }
  void cropColumns() const {
    blacken();
    const std::uint32_t h = c.width >> 1, o = std::min(c.splitX, h);
    for (std::uint32_t y = 0; y < c.height; ++y) {
      for (std::uint32_t i = 0; i < h; ++i) {
        const std::uint32_t out = y * c.width + i;
        copyPixel(tight(dst, out), tight(first, o + out));
        copyPixel(tight(dst, out + h), tight(second, o + out));
      }
    }
  }
  void cropRows() const {
    blacken();
    const std::uint32_t h = c.height >> 1, o = std::min(c.splitY, h);
    const std::uint32_t middle = c.width * c.height >> 1;
    for (std::uint32_t y = 0; y < h; ++y) {
      for (std::uint32_t x = 0; x < c.width; ++x) {
        const std::uint32_t from = (o + y) * c.width + x;
        copyPixel(tight(dst, y * c.width + x), tight(first, from));
        copyPixel(tight(dst, middle + y * c.width + x), tight(second, from));
      }
    }
  }

  /// Must not get settings that would make it divide by zero or never end.
  void grid() const {
    std::uint32_t stepX = c.gridX, stepY = c.gridY;
    if (c.gridType == 1 || (c.gridType == 0 && c.bit(24))) {
      const std::uint32_t cells = 100 / c.gridX;
      stepY = c.height / cells;
      stepX = c.width / cells;
    }
    for (std::uint32_t y = 0; y < c.height; ++y) {
      if (y % stepY == 0) {
        std::fill_n(at(dst, 0, y), c.pitch, std::uint8_t{0xBF});
        continue;
      }
      for (std::uint32_t x = 0; x < c.width; x += stepX)
        store(at(dst, x, y), 0xBFBFBFBF);
    }
  }

  const MuxCall& c;
  std::uint8_t* first;
  std::uint8_t* second;
  std::uint8_t* dst;
};

}  // namespace reference

inline void referenceDisplay(const MuxCall& call, std::uint8_t* a, std::uint8_t* b,
                             std::uint8_t* dst) {
  reference::Mux(call, a, b, dst).run();
}

}  // namespace nkdraw::test
