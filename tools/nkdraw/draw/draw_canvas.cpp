// SPDX-License-Identifier: BSD-2-Clause
#include "draw/draw_canvas.h"

#include <algorithm>
#include <cmath>

namespace nkdraw::tool {
namespace {

constexpr double kWordScale = 65536.0 / 255.0;
constexpr std::size_t kGroupBytes = 64;  // more than a group of pixels in any layout

/// Room after the frame. On 24-bit layouts a background pixel is plotted at four times x, so in the
/// last row it may lie a third of a row past the frame. Erasing plots one pixel past each row, and
/// reading a chroma plane goes one pixel too far.
std::size_t roomBehind(std::size_t pitch) {
  return pitch + kGroupBytes;
}

std::uint8_t byteOf(double channel) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(channel, 0.0, 1.0) * 255.0));
}

}  // namespace

DrawCanvas::DrawCanvas(const DrawLayout& layout, int width, int height)
    : layout_(layout), width_(width), height_(height), guarded_(layout.make(layout.type)) {
  NKDraw& made = surface();
  made.SetCanvas(nullptr, height, width, 0);
  const std::size_t pitch = made.Pitch();
  frameBytes_ = pitch * static_cast<std::size_t>(height);
  bytes_.resize(frameBytes_ + roomBehind(pitch));
  made.SetCanvas(reinterpret_cast<char*>(bytes_.data()), height, width, 0);
  made.SetColorRGBA(1.0, 1.0, 1.0, 1.0, true);
  made.SetColorRGBA(0.0, 0.0, 0.0, 1.0, false);
}

std::span<const std::uint8_t> DrawCanvas::frame() const {
  return std::span(bytes_).first(frameBytes_);
}

/// The frame, seen as six bytes a pixel.
GuardedSurface DrawCanvas::asSixBytes() {
  GuardedSurface other = sixByteLayout().make(ptNone);
  other.surface->SetCanvas(reinterpret_cast<char*>(bytes_.data()), height_, width_,
                           static_cast<int>(surface().Pitch()));
  NKPixel::cmYCbCr mode{};
  surface().GetYCbCrMode(mode);
  other.surface->SetYCbCrMode(mode);
  return other;
}

Frame DrawCanvas::picture() {
  const GuardedSurface other = layout_.shown == Shown::kSixBytes ? asSixBytes() : GuardedSurface();
  NKDraw& read = other.surface != nullptr ? *other.surface : surface();
  const double scale = layout_.shown == Shown::kWords ? kWordScale : 1.0;
  Frame frame = makeFrame(AV_PIX_FMT_RGB24, width_, height_);
  for (int y = 0; y < height_; ++y) {
    std::uint8_t* to = frame->data[0] + std::ptrdiff_t{frame->linesize[0]} * y;
    for (int x = 0; x < width_; ++x) {
      double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
      read.GetPixelRGBA(x, y, r, g, b, a);
      for (const double channel : {r, g, b})
        *to++ = byteOf(channel * scale);
    }
  }
  return frame;
}

}  // namespace nkdraw::tool
