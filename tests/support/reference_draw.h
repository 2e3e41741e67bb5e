// SPDX-License-Identifier: BSD-2-Clause
//
// A second, plain implementation of the drawing operations, pixel by pixel. It returns the plots in
// order; rows that the 32-bit layouts fill at once are entries of their own.
#pragma once

#include <tests/support/reference_shapes.h>
#include <tests/support/surfaces.h>

#include <nkdraw/nkdraw.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

namespace nkdraw::test {

/// What a drawing operation does to a surface: one PutPixel, or a fill of a row or of the whole
/// canvas without it.
struct Step {
  enum class Kind { kPut, kFill, kFillAll };
  Kind kind;
  int x, y;
  bool foreground;
  int x2 = 0;  // of a filled row, left out
  bool operator==(const Step&) const = default;
};

class ReferenceDraw {
 public:
  explicit ReferenceDraw(pixelType type) : fillsRows_(fillsRows(type)) {}

  std::vector<Step> steps;

  void put(int x, int y, bool foreground) { steps.push_back({Step::Kind::kPut, x, y, foreground}); }

  void line(int x1, int y1, int x2, int y2) {
    if (y1 > y2) {
      std::swap(x1, x2);
      std::swap(y1, y2);
    }
    const int dx = x2 - x1, dy = y2 - y1;
    if (dy > std::abs(dx)) {
      const int step = shifted(dx) / dy;
      int f = add(shifted(x1), 0x8000);
      for (int y = y1; y <= y1 + dy; ++y) {
        put(f >> 16, y, true);
        f = add(f, step);
      }
      return;
    }
    const int step = dx == 0 ? 0 : shifted(dy) / dx;
    int f = add(shifted(y1), 0x8000);
    if (dx > 0) {
      for (int x = x1; x <= x1 + dx; ++x) {
        put(x, f >> 16, true);
        f = add(f, step);
      }
    } else {
      for (int x = x1; x >= x1 + dx; --x) {
        put(x, f >> 16, true);
        f = add(f, -step);
      }
    }
  }

  void lineVert(int x, int y1, int y2) {
    for (int y = y1; y <= y2; ++y)
      put(x, y, true);
  }

  void lineHoriz(int x1, int y, int x2) {
    if (fillsRows_) {
      steps.push_back({Step::Kind::kFill, x1, y, true, x2});
      return;
    }
    for (int x = x1; x <= x2; ++x)
      put(x, y, true);
  }

  void fillRect(const tagRECT& rect, int width, int height) {
    if (fillsRows_ && rect.right - rect.left == width && rect.bottom - rect.top == height) {
      steps.push_back({Step::Kind::kFillAll, 0, 0, true});
      return;
    }
    for (int y = rect.top; y < rect.bottom; ++y)
      lineHoriz(rect.left, y, rect.right);
  }

  void eraseCanvas(int width, int height) { fillRect({0, 0, width, height}, width, height); }

  void shape(const std::vector<Segment>& lines) {
    for (const Segment& segment : lines)
      line(segment.x1, segment.y1, segment.x2, segment.y2);
  }

  void dash(int x1, int y1, int x2, int y2, int on, int off) {
    const int dx = x2 - x1, dy = y2 - y1;
    const bool alongY = std::abs(dy) > std::abs(dx);
    const int major = alongY ? dy : dx, minor = alongY ? dx : dy;
    const int step = major == 0 ? 0 : shifted(minor) / major;
    int f = add(shifted(alongY ? x1 : y1), 0x8000);
    int onLeft = on, offLeft = off;
    const int direction = major > 0 ? 1 : -1;
    int at = alongY ? y1 : x1;
    const int last = at + major;
    for (;;) {
      if (onLeft > 0) {
        if (alongY)
          put(f >> 16, at, true);
        else
          put(at, f >> 16, true);
        onLeft -= 1;
      }
      if (offLeft == 0) {
        onLeft = on;
        offLeft = off;
      }
      f = add(f, direction > 0 ? step : -step);
      if (onLeft == 0 && offLeft >= 1)
        offLeft -= 1;
      if (at == last)
        return;
      at += direction;
    }
  }

  void polyline(const std::vector<tagPOINT>& points) {
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
      line(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y);
  }

  /// At a magnification of `scale`; `text` has codes 0 to 127 for glyphs.
  void label(int x, int y, const char* text, bool invert, bool fill, int scale) {
    for (int i = 0; i < static_cast<int>(std::strlen(text)); ++i) {
      const auto code = static_cast<signed char>(text[i]);
      if (code < 0 || scale == 0)
        continue;
      const std::uint8_t* row = nkdraw::labelGlyphs + code * 10 + 9;
      int line = y;
      while (line < y + 10 * scale) {
        for (int repeat = 0; repeat < scale; ++repeat) {
          int column = x + 8 * scale * i;
          for (unsigned mask = 0x80; mask != 0; mask >>= 1) {
            labelBit((*row & mask) != 0, invert, fill, column, line, scale);
            column += scale;
          }
          ++line;
        }
        --row;
      }
    }
  }

  void drawText(const char* text, int count, tagRECT& rect, std::uint32_t format,
                bool transparent) {
    int m = 1;
    if (rect.bottom != 0 && rect.top >= 0) {
      m = std::abs(rect.bottom - rect.top) / 10;
      if (m < 1)
        m = 1;
      if (m > 20)
        m = 20;
    }
    const int length = static_cast<int>(std::strlen(text));
    if ((format & 0x1) != 0) {
      const auto height =
          static_cast<std::uint32_t>(rect.bottom) - static_cast<std::uint32_t>(rect.top);
      if (height > static_cast<std::uint32_t>(10 * m))
        rect.top =
            add(rect.top, static_cast<int>((height - static_cast<std::uint32_t>(10 * m)) / 2));
      const int half = length * m * 10 / 2;
      if ((rect.right - rect.left) / 2 > half)
        rect.left = rect.left + (rect.right - rect.left) / 2 - half;
    } else if ((format & 0x2) != 0) {
      rect.left = rect.right - count * m * 8;
    } else if ((format & 0x8) == 0) {
      rect.bottom = rect.top + 10 * m;
    }
    for (int i = 0; i < length; ++i) {
      const std::uint8_t* row = nkdraw::labelGlyphs + 10 * static_cast<signed char>(text[i]);
      for (int r = 0; r <= 10 * m; ++r) {
        for (int c = 0; c < 8; ++c) {
          for (int k = 0; k < m; ++k) {
            const int x = rect.left + (8 * i + c) * m + k, y = rect.bottom - r;
            if (r != 10 * m && (*row & (0x80 >> c)) != 0)
              put(x, y, true);
            else if (!transparent)
              put(x, y, false);
          }
        }
        if (r % m == 0)
          ++row;
      }
    }
    if ((format & 0x400) != 0) {
      rect.right = rect.left + count * m * 8;
      rect.bottom = add(rect.top, 10 * m);
    }
  }

 private:
  static int add(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
  }
  /// Left by 16 places in 32 bits.
  static int shifted(int value) {
    return static_cast<int>(static_cast<std::uint32_t>(value) << 16);
  }

  void labelBit(bool set, bool invert, bool fill, int x, int y, int scale) {
    if (!set && !fill)
      return;
    const bool foreground = set ? !invert : invert;
    if (scale == 1) {
      put(x, y, foreground);
    } else if (foreground) {
      lineHoriz(x, y, x + scale);
    } else {
      for (int k = 0; k < scale; ++k)
        put(x + k, y, false);
    }
  }

  bool fillsRows_;
};

}  // namespace nkdraw::test
