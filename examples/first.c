/* SPDX-License-Identifier: BSD-2-Clause
 *
 * Makes a surface for a v210 frame by its header, shares it, binds the next frame, lets it go. */
#include <nkdraw/nkdraw_c.h>

#include <stdio.h>
#include <stdlib.h>

int main(void) {
  BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), 1920, 1080, 1, 0, 0, 0, 0, 0, 0, 0},
                     {{0, 0, 0, 0}}};
  info.bmiHeader.biCompression = 'v' | '2' << 8 | '1' << 16 | (uint32_t)'0' << 24;
  const size_t frameBytes = (size_t)5120 * 1080;
  char* frames = calloc(2, frameBytes);
  if (frames == NULL)
    return 1;

  NKDraw* surface = qtGetDrawBMI(&info, frames);
  if (surface == NULL) {
    fputs("no surface draws in this layout\n", stderr);
    free(frames);
    return 1;
  }
  qtAddRefDraw(surface); /* another part of the program holds it too */
  if (qtNKPixelLock(surface, 100) == 128) {
    qtNKPixelSetCanvas(surface, frames + frameBytes, 1080, 1920, 0);
    qtNKPixelLastChange(surface, 2);
    qtNKPixelUnlock(surface);
    qtNKPixelSetChangeEvent(surface);
  }
  printf("frame %u is bound, %u bytes in all\n", qtNKPixelLastChange(surface, NKOnlyRead),
         info.bmiHeader.biSizeImage);
  qtReleaseDraw(surface);
  qtReleaseDraw(surface);
  free(frames);
  return 0;
}
