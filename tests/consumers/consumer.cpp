// SPDX-License-Identifier: BSD-2-Clause
#include <nkdraw/nkdraw.h>

#include <cstdio>

int main() {
  static char frame[16 * 8 * 4];
  NKDraw* surface = nullptr;
  if (GetDraw(ptBGRA32, 16, 8, 0, frame, surface) != 0)
    return 1;
  surface->SetColorRGBA(1.0, 0.0, 0.0, 1.0, true);
  surface->Line(0, 0, 15, 7);
  const bool drawn = frame[2] == '\xFF' && frame[0] == 0;
  ReleaseDraw(surface);
  // Linking the core brings the host's services along.
  char text[16];
  TcForm(1, static_cast<std::uint32_t>(nkdraw::TimecodeType::k25), text);
  std::puts(drawn ? text : "not drawn");
  return drawn ? 0 : 1;
}
