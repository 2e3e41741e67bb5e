// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay's life and settings.
#include <nkdraw/overlay/overlay.h>

#include <nkdraw/draw/draw.h>
#include <nkdraw/platform/media_names.h>
#include <nkdraw/platform/memory.h>
#include <nkdraw/platform/timecode.h>
#include <nkdraw/surface/factory.h>

#include <cstring>

void nkdraw::deleteText(char* text) {
  delete[] text;
}

void nkdraw::releaseSurface(NKDraw* surface) {
  ReleaseDraw(surface);
}

void nkdraw::freeSamples(std::uint32_t* samples) {
  NKFree(samples);
}

void nkdraw::freeSamples(std::uint8_t* samples) {
  NKFree(samples);
}

CNkOverlay::CNkOverlay() {
  for (int slot = 0; slot < kCustomTexts; ++slot) {
    CustomTextX[slot] = 500;
    CustomTextY[slot] = slot * 30;
  }
}

CNkOverlay::~CNkOverlay() = default;

std::uint32_t CNkOverlay::Create(const HZWVIDEO* frames, const HZWSYSTEM* host) {
  nkOSCopyMemory(&videoHeader, frames, sizeof videoHeader);
  nkOSCopyMemory(&video, frames, sizeof video);
  frameLayout = frames->biCompression;
  timeCodeType = hzwGetTCType(static_cast<double>(frames->frameRate) / frames->frameScale);
  nkOSCopyMemory(&system, host, sizeof system);
  if (WatermarkEnable != 0)
    LoadWatermark();
  nkOSZeroMemory(meterHistory, sizeof meterHistory);
  return 0;
}

std::uint32_t CNkOverlay::Destroy() {
  surface = nullptr;
  return 0;
}

std::uint32_t CNkOverlay::SetAppName(const char* /*name*/) {
  return 0;
}

void CNkOverlay::SetWatermarkPath(const char* path) {
  watermarkPath = path;
}
