// SPDX-License-Identifier: BSD-2-Clause
//
// The C interface: forwards every call, and checks for null where the headers say so.
#include <nkdraw/nkdraw_c.h>

#include <nkdraw/draw/draw.h>
#include <nkdraw/surface/factory.h>

uint32_t qtGetDrawSizeBMI(BITMAPINFO* /*info*/) {
  return 0;
}

uint32_t qtGetDrawSize(uint32_t /*type*/, int /*width*/, int /*height*/, int /*pitch*/) {
  return 0;
}

NKDraw* qtGetDrawBMI(BITMAPINFO* info, char* canvas) {
  NKDraw* surface = nullptr;
  return GetDraw(info, canvas, surface) == 0 ? surface : nullptr;
}

NKDraw* qtGetDraw(uint32_t type, int width, int height, int pitch, char* canvas) {
  NKDraw* surface = nullptr;
  return GetDraw(type, width, height, pitch, canvas, surface) == 0 ? surface : nullptr;
}

uint32_t qtAddRefDraw(NKDraw* surface) {
  return AddRefDraw(surface);
}

uint32_t qtReleaseDraw(NKDraw* surface) {
  return ReleaseDraw(surface);
}

uint32_t qtSetFont(NKDraw* /*surface*/, char* /*name*/) {
  return 0;
}

uint32_t qtUseDefaultFont(NKDraw* surface) {
  return UseDefaultFont(surface, true);
}

uint32_t qtNKPixelLock(NKDraw* surface, uint32_t timeout) {
  return surface == nullptr ? NKStatusRefused : surface->Lock(timeout);
}

uint32_t qtNKPixelTryLock(NKDraw* surface) {
  return surface == nullptr ? NKStatusRefused : surface->TryLock();
}

uint32_t qtNKPixelUnlock(NKDraw* surface) {
  return surface == nullptr ? NKStatusRefused : surface->Unlock();
}

uint32_t qtNKPixelWaitForChangeEvent(NKDraw* surface, uint32_t timeout) {
  return surface == nullptr ? NKStatusRefused : surface->WaitForChangeEvent(timeout);
}

void qtNKPixelSetChangeEvent(NKDraw* surface) {
  if (surface != nullptr)
    surface->SetChangeEvent();
}

uint32_t qtNKPixelLastChange(NKDraw* surface, uint32_t value) {
  return surface == nullptr ? NKStatusRefused : surface->LastChange(value);
}

uint32_t qtNKPixelSetCanvas(NKDraw* surface, char* canvas, int height, int width, int pitch) {
  return surface == nullptr ? NKStatusRefused : surface->SetCanvas(canvas, height, width, pitch);
}
