// SPDX-License-Identifier: BSD-2-Clause
//
// The wipes by their rules: one pixel after the other, in 32-bit arithmetic that wraps.
#pragma once

#include <nkdraw/compositor/wipe_kernels.h>
#include <nkdraw/surface/pixel_type.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <type_traits>
#include <utility>

namespace nkdraw::test {

enum class Part { kByte, kWord, kFloat };

/// A layout that the wipes know.
struct Layout {
  std::int32_t type;
  std::uint32_t bytes;
  Part part;
};

inline constexpr Layout kLayouts[] = {
    {1, 4, Part::kByte},  {2, 4, Part::kByte},  {3, 4, Part::kByte},    {4, 4, Part::kByte},
    {5, 3, Part::kByte},  {6, 3, Part::kByte},  {29, 16, Part::kFloat}, {30, 12, Part::kFloat},
    {31, 6, Part::kWord}, {32, 8, Part::kWord}, {33, 3, Part::kByte},   {34, 4, Part::kByte},
    {35, 6, Part::kWord}, {36, 8, Part::kWord},
};

inline const Layout* layoutOf(std::int32_t type) {
  const auto* const found = std::ranges::find(kLayouts, type, &Layout::type);
  return found == std::end(kLayouts) ? nullptr : found;
}

inline std::uint32_t rangeOfTask(const WipeTask& task) {
  return task.rangeEnd - task.rangeStart;
}

/// A pixel of a frame, and how far the wipe has gone.
struct Place {
  std::uint32_t x, y, width, height, range, position;

  [[nodiscard]] std::uint32_t scale(std::uint32_t n) const { return n * position / range; }
  [[nodiscard]] std::uint32_t halfW() const { return width >> 1; }
  [[nodiscard]] std::uint32_t halfH() const { return height >> 1; }
};

/// A kernel that takes every pixel from one of the inputs, a number that it draws, and its rule.
struct Pattern {
  const char* name;
  const WipeKernel& kernel;
  std::uint32_t number;
  bool (*incoming)(const Place&);
};

inline const Pattern kPatterns[] = {
    {"EdgeHorz", WipeEdgeHorz, 1,
     [](const Place& p) {
       const std::uint32_t c = p.scale(p.width);
       return p.x < c;
     }},
    {"CornerTL", WipeCornerTL, 3,
     [](const Place& p) {
       const std::uint32_t cx = p.scale(p.width), cy = p.scale(p.height);
       return p.y < cy && p.x < cx;
     }},
    {"CornerTR", WipeCornerTR, 4,
     [](const Place& p) {
       const std::uint32_t cx = p.scale(p.width), cy = p.scale(p.height);
       return p.y < cy && p.width - p.x <= cx;
     }},
    {"CornerBR", WipeCornerBR, 5,
     [](const Place& p) {
       const std::uint32_t tx = p.width - p.scale(p.width), ty = p.height - p.scale(p.height);
       return p.y > ty && p.x > tx;
     }},
    {"CornerBL", WipeCornerBL, 6,
     [](const Place& p) {
       const std::uint32_t cx = p.scale(p.width), cy = p.scale(p.height);
       return p.height - p.y < cy && p.x < cx;
     }},
    {"FourCorners", WipeFourCorners, 7,
     [](const Place& p) {
       const std::uint32_t dx = p.scale(p.halfW()), dy = p.scale(p.halfH());
       return !(dy < p.y && p.y < p.height - dy) && !(dx < p.x && p.x < p.width - dx);
     }},
    {"BoxIn", WipeBoxIn, 8,
     [](const Place& p) {
       const std::uint32_t dx = p.scale(p.halfW()), dy = p.scale(p.halfH());
       return p.y <= dy || p.y >= p.height - dy || p.x <= dx || p.x >= p.width - dx;
     }},
    {"BarnDoorVert", WipeBarnDoorVert, 21,
     [](const Place& p) {
       const std::uint32_t dx = p.scale(p.halfW());
       return p.x <= dx || p.x >= p.width - dx;
     }},
    {"BarnDoorHorz", WipeBarnDoorHorz, 22,
     [](const Place& p) {
       const std::uint32_t dy = p.scale(p.halfH());
       return p.y <= dy || p.y >= p.height - dy;
     }},
    {"BoxTop", WipeBoxTop, 23,
     [](const Place& p) {
       const std::uint32_t ty = p.height - p.scale(p.height), dx = p.scale(p.halfW());
       return p.y >= ty || p.x <= dx || p.x >= p.width - dx;
     }},
    {"BoxRight", WipeBoxRight, 24,
     [](const Place& p) {
       const std::uint32_t cx = p.scale(p.width), dy = p.scale(p.halfH());
       return p.x <= cx || p.y <= dy || p.y >= p.height - dy;
     }},
    {"BoxBottom", WipeBoxBottom, 25,
     [](const Place& p) {
       const std::uint32_t cy = p.scale(p.height), dx = p.scale(p.halfW());
       return p.y <= cy || p.x <= dx || p.x >= p.width - dx;
     }},
    {"BoxLeft", WipeBoxLeft, 26,
     [](const Place& p) {
       const std::uint32_t tx = p.width - p.scale(p.width), dy = p.scale(p.halfH());
       return p.x >= tx || p.y <= dy || p.y >= p.height - dy;
     }},
    {"Iris", WipeIris, 41,
     [](const Place& p) {
       const std::uint32_t l = p.halfW() - p.scale(p.halfW()), r = p.width - l;
       const std::uint32_t t = p.halfH() - p.scale(p.halfH()), b = p.height - t;
       return t < p.y && p.y < b && p.x >= l && p.x <= r;
     }},
};

/// One row of the frames; the output's rows are as far apart as those of the second input.
struct Row {
  const std::uint8_t* outgoing;
  const std::uint8_t* incoming;
  std::uint8_t* output;

  Row(const WipeTask& task, std::uint32_t y) {
    const std::uint32_t offsetA = task.pitchA * y, offsetB = task.pitchB * y;
    outgoing = task.srcA + offsetA;
    incoming = task.srcB + offsetB;
    output = task.dst + offsetB;
    if (task.wipe >> 31 == 1)
      std::swap(outgoing, incoming);
  }
};

inline void drawPattern(const Pattern& pattern, const WipeTask& task) {
  const Layout* const layout = layoutOf(task.pixelType);
  if (layout == nullptr || rangeOfTask(task) == 0)
    return;
  for (std::uint32_t y = task.top; y < task.bottom; ++y) {
    const Row row(task, y);
    for (std::uint32_t x = task.left; x < task.right; ++x) {
      const bool incoming =
          pattern.incoming({x, y, task.width, task.height, rangeOfTask(task), task.position});
      std::memmove(row.output + x * layout->bytes,
                   (incoming ? row.incoming : row.outgoing) + x * layout->bytes, layout->bytes);
    }
  }
}

inline void drawEdgeVert(const WipeTask& task) {
  if (layoutOf(task.pixelType) == nullptr || rangeOfTask(task) == 0 || task.left != 0)
    return;
  const std::uint32_t c = task.height * task.position / rangeOfTask(task);
  for (std::uint32_t y = task.top; y < task.bottom; ++y) {
    const Row row(task, y);
    if (y < c)
      std::memmove(row.output, row.incoming, task.pitchA);
    else
      std::memmove(row.output, row.outgoing, task.pitchB);
  }
}

/// `dst` is a buffer of its own.
inline void drawSlide(const WipeTask& t) {
  if (t.left != 0 || t.top != 0 || t.wipe < 500 || t.wipe > 507 || rangeOfTask(t) == 0)
    return;
  const Layout* const layout = layoutOf(t.pixelType);
  const std::uint32_t p = layout == nullptr ? 4 : layout->bytes;
  const std::uint32_t s = t.width * p;
  const std::uint32_t rows = std::min(t.height * t.position / rangeOfTask(t), t.height);
  const std::uint32_t columns = std::min(t.width * t.position / rangeOfTask(t), t.width);
  const auto copy = [](std::uint8_t* to, const std::uint8_t* from, std::uint32_t bytes) {
    for (std::uint32_t i = 0; i < bytes; ++i)
      to[i] = from[i];
  };
  if (t.wipe == 500) {
    const std::uint32_t rest = t.height - rows;
    copy(t.dst + rest * s, t.srcB + rest * s, rows * s);
    copy(t.dst, t.srcA + rows * s, rest * s);
  } else if (t.wipe == 501 || t.wipe == 503) {
    copy(t.dst, t.srcB, s * t.height);
    const std::uint32_t from = t.wipe == 501 ? columns : 0, to = t.wipe == 501 ? 0 : columns;
    for (std::uint32_t y = 0; y < t.height; ++y)
      copy(t.dst + y * s + to * p, t.srcA + y * s + from * p, (t.width - columns) * p);
  } else {
    copy(t.dst, t.srcB, rows * s);
    copy(t.dst + rows * s, t.srcA, (t.height - rows) * s);
  }
}

/// Towards zero; 0x80000000 for what 32 bits don't hold.
inline std::int32_t truncated(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value)
                                                       : static_cast<std::int32_t>(0x80000000);
}

/// The low bits of the number towards zero; 0 for what 64 bits don't hold.
inline std::uint64_t lowBits(double value) {
  return value >= -0x1p63 && value < 0x1p63
             ? static_cast<std::uint64_t>(static_cast<std::int64_t>(value))
             : 0;
}

template <class Stored>
void mixPart(double alpha, double beta, const std::uint8_t* outgoing, const std::uint8_t* incoming,
             std::uint8_t* output) {
  Stored o, n, result;
  std::memcpy(&o, outgoing, sizeof o);
  std::memcpy(&n, incoming, sizeof n);
  if constexpr (std::is_floating_point_v<Stored>)
    result = static_cast<Stored>(truncated(n) * alpha + o * beta);
  else
    result = static_cast<Stored>(lowBits(o * beta + n * alpha));
  std::memcpy(output, &result, sizeof result);
}

inline void drawDissolve(const WipeTask& task) {
  const Layout* const layout = layoutOf(task.pixelType);
  if (layout == nullptr)
    return;
  const double alpha = static_cast<double>(task.position) / static_cast<double>(rangeOfTask(task));
  const double beta = 1.0 - alpha;
  const bool bytes = layout->part == Part::kByte, words = layout->part == Part::kWord;
  const std::uint32_t size = bytes ? 1 : words ? 2 : 4;
  const auto mix = bytes ? mixPart<std::uint8_t> : words ? mixPart<std::uint16_t> : mixPart<float>;
  for (std::uint32_t y = task.top; y < task.bottom; ++y) {
    const Row row(task, y);
    for (std::uint32_t at = task.left * layout->bytes; at < task.right * layout->bytes; at += size)
      mix(alpha, beta, row.outgoing + at, row.incoming + at, row.output + at);
  }
}

/// By the numbers of kPatterns, 2, the slides, and cross-fades for what is left.
inline void drawNumber(const WipeTask& task) {
  const std::uint32_t number = task.wipe & 0x7FFFFFFF;
  const auto* const pattern = std::ranges::find(kPatterns, number, &Pattern::number);
  if (pattern != std::end(kPatterns))
    drawPattern(*pattern, task);
  else if (number == 2)
    drawEdgeVert(task);
  else if (number >= 500 && number <= 515)
    drawSlide(task);
  else
    drawDissolve(task);
}

inline constexpr std::uint32_t kNumbersOfEveryKind[] = {
    1, 2, 3, 4, 5, 6, 7, 8, 21, 22, 23, 24, 25, 26, 41, 500, 501, 502, 503, 507, 508, 515, 0, 516};

}  // namespace nkdraw::test
