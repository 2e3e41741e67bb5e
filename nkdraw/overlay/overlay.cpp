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

namespace {

constexpr std::uint32_t kNotServed = 0xFFFFFFFF;

}  // namespace

void nkdraw::deleteText(char* text) {
  delete[] text;
}

void nkdraw::releaseSurface(NKDraw* surface) {
  ReleaseDraw(surface);
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

// Not served by this version.

std::uint32_t CNkOverlay::SetMode(STREAMCMD*) {
  return kNotServed;
}
std::uint32_t CNkOverlay::SaveConfig() {
  return kNotServed;
}
std::uint32_t CNkOverlay::LoadConfig() {
  return kNotServed;
}
std::uint32_t CNkOverlay::SaveSetting(const char*, std::uint32_t) {
  return kNotServed;
}
std::uint32_t CNkOverlay::SaveSetting(const char*, const char*) {
  return kNotServed;
}
std::uint32_t CNkOverlay::LoadSetting(const char*, std::uint32_t&) {
  return kNotServed;
}
std::uint32_t CNkOverlay::LoadSetting(const char*, char*) {
  return kNotServed;
}
std::uint32_t CNkOverlay::SaveConfigINI(const char*) {
  return kNotServed;
}
std::uint32_t CNkOverlay::LoadConfigINI(const char*) {
  return kNotServed;
}
std::uint32_t CNkOverlay::LoadWatermark() {
  return kNotServed;
}
std::uint32_t CNkOverlay::ApplyWatermark(QFRAME*) {
  return kNotServed;
}

std::uint32_t CNkOverlay::drawAudMeters(const std::uint32_t*, const std::uint32_t*) {
  return kNotServed;
}
