// SPDX-License-Identifier: BSD-2-Clause
//
// Filled and outlined rectangles.
#include <nkdraw/draw/draw.h>

#include <nkdraw/platform/memory.h>
#include <nkdraw/surface/byte_order.h>
#include <nkdraw/surface/resolver.h>
#include <nkdraw/surface/wrapping.h>

namespace {

using nkdraw::wrappingAdd;
using nkdraw::wrappingSubtract;

}  // namespace

// Deliberate: callers rely on it. A rectangle of the canvas's size fills the canvas, wherever it
// lies.
std::uint32_t NKDraw::FillRect(const tagRECT* rect) {
  const auto columns = static_cast<std::uint32_t>(wrappingSubtract(rect->right, rect->left));
  const auto rows = static_cast<std::uint32_t>(wrappingSubtract(rect->bottom, rect->top));
  if (nkdraw::isFourByteRgb(pixelKind) && columns == width && rows == height)
    return NKDraw::EraseCanvas(true);
  fillRows(*rect);
  return 0;
}

std::uint32_t NKDraw::EraseCanvas(bool /*flag*/) {
  const auto rows = static_cast<int>(height), columns = static_cast<int>(width);
  if (!nkdraw::isFourByteRgb(pixelKind)) {
    fillRows({0, 0, columns, rows});
  } else if (canvas != nullptr && (rows < 0) == (columns < 0)) {
    // Two negative sides have a positive product; a single one would fill all of memory.
    SetMemoryFast(canvas, nkdraw::load32(foregroundPixel), height * width * 4);
  }
  return 0;
}

// Fills each row as LineHoriz does. A class that does not override LineHoriz need not be called.
void NKDraw::fillRows(const tagRECT& rect) {
  const nkdraw::RunPlotter plotter(*this);
  const bool direct = plotter.ownClass() && !nkdraw::isFourByteRgb(pixelKind);
  for (int y = rect.top; y < rect.bottom; ++y) {
    if (!direct)
      LineHoriz(rect.left, y, rect.right);
    else if (rect.left <= rect.right)
      plotter.row(rect.left, y, nkdraw::span(rect.left, rect.right), 1, true);
  }
}

std::uint32_t NKDraw::Rectangle(int x1, int y1, int x2, int y2) {
  Line(x1, y1, x2, y1);
  Line(x1, y1, x1, y2);
  Line(x1, y2, x2, y2);
  Line(x2, y1, x2, y2);
  return 0;
}

std::uint32_t NKDraw::RoundRect(int x1, int y1, int x2, int y2, int cornerWidth, int cornerHeight) {
  if (cornerWidth > wrappingSubtract(x2, x1) || cornerHeight > wrappingSubtract(y2, y1))
    return NKStatusRefused;
  const int rx = cornerWidth / 2, ry = cornerHeight / 2;
  const int xl = wrappingAdd(x1, rx), xr = wrappingSubtract(x2, rx);
  const int yt = wrappingAdd(y1, ry), yb = wrappingSubtract(y2, ry);
  Line(xl, y1, xr, y1);
  Line(x1, yt, x1, yb);
  Line(xl, y2, xr, y2);
  Line(x2, yt, x2, yb);

  const int left = wrappingSubtract(xl, x1), right = wrappingSubtract(x2, xr);
  const int top = wrappingSubtract(yt, y1), bottom = wrappingSubtract(y2, yb);
  AngleArcTo(xl, yt, left, top, 90.0F, 180.0F);
  AngleArcTo(xl, yb, left, bottom, 180.0F, 270.0F);
  AngleArcTo(xr, yb, right, bottom, 270.0F, 360.0F);
  AngleArcTo(xr, yt, right, top, 0.0F, 90.0F);
  return 0;
}
