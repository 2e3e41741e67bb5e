// SPDX-License-Identifier: BSD-2-Clause
#include "compare/mux_display.h"

#include <nkdraw/compositor/complete.h>

#include <cstring>

namespace nkdraw::tool {
namespace {

constexpr std::size_t kPixelBytes = 4;

/// Some modes write one row past an odd height and one pixel past an odd width.
std::size_t roomFor(std::size_t pitch, int height) {
  return pitch * (static_cast<std::size_t>(height) + 1) + kPixelBytes;
}

}  // namespace

MuxDisplay::MuxDisplay(const MuxCall& call, int width, int height)
    : call_(call),
      width_(width),
      height_(height),
      pitch_(static_cast<std::size_t>(width) * kPixelBytes),
      first_(roomFor(pitch_, height)),
      second_(roomFor(pitch_, height)),
      shown_(roomFor(pitch_, height)) {}

void MuxDisplay::load(const AVFrame& picture, std::vector<std::uint8_t>& frame) const {
  for (int y = 0; y < height_; ++y)
    std::memcpy(frame.data() + pitch_ * static_cast<std::size_t>(y),
                picture.data[0] + std::ptrdiff_t{picture.linesize[0]} * y, pitch_);
}

const std::uint8_t* MuxDisplay::show(const AVFrame& first, const AVFrame& second) {
  load(first, first_);
  load(second, second_);
  const auto bytes = static_cast<std::uint32_t>(pitch_ * static_cast<std::size_t>(height_));
  const NKMux mux = {.srcA = first_.data(),
                     .sizeA = bytes,
                     .srcB = second_.data(),
                     .sizeB = bytes,
                     .dst = shown_.data(),
                     .mode = call_.mode,
                     .wipe = call_.wipe,
                     .amount = call_.amount,
                     .threshold = call_.threshold,
                     .splitX = call_.splitX,
                     .splitY = call_.splitY,
                     .gridType = call_.gridType,
                     .gridX = call_.gridX,
                     .gridY = call_.gridY,
                     .width = static_cast<std::uint32_t>(width_),
                     .height = static_cast<std::uint32_t>(height_),
                     .pitch = static_cast<std::uint32_t>(pitch_)};
  NKDraw_CompleteMux(&mux);
  return shown_.data();
}

}  // namespace nkdraw::tool
