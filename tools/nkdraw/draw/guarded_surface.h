// SPDX-License-Identifier: BSD-2-Clause
//
// Surfaces that keep drawing inside their canvas, and record what is outside.
#pragma once

#include <nkdraw/draw/draw.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace nkdraw::tool {

/// What a guarded surface left out.
class Edge {
 public:
  /// The first pixel outside the canvas since the last call.
  [[nodiscard]] std::optional<tagPOINT> takeStray() { return std::exchange(stray_, std::nullopt); }

 protected:
  ~Edge() = default;

  void note(int x, int y) {
    if (!stray_)
      stray_ = tagPOINT{x, y};
  }

 private:
  std::optional<tagPOINT> stray_;
};

/// A surface of the library that plots only pixels of its canvas, and those one past each row's end
/// that EraseCanvas plots. Everything else is the same as in `Surface`, to the bit, except that a
/// rectangle of the canvas's size is drawn where it lies.
template <class Surface>
class Guarded final : public Surface, public Edge {
 public:
  explicit Guarded(pixelType type) : NKDraw(type), Surface(type) {}
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;
  ~Guarded() override = default;

  std::uint32_t PutPixel(int x, int y, bool foreground) override {
    if (0 <= x && x < right() && 0 <= y && y < bottom())
      return Surface::PutPixel(x, y, foreground);
    note(x, y);
    return 0;
  }

  std::uint32_t LineHoriz(int x1, int y, int x2) override {
    const int last = leavesOutLast() ? x2 - 1 : x2;
    if (x1 > last)
      return 0;
    noteOutside(x1, y, last, y);
    if (y < 0 || y >= bottom() || last < 0 || x1 >= right())
      return 0;
    const int end = std::min(last, right() - 1);
    return Surface::LineHoriz(std::max(x1, 0), y, leavesOutLast() ? end + 1 : end);
  }

  std::uint32_t FillRect(const tagRECT* rect) override {
    const int last = leavesOutLast() ? rect->right - 1 : rect->right;
    if (rect->top >= rect->bottom || rect->left > last)
      return 0;
    noteOutside(rect->left, rect->top, last, rect->bottom - 1);
    tagRECT rows = *rect;
    rows.top = std::max(rows.top, 0);
    rows.bottom = std::min(rows.bottom, bottom());
    if (isWholeCanvas(*rect))
      return Surface::FillRect(rect);
    for (int y = rows.top; y < rows.bottom; ++y)
      LineHoriz(rows.left, y, rows.right);
    return 0;
  }

  /// The pixel one past each row's end is part of the operation.
  std::uint32_t EraseCanvas(bool flag) override {
    pastEnd_ = 1;
    const std::uint32_t status = Surface::EraseCanvas(flag);
    pastEnd_ = 0;
    return status;
  }

 private:
  [[nodiscard]] int right() const { return static_cast<int>(this->width) + pastEnd_; }
  [[nodiscard]] int bottom() const { return static_cast<int>(this->height); }
  [[nodiscard]] bool leavesOutLast() const {
    return ptRGBA32 <= this->pixelKind && this->pixelKind <= ptABGR32;
  }
  [[nodiscard]] bool isWholeCanvas(const tagRECT& rect) const {
    return rect.left == 0 && rect.top == 0 && rect.right == right() && rect.bottom == bottom();
  }
  /// The far edges are part of the rectangle.
  void noteOutside(int x1, int y1, int x2, int y2) {
    if (x1 < 0 || y1 < 0)
      note(x1, y1);
    if (x2 >= right() || y2 >= bottom())
      note(x2, y2);
  }

  int pastEnd_ = 0;  // columns past the end
};

/// A surface, and the record of what was drawn outside it.
struct GuardedSurface {
  std::unique_ptr<NKDraw> surface;
  Edge* edge = nullptr;
};

template <class Surface>
[[nodiscard]] GuardedSurface makeGuarded(pixelType type) {
  auto made = std::make_unique<Guarded<Surface>>(type);
  Edge* const edge = made.get();
  return {std::move(made), edge};
}

}  // namespace nkdraw::tool
