/* SPDX-License-Identifier: BSD-2-Clause
 *
 * Half a wipe from one frame to another, and the difference of the two. */
#include <nkdraw/nkdraw_c.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { kPixelBytes = 4, kWidth = 640, kHeight = 360 };
enum { kPitch = kWidth * kPixelBytes, kBytes = kPitch * kHeight };
enum { kDark = 0x30, kBright = 0xC0 };

int main(void) {
  /* A row more than the frame has: some modes of the display reach beyond odd heights. */
  uint8_t* a = malloc(kBytes + kPitch);
  uint8_t* b = malloc(kBytes + kPitch);
  uint8_t* out = malloc(kBytes + kPitch);
  if (a == NULL || b == NULL || out == NULL)
    return 1;
  memset(a, kDark, kBytes);
  memset(b, kBright, kBytes);

  /* An iris, halfway. */
  const NKWipe iris = {.srcA = a,
                       .pitchA = kPitch,
                       .srcB = b,
                       .pitchB = kPitch,
                       .dst = out,
                       .pitchDst = kPitch,
                       .wipe = NKWipeIris,
                       .pixelType = ptBGRA32,
                       .width = kWidth,
                       .height = kHeight,
                       .position = 1,
                       .range = 2};
  NKDraw_CompleteWipe(&iris);
  printf("wipe: corner %02X, centre %02X\n", out[0], out[kHeight / 2 * kPitch + kPitch / 2]);

  /* Where the first is brighter than the second, eight times as strong, and a grid. */
  const NKMux difference = {.srcA = a,
                            .sizeA = kBytes,
                            .srcB = b,
                            .sizeB = kBytes,
                            .dst = out,
                            .mode = NKMuxDifference,
                            .threshold = 8,
                            .gridType = NKGridPercent,
                            .gridX = 10,
                            .width = kWidth,
                            .height = kHeight,
                            .pitch = kPitch};
  NKDraw_CompleteMux(&difference);
  printf("difference: grid %02X, pixel %02X\n", out[0], out[kPitch + kPixelBytes]);

  free(a);
  free(b);
  free(out);
  return 0;
}
