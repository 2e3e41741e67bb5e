// SPDX-License-Identifier: BSD-2-Clause
//
// The overlay as a caller of the library would set it up, to compare the command's frames with.
#pragma once

#include <nkdraw/nkdraw.h>

#include <cstdint>

class ReferenceOverlay : public CNkOverlay {
 public:
  /// For frames in `type`, rows packed.
  ReferenceOverlay(pixelType type, int width, int height, std::uint32_t rate,
                   std::uint32_t scale = 1) {
    HZWVIDEO frames = {};
    frames.biSize = sizeof frames;
    frames.biWidth = width;
    frames.biHeight = height;
    frames.biSizeImage = 1;
    frames.frameRate = rate;
    frames.frameScale = scale;
    HZWSYSTEM host = {};
    host.size = sizeof host;
    Create(&frames, &host);
    Enabled = 1;
    TimeCodeLTCEnable = 1;
    NKDraw* made = nullptr;
    GetDraw(static_cast<std::uint32_t>(type), width, height, 0, nullptr, made);
    surface = made;
  }

  ReferenceOverlay& place(int x, int y, std::uint32_t size) {
    TimeCodeX = x;
    TimeCodeY = y;
    TimeCodeSize = size;
    return *this;
  }
  ReferenceOverlay& fill(bool on) {
    FillBackground = on ? 1 : 0;
    return *this;
  }

  void burn(std::uint8_t* canvas, std::uint32_t count) {
    QFRAME frame = {};
    frame.ltcCount = frame.vitcCount = count;
    frame.frameBuffer = reinterpret_cast<char*>(canvas);
    BurnIn(&frame, nullptr, nullptr, 0);
  }
};
