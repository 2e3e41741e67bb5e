// SPDX-License-Identifier: BSD-2-Clause
#include "sheet/bgra_canvas.h"

#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/factory.h>

#include <cstring>

namespace nkdraw::tool {
namespace {

constexpr std::size_t kPixelBytes = 4;

}  // namespace

void BgraCanvas::ReleaseSurface::operator()(NKDraw* surface) const {
  ReleaseDraw(surface);
}

BgraCanvas::BgraCanvas(int width, int height)
    : width_(width),
      height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * kPixelBytes) {
  NKDraw* made = nullptr;
  if (GetDraw(ptBGRA32, width, height, 0, reinterpret_cast<char*>(pixels_.data()), made) != 0)
    throw std::bad_alloc();
  surface_.reset(made);
}

Picture BgraCanvas::picture() {
  Picture picture;
  picture.planes[0] = pixels_.data();
  picture.pitches[0] = std::ptrdiff_t{width_} * static_cast<std::ptrdiff_t>(kPixelBytes);
  return picture;
}

Frame BgraCanvas::frame() const {
  Frame frame = makeFrame(AV_PIX_FMT_BGRA, width_, height_);
  const auto pitch = static_cast<std::size_t>(width_) * kPixelBytes;
  for (int y = 0; y < height_; ++y)
    std::memcpy(frame->data[0] + std::ptrdiff_t{frame->linesize[0]} * y,
                pixels_.data() + pitch * static_cast<std::size_t>(y), pitch);
  return frame;
}

void BgraCanvas::fill(int left, int top, int right, int bottom, Colour colour) {
  surface_->SetColorRGBA(colour.r, colour.g, colour.b, 1.0, true);
  for (int y = top; y < bottom; ++y)
    surface_->LineHoriz(left, y, right);
}

void BgraCanvas::write(const std::string& text, int left, int top, int magnification,
                       Colour colour) {
  surface_->SetColorRGBA(colour.r, colour.g, colour.b, 1.0, true);
  surface_->SetTextTransparent(true);
  const auto length = static_cast<int>(text.size());
  tagRECT rect = {left, top, left + length * 8 * magnification, top + 10 * magnification};
  surface_->DrawText(text.c_str(), length, &rect, 0);
}

void BgraCanvas::place(BgraCanvas& tile, int left, int top) {
  const Picture from = tile.picture(), to = picture();
  for (int y = 0; y < tile.height(); ++y)
    std::memcpy(rowOf(to, top + y)[0] + static_cast<std::size_t>(left) * kPixelBytes,
                rowOf(from, y)[0], static_cast<std::size_t>(tile.width()) * kPixelBytes);
}

}  // namespace nkdraw::tool
