/* SPDX-License-Identifier: BSD-2-Clause
 *
 * Half a wipe from one frame to another, and the difference of the two. */
#include <nkdraw/nkdraw_c.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { kWidth = 640, kHeight = 360, kPitch = kWidth * 4, kBytes = kPitch * kHeight };

int main(void) {
  /* A row more than the frame has: some modes of the display reach beyond odd heights. */
  uint8_t* a = malloc(kBytes + kPitch);
  uint8_t* b = malloc(kBytes + kPitch);
  uint8_t* out = malloc(kBytes + kPitch);
  if (a == NULL || b == NULL || out == NULL)
    return 1;
  memset(a, 0x30, kBytes);
  memset(b, 0xC0, kBytes);

  /* An iris (41) at 1 of 2. */
  NKDraw_DisplayWipe(a, kPitch, b, kPitch, out, kPitch, 41, ptBGRA32, kWidth, kHeight, 0, 0, 0, 0,
                     0, 0, 2, 1);
  printf("wipe: corner %02X, centre %02X\n", out[0], out[kHeight / 2 * kPitch + kWidth / 2 * 4]);

  /* Where the first is brighter than the second (256), eight times as strong, and a grid. */
  NKDraw_DisplayMuxRGBA(a, kBytes, b, kBytes, out, 0, 256, 0, 0, 8, 0, 0, 1, 10, 0, kWidth, kHeight,
                        kPitch);
  printf("difference: grid %02X, pixel %02X\n", out[0], out[kPitch + 4]);

  free(a);
  free(b);
  free(out);
  return 0;
}
