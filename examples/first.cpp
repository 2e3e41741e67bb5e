// SPDX-License-Identifier: BSD-2-Clause
//
// Draws a line and a text into an RGB frame and writes it as a picture.
#include <nkdraw/nkdraw.h>

#include <fstream>
#include <vector>

int main() {
  const int width = 640, height = 360;
  std::vector<char> frame(std::size_t{width} * height * 3);

  NKDraw* surface = nullptr;
  if (GetDraw(ptRGB24, width, height, 0, frame.data(), surface) != 0)
    return 1;
  surface->SetColorRGBA(1.0, 0.8, 0.2, 1.0, true);
  surface->Line(40, 40, 600, 320);
  tagRECT box = {40, 60, 0, 90};  // 30 lines high: the 8 by 10 glyphs three times as large
  surface->DrawText("Hello, frame", 12, &box, DT_CALCRECT);
  ReleaseDraw(surface);

  std::ofstream file("first.ppm", std::ios::binary);
  file << "P6 " << width << ' ' << height << " 255\n";
  file.write(frame.data(), static_cast<std::streamsize>(frame.size()));
  return file.good() ? 0 : 1;
}
