// SPDX-License-Identifier: BSD-2-Clause
//
// The drawing object: its pen, its second pair of colours, and the operations that do nothing.
#include <nkdraw/draw/draw.h>

#include <algorithm>
#include <iterator>

namespace {

void setChannels(double (&colour)[4], double red, double green, double blue, double alpha) {
  colour[0] = red;
  colour[1] = green;
  colour[2] = blue;
  colour[3] = alpha;
}

}  // namespace

NKDraw::NKDraw(pixelType /*type*/) : labelFont(builtInFont()) {
  antialias = false;
  spareFlag = false;
}

NKDraw& NKDraw::operator=(NKDraw& other) {
  const std::uint32_t rows = std::min(height, other.height);
  const std::uint32_t columns = std::min(width, other.width);
  for (std::uint32_t row = 0; row < rows; ++row) {
    for (std::uint32_t column = 0; column < columns; ++column) {
      const auto x = static_cast<int>(column), y = static_cast<int>(row);
      double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
      GetPixelRGBA(x, y, r, g, b, a);
      SetColorRGBA(r, g, b, a, true);
      other.PutPixel(x, y, true);
    }
  }
  CopyNKPixel(other);
  return other;
}

NKDraw::~NKDraw() = default;

std::uint32_t NKDraw::Point(int x, int y, bool foreground) {
  penX = x;
  penY = y;
  return PutPixel(x, y, foreground);
}

std::uint32_t NKDraw::MoveTo(int x, int y, tagPOINT* previous) {
  if (previous != nullptr)
    *previous = {penX, penY};
  penX = x;
  penY = y;
  return 0;
}

std::uint32_t NKDraw::MoveTo(int x, int y) {
  penX = x;
  penY = y;
  return 0;
}

std::uint32_t NKDraw::SetSDLTextColor(double red, double green, double blue, double alpha) {
  setChannels(sdlTextColor, red, green, blue, alpha);
  return 0;
}

std::uint32_t NKDraw::SetSDLBkColor(double red, double green, double blue, double alpha) {
  setChannels(sdlBkColor, red, green, blue, alpha);
  return 0;
}

std::uint32_t NKDraw::RememberSDLColors() {
  std::copy(std::begin(sdlTextColor), std::end(sdlTextColor), savedSdlTextColor);
  std::copy(std::begin(sdlBkColor), std::end(sdlBkColor), savedSdlBkColor);
  return 0;
}

std::uint32_t NKDraw::ResetSDLColors() {
  std::copy(std::begin(savedSdlTextColor), std::end(savedSdlTextColor), sdlTextColor);
  std::copy(std::begin(savedSdlBkColor), std::end(savedSdlBkColor), sdlBkColor);
  return 0;
}

void NKDraw::SetTextTransparent(bool transparent) {
  textTransparent = transparent;
}

// Empty: part of the table, successful, without effect.

std::uint32_t NKDraw::SetBrush(unsigned char*, int, int) {
  return 0;
}
std::uint32_t NKDraw::Fill(int, int, double) {
  return 0;
}
std::uint32_t NKDraw::GradientRect(int, int, int, int, int) {
  return 0;
}
std::uint32_t NKDraw::SymGradientRect(int, int, int, int, int) {
  return 0;
}
std::uint32_t NKDraw::CornerGradientRect(int, int, int, int, int) {
  return 0;
}
std::uint32_t NKDraw::CenterGradientRect(int, int, int, int) {
  return 0;
}
std::uint32_t NKDraw::RadialGradientFill(int, int, int, int, int, int) {
  return 0;
}
std::uint32_t NKDraw::PatternFill(int, int, int, int, int, int, unsigned char*) {
  return 0;
}
std::uint32_t NKDraw::RoundRectButton(int, int, int, int, int, int) {
  return 0;
}
std::uint32_t NKDraw::CopyRect(tagRECT*, const tagRECT*, NKDraw*) {
  return 0;
}
std::uint32_t NKDraw::Filter(nkFilterType, int, int, int, int) {
  return 0;
}
std::uint32_t NKDraw::Scale(nkScaleType, NKDraw*, tagRECT*, NKDraw*, tagRECT*) {
  return 0;
}
std::uint32_t NKDraw::EMFDraw(int, int, int, int, bool) {
  return 0;
}
std::uint32_t NKDraw::Arrow(int, int, int, int, bool) {
  return 0;
}
