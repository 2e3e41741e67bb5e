/* SPDX-License-Identifier: BSD-2-Clause */
#include <nkdraw/nkdraw_c.h>

#include <stdio.h>

int main(void) {
  static char frame[16 * 8 * 4];
  NKDraw* surface = qtGetDraw(3, 16, 8, 0, frame);
  if (surface == NULL || qtNKPixelLastChange(surface, 7) != 7) {
    puts("no surface");
    return 1;
  }
  qtReleaseDraw(surface);
  puts("ok");
  return 0;
}
